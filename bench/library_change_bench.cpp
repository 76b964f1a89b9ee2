// One library change as a user makes it: a colour added to the history through the whole pipeline (time
// stamp, undo state, save to a real folder, notification), with the library holding N colours in one
// palette. The second argument is how many picks the undo list keeps before it is emptied (0: never), so the
// cost with a long undo list is measured beside the cost with a short one.
#include <benchmark/benchmark.h>

#include <string>

#include "BenchEnvironment.h"
#include "library/LibraryEncoder.h"
#include "platform/Crypto.h"
#include "library/User.h"
#include "library/UserUndo.h"

namespace {

kro::ColorRef colorNumber(long n) {
    const double r = static_cast<double>(n % 256) / 255.0;
    const double g = static_cast<double>((n / 256) % 256) / 255.0;
    const double b = static_cast<double>((n / 65536) % 256) / 255.0;
    return kro::Color::make(r, g, b, 1.0, "Colour " + std::to_string(n));
}

// The shared library, reset to hold one palette of `count` numbered colours.
kro::PaletteRef libraryOfOnePalette(long count) {
    kro::User::resetShared();
    auto palette = std::make_shared<kro::Palette>();
    for (long n = 0; n < count; ++n) palette->colors.push_back(colorNumber(n + 1));
    kro::User::shared()->palettes.push_back(palette);
    return palette;
}

void addColorThroughPipeline(benchmark::State& state) {
    BenchEnvironment environment;
    const long size = state.range(0);
    const long resetEvery = state.range(1);
    libraryOfOnePalette(size);
    auto& user = *kro::User::shared();
    auto& undo = kro::UserUndo::shared();
    undo.reset();
    // The library as loaded is encoded once, as the agent's first change does; the loop times the changes
    // after it.
    user.trigger(true, true, true, false);
    environment.queue.runDue();
    environment.clock.advance(std::chrono::seconds(1));

    long next = 0;
    for (auto _ : state) {
        // Black (0) is never among the library's colours, and each pick is taken out again below.
        user.addColorToTarget(kro::Color::make(0, 0, 0, 1, "Pick"));
        environment.queue.runDue();  // the undo insertion, as the background queue would run it
        state.PauseTiming();
        user.history->colors.clear();
        environment.clock.advance(std::chrono::seconds(1));
        if (resetEvery && ++next % resetEvery == 0) undo.reset();
        state.ResumeTiming();
    }
    state.counters["colors"] = static_cast<double>(size);
    undo.reset();
    kro::User::resetShared();
}

// The encoding alone, without the file: a pick at the head of an N-colour palette, then the library encoded
// whole (as every change did before) or piece by piece (as the pipeline does now).
template <bool piecewise>
void encodeAfterAPick(benchmark::State& state) {
    BenchEnvironment environment;
    const auto palette = libraryOfOnePalette(state.range(0));
    auto& user = *kro::User::shared();
    kro::LibraryEncoder::shared().encode(user);
    for (auto _ : state) {
        state.PauseTiming();
        palette->colors.insert(palette->colors.begin(), kro::Color::make(0, 0, 0, 1, "Pick"));
        state.ResumeTiming();
        if constexpr (piecewise) {
            benchmark::DoNotOptimize(kro::LibraryEncoder::shared().encode(user));
        } else {
            benchmark::DoNotOptimize(kro::md5Hex(user.jsonText()));
        }
        state.PauseTiming();
        palette->colors.erase(palette->colors.begin());
        state.ResumeTiming();
    }
    kro::User::resetShared();
}
void wholeEncodingAndDigest(benchmark::State& state) { encodeAfterAPick<false>(state); }
void piecewiseEncoding(benchmark::State& state) { encodeAfterAPick<true>(state); }

// The floor under every change: the library's file, already encoded, written whole and atomically with its
// flush, as each change must write it. What a change costs above this is the change's own.
void writeTheFileAlone(benchmark::State& state) {
    BenchEnvironment environment;
    libraryOfOnePalette(state.range(0));
    const auto encoded = kro::LibraryEncoder::shared().encode(*kro::User::shared());
    const auto pieces = encoded.views();
    const auto path = environment.root + "/user.json";
    for (auto _ : state) {
        if (!environment.files.writePiecesAtomically(path, pieces)) state.SkipWithError("the write failed");
    }
    state.counters["bytes"] = static_cast<double>(encoded.size());
    kro::User::resetShared();
}

}  // namespace

BENCHMARK(writeTheFileAlone)->ArgName("colors")->Arg(100)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(wholeEncodingAndDigest)->ArgName("colors")->Arg(100)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(piecewiseEncoding)->ArgName("colors")->Arg(100)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(addColorThroughPipeline)
    ->ArgNames({"colors", "resetEvery"})
    ->Args({100, 16})
    ->Args({1000, 16})
    ->Args({10000, 16})
    ->Args({100000, 16})
    ->Unit(benchmark::kMillisecond);
// With every state kept, as in the agent (states that share what did not change make this affordable).
BENCHMARK(addColorThroughPipeline)
    ->ArgNames({"colors", "resetEvery"})
    ->Args({100, 0})
    ->Args({10000, 0})
    ->Args({100000, 0})
    ->Unit(benchmark::kMillisecond);
