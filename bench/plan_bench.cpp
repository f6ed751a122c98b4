// How long a route takes to plan: a pilot changes a value and sees the route change.
#include <AxData/planner/AxPlanCoverage.h>
#include <AxData/planner/AxPlanner.h>

#include <benchmark/benchmark.h>

#include <cmath>

namespace {
constexpr double kBlockLongitude = -105.0;
constexpr double kBlockLatitude = 37.4;

/// A square of so many square kilometres, or a star of the same size.
QList<QPointF> blockOf(double squareKilometres, int corners, double inner)
{
    constexpr double kPi = 3.14159265358979323846;
    const double size = std::sqrt(0.5 * squareKilometres) / 111.32;
    QList<QPointF> ring;
    for (int i = 0; i < corners; ++i) {
        const double angle = 2.0 * kPi * (i + 0.5) / corners;
        const double away = size * (i % 2 ? inner : 1.0);
        ring += QPointF(kBlockLongitude + away * std::cos(angle) / std::cos(kBlockLatitude * kPi / 180.0),
                        kBlockLatitude + away * std::sin(angle));
    }
    return ring;
}

AxPlanRequest requestOver(const QList<QPointF>& ring)
{
    AxPlanRequest request;
    request.outline = ring;
    request.height = 120.0;
    request.sideOverlap = 0.7;
    request.forwardOverlap = 0.8;
    return request;
}

std::optional<double> hills(double longitude, double latitude)
{
    return 2500.0 + 200.0 * std::sin(longitude * 500.0) * std::cos(latitude * 700.0);
}

void plan(benchmark::State& state, const AxPlanRequest& request)
{
    AxPlanResult result;
    for (auto _ : state) {
        result = AxPlanRoute(request);
        benchmark::DoNotOptimize(result);
    }
    if (!result.IsPlanned())
        state.SkipWithError("no route");
    state.counters["passes"] = result.figures.passes;
    state.counters["photos"] = result.figures.photos;
    state.counters["km2"] = result.figures.area / 1e6;
}

void Area10(benchmark::State& state)
{
    plan(state, requestOver(blockOf(10.0, 4, 1.0)));
}
BENCHMARK(Area10)->Name("Plan/area10")->Unit(benchmark::kMillisecond);

void Area1000(benchmark::State& state)
{
    plan(state, requestOver(blockOf(1000.0, 4, 1.0)));
}
BENCHMARK(Area1000)->Name("Plan/area1000")->Unit(benchmark::kMillisecond);

void Concave(benchmark::State& state)
{
    plan(state, requestOver(blockOf(10.0, 200, 0.5)));
}
BENCHMARK(Concave)->Name("Plan/concave")->Unit(benchmark::kMillisecond);

void Terrain(benchmark::State& state)
{
    AxPlanRequest request = requestOver(blockOf(10.0, 4, 1.0));
    request.heights = AxPlanRequest::Heights::Terrain;
    request.clearance = 100.0;
    request.ground = hills;
    plan(state, request);
}
BENCHMARK(Terrain)->Name("Plan/terrain")->Unit(benchmark::kMillisecond);

/// Home 60 km away, and as many no-fly zones around airfields in between as in a dense region.
void Zones(benchmark::State& state)
{
    AxPlanRequest request = requestOver(blockOf(10.0, 4, 1.0));
    request.home = QPointF(kBlockLongitude + 0.5, kBlockLatitude + 0.35);
    request.goesRoundZones = true;
    std::size_t asked = 0;
    request.zones = [&asked](double longitude, double latitude, double metres) {
        constexpr double kApart = 0.17;  // degrees
        constexpr double kRadius = 0.06; // degrees
        constexpr int kCorners = 72;
        const double reach = metres / 80000.0 + kRadius;
        std::vector<AxPlanZone> zones;
        for (double y = kApart * std::floor((latitude - reach) / kApart); y < latitude + reach; y += kApart)
            for (double x = kApart * std::floor((longitude - reach) / kApart); x < longitude + reach;
                 x += kApart) {
                AxPlanZone zone;
                for (int i = 0; i < kCorners; ++i)
                    zone.ring +=
                        QPointF(x + kRadius * std::sin(0.0873 * i), y + kRadius * std::cos(0.0873 * i));
                zones.push_back(zone);
            }
        asked = zones.size();
        return zones;
    };
    plan(state, request);
    state.counters["zones"] = static_cast<double>(asked);
}
BENCHMARK(Zones)->Name("Plan/zones")->Unit(benchmark::kMillisecond);

/// What the photos really show of each 5 m of 10 square kilometres.
void Coverage(benchmark::State& state)
{
    AxPlanRequest request = requestOver(blockOf(10.0, 4, 1.0));
    request.meanGround = 2500.0;
    request.height = 400.0;
    request.ground = hills;
    const AxPlanResult planned = AxPlanRoute(request);
    const std::atomic<bool> isOff{false};
    AxPlanCoverage coverage;
    for (auto _ : state)
        coverage = AxCoverageOf(request, planned, 5.0, isOff);
    state.counters["cells"] = static_cast<double>(coverage.photos.size());
    state.counters["least"] = coverage.leastPhotos;
}
BENCHMARK(Coverage)->Name("Plan/coverage")->Unit(benchmark::kMillisecond);
} // namespace
