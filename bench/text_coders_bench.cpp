// Speed of the text palette coders, plain lists and line-based formats alike, on a 100,000-colour palette,
// beside the cost of making that many colours.
#include "bench/CoderBench.h"
#include "exchange/coders/Coders.h"

namespace {

using namespace PAL;
using bench::Spaces;

constexpr std::size_t colorCount = 100'000;

Palette large(Spaces spaces = Spaces::rgb) { return bench::samplePalette(colorCount, spaces); }

// The floor under every decoder: making the palette's colours (each gets a fresh identifier).
void MakeColors(benchmark::State& state) {
    for (auto _ : state) {
        std::vector<Color> colors;
        colors.reserve(colorCount);
        for (std::size_t i = 0; i < colorCount; ++i) colors.push_back(Color::rgb(0.1, 0.2, 0.3, 1, "Colour"));
        benchmark::DoNotOptimize(colors.data());
    }
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * colorCount));
}
BENCHMARK(MakeColors)->Unit(benchmark::kMillisecond);

CODER_BENCHMARKS(SKP, makeSKPCoder, large())
CODER_BENCHMARKS(KDEPalette, makeKDEPaletteCoder, large())
CODER_BENCHMARKS(HexRGBA, makeHexRGBACoder, large())
CODER_BENCHMARKS(RGBText, makeRGBTextCoder, large())
CODER_BENCHMARKS(RGBAText, makeRGBATextCoder, large())
CODER_BENCHMARKS(RGB255, makeRGB255Coder, large())
CODER_BENCHMARKS(CSV, makeCSVCoder, large())
CODER_BENCHMARKS(PaintShopPro, makePaintShopProCoder, large())
CODER_BENCHMARKS(PaintNET, makePaintNETCoder, large())
CODER_BENCHMARKS(CorelPainter, makeCorelPainterCoder, large())
CODER_BENCHMARKS(HomeSite, makeHomeSiteCoder, large())
CODER_BENCHMARKS(Skencil, makeSkencilCoder, large())
// CorelDRAW 3 holds only CMYK; from RGB, every colour goes through the colour-managed conversion.
CODER_BENCHMARKS(CorelDrawV3, makeCorelDrawV3Coder, large(Spaces::cmyk))
void CorelDrawV3EncodeFromRGB(benchmark::State& state) { bench::encodeEach(state, *makeCorelDrawV3Coder(), large()); }
BENCHMARK(CorelDrawV3EncodeFromRGB)->Unit(benchmark::kMillisecond);

}  // namespace
