// A standing frame at the four tour views, against a plain static scene with
// the same triangles and as many equal textures, drawn in the same run.
#include "BenchGlobe.h"
#include "StaticScene.h"

#include "viewer/CAxEarthViewer.h"

#include <benchmark/benchmark.h>
#include <osgViewer/Viewer>

namespace {

constexpr int kFrames = 60;

void Frame(benchmark::State& state, bench::View view)
{
    bench::goTo(view);
    osgViewer::Viewer& viewer = *bench::globe().getOSGViewer();
    double ours = 0.0;
    for (auto _ : state) {
        ours = bench::median(kFrames, bench::frameMilliseconds);
        state.SetIterationTime(ours / 1e3);
    }
    const bench::StaticScene scene = bench::copyDrawnTerrain(viewer);
    const double reference = bench::staticFrameMilliseconds(scene, *viewer.getCamera(), kFrames);
    state.counters["reference_ms"] = reference;
    state.counters["ratio"] = ours / reference;
    state.counters["triangles"] = scene.triangles;
    state.counters["textures"] = scene.textures;
}

BENCHMARK_CAPTURE(Frame, space, bench::kSpace)
    ->Name("Frame/space")
    ->Iterations(1)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Frame, range350km, bench::kRange350km)
    ->Name("Frame/range350km")
    ->Iterations(1)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Frame, oblique20km, bench::kOblique20km)
    ->Name("Frame/oblique20km")
    ->Iterations(1)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Frame, near500m, bench::kNear500m)
    ->Name("Frame/near500m")
    ->Iterations(1)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

} // namespace
