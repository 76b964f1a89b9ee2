#pragma once
// Pictures as palettes. Reading samples a PNG, JPEG or GIF into its most common colours; writing draws
// a swatch image, one cell per colour, the global colours first and each group on rows of its own.
#include "exchange/PaletteCoder.h"

namespace PAL {

class ImageCoder final : public PaletteCoder {
public:
    // A colour as the coder sees a pixel, each channel 0...1.
    struct Pixel {
        double r = 0, g = 0, b = 0, a = 1;
        bool operator==(const Pixel&) const = default;
    };

    // How big the written picture is: each swatch at a size, or the whole image at a size with the
    // swatches sharing it (the remainder of an uneven division stays transparent at the right and
    // bottom edges, so that every swatch has the same area).
    struct ExportType {
        enum class Kind { swatch, image };
        static ExportType swatch(Size size) { return {Kind::swatch, size}; }
        static ExportType image(Size size) { return {Kind::image, size}; }
        Kind kind = Kind::swatch;
        Size size{32, 32};
    };

    enum class ExportImageType { png, jpeg };

    ImageCoder() : PaletteCoder(PaletteFormat::image) {}

    // Throws CommonError invalidFormat for bytes that are not a picture it reads (see RasterImage.h).
    Palette decode(BytesParser::BytesReader& reader) const override;
    using PaletteCoder::decode;
    // Throws CommonError cannotCreateImage for an empty palette or a size that leaves a swatch no pixel.
    std::string encode(const Palette& palette) const override;

    // How close two shades may be and still count as one colour: 1 keeps every distinct shade, 0 merges
    // them all. Between, shades closer than (1 - accuracy) x 510 in 8-bit RGBA merge (25 levels by
    // default, which gives a photograph a few dozen colours). A flat colour, one exact value over an
    // area as a swatch is, always stands for itself, so a swatch sheet reads back exactly.
    double accuracy = 0.95;
    // The most colours a picture gives (up to 1024); the most common are kept.
    std::size_t maximumColorCount = 256;
    ExportType exportType = ExportType::swatch({32, 32});
    ExportImageType exportImageType = ExportImageType::png;
    // Swatch rows wrap after this many cells.
    std::size_t columns = 16;
};

}  // namespace PAL
