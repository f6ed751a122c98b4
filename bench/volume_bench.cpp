// Volumes: a square of a thousand cells a side around a summit, from the shipped terrain.
#include "BenchGlobe.h"

#include "analysis/AxMapHeights.h"
#include "analysis/AxVolumeAnalysis.h"
#include "viewer/CAxEarthViewer.h"

#include <osgEarth/MapNode>

#include <benchmark/benchmark.h>

#include <QElapsedTimer>

namespace {
AxVolumeQuestion squareOverSummit()
{
    AxVolumeQuestion question;
    question.ring = {{-105.05, 37.33}, {-104.937, 37.33}, {-104.937, 37.42}, {-105.05, 37.42}};
    question.cell = 10.0;
    return question;
}

/// All of it on one thread: heights that nobody has read before, and comparing.
void VolumeGrid(benchmark::State& state)
{
    const osg::ref_ptr<const osgEarth::Map> map = bench::globe().getMapNode()->getMap();
    const AxVolumeQuestion question = squareOverSummit();
    double comparing = 0.0;
    AxVolume found;
    for (auto _ : state) {
        const auto grid = std::make_shared<AxVolumeGrid>(AxVolumeGridOf(question, AxMapHeights(map)));
        QElapsedTimer clock;
        clock.start();
        found = AxVolumeOf(question, grid);
        comparing += static_cast<double>(clock.nsecsElapsed()) / 1e6;
    }
    if (found.fault != AxVolumeFault::None || found.unknown > 0.0)
        state.SkipWithError("no volume");
    else
        state.counters["cells"] = static_cast<double>(found.differences.size());
    state.counters["comparing_ms"] = comparing / static_cast<double>(state.iterations());
}
BENCHMARK(VolumeGrid)->Name("Volume/grid")->Unit(benchmark::kMillisecond);

/// Frames while volumes are computed and drawn one after the other.
void VolumeFrames(benchmark::State& state)
{
    constexpr int frames = 60;
    CAxEarthViewer& globe = bench::globe();
    bench::goTo(bench::kOblique20km);
    globe.SetStillPictureKept(false);
    const double alone = bench::median(frames, bench::frameMilliseconds);
    AxVolumeAnalysis* volumes = globe.GetVolumeAnalysis();
    double beside = 0.0;
    for (auto _ : state) {
        beside = bench::median(frames, [&] {
            if (!volumes->IsBusy()) {
                volumes->Clear();
                volumes->Ask(QStringLiteral("volume"), QStringLiteral("volume"), squareOverSummit());
            }
            const double time = bench::frameMilliseconds();
            bench::waitFor([] { return false; }, 1);
            return time;
        });
    }
    volumes->Clear();
    globe.SetStillPictureKept(true);
    state.counters["alone_ms"] = alone;
    state.counters["beside_ms"] = beside;
    state.counters["ratio"] = beside / alone;
}
BENCHMARK(VolumeFrames)->Name("Volume/frames")->Unit(benchmark::kMillisecond)->Iterations(1);
} // namespace
