// Simple Color Palette (.color-palette): JSON with an optional "name" and "colors", each colour
// {"name"?, "components": [r, g, b, opacity?]} in extended linear sRGB, that is sRGB primaries
// without the transfer curve, where values below 0 or above 1 stand for colours outside sRGB.
// Values are defined to five decimals. We keep colours in gamma-encoded sRGB, so reading applies
// the sRGB curve (to the magnitude, keeping the sign) and writing takes it off again; values
// outside 0...1 are kept through a round trip.
#include <array>
#include <cmath>

#include "exchange/BytesReader.h"
#include "exchange/PalErrors.h"
#include "exchange/PalUnit.h"
#include "exchange/coders/Coders.h"
#include "exchange/coders/TextSupport.h"
#include "platform/Json.h"

namespace PAL {

namespace {

using kro::Json;

[[noreturn]] void refuse() { throw CommonError(CommonError::Case::invalidFormat); }

double fromLinear(double linear) {
    const double magnitude = std::abs(linear);
    const double value = magnitude <= 0.0031308 ? 12.92 * magnitude : 1.055 * std::pow(magnitude, 1 / 2.4) - 0.055;
    return std::copysign(value, linear);
}

double toLinear(double encoded) { return std::copysign(srgbToLinear(std::abs(encoded)), encoded); }

// Far beyond any colour a display shows; a larger component is taken for a broken file.
constexpr double farthest = 1e6;

// Five decimals, an exact half going to the even neighbour, as the format's own writer rounds.
double quantized(double value) {
    const double rounded = std::nearbyint(value * 100000) / 100000;
    return rounded == 0 ? 0 : rounded;  // never "-0"
}

// A JSON string literal; text that is not UTF-8 gets replacement characters rather than failing.
std::string jsonString(const std::string& text) { return Json(text).dump(-1, ' ', false, Json::error_handler_t::replace); }

std::string optionalName(const Json& object) {
    const auto found = object.find("name");
    return found != object.end() && found->is_string() ? found->get<std::string>() : std::string();
}

Color readColor(const Json& entry) {
    if (!entry.is_object() || !entry.contains("components") || !entry.at("components").is_array()) refuse();
    const auto& components = entry.at("components");
    if (components.size() != 3 && components.size() != 4) refuse();
    double values[4] = {0, 0, 0, 1};
    for (std::size_t i = 0; i < components.size(); ++i) {
        if (!components[i].is_number() || std::abs(components[i].get<double>()) > farthest) refuse();
        values[i] = quantized(components[i].get<double>());
    }
    // The components are kept unclamped: a colour outside sRGB survives being written back.
    return Color(ColorSpace::RGB, {fromLinear(values[0]), fromLinear(values[1]), fromLinear(values[2])}, clampUnit(values[3]),
                 optionalName(entry));
}

// Gamma-encoded sRGB components as the colour holds them: unclamped for an RGB colour (within
// reason), converted otherwise.
std::array<double, 3> encodedComponents(const Color& color) {
    const auto& c = color.colorComponents;
    const auto inReach = [](double value) { return std::abs(value) <= fromLinear(farthest); };
    if (color.colorSpace == ColorSpace::RGB && c.size() == 3 && inReach(c[0]) && inReach(c[1]) && inReach(c[2])) return {c[0], c[1], c[2]};
    const RGB rgb = color.rgb();
    return {rgb.rf, rgb.gf, rgb.bf};
}

class SimplePaletteCoder final : public PaletteCoder {
public:
    SimplePaletteCoder() : PaletteCoder(PaletteFormat::simplePalette) {}
    using PaletteCoder::decode;

    // Lenient where the published schema is strict: unknown keys are ignored, an empty "colors"
    // gives an empty palette, and an empty name counts as none.
    Palette decode(BytesParser::BytesReader& reader) const override {
        const auto bytes = reader.readAll();
        const auto json = Json::parse(textfile::fromBytes(std::string_view(reinterpret_cast<const char*>(bytes.data()), bytes.size())),
                                      nullptr, false);
        if (!json.is_object() || !json.contains("colors") || !json.at("colors").is_array()) refuse();
        Palette palette(optionalName(json));
        palette.format = PaletteFormat::simplePalette;
        for (const auto& entry : json.at("colors")) palette.colors.push_back(readColor(entry));
        return palette;
    }

    // Laid out as the format's reference writer lays it out (JSON.stringify with a tab), numbers in
    // plain decimals as JavaScript prints them; names omitted when empty and opacity when 1.
    // Groups are flattened.
    std::string encode(const Palette& palette) const override {
        std::string out = "{\n";
        if (!palette.name.empty()) out += "\t\"name\": " + jsonString(palette.name) + ",\n";
        out += "\t\"colors\": [";
        bool first = true;
        for (const Color& color : palette.eachColor()) {
            out += first ? "\n\t\t{\n" : ",\n\t\t{\n";
            first = false;
            if (!color.name.empty()) out += "\t\t\t\"name\": " + jsonString(color.name) + ",\n";
            std::vector<double> components;
            for (double value : encodedComponents(color)) components.push_back(quantized(toLinear(value)));
            if (const double opacity = quantized(color.alpha); opacity < 1) components.push_back(opacity);
            out += "\t\t\t\"components\": [";
            for (std::size_t c = 0; c < components.size(); ++c) out += (c == 0 ? "\n\t\t\t\t" : ",\n\t\t\t\t") + textfile::fixedTrimmed(components[c], 5);
            out += "\n\t\t\t]\n\t\t}";
        }
        return out + (first ? "]\n}" : "\n\t]\n}");
    }
};

}  // namespace

std::unique_ptr<PaletteCoder> makeSimplePaletteCoder() { return std::make_unique<SimplePaletteCoder>(); }

}  // namespace PAL
