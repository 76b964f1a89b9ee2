// Speed of the binary palette coders and the byte streams under them. Palettes are built once;
// each iteration encodes or decodes a whole file.
#include <benchmark/benchmark.h>

#include <sstream>

#include "exchange/BytesReader.h"
#include "exchange/coders/Coders.h"

namespace {

using namespace PAL;

// `count` named colours, in groups of 16 when `grouped`, cycling through the four spaces if `mixed`.
Palette samplePalette(size_t count, bool grouped, bool mixed) {
    Palette palette("Bench");
    for (size_t i = 0; i < count; ++i) {
        const double t = static_cast<double>(i % 256) / 255;
        Color color = Color::rgb(t, 1 - t, 0.5, 1, "Colour " + std::to_string(i));
        if (mixed && i % 4 == 1) color = Color::cmyk(t, 0.2, 0.4, 0.1, 1, color.name);
        if (mixed && i % 4 == 2) color = Color::lab(t * 100, -20, 30, 1, color.name);
        if (mixed && i % 4 == 3) color = Color::gray(t, 1, color.name);
        if (grouped) {
            if (i % 16 == 0) palette.groups.push_back(Group("Group " + std::to_string(i / 16)));
            palette.groups.back().colors.push_back(std::move(color));
        } else {
            palette.colors.push_back(std::move(color));
        }
    }
    return palette;
}

template <std::unique_ptr<PaletteCoder> (*make)()>
void encode(benchmark::State& state, bool grouped, bool mixed) {
    const auto coder = make();
    const auto palette = samplePalette(static_cast<size_t>(state.range(0)), grouped, mixed);
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
void decode(benchmark::State& state, bool grouped, bool mixed) {
    const auto coder = make();
    const auto file = coder->encode(samplePalette(static_cast<size_t>(state.range(0)), grouped, mixed));
    for (auto _ : state) {
        auto palette = coder->decode(file);
        benchmark::DoNotOptimize(palette.colors.data());
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * file.size()));
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void ASEEncode(benchmark::State& s) { encode<makeASECoder>(s, true, true); }
void ASEDecode(benchmark::State& s) { decode<makeASECoder>(s, true, true); }
void ACOEncode(benchmark::State& s) { encode<makeACOCoder>(s, false, false); }
void ACODecode(benchmark::State& s) { decode<makeACOCoder>(s, false, false); }
void ACTEncode(benchmark::State& s) { encode<makeACTCoder>(s, false, false); }
void ACTDecode(benchmark::State& s) { decode<makeACTCoder>(s, false, false); }
void RIFFEncode(benchmark::State& s) { encode<makeRIFFCoder>(s, false, false); }
void RIFFDecode(benchmark::State& s) { decode<makeRIFFCoder>(s, false, false); }
void VGA24BitEncode(benchmark::State& s) { encode<makeVGA24BitCoder>(s, false, false); }
void VGA24BitDecode(benchmark::State& s) { decode<makeVGA24BitCoder>(s, false, false); }
BENCHMARK(ASEEncode)->Arg(256)->Arg(4096);
BENCHMARK(ASEDecode)->Arg(256)->Arg(4096);
BENCHMARK(ACOEncode)->Arg(256)->Arg(4096);
BENCHMARK(ACODecode)->Arg(256)->Arg(4096);
BENCHMARK(ACTEncode)->Arg(256);
BENCHMARK(ACTDecode)->Arg(256);
BENCHMARK(RIFFEncode)->Arg(256)->Arg(4096);
BENCHMARK(RIFFDecode)->Arg(256)->Arg(4096);
BENCHMARK(VGA24BitEncode)->Arg(256)->Arg(4096);
BENCHMARK(VGA24BitDecode)->Arg(256)->Arg(4096);

// Reading a megabyte as big-endian 32-bit words, from memory and from a stream.
void ReaderWordsFromMemory(benchmark::State& state) {
    const std::string bytes(1 << 20, '\x5A');
    for (auto _ : state) {
        BytesParser::BytesReader reader(bytes);
        uint64_t sum = 0;
        while (reader.hasMoreData()) sum += reader.readInteger<uint32_t>(BytesParser::Endianness::big);
        benchmark::DoNotOptimize(sum);
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * bytes.size()));
}
void ReaderWordsFromStream(benchmark::State& state) {
    const std::string bytes(1 << 20, '\x5A');
    for (auto _ : state) {
        BytesParser::BytesReader reader(std::make_unique<std::istringstream>(bytes));
        uint64_t sum = 0;
        while (reader.hasMoreData()) sum += reader.readInteger<uint32_t>(BytesParser::Endianness::big);
        benchmark::DoNotOptimize(sum);
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * bytes.size()));
}
// One request for the whole block, as the coders ask for arrays.
void ReaderWordArrayFromStream(benchmark::State& state) {
    const std::string bytes(1 << 20, '\x5A');
    for (auto _ : state) {
        BytesParser::BytesReader reader(std::make_unique<std::istringstream>(bytes));
        const auto words = reader.readIntegers<uint32_t>(bytes.size() / 4, BytesParser::Endianness::big);
        benchmark::DoNotOptimize(words.data());
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * bytes.size()));
}
BENCHMARK(ReaderWordsFromMemory);
BENCHMARK(ReaderWordsFromStream);
BENCHMARK(ReaderWordArrayFromStream);

}  // namespace
