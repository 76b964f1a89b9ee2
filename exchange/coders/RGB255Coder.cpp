// RGB text with 0...255 values, under its own type identifier. It is the RGB text format (its format()
// is rgb) with the other number convention: written as X11's rgb.txt lays out its lines, and read on the
// 0...255 scale even when a value has decimals.
#include "exchange/BytesReader.h"
#include "exchange/coders/Coders.h"
#include "exchange/coders/RGBTextRows.h"
#include "exchange/coders/TextSupport.h"

namespace PAL {

namespace {

class RGB255Coder final : public PaletteCoder {
public:
    RGB255Coder() : PaletteCoder(PaletteFormat::rgb) {}
    using PaletteCoder::decode;

    std::string name() const override { return "RGB255 palette"; }
    std::vector<std::string> fileExtension() const override { return {"rgb255"}; }
    std::string utType() const override { return std::string(rgb255UTType); }

    Palette decode(BytesParser::BytesReader& reader) const override {
        Palette palette({}, rgbtext::readColors(textfile::readText(reader), 3, rgbtext::Scale::byte));
        palette.format = PaletteFormat::rgb;
        return palette;
    }

    std::string encode(const Palette& palette) const override {
        return rgbtext::writeColors(palette.allColors(), 3, rgbtext::Scale::byte);
    }
};

}  // namespace

std::unique_ptr<PaletteCoder> makeRGB255Coder() { return std::make_unique<RGB255Coder>(); }

}  // namespace PAL
