// Speed of the line-based text palette coders on a 100,000-colour palette: each iteration encodes or decodes
// a whole file. Bytes/s is the file's size, items/s the colours.
#include <benchmark/benchmark.h>

#include "exchange/coders/Coders.h"

namespace {

using namespace PAL;

constexpr std::size_t colorCount = 100'000;

// Named colours of every byte value, CMYK for the one format that holds only CMYK.
Palette samplePalette(bool cmyk) {
    Palette palette("Bench");
    palette.colors.reserve(colorCount);
    for (std::size_t i = 0; i < colorCount; ++i) {
        const double t = static_cast<double>(i % 256) / 255;
        const std::string name = "Colour " + std::to_string(i);
        palette.colors.push_back(cmyk ? Color::cmyk(t, 1 - t, 0.5, 0.1, 1, name) : Color::rgb(t, 1 - t, static_cast<double>(i % 7) / 7, 1, name));
    }
    return palette;
}

template <std::unique_ptr<PaletteCoder> (*make)(), bool cmyk = false>
void encode(benchmark::State& state) {
    const auto coder = make();
    const auto palette = samplePalette(cmyk);
    std::size_t bytes = 0;
    for (auto _ : state) {
        const auto file = coder->encode(palette);
        bytes += file.size();
        benchmark::DoNotOptimize(file.data());
    }
    state.SetBytesProcessed(static_cast<int64_t>(bytes));
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * colorCount));
}

template <std::unique_ptr<PaletteCoder> (*make)(), bool cmyk = false>
void decode(benchmark::State& state) {
    const auto coder = make();
    const auto file = coder->encode(samplePalette(cmyk));
    for (auto _ : state) {
        auto palette = coder->decode(file);
        benchmark::DoNotOptimize(palette.colors.data());
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * file.size()));
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * colorCount));
}

void PaintShopProEncode(benchmark::State& s) { encode<makePaintShopProCoder>(s); }
void PaintShopProDecode(benchmark::State& s) { decode<makePaintShopProCoder>(s); }
void PaintNETEncode(benchmark::State& s) { encode<makePaintNETCoder>(s); }
void PaintNETDecode(benchmark::State& s) { decode<makePaintNETCoder>(s); }
void CorelPainterEncode(benchmark::State& s) { encode<makeCorelPainterCoder>(s); }
void CorelPainterDecode(benchmark::State& s) { decode<makeCorelPainterCoder>(s); }
void CorelDrawV3Encode(benchmark::State& s) { encode<makeCorelDrawV3Coder, true>(s); }
void CorelDrawV3Decode(benchmark::State& s) { decode<makeCorelDrawV3Coder, true>(s); }
// RGB colours go through the colour-managed conversion to CMYK.
void CorelDrawV3EncodeFromRGB(benchmark::State& s) { encode<makeCorelDrawV3Coder>(s); }
void HomeSiteEncode(benchmark::State& s) { encode<makeHomeSiteCoder>(s); }
void HomeSiteDecode(benchmark::State& s) { decode<makeHomeSiteCoder>(s); }
void SkencilEncode(benchmark::State& s) { encode<makeSkencilCoder>(s); }
void SkencilDecode(benchmark::State& s) { decode<makeSkencilCoder>(s); }
BENCHMARK(PaintShopProEncode)->Unit(benchmark::kMillisecond);
BENCHMARK(PaintShopProDecode)->Unit(benchmark::kMillisecond);
BENCHMARK(PaintNETEncode)->Unit(benchmark::kMillisecond);
BENCHMARK(PaintNETDecode)->Unit(benchmark::kMillisecond);
BENCHMARK(CorelPainterEncode)->Unit(benchmark::kMillisecond);
BENCHMARK(CorelPainterDecode)->Unit(benchmark::kMillisecond);
BENCHMARK(CorelDrawV3Encode)->Unit(benchmark::kMillisecond);
BENCHMARK(CorelDrawV3Decode)->Unit(benchmark::kMillisecond);
BENCHMARK(CorelDrawV3EncodeFromRGB)->Unit(benchmark::kMillisecond);
BENCHMARK(HomeSiteEncode)->Unit(benchmark::kMillisecond);
BENCHMARK(HomeSiteDecode)->Unit(benchmark::kMillisecond);
BENCHMARK(SkencilEncode)->Unit(benchmark::kMillisecond);
BENCHMARK(SkencilDecode)->Unit(benchmark::kMillisecond);

}  // namespace
