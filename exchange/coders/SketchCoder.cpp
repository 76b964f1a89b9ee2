// Sketch palettes (.sketchpalette), the files of the "Sketch Palettes" plugin: a JSON object whose
// "colors" are {name, red, green, blue, alpha} objects in 0...1 (plugin 1.4 and later) or, in older
// files, CSS colour strings such as "#1A6597". We write what plugin 2.x writes, compact.
#include <cmath>

#include "exchange/BytesReader.h"
#include "exchange/PalErrors.h"
#include "exchange/coders/Coders.h"
#include "exchange/coders/TextSupport.h"
#include "platform/Json.h"

namespace PAL {

namespace {

using kro::Json;

[[noreturn]] void refuse() { throw CommonError(CommonError::Case::invalidFormat); }

// A component as a number, or as the numeric string some design-token tools write.
double component(const Json& object, const char* key, double fallback) {
    const auto found = object.find(key);
    if (found == object.end()) return fallback;
    if (found->is_number()) return found->get<double>();
    if (found->is_string())
        if (const auto value = textfile::number(textfile::trimmed(found->get_ref<const std::string&>()))) return *value;
    refuse();
}

// "rgb(26, 101, 151)" or "rgba(26, 101, 151, 0.5)": channels 0-255, alpha 0-1.
Color cssFunctionColor(std::string_view text) {
    const bool withAlpha = text.starts_with("rgba(");
    const auto open = text.find('(');
    if (!text.ends_with(')') || (!withAlpha && !text.starts_with("rgb("))) refuse();
    const auto arguments = textfile::fields(text.substr(open + 1, text.size() - open - 2), ',');
    if (arguments.size() != (withAlpha ? 4u : 3u)) refuse();
    double values[4] = {0, 0, 0, 1};
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const auto value = textfile::number(textfile::trimmed(arguments[i]));
        if (!value) refuse();
        values[i] = *value;
    }
    return Color::rgb255(values[0], values[1], values[2], values[3] * 255);
}

// The legacy string form: "#RGB", "#RRGGBB" or "#RRGGBBAA", or an rgb()/rgba() function.
Color legacyColor(std::string_view text) {
    text = textfile::trimmed(text);
    if (text.starts_with("rgb")) return cssFunctionColor(text);
    const auto digits = text.substr(text.starts_with('#') ? 1 : 0);
    if ((digits.size() != 3 && digits.size() != 6 && digits.size() != 8) || !textfile::isHexDigits(digits)) refuse();
    return Color::hex(digits, ColorByteFormat::rgba);
}

Color objectColor(const Json& object) {
    std::string name;
    if (const auto found = object.find("name"); found != object.end() && found->is_string()) name = found->get<std::string>();
    return Color::rgb(component(object, "red", 0), component(object, "green", 0), component(object, "blue", 0),
                      component(object, "alpha", 1), std::move(name));
}

// JavaScript writes whole numbers without a fraction ("1", not "1.0").
Json number(double value) {
    if (value == std::floor(value) && std::abs(value) < 1e15) return static_cast<std::int64_t>(value);
    return value;
}

class SketchCoder final : public PaletteCoder {
public:
    SketchCoder() : PaletteCoder(PaletteFormat::sketch) {}
    using PaletteCoder::decode;

    Palette decode(BytesParser::BytesReader& reader) const override {
        const auto bytes = reader.readAll();
        const auto json = Json::parse(textfile::fromBytes(std::string_view(reinterpret_cast<const char*>(bytes.data()), bytes.size())),
                                      nullptr, false);
        if (!json.is_object() || !json.contains("colors") || !json["colors"].is_array()) refuse();
        Palette palette;
        palette.format = PaletteFormat::sketch;
        for (const auto& entry : json["colors"]) {
            if (entry.is_string()) palette.colors.push_back(legacyColor(entry.get_ref<const std::string&>()));
            else if (entry.is_object()) palette.colors.push_back(objectColor(entry));
            else refuse();
        }
        return palette;
    }

    // Groups are flattened and the palette name is left to the file name: the format holds neither.
    std::string encode(const Palette& palette) const override {
        Json colors = Json::array();
        for (const auto& color : palette.eachColor()) {
            const RGB rgb = color.rgb();
            colors.push_back(Json{{"name", color.name.empty() ? Json(nullptr) : Json(color.name)},
                                  {"red", number(rgb.rf)},
                                  {"green", number(rgb.gf)},
                                  {"blue", number(rgb.bf)},
                                  {"alpha", number(rgb.af)}});
        }
        const Json file{{"compatibleVersion", "2.0"}, {"pluginVersion", "2.22"}, {"colors", std::move(colors)},
                        {"gradients", Json::array()}, {"images", Json::array()}};
        return file.dump(-1, ' ', false, Json::error_handler_t::replace);
    }
};

}  // namespace

std::unique_ptr<PaletteCoder> makeSketchCoder() { return std::make_unique<SketchCoder>(); }

}  // namespace PAL
