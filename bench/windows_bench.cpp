// The library window at scale, on the offscreen platform with a real folder, at 100, 1,000 and 10,000
// colours: opening the window (models built, first paint) on libraries of palettes of 100 colours and on
// one palette holding them all; scrolling a grid of 10,000 colours a page at a time; and one rename from
// the editor's commit to the saved file and the repainted window, beside the same rename done by the
// library alone, so that the window's share of it can be read off.
#include <benchmark/benchmark.h>

#include <QAbstractItemView>
#include <QApplication>
#include <QListView>
#include <QScrollBar>

#include "BenchEnvironment.h"
#include "formats/ColorFormats.h"
#include "library/User.h"
#include "library/UserUndo.h"
#include "workspaces/main/MainWindow.h"

namespace {

// The shared environment, with the shipped format catalogue and an empty undo history.
struct WindowBenchEnvironment : BenchEnvironment {
    WindowBenchEnvironment() {
        kro::ColorFormats::resetShared();
        kro::ColorFormats::shared().load();
        kro::UserUndo::shared().reset();
    }
};

kro::ColorRef colorNumber(long n) {
    return kro::Color::make(double(n % 256) / 255.0, double((n / 256) % 256) / 255.0, double((n / 65536) % 256) / 255.0,
                            1.0, "Colour " + std::to_string(n));
}

// `colors` colours in palettes of `each`, the first of them the target; saved once.
void makeLibrary(long colors, long each) {
    kro::User::resetShared();
    auto& user = *kro::User::shared();
    user.palettes.clear();
    for (long n = 0; n < colors;) {
        std::vector<kro::ColorRef> palette;
        for (long c = 0; c < each && n < colors; ++c) palette.push_back(colorNumber(++n));
        user.palettes.push_back(kro::Palette::make(palette, "Palette " + std::to_string(user.palettes.size())));
    }
    user.paletteUUID = user.palettes[0]->uuid;
    user.trigger(true, true, false, false);
}

// Shown and painted once: what a person waits for.
void paint(QWidget& widget) {
    QApplication::processEvents();
    widget.repaint();
}

// Opened on the first palette of a library of `range(0)` colours in palettes of `range(1)`.
void openLibraryWindow(benchmark::State& state) {
    WindowBenchEnvironment environment;
    makeLibrary(state.range(0), state.range(1));
    for (auto _ : state) {
        kro::MainWindow window(nullptr);
        window.show();
        paint(window);
        state.PauseTiming();
        window.hide();
        environment.queue.advance(kro::Seconds(1));
        QApplication::processEvents();
        state.ResumeTiming();
    }
    state.counters["colors"] = double(state.range(0));
}
BENCHMARK(openLibraryWindow)
    ->ArgNames({"colors", "perPalette"})
    ->Args({100, 100})
    ->Args({1000, 100})
    ->Args({10000, 100})
    ->Args({10000, 10000})
    ->Unit(benchmark::kMillisecond);

void scrollGridPage(benchmark::State& state) {
    WindowBenchEnvironment environment;
    makeLibrary(state.range(0), state.range(0));
    kro::MainWindow window(nullptr);
    window.resize(1080, 680);
    window.show();
    paint(window);
    auto* bar = window.colorView()->verticalScrollBar();
    for (auto _ : state) {
        bar->setValue(bar->value() + bar->pageStep() > bar->maximum() ? 0 : bar->value() + bar->pageStep());
        window.colorView()->viewport()->repaint();
    }
}
BENCHMARK(scrollGridPage)->Arg(10000)->Unit(benchmark::kMillisecond);

// The editor's commit: the model's setData runs the library's rename, which saves; then the window
// follows the change and repaints what changed, as a person sees it.
void renameToSavedFile(benchmark::State& state) {
    WindowBenchEnvironment environment;
    makeLibrary(state.range(0), 100);
    kro::MainWindow window(nullptr);
    window.show();
    paint(window);
    auto& model = window.colorModel();
    long n = 0;
    for (auto _ : state) {
        model.setData(model.index(0), QString("Renamed %1").arg(++n), Qt::EditRole);
        // The views reset and ask for the repaints they need, which the event loop then runs.
        QApplication::processEvents();
        state.PauseTiming();
        environment.queue.advance(kro::Seconds(1));
        state.ResumeTiming();
    }
    state.counters["colors"] = double(state.range(0));
}
BENCHMARK(renameToSavedFile)->ArgName("colors")->Arg(100)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);

// The same rename with no window open: the library's own share.
void renameInLibraryAlone(benchmark::State& state) {
    WindowBenchEnvironment environment;
    makeLibrary(state.range(0), 100);
    auto& user = *kro::User::shared();
    const auto palette = user.palettes[0];
    long n = 0;
    for (auto _ : state) {
        user.renameColor(palette, palette->colors[0], "Renamed " + std::to_string(++n));
        state.PauseTiming();
        environment.queue.advance(kro::Seconds(1));
        state.ResumeTiming();
    }
    state.counters["colors"] = double(state.range(0));
}
BENCHMARK(renameInLibraryAlone)->ArgName("colors")->Arg(100)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
