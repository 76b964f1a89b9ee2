#pragma once
// The colour arithmetic the program does itself rather than ask of the colour value: CMYK, HSL and HWB
// component sets, six-digit hex text and back. All three sets read the colour through
// usingColorSpace(genericRGB), so a colour keeps the numbers it was picked with.
#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/ColorValue.h"

namespace kro {

// Whole percentages 0…100; alpha 0…1, unrounded.
struct CMYKValues {
    double cyan = 0, magenta = 0, yellow = 0, black = 0, alpha = 1;
};

// Hue in degrees, saturation and lightness in percent, alpha 0…1; not rounded.
struct HSLValues {
    double hue = 0, saturation = 0, lightness = 0, alpha = 1;
};

// Hue, whiteness and blackness as whole numbers; alpha 0…1. The hue of a red-dominated colour with more blue
// than green is negative (−60…0): unlike hsl(), hwb() does not wrap it around.
struct HWBValues {
    double hue = 0, whiteness = 0, blackness = 0, alpha = 1;
};

CMYKValues cmyk(const ColorValue& color);
HSLValues hsl(const ColorValue& color);
HWBValues hwb(const ColorValue& color);

// Six upper-case hex digits of the colour in sRGB (an RGB colour as it stands).
std::string hexText(const ColorValue& color);
// The same text from three components: each narrowed to a 32-bit float, times 255, rounded half away from
// zero. A component outside 0…1 gives more (or other) digits than two, as "%02X" prints it.
std::string hexText(double red, double green, double blue);

// The colour of a hex text: white space at both ends and one leading "#" are dropped and the rest is read
// as a hex number; red, green and blue are its low three bytes, alpha 1. Text without a number is black.
ColorValue colorFromHex(std::string_view text);

// A hex number read as a text scanner reads one: leading white space skipped, an optional "0x", then as many
// hex digits as follow (too many give the largest value). Nothing when no digit follows.
std::optional<std::uint64_t> scanHexNumber(std::string_view text);

// The characters 0–1, 2–3 and 4–5 of a text, each read with scanHexNumber; a pair that is missing or has
// no number reads as 0. "GG0000" gives 0, 0, 0 and "12" gives 18, 0, 0.
std::array<int, 3> scanHexPairs(std::string_view text);

}  // namespace kro
