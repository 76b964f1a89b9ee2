#pragma once
// The exchange layer's colour: a colour as a palette file carried it, kept in the file's own colour
// space (CMYK stays CMYK, LAB stays LAB) until something asks for another form.
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "exchange/PalComponents.h"
#include "exchange/PalUUID.h"
#include "platform/Json.h"

namespace kro {
class ColorValue;
}

namespace PAL {

// Stored by their text; the order is part of the format of some files.
enum class ColorSpace : int { CMYK, RGB, LAB, Gray };
// The ordinal is what ASE files store.
enum class ColorType : int { global, spot, normal };
// The order of the components in a hex string.
enum class ColorByteFormat : int { rgb, bgr, argb, rgba, abgr, bgra };
enum class MonochromeStyle : int { saturation, brightness };

std::string_view text(ColorSpace space);
std::string_view text(ColorType type);
std::string_view text(ColorByteFormat format);
std::optional<ColorSpace> colorSpaceFromText(std::string_view text);
std::optional<ColorType> colorTypeFromText(std::string_view text);
std::optional<ColorByteFormat> colorByteFormatFromText(std::string_view text);
// 4, 3, 3, 1.
int componentCount(ColorSpace space);

// Small value forms, each 0...1 unless noted.
struct RGB { double rf = 0, gf = 0, bf = 0, af = 1; };
struct CMYK { double cf = 0, mf = 0, yf = 0, kf = 0, af = 1; };
struct Gray { double grayf = 0, af = 1; };
struct HSB { double hf = 0, sf = 0, bf = 0, af = 1; };
struct HSL { double hf = 0, sf = 0, lf = 0, af = 1; };
// lf 0...100, af and bf -128...128.
struct LAB { double lf = 0, af = 0, bf = 0, alphaf = 1; };
// Scale of 100, D65.
struct XYZ { double xf = 0, yf = 0, zf = 0, af = 1; };
// Each 0...255, no alpha.
struct YCbCr { double y = 0, cb = 0, cr = 0; };
struct Size { double width = 0, height = 0; };
struct EdgeInsets { double top = 0, left = 0, bottom = 0, right = 0; };

class Color {
public:
    // Components are taken as given (a coder may read any count; conversion then refuses it);
    // alpha is clamped to 0...1.
    Color(ColorSpace colorSpace, Components colorComponents, double alpha = 1.0,
          std::string name = {}, ColorType colorType = ColorType::global);

    // Factories. Each clamps what it is given (RGB, CMYK, gray and alpha to 0...1).
    static Color rgb(double r, double g, double b, double a = 1.0, std::string name = {}, ColorType type = ColorType::global);
    static Color rgb255(double r, double g, double b, double a = 255, std::string name = {}, ColorType type = ColorType::global);
    static Color gray(double white, double alpha = 1.0, std::string name = {}, ColorType type = ColorType::global);
    static Color gray255(double white, double alpha = 255, std::string name = {}, ColorType type = ColorType::global);
    static Color cmyk(double c, double m, double y, double k, double a = 1.0, std::string name = {}, ColorType type = ColorType::global);
    // L, a and b are not clamped.
    static Color lab(double l, double a, double b, double alpha = 1.0, std::string name = {}, ColorType type = ColorType::global);
    // Hue, saturation, brightness in 0...1; stored as RGB.
    static Color hsb(double h, double s, double b, double a = 1.0, std::string name = {}, ColorType type = ColorType::global);
    // h 0...360, s and b 0...100.
    static Color hsbDegrees(double h, double s, double b, double a = 1.0, std::string name = {}, ColorType type = ColorType::global);
    // h 0...360, s and l 0...100; stored as RGB.
    static Color hslDegrees(double h, double s, double l, double a = 1.0, std::string name = {}, ColorType type = ColorType::global);
    // Throws CommonError invalidRGBHexString.
    static Color hex(std::string_view text, ColorByteFormat format = ColorByteFormat::rgb, std::string name = {}, ColorType type = ColorType::global);
    // A platform colour in generic CMYK, sRGB, Lab or linear gray keeps that space; any other is matched to sRGB.
    // Throws CommonError unsupportedCGColorType when it cannot be matched.
    static Color fromPlatform(const kro::ColorValue& value, std::string name = {}, ColorType type = ColorType::global);

