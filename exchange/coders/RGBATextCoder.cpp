// RGBA text (.rgba, .txt): "r g b a name" lines, alpha last. We write 0...1 decimals; integer files are
// read as 0...255, alpha included. A file of three-number lines is refused, so that in the trial of
// .txt coders it goes on to RGB text instead of being read here as opaque.
#include "exchange/BytesReader.h"
#include "exchange/coders/Coders.h"
#include "exchange/coders/RGBTextRows.h"
#include "exchange/coders/TextSupport.h"

namespace PAL {

namespace {

class RGBATextCoder final : public PaletteCoder {
public:
    RGBATextCoder() : PaletteCoder(PaletteFormat::rgba) {}
    using PaletteCoder::decode;

    Palette decode(BytesParser::BytesReader& reader) const override {
        Palette palette({}, rgbtext::readColors(textfile::readText(reader), 4, rgbtext::Scale::unit));
        palette.format = PaletteFormat::rgba;
        return palette;
    }

    std::string encode(const Palette& palette) const override {
        return rgbtext::writeColors(palette.allColors(), 4, rgbtext::Scale::unit);
    }
};

}  // namespace

std::unique_ptr<PaletteCoder> makeRGBATextCoder() { return std::make_unique<RGBATextCoder>(); }

}  // namespace PAL
