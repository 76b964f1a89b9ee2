// Colour text recognition over 1, 4 and 16 MB: of mixed text (prose, CSS and Swift, the kind of text a
// stylesheet, a source file or a log on the clipboard holds) and of hostile text (long runs made to
// mislead the expressions, each followed by a colour). With every recogniser, and on 1 MB of mixed text
// with each one alone. The "colours" counter tells whether the whole text was read.
#include <benchmark/benchmark.h>

#include <string>

#include "formats/color/ImportColor.h"

namespace {

constexpr size_t kMegabyte = 1024 * 1024;

// About one colour per 60 bytes.
std::string mixedText(size_t size) {
    const std::string block =
        "The header uses a deep navy, and the links turn coral when hovered over.\n"
        ".button { color: #1a2b3c; background: rgb(240, 248, 255); border-color: rgba(0, 0, 0, 0.25); }\n"
        ".badge { background: hsl(210, 60%, 40%); outline: hsla(0, 100%, 50%, 0.5); }\n"
        "let tint = UIColor(hue: 0.58, saturation: 0.4, brightness: 0.9, alpha: 1.0)\n"
        "let fill = NSColor(red: 0.2, green: 0.3, blue: 0.4, alpha: 1.0)\n"
        "Nothing else in this line looks like a colour at all, just words and numbers 12 34 56.\n";
    std::string text;
    while (text.size() < size) text += block;
    return text;
}

// Four equal runs, each followed by a colour: "#" signs, repeated "hsl(", one endless word, and a line of
// HSB labels without an alpha.
std::string hostileText(size_t size) {
    const auto run = [&](const std::string& unit, const std::string& colour) {
        std::string part;
        while (part.size() + unit.size() < size / 4) part += unit;
        return part + colour + "\n";
    };
    return run("#", " #102030") + run("hsl(", "hsl(120, 100%, 50%)") + run("x", " red") +
           run("saturation: brightness: ", "\nhue: 0 saturation: 1 brightness: 1 alpha: 1");
}

void scan(benchmark::State& state, const std::string& text, const std::set<kro::ImportColorPattern>& patterns) {
    size_t found = 0;
    for (auto _ : state) {
        const auto colors = kro::ImportColor::colors(text, patterns);
        found = colors.size();
        benchmark::DoNotOptimize(colors.data());
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * text.size()));
    state.counters["colours"] = static_cast<double>(found);
}

void mixed(benchmark::State& state) {
    scan(state, mixedText(static_cast<size_t>(state.range(0)) * kMegabyte), kro::allImportColorPatterns());
}

void hostile(benchmark::State& state) {
    scan(state, hostileText(static_cast<size_t>(state.range(0)) * kMegabyte), kro::allImportColorPatterns());
}

void alone(benchmark::State& state, kro::ImportColorPattern pattern) { scan(state, mixedText(kMegabyte), {pattern}); }

}  // namespace

BENCHMARK(mixed)->Arg(1)->Arg(4)->Arg(16)->Unit(benchmark::kMillisecond);
BENCHMARK(hostile)->Arg(1)->Arg(4)->Arg(16)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(alone, html, kro::ImportColorPattern::html)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(alone, cssHEX, kro::ImportColorPattern::cssHEX)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(alone, cssRGB, kro::ImportColorPattern::cssRGB)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(alone, cssHSL, kro::ImportColorPattern::cssHSL)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(alone, appleHSB, kro::ImportColorPattern::appleHSB)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(alone, appleRGB, kro::ImportColorPattern::appleRGB)->Unit(benchmark::kMillisecond);
