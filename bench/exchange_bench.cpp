// Decode and encode throughput of the most used palette formats on a large palette: 100,000 named
// colours in 100 groups. ACO counts its colours in 16 bits, so it gets the largest palette it holds
// (100 groups of 655). Bytes/s is the file's size; items/s is colours.
#include <benchmark/benchmark.h>

#include "exchange/PaletteCoder.h"

namespace {

PAL::Palette groupedPalette(int groups, int perGroup) {
    PAL::Palette palette("Bench");
    for (int g = 0; g < groups; ++g) {
        PAL::Group group("Group " + std::to_string(g));
        for (int i = 0; i < perGroup; ++i) {
            const int n = g * perGroup + i;
            group.colors.push_back(PAL::Color::rgb255(n % 256, (n * 7) % 256, (n * 13) % 256, 255, "Colour " + std::to_string(n)));
        }
        palette.groups.push_back(std::move(group));
    }
    return palette;
}

int perGroupFor(PAL::PaletteFormat format) { return format == PAL::PaletteFormat::aco ? 655 : 1000; }

void decode(benchmark::State& state, PAL::PaletteFormat format) {
    const auto coder = PAL::coder(format);
    const PAL::Palette palette = groupedPalette(100, perGroupFor(format));
    const std::string bytes = coder->encode(palette);
    for (auto _ : state) benchmark::DoNotOptimize(coder->decode(std::string_view(bytes)));
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * bytes.size()));
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * palette.totalColorCount()));
}

void encode(benchmark::State& state, PAL::PaletteFormat format) {
    const auto coder = PAL::coder(format);
    const PAL::Palette palette = groupedPalette(100, perGroupFor(format));
    std::size_t bytes = 0;
    for (auto _ : state) {
        const std::string file = coder->encode(palette);
        bytes += file.size();
        benchmark::DoNotOptimize(file.data());
    }
    state.SetBytesProcessed(static_cast<int64_t>(bytes));
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * palette.totalColorCount()));
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
