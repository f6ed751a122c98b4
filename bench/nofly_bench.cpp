// No-fly zones: reading their file, cutting lifts out, testing areas, the pass with each move of the camera,
// what is under the mouse, the memory they take, and what the thread costs that has nothing to do.
#include "BenchGlobe.h"
#include "BenchZones.h"

#include "analysis/CAxAncillaryProcess.h"
#include "analysis/zones/AxNearZones.h"
#include "analysis/zones/AxNoflyZones.h"
#include "analysis/zones/CAxAreaIntersectOperate.h"
#include "interaction/objects/CAx3DGeometry.h"
#include "viewer/CAxEarthViewer.h"

#include <AxData/CAxBlockManager.h>
#include <AxData/CAxNoflyZoneMgr.h>

#include <benchmark/benchmark.h>
#include <osg/Math>
#include <osg/OperationThread>

#include <QCoreApplication>

#include <chrono>
#include <cmath>
#include <ctime>
#include <thread>
#if defined(__GLIBC__)
#include <malloc.h>
#endif

using osgEarth::Symbology::Polygon;

namespace {

void Clip(benchmark::State& state)
{
    const QList<QVariant> zones = bench::zoneRows();
    const QList<QVariant> lifts = bench::liftRows();
    for (auto _ : state)
        benchmark::DoNotOptimize(AxReadZones(zones, lifts));
}
BENCHMARK(Clip)->Name("NoFly/clip")->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime()->UseRealTime();

// All that start-up does with the file: open, read, seal, clip, and the outlines for the workers.
void Load(benchmark::State& state)
{
    const QString file = bench::zoneFile();
    for (auto _ : state) {
        CAxNoflyZoneMgr manager;
        AxNoflyZones zones;
        if (!AxLoadZones(manager, file, zones))
            state.SkipWithError("the file does not load");
        benchmark::DoNotOptimize(AxZoneIndex(zones).Outlines().data());
    }
}
BENCHMARK(Load)->Name("NoFly/load")->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime()->UseRealTime();

osg::ref_ptr<Polygon> area(double longitude, double latitude, double degrees, int corners)
{
    osg::ref_ptr<Polygon> ring = new Polygon;
    for (int i = 0; i < corners; ++i) {
        const double angle = 2.0 * osg::PI * i / corners;
        ring->push_back(longitude + degrees * std::cos(angle), latitude + degrees * std::sin(angle));
    }
    return ring;
}

double millisecondsSince(std::chrono::steady_clock::time_point begin)
{
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin).count();
}

/// What a test costs whose workers have no zones: threads made, started, waited for and ended.
double threadMilliseconds()
{
    constexpr int count = 4;
    const osg::ref_ptr<Polygon> anywhere = area(0.0, 0.0, 0.1, 4);
    AxPendingWorkers unfinished;
    std::vector<osg::ref_ptr<CAxAreaIntersectOperate>> workers;
    workers.reserve(count);
    for (int i = 0; i < count; ++i)
        workers.emplace_back(new CAxAreaIntersectOperate(nullptr, nullptr));
    const auto begin = std::chrono::steady_clock::now();
    unfinished.Set(count);
    std::vector<osg::ref_ptr<osg::OperationThread>> threads;
    for (const auto& worker : workers) {
        worker->SetJob(*anywhere, unfinished);
        threads.emplace_back(new osg::OperationThread);
        threads.back()->add(worker);
        threads.back()->startThread();
    }
    unfinished.Wait();
    threads.clear();
    return millisecondsSince(begin);
}

void Intersect(benchmark::State& state)
{
    CAxAncillaryProcess& process = *bench::globe().GetAncillaryProcess();
    // A block of some kilometres, at places all over the globe.
    std::vector<osg::ref_ptr<Polygon>> areas;
    areas.reserve(64);
    for (int i = 0; i < 64; ++i)
        areas.push_back(area(-170.0 + 5.3 * i, -50.0 + 1.9 * i, 0.03, 100));
    std::size_t next = 0;
    int met = 0;
    const auto begin = std::chrono::steady_clock::now();
    for (auto _ : state) {
        QStringList ids;
        met += process.Intersection(areas[next++ % areas.size()], ids, false);
    }
    benchmark::DoNotOptimize(met);
    const double each = millisecondsSince(begin) / static_cast<double>(state.iterations());
    state.counters["threads_share"] = bench::median(101, threadMilliseconds) / each;
}
BENCHMARK(Intersect)->Name("NoFly/intersect")->Unit(benchmark::kMillisecond)->UseRealTime();

