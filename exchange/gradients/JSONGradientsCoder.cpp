// Our own JSON form of a gradient file (docs/formats/json-gradients.md): {"gradients": [...]}, each
// gradient a name and its stops, each stop a position and a colour in the palette JSON's colour form,
// so every colour space, name, type and alpha survives. A single gradient object is read too.
#include "exchange/BytesReader.h"
#include "exchange/PalErrors.h"
#include "exchange/gradients/GradientCoders.h"

namespace PAL {

namespace {

CommonError invalidFormat() { return CommonError(CommonError::Case::invalidFormat); }

Gradient gradientFromJson(const kro::Json& json) {
    if (!json.is_object()) throw invalidFormat();
    Gradient gradient;
    if (const auto name = json.find("name"); name != json.end()) {
        if (!name->is_string()) throw invalidFormat();
        gradient.name = name->get<std::string>();
    }
    const auto stops = json.find("stops");
    if (stops == json.end() || !stops->is_array() || stops->empty()) throw invalidFormat();
    for (const auto& stop : *stops) {
        if (!stop.is_object()) throw invalidFormat();
        const auto position = stop.find("position");
        const auto color = stop.find("color");
        if (position == stop.end() || !position->is_number() || color == stop.end()) throw invalidFormat();
        gradient.stops.push_back({position->get<double>(), Color::fromJson(*color)});
    }
    gradient.normalize();
    return gradient;
}

kro::Json gradientJson(const Gradient& gradient) {
    kro::Json stops = kro::Json::array();
    for (const auto& stop : writableStops(gradient)) stops.push_back({{"position", stop.position}, {"color", stop.color.json()}});
    kro::Json json = kro::Json::object();
    if (!gradient.name.empty()) json["name"] = gradient.name;
    json["stops"] = std::move(stops);
    return json;
}

class JSONGradientsCoder final : public GradientsCoder {
public:
    JSONGradientsCoder() : GradientsCoder(GradientsFormat::json) {}
    using GradientsCoder::decode;

    Gradients decode(BytesParser::BytesReader& reader) const override {
        const auto bytes = reader.readAll();
        std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
        if (text.starts_with("\xEF\xBB\xBF")) text.remove_prefix(3);
        const auto json = kro::Json::parse(text, nullptr, false);
        if (json.is_discarded() || !json.is_object()) throw invalidFormat();

        Gradients gradients;
        gradients.format = GradientsFormat::json;
        if (json.contains("stops")) {
            gradients.gradients.push_back(gradientFromJson(json));
        } else {
            const auto list = json.find("gradients");
            if (list == json.end() || !list->is_array() || list->empty()) throw invalidFormat();
            for (const auto& gradient : *list) gradients.gradients.push_back(gradientFromJson(gradient));
        }
        return gradients;
    }

    std::string encode(const Gradients& gradients) const override {
        kro::Json list = kro::Json::array();
        for (const auto& gradient : writableGradients(gradients)) list.push_back(gradientJson(gradient));
        const kro::Json json = {{"gradients", std::move(list)}};
        // Text that is not UTF-8 is written with replacement characters rather than refused.
        return json.dump(2, ' ', false, kro::Json::error_handler_t::replace) + "\n";
    }
};

}  // namespace

std::unique_ptr<GradientsCoder> makeJSONGradientsCoder() { return std::make_unique<JSONGradientsCoder>(); }

}  // namespace PAL