    // Accessors: the colour in the wanted form, converted when needed, clamped to the form's range.
    // They throw when the component count is wrong or the conversion is refused.
    RGB rgb() const;
    CMYK cmyk() const;
    double gray() const;
    HSB hsb() const;
    HSL hsl() const;
    LAB lab() const;
    XYZ xyz() const;
    YCbCr ycbcr() const;

    // This colour when the space already matches, else the shared converter's result.
    Color converted(ColorSpace to) const;
    kro::ColorValue platformColor() const;

    // Colour functions: new values, this one unchanged. Family results are RGB, alpha 1, no name.
    Color complementary() const;
    std::vector<Color> analogous() const;
    std::vector<Color> triadic() const;
    std::vector<Color> tetradic() const;
    std::vector<Color> splitComplementary() const;
    // Throws FunctionError monochromaticSpanTooLarge when the span leaves 0...1.
    std::vector<Color> monochromatic(MonochromeStyle style, double d, int count) const;
    double relativeLuminance() const;
    double contrastRatio(const Color& other) const;
    // Dark text on a light colour, light text on a dark one.
    bool prefersDarkText() const;
    Color textColor() const;
    Color contrastAdjusted(double factor) const;
    Color mix(const Color& other, double t) const;
    Color mixOkLab(const Color& other, double t, std::string name = {}) const;
    Color withAlpha(double alpha) const;

    // Hex through rgb(): any space can be formatted.
    std::string hexString(ColorByteFormat format = ColorByteFormat::rgb, bool hashmark = false, bool uppercase = false) const;
    // "rgba(r, g, b, alpha)" and "r, g, b".
    std::string css() const;
    std::string cssRGB() const;
    std::string debugDescription() const;

    // Same count, space, name and type; alpha and components within 10^-precision. `id` plays no part.
    bool isEqual(const Color& other, int precision) const;
    // The palette comparison: tolerance 1e-06.
    bool operator==(const Color& other) const;

    kro::Json json() const;
    // Throws CommonError invalidFormat on a malformed object.
    static Color fromJson(const kro::Json& json);

    UUID id;  // fresh at construction, never written or compared
    std::string name;
    ColorType colorType = ColorType::global;
    ColorSpace colorSpace = ColorSpace::RGB;
    Components colorComponents;
    double alpha = 1.0;
};

// Multi-stop lookup over an ordered list, t in 0...1. Throws tooFewColors on an empty list.
Color colorAt(const std::vector<Color>& colors, double t);
// `count` evenly spaced RGB colours from `from` to `to`. Throws tooFewColors when count < 1.
std::vector<Color> interpolated(const Color& from, const Color& to, int count);

// Hex text to (r, g, b, a) in 0...1. Throws CommonError invalidRGBHexString carrying the text as given.
RGB parseHex(std::string_view text, ColorByteFormat format);

// Conversions with the layer's own constants.
XYZ rgbToXYZ(const RGB& rgb);
RGB xyzToRGB(const XYZ& xyz);
LAB xyzToLAB(const XYZ& xyz);
XYZ labToXYZ(const LAB& lab);
HSL rgbToHSL(const RGB& rgb);
RGB hslToRGB(const HSL& hsl);
HSB rgbToHSB(const RGB& rgb);
RGB hsbToRGB(const HSB& hsb);
YCbCr rgbToYCbCr(const RGB& rgb);
RGB ycbcrToRGB(const YCbCr& ycbcr);

namespace OkLab {
struct Lab { double L = 0, a = 0, b = 0; };
Lab fromSRGB(const RGB& rgb);
// Clamped to 0...1, alpha 1.
RGB toSRGB(const Lab& lab);
}  // namespace OkLab

// Converts a colour to another space. The layer uses one shared instance.
class ColorSpaceConvertible {
public:
    virtual ~ColorSpaceConvertible() = default;
    // Throws CommonError cannotConvertColorSpace.
    virtual Color convert(const Color& color, ColorSpace to) const = 0;
};

// Backed by the platform colour value (Little CMS): generic CMYK, Lab D50, linear gray, sRGB.
class PlatformColorSpaceConversion final : public ColorSpaceConvertible {
public:
    Color convert(const Color& color, ColorSpace to) const override;
};

const ColorSpaceConvertible& sharedConverter();

}  // namespace PAL
