#include "exchange/PalColor.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

#include "exchange/PalErrors.h"
#include "exchange/PalUnit.h"
#include "platform/ColorValue.h"

namespace PAL {

namespace {

constexpr std::array<std::string_view, 4> spaceTexts = {"CMYK", "RGB", "LAB", "Gray"};
constexpr std::array<std::string_view, 3> typeTexts = {"global", "spot", "normal"};
constexpr std::array<std::string_view, 6> byteFormatTexts = {"rgb", "bgr", "argb", "rgba", "abgr", "bgra"};

template <typename Enum, std::size_t N>
std::optional<Enum> fromText(const std::array<std::string_view, N>& texts, std::string_view text) {
    for (std::size_t i = 0; i < N; ++i)
        if (texts[i] == text) return static_cast<Enum>(i);
    return std::nullopt;
}

const Components& checkedComponents(const Color& color) {
    if (color.colorComponents.size() != static_cast<std::size_t>(componentCount(color.colorSpace)))
        throw CommonError(CommonError::Case::invalidColorComponentCountForModelType);
    return color.colorComponents;
}

}  // namespace

std::string_view text(ColorSpace space) { return spaceTexts.at(static_cast<std::size_t>(space)); }
std::string_view text(ColorType type) { return typeTexts.at(static_cast<std::size_t>(type)); }
std::string_view text(ColorByteFormat format) { return byteFormatTexts.at(static_cast<std::size_t>(format)); }
std::optional<ColorSpace> colorSpaceFromText(std::string_view text) { return fromText<ColorSpace>(spaceTexts, text); }
std::optional<ColorType> colorTypeFromText(std::string_view text) { return fromText<ColorType>(typeTexts, text); }
std::optional<ColorByteFormat> colorByteFormatFromText(std::string_view text) { return fromText<ColorByteFormat>(byteFormatTexts, text); }

int componentCount(ColorSpace space) {
    switch (space) {
    case ColorSpace::CMYK: return 4;
    case ColorSpace::RGB: return 3;
    case ColorSpace::LAB: return 3;
    case ColorSpace::Gray: return 1;
    }
    return 0;
}

Color::Color(ColorSpace colorSpace, Components colorComponents, double alpha, std::string name, ColorType colorType)
    : id(UUID::make()), name(std::move(name)), colorType(colorType), colorSpace(colorSpace),
      colorComponents(std::move(colorComponents)), alpha(clampUnit(alpha)) {}

Color Color::rgb(double r, double g, double b, double a, std::string name, ColorType type) {
    return Color(ColorSpace::RGB, {clampUnit(r), clampUnit(g), clampUnit(b)}, a, std::move(name), type);
}

Color Color::rgb255(double r, double g, double b, double a, std::string name, ColorType type) {
    return rgb(r / 255, g / 255, b / 255, a / 255, std::move(name), type);
}

Color Color::gray(double white, double alpha, std::string name, ColorType type) {
    return Color(ColorSpace::Gray, {clampUnit(white)}, alpha, std::move(name), type);
}

Color Color::gray255(double white, double alpha, std::string name, ColorType type) {
    return gray(white / 255, alpha / 255, std::move(name), type);
}

Color Color::cmyk(double c, double m, double y, double k, double a, std::string name, ColorType type) {
    return Color(ColorSpace::CMYK, {clampUnit(c), clampUnit(m), clampUnit(y), clampUnit(k)}, a, std::move(name), type);
}

Color Color::lab(double l, double a, double b, double alpha, std::string name, ColorType type) {
    return Color(ColorSpace::LAB, {l, a, b}, alpha, std::move(name), type);
}

Color Color::hsb(double h, double s, double b, double a, std::string name, ColorType type) {
    const RGB rgb = hsbToRGB({clampUnit(h), clampUnit(s), clampUnit(b), clampUnit(a)});
    return Color::rgb(rgb.rf, rgb.gf, rgb.bf, rgb.af, std::move(name), type);
}

Color Color::hsbDegrees(double h, double s, double b, double a, std::string name, ColorType type) {
    return hsb(clampUnit(h / 360), clampUnit(s / 100), clampUnit(b / 100), a, std::move(name), type);
}

Color Color::hslDegrees(double h, double s, double l, double a, std::string name, ColorType type) {
    const RGB rgb = hslToRGB({h / 360, s / 100, l / 100, a});
    return Color::rgb(rgb.rf, rgb.gf, rgb.bf, rgb.af, std::move(name), type);
}

Color Color::hex(std::string_view text, ColorByteFormat format, std::string name, ColorType type) {
    const RGB rgb = parseHex(text, format);
    return Color::rgb(rgb.rf, rgb.gf, rgb.bf, rgb.af, std::move(name), type);
}

RGB Color::rgb() const {
    if (colorSpace != ColorSpace::RGB) return converted(ColorSpace::RGB).rgb();
    const auto& c = checkedComponents(*this);
    return {clampUnit(c[0]), clampUnit(c[1]), clampUnit(c[2]), clampUnit(alpha)};
}

CMYK Color::cmyk() const {
    if (colorSpace != ColorSpace::CMYK) return converted(ColorSpace::CMYK).cmyk();
    const auto& c = checkedComponents(*this);
    return {clampUnit(c[0]), clampUnit(c[1]), clampUnit(c[2]), clampUnit(c[3]), clampUnit(alpha)};
}

double Color::gray() const {
    if (colorSpace != ColorSpace::Gray) return converted(ColorSpace::Gray).gray();
    return clampUnit(checkedComponents(*this)[0]);
}

HSB Color::hsb() const { return rgbToHSB(rgb()); }

HSL Color::hsl() const { return rgbToHSL(rgb()); }

// Lab by the layer's own formulas (D65 white), not through the converter's Lab.
LAB Color::lab() const {
    if (colorSpace != ColorSpace::LAB) return xyzToLAB(rgbToXYZ(rgb()));
    const auto& c = checkedComponents(*this);
    return {std::clamp(c[0], 0.0, 100.0), std::clamp(c[1], -128.0, 128.0), std::clamp(c[2], -128.0, 128.0), clampUnit(alpha)};
}

XYZ Color::xyz() const { return rgbToXYZ(rgb()); }

YCbCr Color::ycbcr() const { return rgbToYCbCr(rgb()); }

Color Color::converted(ColorSpace to) const {
    if (colorSpace == to) return *this;
    return sharedConverter().convert(*this, to);
}

Color Color::withAlpha(double newAlpha) const {
    Color copy = *this;
    copy.alpha = clampUnit(newAlpha);
    return copy;
}

std::string Color::hexString(ColorByteFormat format, bool hashmark, bool uppercase) const {
    const RGB c = rgb();
    const unsigned r = byteOf(c.rf), g = byteOf(c.gf), b = byteOf(c.bf), a = byteOf(c.af);
    std::array<unsigned, 4> order{};
    std::size_t count = 4;
    switch (format) {
    case ColorByteFormat::rgb: order = {r, g, b, 0}, count = 3; break;
    case ColorByteFormat::bgr: order = {b, g, r, 0}, count = 3; break;
    case ColorByteFormat::argb: order = {a, r, g, b}; break;
    case ColorByteFormat::rgba: order = {r, g, b, a}; break;
    case ColorByteFormat::abgr: order = {a, b, g, r}; break;
    case ColorByteFormat::bgra: order = {b, g, r, a}; break;
    }
    std::string out = hashmark ? "#" : "";
    char digits[3];
    for (std::size_t i = 0; i < count; ++i) {
        std::snprintf(digits, sizeof digits, uppercase ? "%02X" : "%02x", order[i]);
        out += digits;
    }
    return out;
}

namespace {

// The shared component formatter: at least one fraction digit, at most three.
std::string componentText(double value) {
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%.3f", value);
    std::string text = buffer;
    while (text.size() > 2 && text.back() == '0' && text[text.size() - 2] != '.') text.pop_back();
    if (text == "-0.0") text = "0.0";
    return text;
}

}  // namespace

std::string Color::css() const {
    const RGB c = rgb();
    return "rgba(" + std::to_string(byteOf(c.rf)) + ", " + std::to_string(byteOf(c.gf)) + ", " +
           std::to_string(byteOf(c.bf)) + ", " + componentText(c.af) + ")";
}

std::string Color::cssRGB() const {
    const RGB c = rgb();
    return std::to_string(byteOf(c.rf)) + ", " + std::to_string(byteOf(c.gf)) + ", " + std::to_string(byteOf(c.bf));
}

std::string Color::debugDescription() const {
    std::string components;
    for (std::size_t i = 0; i < colorComponents.size(); ++i) {
        if (i > 0) components += ",";
        components += componentText(colorComponents[i]);
    }
    return "Color '" + name + "' [(" + std::string(text(colorSpace)) + ":" + std::string(text(colorType)) + ":" +
           components + ":" + componentText(alpha) + "]";
}

bool Color::isEqual(const Color& other, int precision) const {
    if (colorComponents.size() != other.colorComponents.size() || colorSpace != other.colorSpace ||
        name != other.name || colorType != other.colorType)
        return false;
    const double tolerance = std::pow(10.0, -precision);
    if (!(std::fabs(alpha - other.alpha) < tolerance)) return false;
    for (std::size_t i = 0; i < colorComponents.size(); ++i)
        if (!(std::fabs(colorComponents[i] - other.colorComponents[i]) < tolerance)) return false;
    return true;
}

bool Color::operator==(const Color& other) const { return isEqual(other, 6); }

kro::Json Color::json() const {
    kro::Json json = kro::Json::object();
    if (!name.empty()) json["name"] = name;
    json["colorSpace"] = std::string(text(colorSpace));
    json["colorComponents"] = std::vector<double>(colorComponents);
    if (colorType != ColorType::global) json["colorType"] = std::string(text(colorType));
    if (alpha != 1.0) json["alpha"] = alpha;
    return json;
}

Color Color::fromJson(const kro::Json& json) {
    const auto invalid = [] { return CommonError(CommonError::Case::invalidFormat); };
    if (!json.is_object()) throw invalid();
    const auto name = json.find("name");
    const auto space = json.find("colorSpace");
    const auto components = json.find("colorComponents");
    const auto type = json.find("colorType");
    const auto alpha = json.find("alpha");
    if (name != json.end() && !name->is_string()) throw invalid();
    if (space == json.end() || !space->is_string()) throw invalid();
    const auto colorSpace = colorSpaceFromText(space->get<std::string>());
    if (!colorSpace) throw CommonError(CommonError::Case::unknownColorMode, space->get<std::string>());
    if (components == json.end() || !components->is_array()) throw invalid();
    std::vector<double> values;
    for (const auto& value : *components) {
        if (!value.is_number()) throw invalid();
        values.push_back(value.get<double>());
    }
    if (values.size() != static_cast<std::size_t>(componentCount(*colorSpace)))
        throw CommonError(CommonError::Case::invalidColorComponentCountForModelType);
    ColorType colorType = ColorType::global;
    if (type != json.end()) {
        if (!type->is_string()) throw invalid();
        const auto parsed = colorTypeFromText(type->get<std::string>());
        if (!parsed) throw invalid();
        colorType = *parsed;
    }
    if (alpha != json.end() && !alpha->is_number()) throw invalid();
    return Color(*colorSpace, std::move(values), alpha == json.end() ? 1.0 : alpha->get<double>(),
                 name == json.end() ? std::string() : name->get<std::string>(), colorType);
}

}  // namespace PAL
