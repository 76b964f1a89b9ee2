// Speed of the binary palette coders and the byte streams under them, each coder at the palette sizes its
// files reach (our own dcp up to 100,000 colours, the size of a large library export).
#include <sstream>

#include "bench/CoderBench.h"
#include "exchange/BytesReader.h"
#include "exchange/coders/Coders.h"

namespace {

using namespace PAL;

// state.range(0) RGB colours, for the formats that hold nothing else.
Palette rgb(const benchmark::State& state) { return bench::samplePalette(static_cast<std::size_t>(state.range(0))); }
// state.range(0) colours of every space, in groups, for the formats that keep spaces and groups.
Palette mixed(const benchmark::State& state) {
    return bench::samplePalette(static_cast<std::size_t>(state.range(0)), bench::Spaces::mixed, 100);
}

void ASEEncode(benchmark::State& s) { bench::encodeEach(s, *makeASECoder(), mixed(s)); }
void ASEDecode(benchmark::State& s) { bench::decodeEach(s, *makeASECoder(), mixed(s)); }
void ACOEncode(benchmark::State& s) { bench::encodeEach(s, *makeACOCoder(), rgb(s)); }
void ACODecode(benchmark::State& s) { bench::decodeEach(s, *makeACOCoder(), rgb(s)); }
void ACTEncode(benchmark::State& s) { bench::encodeEach(s, *makeACTCoder(), rgb(s)); }
void ACTDecode(benchmark::State& s) { bench::decodeEach(s, *makeACTCoder(), rgb(s)); }
void RIFFEncode(benchmark::State& s) { bench::encodeEach(s, *makeRIFFCoder(), rgb(s)); }
void RIFFDecode(benchmark::State& s) { bench::decodeEach(s, *makeRIFFCoder(), rgb(s)); }
void VGA24BitEncode(benchmark::State& s) { bench::encodeEach(s, *makeVGA24BitCoder(), rgb(s)); }
void VGA24BitDecode(benchmark::State& s) { bench::decodeEach(s, *makeVGA24BitCoder(), rgb(s)); }
void DCPEncode(benchmark::State& s) { bench::encodeEach(s, *makeDCPCoder(), mixed(s)); }
void DCPDecode(benchmark::State& s) { bench::decodeEach(s, *makeDCPCoder(), mixed(s)); }
void CLFEncode(benchmark::State& s) { bench::encodeEach(s, *makeCLFCoder(), mixed(s)); }
void CLFDecode(benchmark::State& s) { bench::decodeEach(s, *makeCLFCoder(), mixed(s)); }
void ClipStudioPaintEncode(benchmark::State& s) { bench::encodeEach(s, *makeClipStudioPaintCoder(), mixed(s)); }
void ClipStudioPaintDecode(benchmark::State& s) { bench::decodeEach(s, *makeClipStudioPaintCoder(), mixed(s)); }
void XaraEncode(benchmark::State& s) { bench::encodeEach(s, *makeXaraCoder(), mixed(s)); }
void XaraDecode(benchmark::State& s) { bench::decodeEach(s, *makeXaraCoder(), mixed(s)); }
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
BENCHMARK(DCPEncode)->Arg(4096)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(DCPDecode)->Arg(4096)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(CLFEncode)->Arg(4096)->Unit(benchmark::kMillisecond);
BENCHMARK(CLFDecode)->Arg(4096)->Unit(benchmark::kMillisecond);
BENCHMARK(ClipStudioPaintEncode)->Arg(4096)->Unit(benchmark::kMillisecond);
BENCHMARK(ClipStudioPaintDecode)->Arg(4096)->Unit(benchmark::kMillisecond);
BENCHMARK(XaraEncode)->Arg(4096)->Unit(benchmark::kMillisecond);
BENCHMARK(XaraDecode)->Arg(4096)->Unit(benchmark::kMillisecond);

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
