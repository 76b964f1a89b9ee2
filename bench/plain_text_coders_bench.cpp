// Speed of the plain text coders on a 100,000-colour palette: each iteration encodes or decodes the whole
// file. Bytes per second is the file's size; items per second are colours.
#include <benchmark/benchmark.h>

#include "exchange/coders/Coders.h"

namespace {

using namespace PAL;

constexpr int colorCount = 100000;

// Named colours, one in four translucent, so the alpha paths run where a format has them.
Palette samplePalette() {
    Palette palette("Bench");
    for (int i = 0; i < colorCount; ++i) {
        const double t = static_cast<double>(i % 256) / 255;
        palette.colors.push_back(Color::rgb(t, 1 - t, 0.5, i % 4 == 0 ? 0.5 : 1, "Colour " + std::to_string(i)));
    }
    return palette;
}

const Palette& sample() {
    static const Palette palette = samplePalette();
    return palette;
}

template <std::unique_ptr<PaletteCoder> (*make)()>
void encode(benchmark::State& state) {
    const auto coder = make();
    size_t bytes = 0;
    for (auto _ : state) {
        const auto file = coder->encode(sample());
        bytes += file.size();
        benchmark::DoNotOptimize(file.data());
    }
    state.SetBytesProcessed(static_cast<int64_t>(bytes));
    state.SetItemsProcessed(state.iterations() * colorCount);
}

template <std::unique_ptr<PaletteCoder> (*make)()>
void decode(benchmark::State& state) {
    const auto coder = make();
    const auto file = coder->encode(sample());
    for (auto _ : state) {
        auto palette = coder->decode(file);
        benchmark::DoNotOptimize(palette.colors.data());
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * file.size()));
    state.SetItemsProcessed(state.iterations() * colorCount);
}

// The floor under every decoder: making the palette's colours (each gets a fresh identifier).
void MakeColors(benchmark::State& state) {
    for (auto _ : state) {
        std::vector<Color> colors;
        colors.reserve(colorCount);
        for (int i = 0; i < colorCount; ++i) colors.push_back(Color::rgb(0.1, 0.2, 0.3, 1, "Colour"));
        benchmark::DoNotOptimize(colors.data());
    }
    state.SetItemsProcessed(state.iterations() * colorCount);
}
BENCHMARK(MakeColors)->Unit(benchmark::kMillisecond);

#define CODER_BENCHMARKS(name, make)                                                      \
    void name##Encode(benchmark::State& s) { encode<make>(s); }                            \
    void name##Decode(benchmark::State& s) { decode<make>(s); }                            \
    BENCHMARK(name##Encode)->Unit(benchmark::kMillisecond);                                \
    BENCHMARK(name##Decode)->Unit(benchmark::kMillisecond);

CODER_BENCHMARKS(SKP, makeSKPCoder)
CODER_BENCHMARKS(KDEPalette, makeKDEPaletteCoder)
CODER_BENCHMARKS(HexRGBA, makeHexRGBACoder)
CODER_BENCHMARKS(RGBText, makeRGBTextCoder)
CODER_BENCHMARKS(RGBAText, makeRGBATextCoder)
CODER_BENCHMARKS(RGB255, makeRGB255Coder)
CODER_BENCHMARKS(CSV, makeCSVCoder)

}  // namespace
