// Performance: the same parts in wall time, with Google Benchmark.
//   bench_parts_timed PPD [--benchmark_…]
#include <QApplication>

#include <benchmark/benchmark.h>

#include "tools/benchmarks/panel_window.h"

namespace {

using namespace labelcut;
using labelcut::bench::PanelWindow;

QString ppdPath;

PanelWindow& shown() {
    static auto* window = [] {
        auto* made = new PanelWindow;
        made->showEmpty();
        made->openPpd(ppdPath);
        made->createPanel();
        made->loadView();
        PanelWindow::settle();
        return made;
    }();
    return *window;
}

void openPpd(::benchmark::State& state) {
    for (auto unused : state) {
        ppd::File file = ppd::openFile(ppdPath, nullptr);
        ::benchmark::DoNotOptimize(file.get());
    }
}

void click(::benchmark::State& state) {
    QCheckBox* box = shown().checkBoxes().front();
    for (auto unused : state)
        box->click();
}

void refresh(::benchmark::State& state) {
    for (auto unused : state)
        shown().panels().restore();
}

void save(::benchmark::State& state) {
    for (auto unused : state)
        shown().panels().save();
}

BENCHMARK(openPpd);
BENCHMARK(click);
BENCHMARK(refresh);
BENCHMARK(save);

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    ::benchmark::Initialize(&argc, argv);
    if (argc != 2)
        return 2;
    ppdPath = QString::fromLocal8Bit(argv[1]);
    ::benchmark::RunSpecifiedBenchmarks();
    // The panel's window lives as long as the process; it must not outlive the application.
    std::_Exit(0);
}
