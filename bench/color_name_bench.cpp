// The nearest-name search on the shipped list, and the conversion every CMYK format token asks for.
#include <benchmark/benchmark.h>

#include <random>

#include "formats/color/ColorConversions.h"
#include "formats/color/ColorName.h"
#include "platform/Resources.h"

namespace {

std::vector<std::array<double, 3>> randomColors() {
    std::mt19937 random(7);
    std::uniform_real_distribution<double> component(0, 1);
    std::vector<std::array<double, 3>> colors(1024);
    for (auto& color : colors) color = {component(random), component(random), component(random)};
    return colors;
}

void nameOfRandomColor(benchmark::State& state) {
    kro::ColorList::shared();  // loading is a one-off, measured below
    auto colors = randomColors();
    size_t i = 0;
    for (auto _ : state) {
        const auto& c = colors[i++ % colors.size()];
        benchmark::DoNotOptimize(kro::ColorName::name(c[0], c[1], c[2]));
    }
}
BENCHMARK(nameOfRandomColor);

void nameOfListedColor(benchmark::State& state) {
    for (auto _ : state) benchmark::DoNotOptimize(kro::ColorName::name(1, 0, 0));
}
BENCHMARK(nameOfListedColor);

void distance(benchmark::State& state) {
    for (auto _ : state) benchmark::DoNotOptimize(kro::ColorName::distance("3A7F0C", "C0FFEE"));
}
BENCHMARK(distance);

void loadShippedList(benchmark::State& state) {
    auto text = kro::resource("ColorList.json");
    for (auto _ : state) benchmark::DoNotOptimize(kro::ColorList::fromJson(*text));
}
BENCHMARK(loadShippedList)->Unit(benchmark::kMillisecond);

void sRGBToGenericCMYK(benchmark::State& state) {
    auto colors = randomColors();
    auto cmyk = kro::ColorSpace::genericCMYK();
    size_t i = 0;
    for (auto _ : state) {
        const auto& c = colors[i++ % colors.size()];
        benchmark::DoNotOptimize(kro::ColorValue::rgb(c[0], c[1], c[2]).converted(cmyk));
    }
}
BENCHMARK(sRGBToGenericCMYK);

void sRGBToDisplayP3(benchmark::State& state) {
    auto colors = randomColors();
    auto p3 = kro::ColorSpace::displayP3();
    size_t i = 0;
    for (auto _ : state) {
        const auto& c = colors[i++ % colors.size()];
        benchmark::DoNotOptimize(kro::ColorValue::rgb(c[0], c[1], c[2]).converted(p3));
    }
}
BENCHMARK(sRGBToDisplayP3);

}  // namespace
