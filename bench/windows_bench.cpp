// The library window at scale: opening it on a library of 100 palettes of 100 colours (10,000 colours),
// scrolling a grid of 10,000 colours a page at a time (each page must paint well inside a frame), and one
// rename from the editor's commit to the saved file, on the offscreen platform with a real folder.
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

// `palettes` palettes of `each` colours, the first of them the target; saved once.
void makeLibrary(long palettes, long each) {
    kro::User::resetShared();
    auto& user = *kro::User::shared();
    user.palettes.clear();
    long n = 1;
    for (long p = 0; p < palettes; ++p) {
        std::vector<kro::ColorRef> colors;
        for (long c = 0; c < each; ++c) colors.push_back(colorNumber(n++));
        user.palettes.push_back(kro::Palette::make(colors, "Palette " + std::to_string(p)));
    }
    user.paletteUUID = user.palettes[0]->uuid;
    user.trigger(true, true, false, false);
}

// Shown and painted once: what a person waits for.
void paint(QWidget& widget) {
    QApplication::processEvents();
    widget.repaint();
}

void openLibraryWindow(benchmark::State& state) {
    WindowBenchEnvironment environment;
    makeLibrary(100, 100);
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
    state.counters["colors"] = 10000;
}
BENCHMARK(openLibraryWindow)->Unit(benchmark::kMillisecond);

void scrollGridPage(benchmark::State& state) {
    WindowBenchEnvironment environment;
    makeLibrary(1, state.range(0));
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

void renameToSavedFile(benchmark::State& state) {
    WindowBenchEnvironment environment;
    makeLibrary(100, 100);
    kro::MainWindow window(nullptr);
    window.show();
    paint(window);
    auto& model = window.colorModel();
    long n = 0;
    for (auto _ : state) {
        // The editor's commit: the model's setData runs the library's rename, which saves.
        model.setData(model.index(0), QString("Renamed %1").arg(++n), Qt::EditRole);
        state.PauseTiming();
        environment.queue.advance(kro::Seconds(1));
        state.ResumeTiming();
    }
    state.counters["colors"] = 10000;
}
BENCHMARK(renameToSavedFile)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
