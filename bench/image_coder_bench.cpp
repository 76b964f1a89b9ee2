// Speed of the image coder: sampling a 4-megapixel picture into a palette (with and without decoding
// its file), and drawing a 1,000-colour palette as a swatch PNG.
#include <algorithm>
#include <cmath>
#include <random>
#include <string>

#include "bench/CoderBench.h"
#include "exchange/coders/ImageCoder.h"
#include "exchange/coders/ImageSampling.h"
#include "exchange/coders/RasterImage.h"

namespace {

using namespace PAL;

// 2048 x 2048 pixels that sample like a photograph: smooth gradients of light and hue under sensor-like
// noise, so that nearly every pixel differs from its neighbour and there are hundreds of thousands of
// distinct values.
const RasterImage& photograph() {
    static const RasterImage image = [] {
        RasterImage picture;
        picture.width = picture.height = 2048;
        picture.rgba.resize(2048 * 2048 * 4);
        std::mt19937 random(7);
        std::normal_distribution<double> noise(0, 4);
        for (int y = 0; y < 2048; ++y) {
            for (int x = 0; x < 2048; ++x) {
                const double u = x / 2047.0, v = y / 2047.0;
                const double base[3] = {40 + 150 * u * v, 60 + 120 * std::sin(3 * u) * (1 - v) + 40 * v, 30 + 100 * v * v};
                std::uint8_t* p = &picture.rgba[(static_cast<std::size_t>(y) * 2048 + x) * 4];
                for (int c = 0; c < 3; ++c) p[c] = static_cast<std::uint8_t>(std::clamp(base[c] + noise(random), 0.0, 255.0));
                p[3] = 255;
            }
        }
        return picture;
    }();
    return image;
}

void ImageSample4MP(benchmark::State& state) {
    const RasterImage& image = photograph();
    for (auto _ : state) {
        auto colors = sampledColors(image, 0.95, 256);
        benchmark::DoNotOptimize(colors.data());
    }
    state.SetItemsProcessed(state.iterations() * image.width * image.height);
}

void ImageDecodePNG4MP(benchmark::State& state) {
    const std::string png = pngBytes(photograph());
    const ImageCoder coder;
    for (auto _ : state) {
        auto palette = coder.decode(png);
        benchmark::DoNotOptimize(palette.colors.data());
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * png.size()));
    state.counters["colours"] = static_cast<double>(coder.decode(png).colors.size());
}

void ImageDecodeJPEG4MP(benchmark::State& state) {
    const std::string jpeg = jpegBytes(photograph(), 90);
    const ImageCoder coder;
    for (auto _ : state) {
        auto palette = coder.decode(jpeg);
        benchmark::DoNotOptimize(palette.colors.data());
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * jpeg.size()));
}

void ImageEncodeSwatchPNG1000(benchmark::State& state) { bench::encodeEach(state, ImageCoder(), bench::samplePalette(1000)); }

}  // namespace

BENCHMARK(ImageSample4MP)->Unit(benchmark::kMillisecond);
BENCHMARK(ImageDecodePNG4MP)->Unit(benchmark::kMillisecond);
BENCHMARK(ImageDecodeJPEG4MP)->Unit(benchmark::kMillisecond);
BENCHMARK(ImageEncodeSwatchPNG1000)->Unit(benchmark::kMillisecond);
