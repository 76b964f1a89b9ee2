// The format language on the templates a pick goes through: a plain token template and a JSON one.
#include <benchmark/benchmark.h>

#include "formats/ColorFormatParse.h"

namespace {

const kro::ColorValue kColor = kro::ColorValue::rgb(1.0, 0.0, 128.0 / 255.0);

void plainTemplate(benchmark::State& state) {
    const std::string format = "#hex[red]hex[green]hex[blue]";
    for (auto _ : state) benchmark::DoNotOptimize(kro::ColorFormatParse::parse(kColor, format));
}
BENCHMARK(plainTemplate);

void cssHslTemplate(benchmark::State& state) {
    const std::string format = "hsl(css[hue], css[saturation]%, css[lightness]%)js";
    for (auto _ : state) benchmark::DoNotOptimize(kro::ColorFormatParse::parse(kColor, format));
}
BENCHMARK(cssHslTemplate);

void jsonTemplate(benchmark::State& state) {
    // rgb(R, G, B) built with round, mul and nested concat, as the shipped "CSS RGB" is.
    const std::string byte = R"js({"function":"round","x":{"function":"mul","x":"[C]","y":"255"},"y":0})js";
    auto channel = [&](const char* name) {
        std::string text = byte;
        text.replace(text.find("[C]"), 3, std::string("[") + name + "]");
        return text;
    };
    const std::string format = R"js({"function":"concat","x":"rgb(","y":{"function":"concat","x":)js" + channel("red") +
                               R"js(,"y":{"function":"concat","x":", ","y":{"function":"concat","x":)js" + channel("green") +
                               R"js(,"y":{"function":"concat","x":", ","y":{"function":"concat","x":)js" + channel("blue") +
                               R"js(,"y":")"}}}}}})js";
    if (kro::ColorFormatParse::parse(kColor, format) != "rgb(255, 0, 128)") {
        state.SkipWithError("the benchmark template is wrong");
        return;
    }
    for (auto _ : state) benchmark::DoNotOptimize(kro::ColorFormatParse::parse(kColor, format));
}
BENCHMARK(jsonTemplate);

}  // namespace
