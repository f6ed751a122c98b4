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
#include <atomic>
#include <chrono>
#include <cmath>
#include <functional>
#include <future>
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

double millisecondsUntilOff(const std::function<void(const std::atomic<bool>&)>& work, double after)
{
    std::atomic<bool> isOff = false;
    QElapsedTimer clock;
    auto running = std::async(std::launch::async, [&] { work(isOff); });
    running.wait_for(std::chrono::microseconds(static_cast<long long>(after * 1000.0)));
    clock.start();
    isOff = true;
    running.wait();
    return millisecondsSince(clock);
}

/// What comes after the heights: how long its steps take, and how long at most until it has ended when it is
/// called off at any of twenty moments.
void VolumeSteps(benchmark::State& state)
{
    AxVolumeQuestion question = squareOverSummit();
    question.cell = 10000.0 / std::sqrt(static_cast<double>(state.range(0)));
    question.mayBeLarge = true;
    const auto grid = std::make_shared<AxVolumeGrid>(
        AxVolumeGridOf(question, [](double longitude, double latitude) -> std::optional<double> {
            return 2000.0 + 500.0 * std::sin(300.0 * longitude) * std::cos(300.0 * latitude);
        }));
    const auto measure = [&state](const char* counter, const auto& work) {
        QElapsedTimer clock;
        clock.start();
        work();
        return state.counters[counter] = millisecondsSince(clock);
    };
    for (auto _ : state) {
        AxVolume found;
        question.base = AxVolumeBase::PlaneOfRim;
        measure("plane_ms", [&] { found = AxVolumeOf(question, grid); });
        question.base = AxVolumeBase::SurfaceOfRim;
        double whole = measure("surface_ms", [&] { found = AxVolumeOf(question, grid); });
        AxGeoRaster raster;
        whole += measure("classes_ms", [&] { raster = AxVolumeRaster(found); });
        const auto draw = [&] {
            const AxGeoPicture picture(raster, 1);
            state.counters["picture_mb"] = picture.Megabytes();
        };
        whole += measure("picture_ms", draw);
        const QTemporaryDir folder;
        const QString file = folder.filePath("v.tif");
        const double packing = measure("geotiff_ms", [&] { AxWriteGeoField(file, AxVolumeField(found)); });
        double answer = 0.0, exporting = 0.0;
        constexpr int moments = 20;
        for (int i = 0; i < moments; ++i) {
            const auto compute = [&](const std::atomic<bool>& isOff) {
                const AxVolume again = AxVolumeOf(question, grid, [&isOff](double) { return !isOff; });
                const AxGeoPicture picture(AxVolumeRaster(again, &isOff), 1, &isOff);
            };
            answer = std::max(answer, millisecondsUntilOff(compute, whole * (i + 0.5) / moments));
            const auto write = [&](const std::atomic<bool>& isOff) {
                AxWriteGeoField(file, AxVolumeField(found), &isOff);
            };
            if (i % 4 == 0)
                exporting = std::max(exporting, millisecondsUntilOff(write, packing * (i + 0.5) / moments));
        }
        state.counters["cancel_ms"] = answer;
        state.counters["cancel_export_ms"] = exporting;
        state.counters["cells"] = static_cast<double>(found.differences.size());
    }
}
BENCHMARK(VolumeSteps)
    ->Name("Volume/steps")
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1)
    ->Arg(4000000)
    ->Arg(24000000);

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
