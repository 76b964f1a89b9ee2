#pragma once
// The steps of colour text recognition: for each kind of colour text, its expression (written as ICU's
// regular expressions read it), how the numbers are taken out of a match, and how the match becomes a
// colour. Finding the matches is the scan's job (ImportColorScan.h).
#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "formats/color/ImportColorPattern.h"
#include "platform/ColorValue.h"

namespace kro::ImportColor {

// How the numbers are taken out of a match: runs of up to three or of up to five digits, or a digit, an
// optional point and up to five digits. The name and hex steps read the match itself.
enum class NumberShape { none, upToThreeDigits, upToFiveDigits, unitFraction };

// The texts of a match's numbers, in order. No step reads more than the first five.
using Numbers = std::vector<std::string>;
inline constexpr size_t kNumbersRead = 5;

struct Step {
    ImportColorPattern kind;
    const char* expression;
    NumberShape numberShape;
    std::optional<ColorValue> (*color)(std::string_view match, const Numbers& numbers);
};

// In the order their results are joined: names, hex, rgb, rgba, hsl, hsla, HSB, RGB.
extern const std::array<Step, 8> kSteps;

}  // namespace kro::ImportColor
