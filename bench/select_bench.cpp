// Which of many outlines a frame that is drawn over the map meets.
#include "BenchGlobe.h"

#include "host/exchange/GeoBlocks.h"
#include "interaction/objects/AxBlockOperations.h"
#include "interaction/objects/CAxHandleAdapter.h"
#include "scene/shape/AxOutlinesInFrame.h"
#include "viewer/CAxEarthViewer.h"

#include <AxData/geofiles/AxGeoFile.h>

#include <benchmark/benchmark.h>
#include <osgViewer/Viewer>

#include <cmath>

namespace {

/// A grid of blocks of 8 corners below the view from 20 km, each 200 m wide.
std::vector<AxOutlineOnGlobe> outlinesInView(int count)
{
    std::vector<AxOutlineOnGlobe> outlines;
    const int side = static_cast<int>(std::ceil(std::sqrt(count)));
    constexpr int kCorners = 8;
    for (int i = 0; i < count; ++i) {
        AxOutlineOnGlobe outline;
        outline.closed = true;
        const double lng = -105.3 + 0.6 * (i % side) / side;
        const double lat = 37.2 + 0.4 * (i / side) / side;
        for (int corner = 0; corner < kCorners; ++corner) {
            const double angle = 2.0 * 3.14159265358979 * corner / kCorners;
            outline.places.emplace_back(lng + 0.001 * std::cos(angle), lat + 0.001 * std::sin(angle), 3000.0);
        }
        outlines.push_back(outline);
    }
    return outlines;
}

void SelectRubber(benchmark::State& state)
{
    bench::goTo(bench::kOblique20km);
    const osg::Camera& camera = *bench::globe().getOSGViewer()->getCamera();
    const osg::Matrixd toClip = camera.getViewMatrix() * camera.getProjectionMatrix();
    const osg::Vec3d eye = camera.getInverseViewMatrix().getTrans();
    const auto outlines = outlinesInView(static_cast<int>(state.range(0)));
    std::size_t met = 0;
    for (auto _ : state)
        met = AxOutlinesInFrame(outlines, toClip, eye, {{-0.5, -0.5}, {0.5, 0.5}}).size();
    state.counters["met"] = static_cast<double>(met);
    if (met == 0)
        state.SkipWithError("the frame meets nothing");
}

BENCHMARK(SelectRubber)->Name("Select/rubber")->Arg(10000)->Unit(benchmark::kMillisecond);

/// The same over blocks on the map, as a drawn frame goes on: it asks each for its outline and selects what
/// it meets.
void SelectFrame(benchmark::State& state)
{
    CAxEarthViewer& globe = bench::globe();
    bench::goTo(bench::kOblique20km);
    QVector<AxGeoShape> shapes;
    for (const AxOutlineOnGlobe& outline : outlinesInView(static_cast<int>(state.range(0)))) {
        AxGeoShape shape;
        shape.name = QStringLiteral("Block %1").arg(shapes.size());
        for (const osg::Vec3d& place : outline.places)
            shape.points += QPointF(place.x(), place.y());
        shapes += shape;
    }
    const QStringList made = globe.GetBlockOperations()->Replace(
        {}, GeoBlocks::RecordsOf(shapes, GeoChoice()), QStringLiteral("Import"));
    const osg::Camera& camera = *globe.getOSGViewer()->getCamera();
    const osg::Matrixd toClip = camera.getViewMatrix() * camera.getProjectionMatrix();
    const osg::Vec3d eye = camera.getInverseViewMatrix().getTrans();
    QStringList met;
    for (auto _ : state) {
        state.PauseTiming();
        globe.SelectBlocks({});
        state.ResumeTiming();
        std::vector<AxOutlineOnGlobe> outlines;
        for (const QString& id : made) {
            CAxHandleAdapter* object = globe.FindExistNode(id);
            outlines.push_back({object->Outline(), object->IsOutlineClosed()});
        }
        met.clear();
        for (const std::size_t i : AxOutlinesInFrame(outlines, toClip, eye, {{-0.5, -0.5}, {0.5, 0.5}}))
            met += made[static_cast<int>(i)];
        globe.SelectBlocks(met);
    }
    state.counters["selected"] = globe.GetMultiSelectAdapter().size();
    if (globe.GetMultiSelectAdapter().size() != met.size() || met.isEmpty())
        state.SkipWithError("what the frame meets is not selected");
    globe.DeleteBlocks(made);
}
BENCHMARK(SelectFrame)->Name("Select/frame")->Arg(2000)->Unit(benchmark::kMillisecond);

} // namespace
