// Speed of the two palette formats packed in zip archives, on a palette of 100,000 colours, and of the
// zip container under them.
#include "bench/CoderBench.h"
#include "exchange/Zip.h"
#include "exchange/coders/Coders.h"
#include "exchange/coders/TextSupport.h"

namespace {

using namespace PAL;

constexpr int colorCount = 100'000;

// Every space, in groups of 100.
Palette large() { return bench::samplePalette(colorCount, bench::Spaces::mixed, 100); }

// Our writer keeps Procreate's 30 slots, so the large file to read is made here: every swatch listed,
// as third-party tools write them.
std::string largeSwatchesFile() {
    std::string json = "{\"name\" : \"Bench\", \"swatches\" : [\n";
    for (int i = 0; i < colorCount; ++i) {
        const double t = static_cast<double>(i % 997) / 997;
        json += std::string(i ? ",\n" : "") + "{ \"hue\" : " + textfile::shortest(t) + ", \"saturation\" : 0.5, \"brightness\" : " +
                textfile::shortest(1 - t) + ", \"alpha\" : 1, \"colorSpace\" : 0 }";
    }
    return zip::write({{"Swatches.json", json + "]}"}});
}

CODER_BENCHMARKS(SwatchBooker, makeSwatchBookerCoder, large())
// The whole call on the large palette, though little of it reaches Procreate's 30 slots.
void SwatchesEncode(benchmark::State& state) { bench::encodeEach(state, *makeSwatchesCoder(), large()); }
void SwatchesDecode(benchmark::State& state) { bench::decodeFile(state, *makeSwatchesCoder(), largeSwatchesFile(), colorCount); }
BENCHMARK(SwatchesDecode)->Unit(benchmark::kMillisecond);
BENCHMARK(SwatchesEncode)->Unit(benchmark::kMillisecond);

// The container alone: the SwatchBooker document of the same palette, deflated and inflated.
void ZipDeflate(benchmark::State& state) {
    const std::string document = *zip::Reader(makeSwatchBookerCoder()->encode(large())).read("swatchbook.xml");
    for (auto _ : state) {
        const std::string archive = zip::write({{"swatchbook.xml", document}});
        benchmark::DoNotOptimize(archive.data());
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * document.size()));
}

void ZipInflate(benchmark::State& state) {
    const std::string archive = makeSwatchBookerCoder()->encode(large());
    std::size_t size = 0;
    for (auto _ : state) {
        const std::string document = *zip::Reader(archive).read("swatchbook.xml");
        size = document.size();
        benchmark::DoNotOptimize(document.data());
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * size));
}

BENCHMARK(ZipDeflate)->Unit(benchmark::kMillisecond);
BENCHMARK(ZipInflate)->Unit(benchmark::kMillisecond);

}  // namespace
