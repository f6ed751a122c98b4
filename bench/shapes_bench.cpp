// Polygon blocks: a frame full of them, drawing and editing a large one, and
// thousands of them in the registry.
#include "BenchGlobe.h"

#include "interaction/editing/CAxHandleAdapterEditor.h"
#include "interaction/input/CAxEarthManipulator.h"
#include "interaction/objects/CAx3DGeometry.h"
#include "viewer/CAxEarthViewer.h"

#include <AxData/CAxBlockManager.h>

#include <benchmark/benchmark.h>
#include <osg/Math>

#include <QCoreApplication>

#include <cmath>
#include <functional>
#include <vector>

namespace {

// The middle of the view from 20 km.
constexpr double kLongitude = -105.0;
constexpr double kLatitude = 37.4;

QList<QPointF> circle(double lng, double lat, double degrees, int vertices)
{
    QList<QPointF> ring;
    for (int i = 0; i < vertices; ++i) {
        const double angle = 2.0 * osg::PI * i / vertices;
        ring += QPointF(lng + degrees * std::cos(angle), lat + degrees * std::sin(angle));
    }
    return ring;
}

CAx3DGeometry* import(const QString& id, const QList<QPointF>& ring)
{
    CAxBlockManager::instance().AddBlock(id, CAxBlock::PolygonBlock)->SetAnchor(ring);
    return qobject_cast<CAx3DGeometry*>(bench::globe().ImportShapeNode(id));
}

void clear()
{
    bench::globe().RemoveAllHanderAdapter(true);
    CAxBlockManager::instance().DeleteAllBlocks();
}

/// Rows of named blocks in the middle of the view; how they settle on the
/// ground is not measured.
void fill(int columns, int rows, double apart, double radius, int vertices)
{
    for (int i = 0; i < columns * rows; ++i) {
        const double column = i % columns - 0.5 * (columns - 1);
        const double row = i / columns - 0.5 * (rows - 1);
        import(QString::number(i),
               circle(kLongitude + column * apart, kLatitude + row * apart, radius, vertices));
    }
    // Until they have settled on the ground.
    bench::waitFor([] { return bench::globe().IsPictureComplete(); }, 60000);
    for (int i = 0; i < 100; ++i)
        bench::frameMilliseconds();
}

double frameOf(bench::View view)
{
    constexpr int kFrames = 60;
    bench::goTo(view);
    return bench::median(kFrames, bench::frameMilliseconds);
}

void measureBlocks(benchmark::State& state, const std::function<double()>& frame,
                   const std::function<void()>& make)
{
    const double empty = frame();
    make();
    double full = 0.0;
    for (auto _ : state) {
        full = frame();
        state.SetIterationTime(full / 1e3);
    }
    state.counters["empty_ms"] = empty;
    state.counters["ratio"] = full / empty;
    clear();
}

void Blocks200(benchmark::State& state)
{
    measureBlocks(
        state, [] { return frameOf(bench::kOblique20km); }, [] { fill(20, 10, 0.012, 0.005, 20); });
}
BENCHMARK(Blocks200)->Name("Shapes/blocks200")->Iterations(1)->UseManualTime()->Unit(benchmark::kMillisecond);

/// A project of a whole district: most blocks are a few pixels wide.
void Blocks2000(benchmark::State& state)
{
    measureBlocks(
        state, [] { return frameOf(bench::kOblique20km); }, [] { fill(50, 40, 0.005, 0.002, 20); });
}
BENCHMARK(Blocks2000)
    ->Name("Shapes/blocks2000")
    ->Iterations(1)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

/// The same from so far away that a block is a pixel or two.
void Blocks2000Far(benchmark::State& state)
{
    const auto frame = [] {
        bench::globe().getManipulator()->setViewpoint(
            osgEarth::Viewpoint("far", kLongitude, kLatitude, 0.0, 0.0, -90.0, 350000.0), 0.0);
        bench::waitFor([] { return bench::globe().IsPictureComplete(); }, 60000);
        return bench::median(60, bench::frameMilliseconds);
    };
    measureBlocks(state, frame, [] { fill(50, 40, 0.005, 0.002, 20); });
}
BENCHMARK(Blocks2000Far)
    ->Name("Shapes/blocks2000far")
    ->Iterations(1)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

constexpr int kLarge = 1000;

/// One click more on a polygon that is being drawn.
void AddVertex(benchmark::State& state)
{
    CAxEarthViewer& globe = bench::globe();
    bench::goTo(bench::kOblique20km);
    const QList<QPointF> ring = circle(kLongitude, kLatitude, 0.02, kLarge);
    globe.SetToolType(ToolPolygonBlock);
    auto* block = qobject_cast<CAx3DGeometry*>(globe.createShapeNode());
    const auto pick = [&](int i) {
        block->slotPicked(osg::Vec3d(ring[i].x(), ring[i].y(), 3000.0), osg::Vec3d(1.0, 1.0, 1.0));
    };
    for (int i = 0; i + 1 < kLarge; ++i)
        pick(i);
    for (auto _ : state) {
        pick(kLarge - 1);
        state.PauseTiming();
        block->RemoveLastPoint();
        state.ResumeTiming();
    }
    globe.RemoveHanderAdapter(block, true);
    globe.SetToolType(ToolNavigate);
}
BENCHMARK(AddVertex)->Name("Shapes/addVertex")->Unit(benchmark::kMillisecond);

/// One step of the mouse with a corner in hand.
void DragVertex(benchmark::State& state)
{
    bench::goTo(bench::kOblique20km);
    CAx3DGeometry* block = import("large", circle(kLongitude, kLatitude, 0.02, kLarge));
    block->SetAnchorEditorEnabled(true);
    constexpr int kCorner = 250;
    double way = 0.0;
    for (auto _ : state) {
        way += 1e-7;
        osg::Vec3d& corner = block->GetAnchor()[kCorner];
        corner.y() = kLatitude + 0.02 + way;
        block->slotPointMoved(corner.x(), corner.y(), corner.z(), kCorner);
    }
    block->CancelHandle();
    clear();
}
BENCHMARK(DragVertex)->Name("Shapes/dragVertex")->Unit(benchmark::kMillisecond);

void Check(benchmark::State& state)
{
    // A star, whose edges turn back and forth.
    QList<QPointF> star = circle(kLongitude, kLatitude, 0.02, kLarge);
    for (int i = 0; i < kLarge; i += 2)
        star[i] = 0.7 * star[i] + 0.3 * QPointF(kLongitude, kLatitude);
    CAx3DGeometry* block = import("large", star);
    for (auto _ : state)
        benchmark::DoNotOptimize(block->CheckGeometry());
    clear();
}
BENCHMARK(Check)->Name("Shapes/check")->Unit(benchmark::kMillisecond);

/// 10,000 objects entered, found by ID and by node, and removed with their records.
void Registry(benchmark::State& state)
{
    constexpr int kObjects = 10000;
    CAxEarthViewer& globe = bench::globe();
    for (auto _ : state) {
        state.PauseTiming();
        std::vector<CAx3DGeometry*> blocks;
        for (int i = 0; i < kObjects; ++i) {
            auto* block = new CAx3DGeometry(&globe, nullptr);
            block->GetAnchor() = {{1.0, 2.0, 0.0}, {1.1, 2.0, 0.0}, {1.0, 2.1, 0.0}};
            blocks.push_back(block);
        }
        state.ResumeTiming();
        for (CAx3DGeometry* block : blocks)
            globe.AddHandleAdapter(block);
        for (const CAx3DGeometry* block : blocks)
            benchmark::DoNotOptimize(globe.FindExistNode(block->GetHandleID()));
        for (CAx3DGeometry* block : blocks)
            globe.RemoveHanderAdapter(block, true);
    }
}
BENCHMARK(Registry)->Name("Shapes/registry")->Iterations(3)->Unit(benchmark::kMillisecond);

} // namespace
