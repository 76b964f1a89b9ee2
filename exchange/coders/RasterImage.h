#pragma once
// Raster pictures in memory and their PNG, JPEG and GIF files: the one place that calls the image
// libraries. Reading refuses anything it will not decode safely, before the decoder allocates.
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace PAL {

// Eight bits per channel, red, green, blue, alpha, rows from the top, no padding.
struct RasterImage {
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> rgba;
};

// The largest picture read or written: a 40-megapixel photograph fits, and the decoder's working
// memory stays under half a gigabyte.
constexpr std::uint64_t maximumRasterPixels = 40'000'000;

// PNG, JPEG (baseline, progressive, CMYK) and GIF (its first frame). Throws CommonError invalidFormat
// for other bytes, a damaged file, a declared size over the limit, or data that would decode to
// more than its declared size.
RasterImage readRasterImage(std::string_view bytes);
// The JPEG part of it (JPEGReader.cpp).
RasterImage readJPEGImage(std::string_view bytes);

// Throws CommonError cannotCreateImage for an empty or oversized image.
std::string pngBytes(const RasterImage& image);
// JPEG has no alpha: pixels are laid over white first. `quality` is 1...100.
std::string jpegBytes(const RasterImage& image, int quality);

}  // namespace PAL
