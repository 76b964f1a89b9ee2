#pragma once
// Android colour resources: <resources><color name="...">#AARRGGBB</color></resources>.
#include "exchange/PaletteCoder.h"

namespace PAL {

class AndroidXMLCoder final : public PaletteCoder {
public:
    AndroidXMLCoder() : PaletteCoder(PaletteFormat::androidXML) {}

    Palette decode(BytesParser::BytesReader& reader) const override;
    using PaletteCoder::decode;
    std::string encode(const Palette& palette) const override;

    // Translucent colours as #AARRGGBB; off, every colour is written opaque as #RRGGBB. On by
    // default, so that a round trip keeps what the file can hold.
    bool includeAlphaDuringExport = true;
};

}  // namespace PAL