void Near(benchmark::State& state)
{
    const AxZoneIndex index(AxReadZones(bench::zoneRows(), {}));
    AxNearZones zones(index);
    int step = 0;
    for (auto _ : state) {
        const osgEarth::Viewpoint viewpoint("", -100.0 + 0.25 * (++step % 800), 20.0, 0.0, 0.0, -90.0, 1e5);
        zones.Update(viewpoint, [](const QString&, const osg::Vec2d&, bool) {});
    }
}
BENCHMARK(Near)->Name("NoFly/near")->Unit(benchmark::kMillisecond);

// The zones under the mouse, at places of which every other one lies in a zone.
void HoverZones(benchmark::State& state)
{
    const AxZoneIndex index(AxReadZones(bench::zoneRows(), bench::liftRows()));
    std::vector<QPointF> places;
    const std::vector<AxZoneOutline>& zones = index.Outlines();
    for (std::size_t i = 0; i < zones.size(); i += 50) {
        places.push_back(zones[i].bounds.center() + QPointF(0.02, 0.0));
        places.emplace_back(-170.0 + std::fmod(0.77 * static_cast<double>(i), 340.0), 20.0);
    }
    std::size_t next = 0;
    int met = 0;
    for (auto _ : state) {
        const QPointF& place = places[next++ % places.size()];
        met += index.At(place.x(), place.y()).size();
    }
    state.counters["zones_each"] = static_cast<double>(met) / static_cast<double>(state.iterations());
}
BENCHMARK(HoverZones)->Name("NoFly/hover")->Unit(benchmark::kMicrosecond);

/// What is allocated now, in megabytes; 0 where the C library does not tell.
double heapMegabytes()
{
#if defined(__GLIBC__)
    constexpr double bytesPerMegabyte = 1e6;
    return static_cast<double>(mallinfo2().uordblks) / bytesPerMegabyte;
#else
    return 0.0;
#endif
}

// What the shipped zones take in memory once they are loaded.
void Memory(benchmark::State& state)
{
    for (auto _ : state) {
        CAxNoflyZoneMgr manager;
        AxNoflyZones zones;
        const double before = heapMegabytes();
        if (!AxLoadZones(manager, QCoreApplication::applicationDirPath() + QStringLiteral("/NoflyZone.db"),
                         zones))
            state.SkipWithError("the file does not load");
        const double loaded = heapMegabytes();
        const AxZoneIndex index(zones);
        AxNearZones near(index);
        benchmark::DoNotOptimize(near);
        state.counters["zones_MB"] = loaded - before;
        state.counters["index_MB"] = heapMegabytes() - loaded;
    }
}
BENCHMARK(Memory)->Name("NoFly/memory")->Iterations(1)->Unit(benchmark::kMillisecond);

// The whole process while it draws nothing: the thread costs no more than that.
void Idle(benchmark::State& state)
{
    CAxAncillaryProcess& process = *bench::globe().GetAncillaryProcess();
    process.SetCurrViewPort(osgEarth::Viewpoint("", 0.0, 0.0, 0.0, 0.0, -90.0, 1e6));
    bench::goTo(bench::kSpace);
    constexpr double seconds = 10.0;
    double share = 0.0;
    for (auto _ : state) {
        // On Linux the clock of all threads of the process.
        const std::clock_t before = std::clock();
        std::this_thread::sleep_for(std::chrono::duration<double>(seconds));
        share = static_cast<double>(std::clock() - before) / CLOCKS_PER_SEC / seconds;
    }
    state.counters["percent"] = 100.0 * share;
}
BENCHMARK(Idle)->Name("NoFly/idle")->Unit(benchmark::kMillisecond)->Iterations(1)->UseRealTime();

void CheckArea(benchmark::State& state)
{
    // Among zones, but over none of them.
    constexpr double degrees = 0.05;
    constexpr int corners = 1000;
    CAxEarthViewer& globe = bench::globe();
    QStringList ids;
    double longitude = -95.0;
    while (globe.GetAncillaryProcess()->Intersection(area(longitude, 40.0, degrees, corners), ids, false))
        longitude += 0.1;
    const osg::ref_ptr<Polygon> free = area(longitude, 40.0, degrees, corners);
    QList<QPointF> ring;
    for (const osg::Vec3d& corner : free->asVector())
        ring += QPointF(corner.x(), corner.y());
    CAxBlockManager::instance().AddBlock("large", CAxBlock::PolygonBlock)->SetAnchor(ring);
    auto* const block = qobject_cast<CAx3DGeometry*>(globe.ImportShapeNode("large"));
    int verdict = 1;
    for (auto _ : state)
        verdict = std::min(verdict, block->CheckGeometry());
    if (verdict != 1)
        state.SkipWithError("the block is refused");
    state.counters["zones_near"] =
        static_cast<double>(globe.GetAncillaryProcess()->ZonesNear(longitude, 40.0, 28000.0).size());
    globe.RemoveAllHanderAdapter(true);
    CAxBlockManager::instance().DeleteAllBlocks();
}
BENCHMARK(CheckArea)->Name("NoFly/check")->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace
