// Speed of the binary coders added after the Adobe family: our own dcp at 100,000 colours (the size
// of a large library export), and the other writable ones at a palette size their files reach.
// Palettes are built once; each iteration encodes or decodes a whole file.
#include <benchmark/benchmark.h>

#include "exchange/coders/Coders.h"

namespace {

using namespace PAL;

// `count` named colours cycling through the four spaces and the three colour types, in groups of 100.
Palette samplePalette(size_t count) {
    Palette palette("Bench");
    for (size_t i = 0; i < count; ++i) {
        const double t = static_cast<double>(i % 256) / 255;
        const auto type = static_cast<ColorType>(i % 3);
        const std::string name = "Colour " + std::to_string(i);
        if (i % 100 == 0) palette.groups.push_back(Group("Group " + std::to_string(i / 100)));
        auto& colors = palette.groups.back().colors;
        switch (i % 4) {
            case 0: colors.push_back(Color::rgb(t, 1 - t, 0.5, 0.75, name, type)); break;
            case 1: colors.push_back(Color::cmyk(t, 0.2, 0.4, 0.1, 1, name, type)); break;
            case 2: colors.push_back(Color::lab(t * 100, -20, 30, 1, name, type)); break;
            default: colors.push_back(Color::gray(t, 1, name, type)); break;
        }
    }
    return palette;
}

template <std::unique_ptr<PaletteCoder> (*make)()>
void encode(benchmark::State& state) {
    const auto coder = make();
    const auto palette = samplePalette(static_cast<size_t>(state.range(0)));
    size_t bytes = 0;
    for (auto _ : state) {
        const auto file = coder->encode(palette);
        bytes += file.size();
        benchmark::DoNotOptimize(file.data());
    }
    state.SetBytesProcessed(static_cast<int64_t>(bytes));
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

template <std::unique_ptr<PaletteCoder> (*make)()>
void decode(benchmark::State& state) {
    const auto coder = make();
    const auto file = coder->encode(samplePalette(static_cast<size_t>(state.range(0))));
    for (auto _ : state) {
        auto palette = coder->decode(file);
        benchmark::DoNotOptimize(palette.groups.data());
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * file.size()));
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void DCPEncode(benchmark::State& s) { encode<makeDCPCoder>(s); }
void DCPDecode(benchmark::State& s) { decode<makeDCPCoder>(s); }
void CLFEncode(benchmark::State& s) { encode<makeCLFCoder>(s); }
void CLFDecode(benchmark::State& s) { decode<makeCLFCoder>(s); }
void ClipStudioPaintEncode(benchmark::State& s) { encode<makeClipStudioPaintCoder>(s); }
void ClipStudioPaintDecode(benchmark::State& s) { decode<makeClipStudioPaintCoder>(s); }
void XaraEncode(benchmark::State& s) { encode<makeXaraCoder>(s); }
void XaraDecode(benchmark::State& s) { decode<makeXaraCoder>(s); }
BENCHMARK(DCPEncode)->Arg(4096)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(DCPDecode)->Arg(4096)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(CLFEncode)->Arg(4096)->Unit(benchmark::kMillisecond);
BENCHMARK(CLFDecode)->Arg(4096)->Unit(benchmark::kMillisecond);
BENCHMARK(ClipStudioPaintEncode)->Arg(4096)->Unit(benchmark::kMillisecond);
BENCHMARK(ClipStudioPaintDecode)->Arg(4096)->Unit(benchmark::kMillisecond);
BENCHMARK(XaraEncode)->Arg(4096)->Unit(benchmark::kMillisecond);
BENCHMARK(XaraDecode)->Arg(4096)->Unit(benchmark::kMillisecond);

}  // namespace
