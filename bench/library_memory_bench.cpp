// The agent's memory as changes pile up: a library of N colours in one palette, which is also the target of
// the picks, takes C picks through the whole pipeline (undo on, save to a real folder, the undo insertion run
// as the background queue runs it), and nothing is ever dropped from the undo list. Reported: the growth of
// the heap in use (glibc's mallinfo2) and of the resident set, in MB, from the loaded library to after the
// picks. One iteration each: the figure is a size, not a time.
#include <benchmark/benchmark.h>

#include <malloc.h>

#include <fstream>
#include <string>

#include "BenchEnvironment.h"
#include "library/User.h"
#include "library/UserUndo.h"

namespace {

double heapInUseMB() { return static_cast<double>(mallinfo2().uordblks) / 1e6; }

double residentMB() {
    std::ifstream statm("/proc/self/statm");
    long pages = 0, resident = 0;
    statm >> pages >> resident;
    return static_cast<double>(resident) * 4096 / 1e6;
}

void picksIntoALargePalette(benchmark::State& state) {
    const long size = state.range(0);
    const long changes = state.range(1);
    for (auto _ : state) {
        BenchEnvironment environment;
        kro::User::resetShared();
        auto& user = *kro::User::shared();
        auto palette = std::make_shared<kro::Palette>();
        for (long n = 0; n < size; ++n) {
            const double r = static_cast<double>(n % 256) / 255.0;
            const double g = static_cast<double>((n / 256) % 256) / 255.0;
            palette->colors.push_back(kro::Color::make(r, g, 0.5, 1.0, "Colour " + std::to_string(n)));
        }
        user.palettes.push_back(palette);
        user.paletteUUID = palette->uuid;
        auto& undo = kro::UserUndo::shared();
        undo.reset();
        // The first change records the loaded library, as the agent's first change does.
        user.trigger(true, true, true, false);
        environment.queue.runDue();
        malloc_trim(0);
        const double heapBefore = heapInUseMB();
        const double residentBefore = residentMB();
        for (long n = 0; n < changes; ++n) {
            // Blue 0.25 is never among the palette's colours; each pick is a new hex.
            const double r = static_cast<double>(n % 256) / 255.0;
            const double g = static_cast<double>((n / 256) % 256) / 255.0;
            user.addColorToTarget(kro::Color::make(r, g, 0.25, 1.0, "Pick"));
            environment.queue.runDue();
            environment.clock.advance(std::chrono::seconds(1));
        }
        malloc_trim(0);
        state.counters["heapGrowthMB"] = heapInUseMB() - heapBefore;
        state.counters["residentGrowthMB"] = residentMB() - residentBefore;
        state.counters["undoStates"] = static_cast<double>(undo.engine().count());
        undo.reset();
        kro::User::resetShared();
    }
}

}  // namespace

BENCHMARK(picksIntoALargePalette)
    ->ArgNames({"colors", "changes"})
    ->Args({10000, 40})
    ->Args({10000, 400})
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);
