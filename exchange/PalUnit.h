#pragma once
// Small numeric rules shared by the colour model's files.
#include <algorithm>
#include <cmath>

namespace PAL {

// Held to 0...1; NaN is held at 0 so a clamped value always lies in range.
inline double clampUnit(double value) { return std::isnan(value) ? 0.0 : std::clamp(value, 0.0, 1.0); }

// A component as a byte: clamped, multiplied by 255, rounded half away from zero.
inline unsigned byteOf(double unit) { return static_cast<unsigned>(std::round(clampUnit(unit) * 255)); }

// sRGB-encoded to linear light: a value equal to the threshold takes the division branch.
inline double srgbToLinear(double c) { return c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4); }

}  // namespace PAL
