// What a globe costs that nobody touches: the share of one processor core that
// the whole process takes while its window is shown and the picture is complete.
// Linux gives the figure; std::clock() counts the same elsewhere but on Windows.
#include "BenchGlobe.h"

#include "viewer/CAxEarthViewer.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QMouseEvent>
#include <QTimer>

#include <ctime>

namespace {

constexpr int kMeasuredMs = 10000;
constexpr int kMouseStepMs = 20;

/// Runs the event loop for that long; the share of a core in per cent.
double processorShare(int milliseconds)
{
    QElapsedTimer clock;
    clock.start();
    const std::clock_t before = std::clock();
    while (clock.elapsed() < milliseconds)
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
    const double used = static_cast<double>(std::clock() - before) / CLOCKS_PER_SEC;
    return 100.0 * used / (static_cast<double>(clock.nsecsElapsed()) / 1e9);
}

/// Until nothing is left to load or to be looked at again.
void rest()
{
    constexpr int kSettledMs = 15000;
    bench::globe().SetStillPictureKept(true);
    processorShare(kSettledMs);
}

/// With the saving, and then with every frame drawn.
void measure(benchmark::State& state)
{
    for (auto _ : state) {
        const double share = processorShare(kMeasuredMs);
        state.SetIterationTime(kMeasuredMs / 1e3);
        state.counters["core_percent"] = share;
    }
    bench::globe().SetStillPictureKept(false);
    state.counters["always_drawn"] = processorShare(kMeasuredMs / 2);
}

void Still(benchmark::State& state, bench::View view)
{
    bench::goTo(view);
    rest();
    measure(state);
}

/// The mouse goes to and fro over the map; the read-out follows it.
void HoverMap(benchmark::State& state)
{
    bench::goTo(bench::kRange350km);
    rest();
    QWidget* viewport = bench::globe().viewport();
    QTimer mouse;
    int step = 0;
    QObject::connect(&mouse, &QTimer::timeout, viewport, [&] {
        const int way = ++step % 400;
        const QPoint at(440 + (way < 200 ? way : 400 - way), 400);
        QMouseEvent event(QEvent::MouseMove, at, viewport->mapToGlobal(at), Qt::NoButton, Qt::NoButton,
                          Qt::NoModifier);
        QCoreApplication::sendEvent(viewport, &event);
    });
    mouse.start(kMouseStepMs);
    measure(state);
}

BENCHMARK_CAPTURE(Still, space, bench::kSpace)
    ->Name("Idle/still")
    ->Iterations(1)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Still, near500m, bench::kNear500m)
    ->Name("Idle/still_near500m")
    ->Iterations(1)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(HoverMap)->Name("Idle/hover")->Iterations(1)->UseManualTime()->Unit(benchmark::kMillisecond);

} // namespace
