// Whether flying about leaves anything behind in memory. Reads /proc, so it gives
// figures on Linux only.
#include "BenchGlobe.h"

#include "interaction/input/CAxEarthManipulator.h"
#include "viewer/CAxEarthViewer.h"

#include <benchmark/benchmark.h>

#include <QElapsedTimer>
#include <QFile>

#include <array>

namespace {

double residentMegabytes()
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return 0.0;
    for (const QByteArray& line : status.readAll().split('\n'))
        if (line.startsWith("VmRSS:"))
            return line.mid(6).trimmed().split(' ').first().toDouble() / 1024.0;
    return 0.0;
}

/// Far from each other; by the fiftieth flight each has been seen often.
osgEarth::Viewpoint farPlace(int flight)
{
    constexpr std::array<std::array<double, 2>, 8> places{{{10.0, 46.5},
                                                           {-105.0, 37.4},
                                                           {138.7, 35.4},
                                                           {-70.0, -33.0},
                                                           {86.9, 28.0},
                                                           {37.4, -3.1},
                                                           {170.1, -43.6},
                                                           {-151.0, 63.1}}};
    const auto& place = places[static_cast<std::size_t>(flight) % places.size()];
    // Not the very spot of the last time.
    return osgEarth::Viewpoint("far", place[0] + 0.01 * (flight % 17), place[1], 2000.0, 0.0, -40.0, 30000.0);
}

void Flights(benchmark::State& state)
{
    constexpr int kWarm = 50;
    constexpr int kFlights = 200;
    bench::goTo(bench::kSpace);
    for (auto _ : state) {
        QElapsedTimer clock;
        clock.start();
        double warm = 0.0;
        for (int flight = 1; flight <= kFlights; ++flight) {
            bench::globe().getManipulator()->setViewpoint(farPlace(flight), 0.0);
            bench::waitFor([] { return bench::globe().IsPictureComplete(); }, 60000);
            if (flight == kWarm)
                warm = residentMegabytes();
        }
        const double last = residentMegabytes();
        state.SetIterationTime(static_cast<double>(clock.nsecsElapsed()) / 1e9);
        state.counters["after_50_MB"] = warm;
        state.counters["after_200_MB"] = last;
        state.counters["growth_MB"] = last - warm;
    }
}

BENCHMARK(Flights)->Name("Memory/flights")->Iterations(1)->UseManualTime()->Unit(benchmark::kMillisecond);

} // namespace
