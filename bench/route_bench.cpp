// Routes of tasks: a long one shown and in view, another entry point, and many with their labels.
#include "BenchGlobe.h"

#include "interaction/input/CAxEarthManipulator.h"
#include "interaction/objects/CAx3DGeometry.h"
#include "mission/routes/CAxTaskPolygon.h"
#include "viewer/CAxEarthViewer.h"

#include <AxData/CAxBlockManager.h>
#include <AxData/CAxTask.h>

#include <benchmark/benchmark.h>

#include <QCoreApplication>

#include <memory>
#include <vector>

namespace {
// The middle of the view from 20 km, and the height of its ground, metres.
constexpr double kLng = -105.0;
constexpr double kLat = 37.4;
constexpr double kGround = 3000.0;

/// Rows of so many points over the middle of the view.
struct LongTask : CAxTask
{
    using CAxTask::CAxTask;
    QList<CAxVector3D> ComputeRoute(int, QList<QPair<int, CAxVector3D>>& markers, CAxBlock::EBlockType, int,
                                    int) override
    {
        for (int i = 0; i < 4; ++i)
            markers += {i, route[i * (route.size() - 1) / 3]};
        return route;
    }
    QList<CAxVector3D> route;
};

/// A block of so many degrees with a task.
struct Planned
{
    CAxBlock* block = nullptr;
    std::unique_ptr<CAxTaskPolygon> route;
};

template <typename Task>
Planned plan(const QString& id, double lng, double lat, double half, Task** made = nullptr)
{
    Planned planned;
    planned.block = CAxBlockManager::instance().AddBlock(id, CAxBlock::PolygonBlock);
    planned.block->SetAnchor({{lng - half, lat - half},
                              {lng + half, lat - half},
                              {lng + half, lat + half},
                              {lng - half, lat + half}});
    planned.block->SetAverageAltitude(kGround);
    auto* object = qobject_cast<CAx3DGeometry*>(bench::globe().ImportShapeNode(id));
    auto task = std::make_unique<Task>("task" + id, "Task " + id, planned.block->GetTaskPara());
    if (made)
        *made = task.get();
    planned.block->AddTask(std::move(task));
    planned.route = std::make_unique<CAxTaskPolygon>(&bench::globe(), object);
    planned.route->SetTaskID("task" + id);
    object->AddTask(planned.route.get());
    return planned;
}

void clearRoutes()
{
    bench::globe().RemoveAllHanderAdapter(true);
    CAxBlockManager::instance().DeleteAllBlocks();
}

Planned longRoute(int points)
{
    LongTask* task = nullptr;
    Planned planned = plan<LongTask>("long", kLng, kLat, 0.03, &task);
    constexpr int kRow = 500;
    for (int i = 0; i < points; ++i) {
        const int row = i / kRow;
        const int column = row % 2 ? kRow - 1 - i % kRow : i % kRow;
        task->route +=
            CAxVector3D(kLat - 0.03 + 0.06 * row * kRow / points, kLng - 0.03 + 0.06 * column / kRow, 0.0);
    }
    return planned;
}

constexpr int kPoints = 100000;

void settle()
{
    bench::waitFor([] { return bench::globe().IsPictureComplete(); }, 60000);
    for (int i = 0; i < 50; ++i)
        bench::frameMilliseconds();
}

/// Until the frame that shows it has been drawn.
void RouteShow(benchmark::State& state)
{
    bench::goTo(bench::kOblique20km);
    Planned planned = longRoute(kPoints);
    for (auto _ : state) {
        planned.route->SetEntryPoint(static_cast<int>(state.iterations() % 4));
        bench::frameMilliseconds();
    }
    planned.route.reset();
    clearRoutes();
}
BENCHMARK(RouteShow)->Name("Route/show")->Unit(benchmark::kMillisecond);

/// Blocks with and without their routes.
void measureRoutes(benchmark::State& state, const std::function<std::vector<Planned>()>& make)
{
    bench::goTo(bench::kOblique20km);
    const double empty = bench::median(60, bench::frameMilliseconds);
    std::vector<Planned> planned = make();
    settle();
    const double without = bench::median(60, bench::frameMilliseconds);
    for (const Planned& one : planned)
        one.route->SetEntryPoint(0);
    settle();
    double full = 0.0;
    for (auto _ : state) {
        full = bench::median(60, bench::frameMilliseconds);
        state.SetIterationTime(full / 1e3);
    }
    state.counters["empty_ms"] = empty;
    state.counters["without_ms"] = without;
    state.counters["ratio"] = full / without;
    planned.clear();
    clearRoutes();
}

void RouteFrame(benchmark::State& state)
{
    measureRoutes(state, [] {
        std::vector<Planned> planned;
        planned.push_back(longRoute(kPoints));
        return planned;
    });
}
BENCHMARK(RouteFrame)->Name("Route/frame")->Iterations(1)->UseManualTime()->Unit(benchmark::kMillisecond);

/// Of a survey of 10 square kilometres, planned and drawn anew.
void RouteEntry(benchmark::State& state)
{
    bench::goTo(bench::kOblique20km);
    Planned planned = plan<CAxTask>("entry", kLng, kLat, 0.0158);
    for (auto _ : state) {
        planned.route->SetEntryPoint(static_cast<int>(state.iterations() % 4));
        bench::frameMilliseconds();
    }
    state.counters["points"] =
        static_cast<double>(planned.route->GetGeometry() ? planned.route->GetGeometry()->size() : 0);
    planned.route.reset();
    clearRoutes();
}
BENCHMARK(RouteEntry)->Name("Route/entry")->Unit(benchmark::kMillisecond);

void RouteTasks100(benchmark::State& state)
{
    measureRoutes(state, [] {
        std::vector<Planned> planned;
        for (int i = 0; i < 100; ++i) {
            planned.push_back(plan<CAxTask>(QString::number(i), kLng + (i % 10 - 4.5) * 0.012,
                                            kLat + (i / 10 - 4.5) * 0.012, 0.005));
        }
        return planned;
    });
}
BENCHMARK(RouteTasks100)
    ->Name("Route/tasks100")
    ->Iterations(1)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
} // namespace
