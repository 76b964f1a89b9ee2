// Speed of the XML and JSON palette coders on a large palette: 100,000 named RGB colours, the size
// of the biggest colour libraries people exchange. Each iteration encodes or decodes the whole file.
#include <benchmark/benchmark.h>

#include "exchange/coders/Coders.h"

namespace {

using namespace PAL;

constexpr int colorCount = 100000;

Palette largePalette() {
    Palette palette("Bench");
    for (int i = 0; i < colorCount; ++i)
        palette.colors.push_back(Color::rgb255(i % 256, (i / 256) % 256, (i * 7) % 256, 255, "Colour " + std::to_string(i)));
    return palette;
}

const Palette& sharedPalette() {
    static const Palette palette = largePalette();
    return palette;
}

template <std::unique_ptr<PaletteCoder> (*make)()>
void encode(benchmark::State& state) {
    const auto coder = make();
    std::size_t bytes = 0;
    for (auto _ : state) {
        const auto file = coder->encode(sharedPalette());
        bytes += file.size();
        benchmark::DoNotOptimize(file.data());
    }
    state.SetBytesProcessed(static_cast<int64_t>(bytes));
    state.SetItemsProcessed(state.iterations() * colorCount);
}

template <std::unique_ptr<PaletteCoder> (*make)()>
void decode(benchmark::State& state) {
    const auto coder = make();
    const auto file = coder->encode(sharedPalette());
    for (auto _ : state) {
        auto palette = coder->decode(file);
        benchmark::DoNotOptimize(palette.colors.data());
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * file.size()));
    state.SetItemsProcessed(state.iterations() * colorCount);
}

void AndroidXMLEncode(benchmark::State& s) { encode<makeAndroidXMLCoder>(s); }
void AndroidXMLDecode(benchmark::State& s) { decode<makeAndroidXMLCoder>(s); }
void OpenOfficeEncode(benchmark::State& s) { encode<makeOpenOfficeCoder>(s); }
void OpenOfficeDecode(benchmark::State& s) { decode<makeOpenOfficeCoder>(s); }
void ScribusXMLEncode(benchmark::State& s) { encode<makeScribusXMLCoder>(s); }
void ScribusXMLDecode(benchmark::State& s) { decode<makeScribusXMLCoder>(s); }
void SketchEncode(benchmark::State& s) { encode<makeSketchCoder>(s); }
void SketchDecode(benchmark::State& s) { decode<makeSketchCoder>(s); }
BENCHMARK(AndroidXMLEncode)->Unit(benchmark::kMillisecond);
BENCHMARK(AndroidXMLDecode)->Unit(benchmark::kMillisecond);
BENCHMARK(OpenOfficeEncode)->Unit(benchmark::kMillisecond);
BENCHMARK(OpenOfficeDecode)->Unit(benchmark::kMillisecond);
BENCHMARK(ScribusXMLEncode)->Unit(benchmark::kMillisecond);
BENCHMARK(ScribusXMLDecode)->Unit(benchmark::kMillisecond);
BENCHMARK(SketchEncode)->Unit(benchmark::kMillisecond);
BENCHMARK(SketchDecode)->Unit(benchmark::kMillisecond);

}  // namespace
