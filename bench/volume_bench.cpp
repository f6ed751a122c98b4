// Volumes: a square of a thousand cells a side around a summit, from the shipped terrain.
#include "BenchGlobe.h"
#include "FrameWatch.h"

#include "analysis/AxMapHeights.h"
#include "analysis/AxVolumeAnalysis.h"
#include "analysis/AxVolumeText.h"
#include "viewer/CAxEarthViewer.h"

#include <osgEarth/MapNode>

#include <benchmark/benchmark.h>

#include <QElapsedTimer>
#include <QTemporaryDir>

#include <algorithm>
#include <cmath>
#include <optional>

namespace {
AxVolumeQuestion squareOverSummit()
{
    AxVolumeQuestion question;
    question.ring = {{-105.05, 37.33}, {-104.937, 37.33}, {-104.937, 37.42}, {-105.05, 37.42}};
    question.cell = 10.0;
    return question;
}

double millisecondsSince(const QElapsedTimer& clock)
{
    return static_cast<double>(clock.nsecsElapsed()) / 1e6;
}

/// The same for the map: the longest frame from the question until the picture lies there, and how long that
/// takes from the answer on.
void showOnMap(benchmark::State& state)
{
    CAxEarthViewer& globe = bench::globe();
    bench::goTo(bench::kOblique20km);
    AxVolumeAnalysis* volumes = globe.GetVolumeAnalysis();
    FrameWatch watch;
    constexpr int longestWait = 120000;
    const bool isAsked = volumes->Ask(QStringLiteral("volume"), QStringLiteral("volume"), squareOverSummit());
    const bool isAnswered = isAsked && bench::waitFor([&] { return !volumes->IsBusy(); }, longestWait);
    QElapsedTimer clock;
    clock.start();
    // The tiles below hear of the layer with a frame.
    const bool isBegun =
        isAnswered && bench::waitFor([&] { return !globe.IsPictureComplete(); }, longestWait / 10);
    if (!isBegun || !bench::waitFor([&] { return globe.IsPictureComplete(); }, longestWait))
        state.SkipWithError("no picture");
    state.counters["picture_ms"] = millisecondsSince(clock);
    state.counters["longest_frame_ms"] =
        watch.frames.empty() ? 0.0 : *std::max_element(watch.frames.begin(), watch.frames.end());
    volumes->Clear();
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
        comparing += millisecondsSince(clock);
    }
    if (found.fault != AxVolumeFault::None || found.unknown > 0.0)
        state.SkipWithError("no volume");
    else
        state.counters["cells"] = static_cast<double>(found.differences.size());
    state.counters["comparing_ms"] = comparing / static_cast<double>(state.iterations());
    showOnMap(state);
}

/// What cannot be called off in its middle, at the most cells that are computed without a question.
void VolumeSteps(benchmark::State& state)
{
    AxVolumeQuestion question = squareOverSummit();
    question.cell = 5.05;
    question.mayBeLarge = true;
    const auto grid = std::make_shared<AxVolumeGrid>(
        AxVolumeGridOf(question, [](double longitude, double latitude) -> std::optional<double> {
            return 2000.0 + 500.0 * std::sin(300.0 * longitude) * std::cos(300.0 * latitude);
        }));
    const auto measure = [&state](const char* counter, const auto& work) {
        QElapsedTimer clock;
        clock.start();
        work();
        state.counters[counter] = millisecondsSince(clock);
    };
    for (auto _ : state) {
        AxVolume found;
        question.base = AxVolumeBase::PlaneOfRim;
        measure("plane_ms", [&] { found = AxVolumeOf(question, grid); });
        question.base = AxVolumeBase::SurfaceOfRim;
        measure("surface_ms", [&] { found = AxVolumeOf(question, grid); });
        AxGeoRaster raster;
        measure("classes_ms", [&] { raster = AxVolumeRaster(found); });
        measure("picture_ms", [&] { AxGeoPicture(raster, 1); });
        const QTemporaryDir folder;
        measure("geotiff_ms", [&] { AxWriteGeoField(folder.filePath("v.tif"), AxVolumeField(found)); });
        state.counters["cells"] = static_cast<double>(found.differences.size());
    }
}
BENCHMARK(VolumeSteps)->Name("Volume/steps")->Unit(benchmark::kMillisecond)->Iterations(1);

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
