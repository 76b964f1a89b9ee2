// The RGB text family: one colour per line, its numbers then an optional name. The three coders differ
// only in how many numbers a line holds and in the scale they write.
// - RGB text (.rgb, .rgb255, .txt): "r g b name". We write 0...1 decimals; we read those and the 0...255
//   integer lists (X11's rgb.txt, headerless GIMP bodies) that share the extensions.
// - RGBA text (.rgba, .txt): "r g b a name", alpha last, read and written as RGB text is. A file of
//   three-number lines is refused, so that in the trial of .txt coders it goes on to RGB text instead
//   of being read here as opaque.
// - RGB255: RGB text with the other number convention, under its own name and type identifier (its
//   format() is rgb): written as X11's rgb.txt lays out its lines, and read on the 0...255 scale even
//   when a value has decimals.
#include "exchange/coders/Coders.h"
#include "exchange/coders/RGBTextRows.h"
#include "exchange/coders/TextSupport.h"

namespace PAL {

namespace {

class RGBTextCoder : public PaletteCoder {
public:
    RGBTextCoder(PaletteFormat format, int components, rgbtext::Scale scale)
        : PaletteCoder(format), components_(components), scale_(scale) {}
    using PaletteCoder::decode;

    Palette decode(BytesParser::BytesReader& reader) const override {
        Palette palette({}, rgbtext::readColors(textfile::readText(reader), components_, scale_));
        palette.format = format();
        return palette;
    }

    std::string encode(const Palette& palette) const override {
        return rgbtext::writeColors(palette.eachColor(), components_, scale_);
    }

private:
    int components_;
    rgbtext::Scale scale_;
};

class RGB255Coder final : public RGBTextCoder {
public:
    RGB255Coder() : RGBTextCoder(PaletteFormat::rgb, 3, rgbtext::Scale::byte) {}

    std::string name() const override { return "RGB255 palette"; }
    std::vector<std::string> fileExtension() const override { return {"rgb255"}; }
    std::string utType() const override { return std::string(rgb255UTType); }
};

}  // namespace

std::unique_ptr<PaletteCoder> makeRGBTextCoder() {
    return std::make_unique<RGBTextCoder>(PaletteFormat::rgb, 3, rgbtext::Scale::unit);
}

std::unique_ptr<PaletteCoder> makeRGBATextCoder() {
    return std::make_unique<RGBTextCoder>(PaletteFormat::rgba, 4, rgbtext::Scale::unit);
}

std::unique_ptr<PaletteCoder> makeRGB255Coder() { return std::make_unique<RGB255Coder>(); }

}  // namespace PAL
