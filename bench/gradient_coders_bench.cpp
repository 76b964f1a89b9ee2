// Decoding and encoding 1,000 gradients of 16 stops each in our JSON and DCG forms, SVG and GIMP's .ggr.
// A .ggr file holds one gradient, so its rows handle 1,000 files of one gradient each.
#include <benchmark/benchmark.h>

#include "exchange/gradients/GradientsCoder.h"

namespace {

constexpr int gradientCount = 1000;
constexpr int stopCount = 16;

PAL::Gradient sampleGradient(int index) {
    PAL::Gradient gradient{"Gradient " + std::to_string(index), {}};
    for (int s = 0; s < stopCount; ++s)
        gradient.stops.push_back({s / double(stopCount - 1), PAL::Color::rgb255((index + s * 16) % 256, (index * 7 + s) % 256,
                                                                                (s * 13) % 256, 255 - s * 8)});
    return gradient;
}

std::vector<PAL::Gradients> files(PAL::GradientsFormat format) {
    std::vector<PAL::Gradients> list;
    const bool onePerFile = format == PAL::GradientsFormat::gimp;
    for (int i = 0; i < gradientCount; ++i) {
        if (onePerFile || list.empty()) list.emplace_back();
        list.back().gradients.push_back(sampleGradient(i));
    }
    return list;
}

void setCounters(benchmark::State& state) {
    state.counters["gradients/s"] = benchmark::Counter(double(state.iterations()) * gradientCount, benchmark::Counter::kIsRate);
}

void decode(benchmark::State& state, PAL::GradientsFormat format) {
    const auto coder = PAL::coder(format);
    std::vector<std::string> encoded;
    std::size_t bytes = 0;
    for (const auto& file : files(format)) bytes += encoded.emplace_back(coder->encode(file)).size();
    for (auto _ : state)
        for (const auto& file : encoded) benchmark::DoNotOptimize(coder->decode(std::string_view(file)));
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * bytes));
    setCounters(state);
}

void encode(benchmark::State& state, PAL::GradientsFormat format) {
    const auto coder = PAL::coder(format);
    const auto list = files(format);
    for (auto _ : state)
        for (const auto& file : list) benchmark::DoNotOptimize(coder->encode(file));
    setCounters(state);
}

}  // namespace

BENCHMARK_CAPTURE(decode, json, PAL::GradientsFormat::json)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(encode, json, PAL::GradientsFormat::json)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(decode, dcg, PAL::GradientsFormat::dcg)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(encode, dcg, PAL::GradientsFormat::dcg)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(decode, gimp, PAL::GradientsFormat::gimp)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(encode, gimp, PAL::GradientsFormat::gimp)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(decode, svg, PAL::GradientsFormat::svg)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(encode, svg, PAL::GradientsFormat::svg)->Unit(benchmark::kMillisecond);
