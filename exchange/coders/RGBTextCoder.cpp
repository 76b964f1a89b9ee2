// RGB text (.rgb, .rgb255, .txt): "r g b name" lines. We write 0...1 decimals; we read those and the
// 0...255 integer lists (X11's rgb.txt, headerless GIMP bodies) that share the extensions.
#include "exchange/BytesReader.h"
#include "exchange/coders/Coders.h"
#include "exchange/coders/RGBTextRows.h"
#include "exchange/coders/TextSupport.h"

namespace PAL {

namespace {

class RGBTextCoder final : public PaletteCoder {
public:
    RGBTextCoder() : PaletteCoder(PaletteFormat::rgb) {}
    using PaletteCoder::decode;

    Palette decode(BytesParser::BytesReader& reader) const override {
        Palette palette({}, rgbtext::readColors(textfile::readText(reader), 3, rgbtext::Scale::unit));
        palette.format = PaletteFormat::rgb;
        return palette;
    }

    std::string encode(const Palette& palette) const override {
        return rgbtext::writeColors(palette.allColors(), 3, rgbtext::Scale::unit);
    }
};

}  // namespace

std::unique_ptr<PaletteCoder> makeRGBTextCoder() { return std::make_unique<RGBTextCoder>(); }

}  // namespace PAL
