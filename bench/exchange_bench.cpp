// Decoding and encoding a 1,000-colour palette in the GIMP and JSON formats.
#include <benchmark/benchmark.h>

#include "exchange/PaletteCoder.h"

namespace {

PAL::Palette thousandColors() {
    PAL::Palette palette("Bench");
    for (int i = 0; i < 1000; ++i)
        palette.colors.push_back(PAL::Color::rgb255(i % 256, (i * 7) % 256, (i * 13) % 256, 255, "Colour " + std::to_string(i)));
    return palette;
}

void decode(benchmark::State& state, PAL::PaletteFormat format) {
    const auto coder = PAL::coder(format);
    const std::string bytes = coder->encode(thousandColors());
    for (auto _ : state) benchmark::DoNotOptimize(coder->decode(std::string_view(bytes)));
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * bytes.size()));
    state.counters["colours/s"] = benchmark::Counter(static_cast<double>(state.iterations() * 1000), benchmark::Counter::kIsRate);
}

void encode(benchmark::State& state, PAL::PaletteFormat format) {
    const auto coder = PAL::coder(format);
    const PAL::Palette palette = thousandColors();
    for (auto _ : state) benchmark::DoNotOptimize(coder->encode(palette));
    state.counters["colours/s"] = benchmark::Counter(static_cast<double>(state.iterations() * 1000), benchmark::Counter::kIsRate);
}

}  // namespace

BENCHMARK_CAPTURE(decode, gimp, PAL::PaletteFormat::gimp)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(encode, gimp, PAL::PaletteFormat::gimp)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(decode, json, PAL::PaletteFormat::json)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(encode, json, PAL::PaletteFormat::json)->Unit(benchmark::kMicrosecond);
