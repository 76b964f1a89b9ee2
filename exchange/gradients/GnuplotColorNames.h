#pragma once
// The colour names gnuplot knows ("dark-green", "web-blue", ...), for palettes that use them.
#include <optional>
#include <string_view>

namespace PAL {

// "#rrggbb" for one of gnuplot's colour names as gnuplot spells it (lower case), or nothing.
std::optional<std::string_view> gnuplotColorHex(std::string_view name);

}  // namespace PAL
