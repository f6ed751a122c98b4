// A recorded flight of a million points: a step of the scrub bar, to any place of it.
#include "BenchGlobe.h"

#include "mission/aircraft/CAxUavNode.h"
#include "viewer/CAxEarthViewer.h"

#include <AxTelemetry/record/AxReplaySource.h>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <random>

namespace {
constexpr int kFlightPoints = 1000000;
constexpr quint64 kFlightStart = 1700000000000;

/// At 50 Hz, in circles over the middle of the view; a photo a second, a state a second.
std::shared_ptr<AxFlightRecord> longFlight()
{
    auto flight = std::make_shared<AxFlightRecord>();
    flight->Reserve(kFlightPoints);
    for (int i = 0; i < kFlightPoints; ++i) {
        const quint64 time = kFlightStart + 20 * quint64(i);
        AxFlightSample sample;
        sample.time = time;
        sample.longitude = -105.0 + 0.02 * std::cos(0.0005 * i) + 1e-9 * i;
        sample.latitude = 37.4 + 0.02 * std::sin(0.0005 * i);
        sample.altitude = 3500.0;
        sample.yaw = 1.0f;
        flight->AddSample(sample);
        if (i % 50 != 0)
            continue;
        AxPhotoRecord photo;
        photo.index = i / 50;
        photo.time = time;
        photo.longitude = sample.longitude;
        photo.latitude = sample.latitude;
        photo.altitude = sample.altitude;
        flight->AddPhoto(photo);
        AxFlightState state;
        state.time = time;
        state.state.mode = QStringLiteral("Auto");
        flight->AddState(state);
    }
    return flight;
}

double millisecondsOf(const std::function<void()>& work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

/// From the bar's movement until the frame that shows the aircraft and the line there has been drawn.
void ReplayScrub(benchmark::State& state)
{
    bench::goTo(bench::kOblique20km);
    const double empty = bench::median(60, bench::frameMilliseconds);
    AxReplaySource source(longFlight(), nullptr, AxReplaySource::Clock::Driven);
    CAxUavNode* const aircraft = bench::globe().AddAircraft(&source, PlaneFixedWing);
    if (!aircraft)
        return state.SkipWithError("no aircraft");
    std::vector<CAxVector3D> points;
    for (const AxFlightSample& sample : source.Flight().Samples())
        points.emplace_back(sample.longitude, sample.latitude, sample.altitude);
    aircraft->CreateReplayFlightLine(points);
    std::vector<AxReplayPhoto> photos;
    for (const AxPhotoRecord& photo : source.Flight().Photos())
        photos.push_back({photo.index, {photo.longitude, photo.latitude, photo.altitude}});
    aircraft->SetReplayPhotos(photos);
    bench::globe().SetDisplayShootPoint(true);
    QObject::connect(&source, &AxReplaySource::signalIndex, aircraft, &CAxUavNode::SetPathIndexMask);
    QObject::connect(&source, &AxReplaySource::signalPhotosTo, aircraft, &CAxUavNode::ShowReplayPhotosTo);
    std::mt19937 random(7);
    std::uniform_int_distribution<int> anywhere(0, kFlightPoints - 1);
    double told = 0.0;
    double slowest = 0.0;
    double wholes = 0.0;
    for (auto _ : state) {
        const int index = anywhere(random);
        const double jump = millisecondsOf([&] { source.SetIndex(index); });
        const double whole = jump + bench::frameMilliseconds();
        told += jump;
        wholes += whole;
        slowest = std::max(slowest, whole);
        state.SetIterationTime(whole / 1e3);
    }
    state.counters["source_ms"] = told / double(state.iterations());
    state.counters["over_empty_ms"] = wholes / double(state.iterations()) - empty;
    state.counters["slowest_ms"] = slowest;
    state.counters["photos"] = double(photos.size());
    state.counters["empty_ms"] = empty;
    bench::globe().SetDisplayShootPoint(false);
    bench::globe().ClearUavMarker();
}
BENCHMARK(ReplayScrub)->Name("Replay/scrub")->UseManualTime()->Unit(benchmark::kMillisecond);
} // namespace
