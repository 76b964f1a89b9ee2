#pragma once
// Between the exchange layer's palettes and the library's records. A colour's `group` is the name of the
// exchange group it sits in; colours outside any group have none.
#include <vector>

#include "exchange/PalPalette.h"
#include "library/Palette.h"

namespace kro {

// Global colours first, then each group's, converted through the platform colour value. A colour without a
// name is named from the colour list. Throws PAL::CommonError when a colour cannot be converted.
std::vector<ColorRef> libraryColors(const PAL::Palette& palette);

// The palette's colours, those with a group gathered into exchange groups in order of first appearance.
PAL::Palette exchangePalette(const Palette& palette);

}  // namespace kro
