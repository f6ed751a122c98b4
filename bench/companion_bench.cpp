#include <AxAlgorthm/AxConstants.h>
#include <AxAlgorthm/AxPlaneGeometry.h>
#include <AxBaseUI/AxPolygonTest.h>

#include <benchmark/benchmark.h>

#include <cmath>

namespace {
std::vector<QPointF> wavyRing(int count)
{
    std::vector<QPointF> ring;
    for (int i = 0; i < count; ++i) {
        const double angle = 2 * PI * i / count;
        const double radius = 0.02 + 0.002 * std::sin(400 * angle);
        ring.emplace_back(105.0 + radius * std::cos(angle), 37.0 + radius * std::sin(angle));
    }
    return ring;
}

void selfIntersection(benchmark::State& state)
{
    const std::vector<QPointF> ring = wavyRing(static_cast<int>(state.range(0)));
    for (auto _ : state)
        benchmark::DoNotOptimize(isSelfIntersection(ring));
}
BENCHMARK(selfIntersection)
    ->Name("Companion/selfIntersection")
    ->Arg(100)
    ->Arg(10000)
    ->Unit(benchmark::kMillisecond);

void strip(benchmark::State& state)
{
    std::vector<CAxPoint2D> line;
    line.reserve(static_cast<std::size_t>(state.range(0)));
    for (int i = 0; i < static_cast<int>(state.range(0)); ++i)
        line.emplace_back(500000.0 + 60.0 * i, 4100000.0 + 200.0 * std::sin(0.4 * i));
    std::vector<CAxPoint2D> outline;
    QList<int> indices;
    for (auto _ : state)
        benchmark::DoNotOptimize(CreateStripPolygon(line, 30.0, 30.0, outline, indices));
}
BENCHMARK(strip)->Name("Companion/strip")->Arg(20)->Arg(200)->Unit(benchmark::kMillisecond);
} // namespace
