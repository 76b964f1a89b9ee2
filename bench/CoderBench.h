#pragma once
// What the palette coder benchmarks share: the sample palette, and the two bodies. The palette is built
// before the clock starts; each iteration then encodes it whole or decodes a whole file. Bytes per second
// is the file's size, items per second are colours.
#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>

#include "exchange/PaletteCoder.h"

namespace bench {

enum class Spaces {
    rgb,
    cmyk,
    mixed,  // RGB, CMYK, Lab and gray in turn
};

// Colour `i` of the sample: named "Colour i", of every colour type in turn, the RGB ones one in five
// translucent so that the alpha paths run where a format has them.
inline PAL::Color sampleColor(std::size_t i, Spaces spaces) {
    using PAL::Color;
    const double t = static_cast<double>(i % 256) / 255;
    std::string name = "Colour " + std::to_string(i);
    const auto type = static_cast<PAL::ColorType>(i % 3);
    switch (spaces == Spaces::mixed ? i % 4 : spaces == Spaces::cmyk ? 1 : 0) {
        case 0: return Color::rgb(t, 1 - t, 0.5, i % 5 == 0 ? 0.5 : 1, std::move(name), type);
        case 1: return Color::cmyk(t, 0.2, 0.4, 0.1, 1, std::move(name), type);
        case 2: return Color::lab(t * 100, -20, 30, 1, std::move(name), type);
        default: return Color::gray(t, 1, std::move(name), type);
    }
}

// `count` sample colours; with a `groupSize`, in groups of that many ("Group N") instead of the palette's
// own list.
inline PAL::Palette samplePalette(std::size_t count, Spaces spaces = Spaces::rgb, std::size_t groupSize = 0) {
    PAL::Palette palette("Bench");
    for (std::size_t i = 0; i < count; ++i) {
        if (!groupSize) {
            palette.colors.push_back(sampleColor(i, spaces));
            continue;
        }
        if (i % groupSize == 0) palette.groups.emplace_back("Group " + std::to_string(i / groupSize));
        palette.groups.back().colors.push_back(sampleColor(i, spaces));
    }
    return palette;
}

inline void encodeEach(benchmark::State& state, const PAL::PaletteCoder& coder, const PAL::Palette& palette) {
    std::size_t bytes = 0;
    for (auto _ : state) {
        const auto file = coder.encode(palette);
        bytes += file.size();
        benchmark::DoNotOptimize(file.data());
    }
    state.SetBytesProcessed(static_cast<int64_t>(bytes));
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * palette.totalColorCount()));
}

// `file` holds `colorCount` colours.
inline void decodeFile(benchmark::State& state, const PAL::PaletteCoder& coder, const std::string& file, int64_t colorCount) {
    for (auto _ : state) {
        auto palette = coder.decode(file);
        benchmark::DoNotOptimize(palette);
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * file.size()));
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations()) * colorCount);
}

// Decoding what the coder writes for `palette`.
inline void decodeEach(benchmark::State& state, const PAL::PaletteCoder& coder, const PAL::Palette& palette) {
    decodeFile(state, coder, coder.encode(palette), static_cast<int64_t>(palette.totalColorCount()));
}

}  // namespace bench

// NAMEEncode and NAMEDecode, timed in milliseconds, for the coder that `make()` makes on `palette` (an
// expression, evaluated before each run's clock starts).
#define CODER_BENCHMARKS(name, make, palette)                                                  \
    void name##Encode(benchmark::State& state) { bench::encodeEach(state, *make(), palette); } \
    void name##Decode(benchmark::State& state) { bench::decodeEach(state, *make(), palette); } \
    BENCHMARK(name##Encode)->Unit(benchmark::kMillisecond);                                    \
    BENCHMARK(name##Decode)->Unit(benchmark::kMillisecond);
