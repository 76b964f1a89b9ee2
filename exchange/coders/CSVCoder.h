#pragma once
// Colour tables in CSV: with or without a header row, the name and colour columns in any order.
#include "exchange/PalColor.h"
#include "exchange/PaletteCoder.h"

namespace PAL {

class CSVCoder final : public PaletteCoder {
public:
    CSVCoder() : PaletteCoder(PaletteFormat::csv) {}

    Palette decode(BytesParser::BytesReader& reader) const override;
    using PaletteCoder::decode;
    std::string encode(const Palette& palette) const override;

    // The order of the components in the hex column we write, and in the 4- and 8-digit hex cells we
    // read (for rgb and bgr, whose hex has no alpha, such cells carry it last).
    ColorByteFormat hexFormat = ColorByteFormat::rgb;
};

}  // namespace PAL
