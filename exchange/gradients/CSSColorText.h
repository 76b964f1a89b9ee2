#pragma once
// Colour text as CSS and SVG write it: "#rgb", "#rgba", "#rrggbb", "#rrggbbaa", rgb()/rgba() and
// hsl()/hsla() in the comma and the space forms (numbers or percentages, alpha after "/" or a fourth
// comma), the CSS colour names and "transparent". Case does not matter.
#include <optional>
#include <string_view>

#include "exchange/PalColor.h"

namespace PAL {

// The colour as sRGB components and alpha; nothing when the text is not such a colour.
std::optional<RGB> cssColor(std::string_view text);

}  // namespace PAL
