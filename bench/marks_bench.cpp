// Frames with ten thousand mark points in view: standing, and with a view that turns with each frame.
#include "BenchGlobe.h"

#include "interaction/input/CAxEarthManipulator.h"
#include "interaction/marks/CAxOsgDrawPointSet.h"
#include "viewer/CAxEarthViewer.h"

#include <benchmark/benchmark.h>

#include <functional>

namespace {

constexpr int kMarks = 10000;

/// A square of marks that fills the view straight down.
void placeMarks()
{
    constexpr int kColumns = 100;
    constexpr double kApart = 0.0014; // degrees
    QVector<AxProjectMark> marks;
    for (int i = 0; i < kMarks; ++i) {
        AxProjectMark mark;
        mark.id = QString::number(i);
        mark.name = QStringLiteral("Mark %1").arg(i);
        mark.longitude = -105.0 + (i % kColumns - 0.5 * kColumns) * kApart;
        mark.latitude = 37.4 + (i / kColumns - 0.5 * kColumns) * 0.5 * kApart;
        marks += mark;
    }
    CAxOsgDrawPointSet::OfViewer(&bench::globe())->SetMarks(marks);
    bench::waitFor([] { return bench::globe().IsPictureComplete(); }, 60000);
    // Until they have settled on the ground.
    for (int i = 0; i < 100; ++i)
        bench::frameMilliseconds();
}

void lookDown(double heading)
{
    bench::globe().getManipulator()->setViewpoint(
        osgEarth::Viewpoint("marks", -105.0, 37.4, 0.0, heading, -90.0, 14000.0), 0.0);
}

void measureMarks(benchmark::State& state, const std::function<double()>& frame)
{
    constexpr int kMarkFrames = 60;
    bench::goTo(bench::kOblique20km);
    lookDown(0.0);
    bench::waitFor([] { return bench::globe().IsPictureComplete(); }, 60000);
    const double empty = bench::median(kMarkFrames, frame);
    placeMarks();
    double full = 0.0;
    for (auto _ : state) {
        full = bench::median(kMarkFrames, frame);
        state.SetIterationTime(full / 1e3);
    }
    state.counters["empty_ms"] = empty;
    state.counters["ratio"] = full / empty;
    bench::globe().RemoveAllHanderAdapter(true);
}

void MarksFrame(benchmark::State& state)
{
    measureMarks(state, bench::frameMilliseconds);
}
BENCHMARK(MarksFrame)->Name("Marks/frame")->Iterations(1)->UseManualTime()->Unit(benchmark::kMillisecond);

/// Each frame finds room for icons and names anew.
void MarksTurning(benchmark::State& state)
{
    double heading = 0.0;
    measureMarks(state, [&heading] {
        lookDown(heading += 0.5);
        return bench::frameMilliseconds();
    });
}
BENCHMARK(MarksTurning)->Name("Marks/turning")->Iterations(1)->UseManualTime()->Unit(benchmark::kMillisecond);

} // namespace
