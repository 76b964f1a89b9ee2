#pragma once
// The layer's own JSON palette form: {"name", "colors", "groups"}, colours in their own spaces.
#include "exchange/PaletteCoder.h"

namespace PAL {

class JSONCoder final : public PaletteCoder {
public:
    JSONCoder() : PaletteCoder(PaletteFormat::json) {}

    Palette decode(BytesParser::BytesReader& reader) const override;
    using PaletteCoder::decode;
    std::string encode(const Palette& palette) const override;

    // Indented output, for files people read; compact otherwise.
    bool prettyPrint = true;
};

}  // namespace PAL
