// A strip along a road of a thousand points: its band, and a vertex of it that is dragged.
#include "BenchGlobe.h"

#include "interaction/objects/CAxOsgDrawLine.h"
#include "viewer/CAxEarthViewer.h"

#include <AxData/CAxBlockManager.h>

#include <benchmark/benchmark.h>

#include <cmath>

namespace {

constexpr int kRoadPoints = 1000;

/// Winds through the middle of the view from 20 km; its legs are some 60 m long.
CAxOsgDrawLine* importRoad()
{
    QList<QPointF> road;
    for (int i = 0; i < kRoadPoints; ++i) {
        const double along = 0.0007 * i;
        road += QPointF(-105.35 + along, 37.4 + 0.01 * std::sin(40.0 * along));
    }
    CAxBlock* block = CAxBlockManager::instance().AddBlock("road", CAxBlock::StripBlock);
    block->SetAnchor(road);
    block->GetTaskPara()->SetBandingOffset(20.0, 30.0);
    return qobject_cast<CAxOsgDrawLine*>(bench::globe().ImportShapeNode("road"));
}

void dropRoad()
{
    bench::globe().RemoveAllHanderAdapter(true);
    CAxBlockManager::instance().DeleteAllBlocks();
}

/// Other widths, until the band with its fill lies on the ground.
void StripBand(benchmark::State& state)
{
    bench::goTo(bench::kOblique20km);
    CAxOsgDrawLine* const road = importRoad();
    double width = 20.0;
    for (auto _ : state)
        road->SetWidth(width = width > 100.0 ? 20.0 : width + 1.0, 30.0);
    dropRoad();
}
BENCHMARK(StripBand)->Name("Strip/band")->Unit(benchmark::kMillisecond);

/// A step of a drag of a vertex in its middle.
void StripDrag(benchmark::State& state)
{
    bench::goTo(bench::kOblique20km);
    CAxOsgDrawLine* const road = importRoad();
    constexpr int kDragged = kRoadPoints / 2;
    const osg::Vec3d from = road->GetAnchor()[kDragged];
    double aside = 0.0;
    for (auto _ : state) {
        aside = aside > 0.0005 ? 0.0 : aside + 0.00001;
        road->GetAnchor()[kDragged].set(from.x(), from.y() + aside, from.z());
        road->slotPointMoved(from.x(), from.y() + aside, from.z(), kDragged);
    }
    road->CancelHandle();
    dropRoad();
}
BENCHMARK(StripDrag)->Name("Strip/drag")->Unit(benchmark::kMillisecond);

} // namespace
