// Viewsheds: 10 km around a summit in cells of 30 m, from the shipped terrain.
#include "BenchGlobe.h"

#include "analysis/AxMapHeights.h"
#include "analysis/AxSightAnalysis.h"
#include "viewer/CAxEarthViewer.h"

#include <osgEarth/MapNode>

#include <benchmark/benchmark.h>

#include <QElapsedTimer>

namespace {
AxViewshedQuestion aroundSummit()
{
    AxViewshedQuestion question;
    question.observer = {-104.99, 37.38};
    question.radius = 10000.0;
    question.cell = 30.0;
    return question;
}

double millisecondsOf(const QElapsedTimer& clock)
{
    return static_cast<double>(clock.nsecsElapsed()) / 1e6;
}

/// All of it on one thread: heights that nobody has read before, and looking.
void Viewshed(benchmark::State& state)
{
    const osg::ref_ptr<const osgEarth::Map> map = bench::globe().getMapNode()->getMap();
    const AxViewshedQuestion question = aroundSummit();
    double looking = 0.0;
    AxViewshed found;
    for (auto _ : state) {
        const AxSightGrid grid = AxSightGridOf(question, AxMapHeights(map));
        QElapsedTimer clock;
        clock.start();
        found = AxViewshedOf(question, grid);
        looking += millisecondsOf(clock);
    }
    if (found.visible == 0)
        state.SkipWithError("nothing is seen");
    state.counters["cells"] = found.Cells();
    state.counters["looking_ms"] = looking / static_cast<double>(state.iterations());
}
BENCHMARK(Viewshed)->Name("Measure/viewshed")->Unit(benchmark::kMillisecond);

/// Frames while viewsheds are computed and drawn one after the other.
void ViewshedFrames(benchmark::State& state)
{
    constexpr int frames = 60;
    CAxEarthViewer& globe = bench::globe();
    bench::goTo(bench::kOblique20km);
    globe.SetStillPictureKept(false);
    const double alone = bench::median(frames, bench::frameMilliseconds);
    AxSightAnalysis* sight = globe.GetSightAnalysis();
    double beside = 0.0;
    for (auto _ : state) {
        beside = bench::median(frames, [&] {
            if (!sight->IsBusy()) {
                sight->Clear();
                sight->LookAround(aroundSummit());
            }
            const double time = bench::frameMilliseconds();
            bench::waitFor([] { return false; }, 1);
            return time;
        });
    }
    sight->CallOff();
    sight->Clear();
    globe.SetStillPictureKept(true);
    state.counters["alone_ms"] = alone;
    state.counters["beside_ms"] = beside;
    state.counters["ratio"] = beside / alone;
}
BENCHMARK(ViewshedFrames)->Name("Measure/viewshed_frames")->Unit(benchmark::kMillisecond)->Iterations(1);
} // namespace
