#pragma once
// Palettes as SVG swatch sheets, for people to look at and for design tools to place: one rounded
// swatch per colour with its name underneath, the global colours first and each group under its title.
// Write only.
#include "exchange/PaletteCoder.h"

namespace PAL {

class SVGCoder final : public PaletteCoder {
public:
    SVGCoder() : PaletteCoder(PaletteFormat::svg) {}

    // Logs and throws CommonError notImplemented.
    Palette decode(BytesParser::BytesReader& reader) const override;
    using PaletteCoder::decode;
    // Throws CommonError cannotCreateImage when the swatch size is not a positive number.
    std::string encode(const Palette& palette) const override;

    Size swatchSize{64, 64};
    // Rows wrap after this many swatches.
    std::size_t columns = 8;
    // Names under the swatches; every swatch also carries its name and value as a tooltip.
    bool showNames = true;
};

}  // namespace PAL
