#include "exchange/coders/ImageCoder.h"

#include <algorithm>
#include <cmath>

#include "exchange/BytesReader.h"
#include "exchange/PalErrors.h"
#include "exchange/coders/Coders.h"
#include "exchange/coders/ImageSampling.h"
#include "exchange/coders/RasterImage.h"
#include "exchange/coders/SwatchLayout.h"

namespace PAL {

namespace {

// Above 90 the writer keeps colour at full resolution, so swatch edges stay clean.
constexpr int jpegQuality = 95;
// No sensible swatch or image side is longer.
constexpr double longestSide = 1'000'000;

[[noreturn]] void cannotCreate() { throw CommonError(CommonError::Case::cannotCreateImage); }

std::uint64_t wholePixels(double length) {
    const double rounded = std::round(length);
    if (!(rounded >= 1 && rounded <= longestSide)) cannotCreate();  // also NaN
    return static_cast<std::uint64_t>(rounded);
}

ImageCoder::Pixel pixelOf(const Color& color) {
    const RGB rgb = color.rgb();  // held to 0...1
    return {rgb.rf, rgb.gf, rgb.bf, rgb.af};
}

void fill(RasterImage& image, std::uint64_t left, std::uint64_t top, std::uint64_t width, std::uint64_t height,
          const ImageCoder::Pixel& pixel) {
    const auto byte = [](double unit) { return static_cast<std::uint8_t>(std::lround(unit * 255)); };
    const std::uint8_t bytes[4] = {byte(pixel.r), byte(pixel.g), byte(pixel.b), byte(pixel.a)};
    const auto imageWidth = static_cast<std::uint64_t>(image.width);
    for (std::uint64_t y = top; y < top + height; ++y) {
        std::uint8_t* out = image.rgba.data() + (y * imageWidth + left) * 4;
        for (std::uint64_t x = 0; x < width; ++x, out += 4) std::copy(bytes, bytes + 4, out);
    }
}

}  // namespace

Palette ImageCoder::decode(BytesParser::BytesReader& reader) const {
    const auto bytes = reader.readAll();
    const RasterImage image = readRasterImage(std::string_view(reinterpret_cast<const char*>(bytes.data()), bytes.size()));
    Palette palette;
    palette.format = PaletteFormat::image;
    for (const Pixel& pixel : sampledColors(image, accuracy, maximumColorCount))
        palette.colors.push_back(Color::rgb(pixel.r, pixel.g, pixel.b, pixel.a));
    return palette;
}

std::string ImageCoder::encode(const Palette& palette) const {
    const SwatchLayout layout = swatchLayout(palette, columns);
    if (layout.rows.empty()) cannotCreate();
    const std::uint64_t columnCount = layout.columns, rowCount = layout.rows.size();
    const std::uint64_t width = wholePixels(exportType.size.width), height = wholePixels(exportType.size.height);

    const bool perSwatch = exportType.kind == ExportType::Kind::swatch;
    const std::uint64_t cellWidth = perSwatch ? width : width / columnCount;
    const std::uint64_t cellHeight = perSwatch ? height : height / rowCount;
    const std::uint64_t imageWidth = perSwatch ? width * columnCount : width;
    const std::uint64_t imageHeight = perSwatch ? height * rowCount : height;
    if (cellWidth == 0 || cellHeight == 0 || imageWidth > maximumRasterPixels || imageHeight > maximumRasterPixels ||
        imageWidth * imageHeight > maximumRasterPixels)
        cannotCreate();

    RasterImage image;
    image.width = static_cast<int>(imageWidth);
    image.height = static_cast<int>(imageHeight);
    image.rgba.assign(imageWidth * imageHeight * 4, 0);  // transparent where no swatch lies
    for (std::uint64_t row = 0; row < rowCount; ++row) {
        const auto& colors = layout.rows[row].colors;
        for (std::uint64_t column = 0; column < colors.size(); ++column)
            fill(image, column * cellWidth, row * cellHeight, cellWidth, cellHeight, pixelOf(colors[column]));
    }
    return exportImageType == ExportImageType::png ? pngBytes(image) : jpegBytes(image, jpegQuality);
}

std::unique_ptr<PaletteCoder> makeImageCoder() { return std::make_unique<ImageCoder>(); }

}  // namespace PAL
