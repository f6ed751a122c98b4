// Height queries and picks on the resident terrain of the 20 km oblique view.
#include "BenchGlobe.h"

#include "viewer/CAxEarthViewer.h"

#include <benchmark/benchmark.h>
#include <osgEarth/MapNode>
#include <osgEarth/SpatialReference>
#include <osgEarth/Terrain>
#include <osgViewer/Viewer>

namespace {

void Height(benchmark::State& state)
{
    bench::goTo(bench::kOblique20km);
    const osgEarth::Terrain& terrain = *bench::globe().getMapNode()->getTerrain();
    const osgEarth::SpatialReference* srs = bench::globe().getSRS();
    unsigned i = 0;
    double height = 0.0;
    for (auto _ : state) {
        const double step = 1e-4 * (i++ % 1000);
        if (!terrain.getHeight(srs, -105.05 + step, 37.35 + step, &height))
            state.SkipWithError("no height");
        benchmark::DoNotOptimize(height);
    }
}

void Pick(benchmark::State& state)
{
    bench::goTo(bench::kOblique20km);
    const osgEarth::Terrain& terrain = *bench::globe().getMapNode()->getTerrain();
    osgViewer::Viewer* viewer = bench::globe().getOSGViewer();
    unsigned i = 0;
    osg::Vec3d world;
    for (auto _ : state) {
        const auto x = static_cast<float>(40 + (i * 37) % 1200);
        const auto y = static_cast<float>(40 + (i * 53) % 360);
        ++i;
        if (!terrain.getWorldCoordsUnderMouse(viewer, x, y, world))
            state.SkipWithError("no ground under the mouse");
        benchmark::DoNotOptimize(world);
    }
}

BENCHMARK(Height)->Name("Terrain/height")->Unit(benchmark::kMicrosecond);
BENCHMARK(Pick)->Name("Terrain/pick")->Unit(benchmark::kMicrosecond);

} // namespace
