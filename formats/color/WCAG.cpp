#include "formats/color/WCAG.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace kro {

std::string label(WCAGConformanceLevel level) {
    switch (level) {
        case WCAGConformanceLevel::fail: return "Fail";
        case WCAGConformanceLevel::aaLarge: return "AA Large";
        case WCAGConformanceLevel::aa: return "AA";
        case WCAGConformanceLevel::aaa: return "AAA";
    }
    return "";
}

std::string explanation(WCAGConformanceLevel level) {
    switch (level) {
        case WCAGConformanceLevel::fail: return "Your text doesn't have enough contrast with the background.";
        case WCAGConformanceLevel::aaLarge:
            return "The smallest acceptable amount of contrast for type sizes of 18pt and larger.";
        case WCAGConformanceLevel::aa: return "The smallest acceptable amount of contrast for text sizes below ~18pt.";
        case WCAGConformanceLevel::aaa: return "This is enhanced contrast with a score of at least 7.0.";
    }
    return "";
}

namespace WCAG {
namespace {

// The threshold is the one of the WCAG 2.0 text (0.03928), not the sRGB standard's 0.04045.
double linear(double channel) {
    return channel <= 0.03928 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

ColorValue withBrightness(const ColorValue& color, double brightness) {
    return ColorValue::hsb(color.hue(), color.saturation(), brightness, color.alpha());
}

}  // namespace

double luminance(const ColorValue& color) {
    return 0.2126 * linear(color.red()) + 0.7152 * linear(color.green()) + 0.0722 * linear(color.blue());
}

double ratio(const ColorValue& a, const ColorValue& b) {
    const double first = luminance(a);
    const double second = luminance(b);
    return (std::max(first, second) + 0.05) / (std::min(first, second) + 0.05);
}

std::string ratioText(double ratio) {
    char text[32];
    std::snprintf(text, sizeof text, "%.2f", ratio);
    return text;
}

WCAGConformanceLevel level(double ratio) {
    if (ratio >= 7.0) return WCAGConformanceLevel::aaa;
    if (ratio >= 4.5) return WCAGConformanceLevel::aa;
    if (ratio >= 3.0) return WCAGConformanceLevel::aaLarge;
    return WCAGConformanceLevel::fail;
}

FixResult fixColor(const ColorValue& color, const ColorValue& against, int steps, double step, double target) {
    ColorValue current = color;
    while (ratio(current, against) < target) {
        const double brightness = current.brightness() + step;
        if (brightness < 0) return {withBrightness(current, 0), steps};
        if (brightness > 1) return {withBrightness(current, 1), steps};
        current = withBrightness(current, brightness);
        ++steps;
    }
    return {current, steps};
}

std::optional<ColorValue> fixed(const ColorValue& color, const ColorValue& against) {
    if (ratio(color, against) >= kFixTarget) return std::nullopt;
    const auto up = fixColor(color, against, 0, 0.0001, kFixTarget);
    const auto down = fixColor(color, against, 0, -0.0001, kFixTarget);
    const double upRatio = ratio(up.color, against);
    const double downRatio = ratio(down.color, against);
    const bool upReaches = upRatio >= kFixTarget;
    const bool downReaches = downRatio >= kFixTarget;
    if (upReaches && downReaches) return up.steps < down.steps ? up.color : down.color;
    if (upReaches) return up.color;
    if (downReaches) return down.color;
    return downRatio > upRatio ? down.color : up.color;
}

}  // namespace WCAG
}  // namespace kro
