// Speed of the two palette formats packed in zip archives, on a palette of 100,000 colours, and of the
// zip container under them. Files are built once; each iteration decodes or encodes a whole file.
#include <benchmark/benchmark.h>

#include "exchange/Zip.h"
#include "exchange/coders/Coders.h"
#include "exchange/coders/TextSupport.h"

namespace {

using namespace PAL;

constexpr int colorCount = 100'000;

// Named colours in groups of 100, cycling through RGB, CMYK, Lab and gray.
Palette samplePalette() {
    Palette palette("Bench");
    for (int i = 0; i < colorCount; ++i) {
        if (i % 100 == 0) palette.groups.push_back(Group("Group " + std::to_string(i / 100)));
        const double t = static_cast<double>(i % 256) / 255;
        const std::string name = "Colour " + std::to_string(i);
        const Color color = i % 4 == 0   ? Color::rgb(t, 1 - t, 0.5, 1, name)
                            : i % 4 == 1 ? Color::cmyk(t, 0.2, 0.4, 0.1, 1, name)
                            : i % 4 == 2 ? Color::lab(t * 100, -20, 30, 1, name)
                                         : Color::gray(t, 1, name);
        palette.groups.back().colors.push_back(color);
    }
    return palette;
}

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

void report(benchmark::State& state, std::size_t fileSize, int colors) {
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * fileSize));
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations()) * colors);
}

// The whole call on a 100,000-colour palette (Procreate keeps 30 colours, so little reaches its file).
template <std::unique_ptr<PaletteCoder> (*make)()>
void encode(benchmark::State& state) {
    const auto coder = make();
    const Palette palette = samplePalette();
    std::size_t size = 0;
    for (auto _ : state) {
        const std::string file = coder->encode(palette);
        size = file.size();
        benchmark::DoNotOptimize(file.data());
    }
    report(state, size, colorCount);
}

void decode(benchmark::State& state, const PaletteCoder& coder, const std::string& file) {
    for (auto _ : state) {
        auto palette = coder.decode(file);
        benchmark::DoNotOptimize(palette.colors.data());
    }
    report(state, file.size(), colorCount);
}

void SwatchBookerDecode(benchmark::State& state) {
    const auto coder = makeSwatchBookerCoder();
    decode(state, *coder, coder->encode(samplePalette()));
}
void SwatchesDecode(benchmark::State& state) { decode(state, *makeSwatchesCoder(), largeSwatchesFile()); }
void SwatchBookerEncode(benchmark::State& state) { encode<makeSwatchBookerCoder>(state); }
void SwatchesEncode(benchmark::State& state) { encode<makeSwatchesCoder>(state); }

// The container alone: the SwatchBooker document of the same palette, deflated and inflated.
void ZipDeflate(benchmark::State& state) {
    const auto coder = makeSwatchBookerCoder();
    const std::string document = *zip::Reader(coder->encode(samplePalette())).read("swatchbook.xml");
    for (auto _ : state) {
        const std::string archive = zip::write({{"swatchbook.xml", document}});
        benchmark::DoNotOptimize(archive.data());
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * document.size()));
}

void ZipInflate(benchmark::State& state) {
    const auto coder = makeSwatchBookerCoder();
    const std::string archive = coder->encode(samplePalette());
    std::size_t size = 0;
    for (auto _ : state) {
        const std::string document = *zip::Reader(archive).read("swatchbook.xml");
        size = document.size();
        benchmark::DoNotOptimize(document.data());
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * size));
}

BENCHMARK(SwatchBookerDecode)->Unit(benchmark::kMillisecond);
BENCHMARK(SwatchBookerEncode)->Unit(benchmark::kMillisecond);
BENCHMARK(SwatchesDecode)->Unit(benchmark::kMillisecond);
BENCHMARK(SwatchesEncode)->Unit(benchmark::kMillisecond);
BENCHMARK(ZipDeflate)->Unit(benchmark::kMillisecond);
BENCHMARK(ZipInflate)->Unit(benchmark::kMillisecond);

}  // namespace
