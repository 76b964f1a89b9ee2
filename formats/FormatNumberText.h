#pragma once
// How the format language writes numbers and reads them back from text. All of it works in 32-bit floats,
// and the decimal point is always ".", whatever the user's locale.
#include <optional>
#include <string>
#include <string_view>

namespace kro::FormatNumberText {

// A 64-bit value narrowed to a float; out of the float's range it becomes an infinity, as on the platform.
float narrowed(double value);

// A component as hexadecimal: lroundf(component × 255), at least two lower-case digits. There is no clamp,
// so 1.2 gives "132" and a negative value prints its 64-bit two's complement.
std::string hexComponent(float component);

// Rounded half away from zero, no decimal point: "-30", "100".
std::string integer(float value);

// The shortest text that reads back as the same float, always with a point ("1.0", "0.9882353"); the exponent
// form below 0.0001 ("1e-05") and above 2^24; "inf", "-inf" and "nan" as IEEE arithmetic gives them.
std::string shortestFloat(float value);

// `value` with `places` decimals as printf's "%.Nf" rounds it; places outside 0…4 mean five.
std::string rounded(float value, float places);

// The number a text holds when the whole text is one number in the strtof grammar (sign, decimal or
// hexadecimal digits, exponent, "inf", "nan"), with no white space before and nothing after.
std::optional<float> numberValue(std::string_view text);

}  // namespace kro::FormatNumberText
