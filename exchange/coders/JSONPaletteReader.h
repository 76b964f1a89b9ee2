#pragma once
// Reading the layer's JSON palette form as the parser's events go by, without a document tree: each
// colour is made as its object closes. What is accepted, and which error a refused file gives, are those
// of reading the whole tree first and then the palette from it: any syntax error is invalidFormat; a
// repeated key counts by its last value; the colours are judged before the name of their palette or
// group, and the first refused colour, group or field decides the error.
#include <string_view>

#include "exchange/PalPalette.h"

namespace PAL {

// Throws CommonError (invalidFormat, unknownColorMode, invalidColorComponentCountForModelType).
Palette readJSONPalette(std::string_view text);

}  // namespace PAL
