// From a jump to the complete picture at the four tour views. Each jump is the first of a new viewer, which
// stands on the other side of the globe, so that no tile of the view is there; the files are warm.
#include "BenchGlobe.h"

#include "interaction/input/CAxEarthManipulator.h"
#include "viewer/CAxEarthViewer.h"

#include <benchmark/benchmark.h>
#include <osgEarth/Viewpoint>
#include <QElapsedTimer>

namespace {

constexpr int kJumps = 3;

void standOppositeOf(const osgEarth::Viewpoint& view)
{
    const osg::Vec3d place = view.focalPoint()->vec3d();
    const osgEarth::Viewpoint opposite("", place.x() > 0.0 ? place.x() - 180.0 : place.x() + 180.0,
                                       -place.y(), 0.0, 0.0, -90.0, view.getRange());
    bench::globe().getManipulator()->setViewpoint(opposite, 0.0);
    bench::waitFor([] { return bench::globe().IsPictureComplete(); }, 60000);
}

void Settle(benchmark::State& state, bench::View view)
{
    const osgEarth::Viewpoint there = bench::viewpointOf(view);
    for (auto _ : state) {
        const double milliseconds = bench::median(kJumps, [&] {
            bench::close();
            standOppositeOf(there);
            bench::globe().SetStillPictureKept(true); // as every host has it
            QElapsedTimer clock;
            clock.start();
            bench::goTo(view);
            return static_cast<double>(clock.nsecsElapsed()) / 1e6;
        });
        state.SetIterationTime(milliseconds / 1e3);
    }
}

BENCHMARK_CAPTURE(Settle, space, bench::kSpace)
    ->Name("Tiles/settle/space")
    ->Iterations(1)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Settle, range350km, bench::kRange350km)
    ->Name("Tiles/settle/range350km")
    ->Iterations(1)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Settle, oblique20km, bench::kOblique20km)
    ->Name("Tiles/settle/oblique20km")
    ->Iterations(1)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Settle, near500m, bench::kNear500m)
    ->Name("Tiles/settle/near500m")
    ->Iterations(1)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

} // namespace
