// Colour harmonies, contrast, mixing and multi-stop lookup.
#include <algorithm>
#include <cmath>

#include "exchange/PalColor.h"
#include "exchange/PalErrors.h"
#include "exchange/PalUnit.h"

namespace PAL {

namespace {

double lerp(double a, double b, double t) { return a + (b - a) * t; }

// Hue families work in degrees with the HSL arithmetic; results are RGB, alpha 1, no name.
std::vector<Color> hueFamily(const Color& color, std::initializer_list<double> offsets) {
    const HSL hsl = color.hsl();
    const double hue = hsl.hf * 360;
    const double saturation = std::clamp(hsl.sf * 100, 0.0, 100.0), lightness = std::clamp(hsl.lf * 100, 0.0, 100.0);
    std::vector<Color> colors;
    for (double offset : offsets) {
        double h = std::fmod(hue + offset, 360.0);
        if (h < 0) h += 360;
        colors.push_back(Color::hslDegrees(h, saturation, lightness, 1.0));
    }
    return colors;
}

}  // namespace

Color Color::complementary() const {
    const HSB hsb = this->hsb();
    double h = hsb.hf - 0.5;
    if (h < 0) h += 1;
    return Color::hsb(h, hsb.sf, hsb.bf, hsb.af);
}

std::vector<Color> Color::analogous() const { return hueFamily(*this, {-30, 0, 30}); }
std::vector<Color> Color::triadic() const { return hueFamily(*this, {0, 120, 240}); }
// Two complementary pairs, 60 degrees apart, standing either side of the hue.
std::vector<Color> Color::tetradic() const { return hueFamily(*this, {-30, 30, 180 - 30, 180 + 30}); }
std::vector<Color> Color::splitComplementary() const { return hueFamily(*this, {180 - 30, 180, 180 + 30}); }

std::vector<Color> Color::monochromatic(MonochromeStyle style, double d, int count) const {
    const HSB hsb = this->hsb();
    const double start = style == MonochromeStyle::saturation ? hsb.sf : hsb.bf;
    const double end = start + d * std::max(count - 1, 0);
    if (end < 0 || end > 1) throw FunctionError(FunctionError::Case::monochromaticSpanTooLarge);
    std::vector<Color> colors;
    for (int i = 0; i < count; ++i) {
        const double value = start + d * i;
        colors.push_back(style == MonochromeStyle::saturation ? Color::hsb(hsb.hf, value, hsb.bf, hsb.af)
                                                              : Color::hsb(hsb.hf, hsb.sf, value, hsb.af));
    }
    return colors;
}

double Color::relativeLuminance() const {
    const RGB c = rgb();
    return 0.2126 * srgbToLinear(c.rf) + 0.7152 * srgbToLinear(c.gf) + 0.0722 * srgbToLinear(c.bf);
}

double Color::contrastRatio(const Color& other) const {
    const double a = relativeLuminance(), b = other.relativeLuminance();
    return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

bool Color::prefersDarkText() const { return relativeLuminance() > 0.179; }

Color Color::textColor() const { return prefersDarkText() ? Color::rgb(0, 0, 0) : Color::rgb(1, 1, 1); }

Color Color::contrastAdjusted(double factor) const {
    const RGB c = rgb();
    const auto adjust = [factor](double v) { return clampUnit(factor * (v - 0.5) + 0.5); };
    return Color::rgb(adjust(c.rf), adjust(c.gf), adjust(c.bf), c.af);
}

Color Color::mix(const Color& other, double t) const {
    t = clampUnit(t);
    if (colorSpace == other.colorSpace) {
        std::vector<double> components;
        const std::size_t count = std::min(colorComponents.size(), other.colorComponents.size());
        for (std::size_t i = 0; i < count; ++i) components.push_back(lerp(colorComponents[i], other.colorComponents[i], t));
        return Color(colorSpace, std::move(components), lerp(alpha, other.alpha, t));
    }
    const RGB a = rgb(), b = other.rgb();
    return Color::rgb(lerp(a.rf, b.rf, t), lerp(a.gf, b.gf, t), lerp(a.bf, b.bf, t), lerp(a.af, b.af, t));
}

Color Color::mixOkLab(const Color& other, double t, std::string mixedName) const {
    t = clampUnit(t);
    const OkLab::Lab a = OkLab::fromSRGB(rgb()), b = OkLab::fromSRGB(other.rgb());
    const RGB mixed = OkLab::toSRGB({lerp(a.L, b.L, t), lerp(a.a, b.a, t), lerp(a.b, b.b, t)});
    return Color::rgb(mixed.rf, mixed.gf, mixed.bf, 1.0, std::move(mixedName));
}

Color colorAt(const std::vector<Color>& colors, double t) {
    if (colors.empty()) throw CommonError(CommonError::Case::tooFewColors);
    if (colors.size() == 1 || std::fabs(t) < 1e-08) return colors.front();
    if (std::fabs(t - 1) < 1e-08) return colors.back();
    const double step = 1.0 / static_cast<double>(colors.size() - 1);
    const double position = std::trunc(t / step);
    if (!(position >= 0)) return colors.front();  // t below 0, or not a number
    if (position >= static_cast<double>(colors.size() - 1)) return colors.back();
    const auto i = static_cast<std::size_t>(position);
    const double fraction = clampUnit((t - position * step) / ((position + 1) * step - position * step));
    return colors[i].mix(colors[i + 1], fraction);
}

std::vector<Color> interpolated(const Color& from, const Color& to, int count) {
    if (count < 1) throw CommonError(CommonError::Case::tooFewColors);
    const RGB a = from.rgb(), b = to.rgb();
    const double step = count == 1 ? 0 : 1.0 / (count - 1);
    std::vector<Color> colors;
    for (int i = 0; i < count; ++i) {
        const double t = step * i;
        colors.push_back(Color::rgb(lerp(a.rf, b.rf, t), lerp(a.gf, b.gf, t), lerp(a.bf, b.bf, t), lerp(a.af, b.af, t)));
    }
    return colors;
}

}  // namespace PAL
