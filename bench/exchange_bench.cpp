// Decode and encode throughput of the most used palette formats on a large palette: 100,000 named
// colours in 100 groups. ACO counts its colours in 16 bits, so it gets the largest palette it holds
// (100 groups of 655).
#include "bench/CoderBench.h"

namespace {

PAL::Palette groupedPalette(PAL::PaletteFormat format) {
    const std::size_t perGroup = format == PAL::PaletteFormat::aco ? 655 : 1000;
    return bench::samplePalette(100 * perGroup, bench::Spaces::rgb, perGroup);
}

void decode(benchmark::State& state, PAL::PaletteFormat format) {
    bench::decodeEach(state, *PAL::coder(format), groupedPalette(format));
}

void encode(benchmark::State& state, PAL::PaletteFormat format) {
    bench::encodeEach(state, *PAL::coder(format), groupedPalette(format));
}

}  // namespace

BENCHMARK_CAPTURE(decode, ase, PAL::PaletteFormat::ase)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(encode, ase, PAL::PaletteFormat::ase)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(decode, aco, PAL::PaletteFormat::aco)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(encode, aco, PAL::PaletteFormat::aco)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(decode, gpl, PAL::PaletteFormat::gimp)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(encode, gpl, PAL::PaletteFormat::gimp)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(decode, json, PAL::PaletteFormat::json)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(encode, json, PAL::PaletteFormat::json)->Unit(benchmark::kMillisecond);
