#include "formats/color/ColorBlindness.h"

#include <array>
#include <optional>

namespace kro {
namespace {

// Rows give output red, green and blue as weighted sums of the input's red, green and blue. The
// tritanopia rows do not sum to 1 (0.99 and 1.0005); they are kept as they are.
using Matrix = std::array<std::array<double, 3>, 3>;

// Nothing for `normal`, which has no matrix.
std::optional<Matrix> matrix(ColorBlindness blindness) {
    switch (blindness) {
        case ColorBlindness::normal: return std::nullopt;
        case ColorBlindness::deuteranopia: return Matrix{{{0.625, 0.375, 0}, {0.7, 0.3, 0}, {0, 0.3, 0.7}}};
        case ColorBlindness::protanopia:
            return Matrix{{{0.56667, 0.43333, 0}, {0.55833, 0.44167, 0}, {0, 0.24167, 0.75833}}};
        case ColorBlindness::tritanopia: return Matrix{{{0.95, 0.05, 0}, {0, 0.43, 0.56}, {0, 0.4755, 0.525}}};
        case ColorBlindness::achromatopsia:
            return Matrix{{{0.299, 0.587, 0.114}, {0.299, 0.587, 0.114}, {0.299, 0.587, 0.114}}};
    }
    return std::nullopt;
}

}  // namespace

// The matrices apply to the gamma-encoded sRGB values directly, and the results are not clamped.
ColorValue simulated(const ColorValue& color, ColorBlindness blindness) {
    const ColorValue srgb = color.usingColorSpace(ColorSpace::sRGB());
    const auto weights = matrix(blindness);
    if (!weights) return srgb;
    const double input[3] = {srgb.red(), srgb.green(), srgb.blue()};
    double output[3];
    for (int row = 0; row < 3; ++row) {
        const auto& w = (*weights)[row];
        output[row] = w[0] * input[0] + w[1] * input[1] + w[2] * input[2];
    }
    return ColorValue::rgb(output[0], output[1], output[2], srgb.alpha());
}

}  // namespace kro
