// The picker's hot path: from a captured rectangle to the sampled colour, and one frame of the lens.
#include <benchmark/benchmark.h>

#include "library/Preferences.h"
#include "picker/LoupeRenderer.h"
#include "picker/PickerImage.h"
#include "platform/testing/FakePickerDesktop.h"
#include "platform/testing/TestEnvironment.h"

using namespace kro;
using namespace kro::testing;

namespace {

struct CountingDelegate final : PickerImageDelegate {
    void pickerImageDidSample(const ColorValue& color, const std::shared_ptr<SmartProfileItem>&) override {
        benchmark::DoNotOptimize(color.red());
    }
};

// One capture run as the session makes it: the rectangle is cut from the display (in memory here, so the
// number is the program's own share of the latency), normalised, sampled and converted.
void captureToSample(benchmark::State& state, ColorSpaceProfile profile, double scale) {
    TestEnvironment environment;
    Preferences::resetSharedForTesting();
    Preferences::shared().setColorSpaceProfile(profile);
    FakeScreenCapture screen;
    screen.displays[0].backingScaleFactor = scale;
    FakePointer pointer;
    FakeLoupeWindow window;
    CountingDelegate delegate;
    PickerImage image({&screen, &pointer, &window, nullptr});
    image.pickerDelegate = &delegate;
    image.setOpen(true);
    int step = 0;
    for (auto _ : state) {
        pointer.at = {300.0 + (step++ % 400), 300};
        image.capture();
        environment.queue.advance(Seconds(1.0 / 60));
    }
}

void BM_CaptureToSampleNative(benchmark::State& state) { captureToSample(state, ColorSpaceProfile::native, 1); }
void BM_CaptureToSampleDisplayP3(benchmark::State& state) { captureToSample(state, ColorSpaceProfile::displayP3, 1); }
void BM_CaptureToSampleRetina(benchmark::State& state) { captureToSample(state, ColorSpaceProfile::native, 2); }

void BM_LoupeFrame(benchmark::State& state) {
    Bitmap image{400, 400, std::vector<uint32_t>(400 * 400)};
    for (size_t i = 0; i < image.pixels.size(); ++i) image.pixels[i] = 0xFF000000u | static_cast<uint32_t>(i * 2654435761u >> 8);
    Bitmap canvas;
    const int size = static_cast<int>(state.range(0));
    const int zoom = static_cast<int>(state.range(1));
    const double scale = state.range(2);  // device pixels per interface pixel
    for (auto _ : state) {
        renderLoupe({&image, size, zoom, false, true, false, scale}, canvas);
        benchmark::DoNotOptimize(canvas.pixels.data());
    }
}

}  // namespace

BENCHMARK(BM_CaptureToSampleNative);
BENCHMARK(BM_CaptureToSampleDisplayP3);
BENCHMARK(BM_CaptureToSampleRetina);
BENCHMARK(BM_LoupeFrame)->Args({180, 8, 1})->Args({360, 4, 1})->Args({120, 20, 1})->Args({180, 8, 2});
