// The town of olinda1.shp, 470 areas: from the file to the first picture with all of them as blocks.
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
} // namespace
