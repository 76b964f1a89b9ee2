#pragma once
// The CSS named colours (CSS Color Level 4): 148 names in lower case, both "gray" and "grey" spellings,
// "rebeccapurple" included, "transparent" not.
#include <optional>
#include <span>
#include <string_view>

namespace kro {

struct NamedColor {
    std::string_view name;  // lower case
    std::string_view hex;   // "#" and six lower-case hexadecimal digits
};

// Every named colour, sorted by name.
std::span<const NamedColor> namedColors();

// The "#rrggbb" of a lower-case name, or nothing when it is not a CSS colour name.
std::optional<std::string_view> namedColorHex(std::string_view lowerCaseName);

}  // namespace kro
