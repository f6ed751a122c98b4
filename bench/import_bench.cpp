// Shapes that become blocks. The town of olinda1.shp, 470 areas: from the file to the first picture with all
// of them.
#include "BenchGlobe.h"

#include "host/exchange/GeoBlocks.h"
#include "interaction/input/CAxEarthManipulator.h"
#include "interaction/objects/AxBlockOperations.h"
#include "viewer/CAxEarthViewer.h"

#include <AxData/geofiles/AxGeoFile.h>

#include <benchmark/benchmark.h>

#include <QElapsedTimer>

#include <memory>

namespace {
void olinda(benchmark::State& state)
{
    CAxEarthViewer& globe = bench::globe();
    globe.getManipulator()->setViewpoint(osgEarth::Viewpoint("", -34.87, -8.0, 0.0, 0.0, -60.0, 12000.0),
                                         0.0);
    bench::frameMilliseconds();
    const auto milliseconds = [](const QElapsedTimer& clock) {
        return static_cast<double>(clock.nsecsElapsed()) / 1e6;
    };
    for (auto _ : state) {
        QElapsedTimer clock;
        clock.start();
        const AxGeoContent read = AxReadGeoFile(QStringLiteral(AX_BENCH_DATA "/olinda1.shp"));
        state.counters["read_ms"] = milliseconds(clock);
        const QStringList made = globe.GetBlockOperations()->Replace(
            {}, GeoBlocks::RecordsOf(read.shapes, GeoChoice()), QStringLiteral("Import"));
        bench::frameMilliseconds();
        state.SetIterationTime(milliseconds(clock) / 1e3);
        state.counters["blocks"] = made.size();
        globe.DeleteBlocks(made);
    }
}
BENCHMARK(olinda)->Name("Import/olinda")->Iterations(5)->UseManualTime()->Unit(benchmark::kMillisecond);

// What an import of so many shapes of one name takes until they are on the map.
void oneName(benchmark::State& state)
{
    CAxEarthViewer& globe = bench::globe();
    const auto count = static_cast<int>(state.range(0));
    constexpr int perRow = 200;
    constexpr double side = 0.001;
    for (auto _ : state) {
        QVector<AxGeoShape> shapes;
        for (int i = 0; i < count; ++i) {
            AxGeoShape shape;
            shape.name = QStringLiteral("Parcel");
            const QPointF at(-34.9 + 2.0 * side * (i % perRow), -8.0 + 2.0 * side * (i / perRow));
            shape.points = {at, at + QPointF(side, 0.0), at + QPointF(side, side), at + QPointF(0.0, side)};
            shapes += shape;
        }
        QElapsedTimer clock;
        clock.start();
        const QStringList made = globe.GetBlockOperations()->Replace(
            {}, GeoBlocks::RecordsOf(shapes, GeoChoice()), QStringLiteral("Import"));
        state.SetIterationTime(static_cast<double>(clock.nsecsElapsed()) / 1e9);
        state.counters["blocks"] = made.size();
        globe.DeleteBlocks(made);
    }
}
BENCHMARK(oneName)
    ->Name("Import/one_name")
    ->Arg(2000)
    ->Arg(20000)
    ->Iterations(1)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
} // namespace
