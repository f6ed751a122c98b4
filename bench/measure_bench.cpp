// How long a measurement over the ground takes: 100 km, a look each 10 m, at the finest heights of the map.
#include "BenchGlobe.h"

#include "analysis/AxMapHeights.h"
#include "viewer/CAxEarthViewer.h"

#include <AxAlgorthm/AxPathMeasure.h>

#include <benchmark/benchmark.h>
#include <osgEarth/MapNode>

namespace {
// 100 km to the east over the Spanish Peaks.
const std::vector<CAxVector3D> measuredPath{{-105.5, 37.4, 0.0}, {-104.37, 37.4, 0.0}};

void MeasureOver(benchmark::State& state, const AxHeightAt& height)
{
    AxPathGround ground;
    ground.height = height;
    AxPathFigures figures;
    for (auto _ : state) {
        figures = AxMeasurePath(measuredPath, ground);
        benchmark::DoNotOptimize(figures);
    }
    if (!(figures.total.overGround >= figures.total.length))
        state.SkipWithError("the ground is not known");
    state.counters["km"] = figures.total.length / 1000.0;
    state.counters["step_m"] = figures.step;
}

void MeasureTerrain(benchmark::State& state)
{
    MeasureOver(state, AxMapHeights(bench::globe().getMapNode()->getMap()));
}
BENCHMARK(MeasureTerrain)->Name("Measure/terrain")->Unit(benchmark::kMillisecond);

/// With nothing read of the map before, as the first measurement somewhere; blocks of files that GDAL or the
/// system keep are still theirs.
void MeasureCold(benchmark::State& state)
{
    const osgEarth::Map* map = bench::globe().getMapNode()->getMap();
    AxPathFigures figures;
    for (auto _ : state) {
        AxPathGround ground;
        ground.height = AxMapHeights(map);
        figures = AxMeasurePath(measuredPath, ground);
        benchmark::DoNotOptimize(figures);
    }
    if (!(figures.total.overGround >= figures.total.length))
        state.SkipWithError("the ground is not known");
}
BENCHMARK(MeasureCold)->Name("Measure/terrain_cold")->Unit(benchmark::kMillisecond);

/// Without the map: what the arithmetic takes of it.
void MeasurePlane(benchmark::State& state)
{
    MeasureOver(state, [](double longitude, double) {
        return std::make_optional(2000.0 + 300.0 * (longitude + 105.5));
    });
}
BENCHMARK(MeasurePlane)->Name("Measure/plane")->Unit(benchmark::kMillisecond);
} // namespace
