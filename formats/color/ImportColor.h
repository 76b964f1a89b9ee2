#pragma once
// Colour text recognition: finds the colours written in any text (CSS names, hex, rgb()/rgba(),
// hsl()/hsla(), and the UIColor/NSColor initialisers' labelled components).
#include <set>
#include <string_view>
#include <vector>

#include "formats/color/ImportColorPattern.h"
#include "platform/ColorValue.h"

namespace kro::ImportColor {

// Every colour found in `text` by the recognisers of the enabled `patterns`, recogniser by recogniser
// in a fixed order (names, hex, rgb, rgba, hsl, hsla, HSB, RGB) and in text order within each.
// The whole text is always read, in time linear in its length: no text, however large or made to
// mislead the expressions, loses a colour or hangs the caller.
std::vector<ColorValue> colors(std::string_view text, const std::set<ImportColorPattern>& patterns);

}  // namespace kro::ImportColor
