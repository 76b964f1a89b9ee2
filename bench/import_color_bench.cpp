// Colour text recognition over a 100 KB text, the size of a large stylesheet or source file on the
// clipboard: with every recogniser, and with each one alone.
#include <benchmark/benchmark.h>

#include <string>

#include "formats/color/ImportColor.h"

namespace {

// Prose, CSS and Swift mixed, about one colour per 60 bytes, repeated to 100 KB.
std::string hundredKilobytes() {
    const std::string block =
        "The header uses a deep navy, and the links turn coral when hovered over.\n"
        ".button { color: #1a2b3c; background: rgb(240, 248, 255); border-color: rgba(0, 0, 0, 0.25); }\n"
        ".badge { background: hsl(210, 60%, 40%); outline: hsla(0, 100%, 50%, 0.5); }\n"
        "let tint = UIColor(hue: 0.58, saturation: 0.4, brightness: 0.9, alpha: 1.0)\n"
        "let fill = NSColor(red: 0.2, green: 0.3, blue: 0.4, alpha: 1.0)\n"
        "Nothing else in this line looks like a colour at all, just words and numbers 12 34 56.\n";
    std::string text;
    while (text.size() < 100 * 1024) text += block;
    return text;
}

void scan(benchmark::State& state, std::set<kro::ImportColorPattern> patterns) {
    const auto text = hundredKilobytes();
    size_t found = 0;
    for (auto _ : state) {
        const auto colors = kro::ImportColor::colors(text, patterns);
        found = colors.size();
        benchmark::DoNotOptimize(colors.data());
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * text.size()));
    state.counters["colours"] = static_cast<double>(found);
}

}  // namespace

BENCHMARK_CAPTURE(scan, all, kro::allImportColorPatterns())->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(scan, html, std::set{kro::ImportColorPattern::html})->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(scan, cssHEX, std::set{kro::ImportColorPattern::cssHEX})->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(scan, cssRGB, std::set{kro::ImportColorPattern::cssRGB})->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(scan, cssHSL, std::set{kro::ImportColorPattern::cssHSL})->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(scan, appleHSB, std::set{kro::ImportColorPattern::appleHSB})->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(scan, appleRGB, std::set{kro::ImportColorPattern::appleRGB})->Unit(benchmark::kMillisecond);
