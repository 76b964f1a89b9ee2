// Whole-file timings of one palette coder, for setting beside other programs' figures on the same file
// (bench/compare-exchange). Not a Google Benchmark program: it takes a path.
//   palette_timing write FILE [COUNT] [GROUPS]
//                                       the sample palette (COUNT colours, 100,000 by default, in GROUPS
//                                       groups, 100 by default, or none at all with 0) in the format of
//                                       FILE's extension
//   palette_timing decode FILE [RUNS]   decoding the file, by its extension
//   palette_timing encode FILE [RUNS]   encoding what the file holds in its own format again
// Times are printed in milliseconds: the median and the fastest of RUNS runs (10 by default).
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "bench/CoderBench.h"

namespace {

std::string readWhole(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

const PAL::PaletteCoder& coderFor(const std::string& path) {
    const auto candidates = PAL::codersForPath(path);
    if (candidates.empty()) {
        std::fprintf(stderr, "palette_timing: no coder for %s\n", path.c_str());
        std::exit(2);
    }
    return *candidates.front();
}

template <typename Body>
void timeRuns(const char* what, int runs, Body body) {
    std::vector<double> milliseconds;
    for (int i = 0; i < runs; ++i) {
        const auto start = std::chrono::steady_clock::now();
        body();
        milliseconds.push_back(std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count());
    }
    std::sort(milliseconds.begin(), milliseconds.end());
    std::printf("%s median %.1f ms, fastest %.1f ms (%d runs)\n", what, milliseconds[milliseconds.size() / 2], milliseconds.front(), runs);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 3) {
        std::fprintf(stderr, "usage: palette_timing write FILE [COUNT] [GROUPS] | decode|encode FILE [RUNS]\n");
        return 2;
    }
    const std::string command = argv[1], path = argv[2];
    const PAL::PaletteCoder& coder = coderFor(path);
    if (command == "write") {
        const std::size_t count = argc > 3 ? std::stoul(argv[3]) : 100'000;
        const std::size_t groups = argc > 4 ? std::stoul(argv[4]) : 100;
        const std::size_t groupSize = groups ? std::max<std::size_t>((count + groups - 1) / groups, 1) : 0;
        const std::string bytes = coder.encode(bench::samplePalette(count, bench::Spaces::rgb, groupSize));
        std::ofstream(path, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        return 0;
    }
    const int runs = argc > 3 ? std::stoi(argv[3]) : 10;
    const std::string file = readWhole(path);
    if (command == "decode") {
        timeRuns("decode", runs, [&] { benchmark::DoNotOptimize(coder.decode(file)); });
    } else if (command == "encode") {
        const PAL::Palette palette = coder.decode(file);
        timeRuns("encode", runs, [&] { benchmark::DoNotOptimize(coder.encode(palette)); });
    } else {
        std::fprintf(stderr, "palette_timing: unknown command %s\n", command.c_str());
        return 2;
    }
    return 0;
}
