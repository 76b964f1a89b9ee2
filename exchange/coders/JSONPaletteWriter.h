#pragma once
// Writing the layer's JSON palette form straight into its text, without a document tree. The bytes are
// those of the tree's own output: keys in the form's order, numbers in their shortest round-trip form,
// two spaces an indent level when pretty printed (then with a final line break), text that is not
// UTF-8 written with replacement characters.
#include <string>

#include "exchange/PalPalette.h"

namespace PAL {

std::string writeJSONPalette(const Palette& palette, bool prettyPrint);

}  // namespace PAL
