#pragma once
// Swatch sheets (the image and SVG coders) lay a palette out the same way: the global colours first,
// then each group starting a row of its own, every list wrapping after a number of cells.
#include <cstddef>
#include <span>
#include <vector>

#include "exchange/PalPalette.h"

namespace PAL {

struct SwatchRow {
    const Group* group = nullptr;  // nullptr for the global colours
    bool startsList = false;       // the first row of the global colours or of a group
    std::span<const Color> colors;
};

struct SwatchLayout {
    std::size_t columns = 0;  // the widest row; 0 for a palette without colours
    std::vector<SwatchRow> rows;
};

// Lists without colours take no row. `maximumColumns` below 1 counts as 1.
SwatchLayout swatchLayout(const Palette& palette, std::size_t maximumColumns);

}  // namespace PAL
