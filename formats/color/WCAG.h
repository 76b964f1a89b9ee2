#pragma once
// Contrast between two colours as WCAG 2.0 defines it, its conformance levels, and the fix that walks a
// colour's brightness until the pair has enough contrast.
#include <optional>
#include <string>

#include "platform/ColorValue.h"

namespace kro {

enum class WCAGConformanceLevel { fail, aaLarge, aa, aaa };

std::string label(WCAGConformanceLevel level);
std::string explanation(WCAGConformanceLevel level);

namespace WCAG {

// Relative luminance of the colour's red, green and blue as they stand (no conversion to another space).
double luminance(const ColorValue& color);
// (lighter + 0.05) / (darker + 0.05), whatever the order of the two colours.
double ratio(const ColorValue& a, const ColorValue& b);
// The ratio as it is shown: two decimals ("4.48").
std::string ratioText(double ratio);
// Decided on the unrounded ratio: 6.999 shows as "7.00" and is still `aa`.
WCAGConformanceLevel level(double ratio);

// The ratio the contrast checker's fix aims at: enough for large text.
inline constexpr double kFixTarget = 3.0;

struct FixResult {
    ColorValue color;
    int steps;
};

// Moves the HSB brightness of `color` by `step` at a time, hue, saturation and alpha kept, until its
// ratio against `against` reaches `target` or the brightness leaves 0…1 (then it stops at 0 or 1).
// `steps` counts the moves made, starting from the value given.
FixResult fixColor(const ColorValue& color, const ColorValue& against, int steps, double step, double target);

// The contrast checker's fix: walks `color` both ways towards `kFixTarget` against `against` and keeps
// the better end. Nothing when the pair already reaches the target.
std::optional<ColorValue> fixed(const ColorValue& color, const ColorValue& against);

}  // namespace WCAG
}  // namespace kro
