// Aircraft: a position told with a long trail behind it, an hour's flight in view, a fleet, a replay's bar.
#include "BenchGlobe.h"

#include "interaction/input/CAxEarthManipulator.h"
#include "mission/aircraft/AxTrailGeometry.h"
#include "mission/aircraft/CAxUavNode.h"
#include "scene/shape/AxDrawnGround.h"
#include "viewer/CAxEarthViewer.h"

#include <AxData/CAxControl.h>

#include <benchmark/benchmark.h>

#include <osg/Geode>
#include <osgEarth/MapNode>
#include <osgViewer/Viewer>

#include <QCoreApplication>
#include <QElapsedTimer>

#include <algorithm>
#include <cmath>
#include <vector>

namespace {
// The middle of the view from 20 km, and the height of its ground, metres.
constexpr double kFieldLng = -105.0;
constexpr double kFieldLat = 37.4;
constexpr double kHeight = 3200.0;
constexpr double kMetreNorth = 1.0 / 111000.0;
constexpr double kMetreEast = 1.0 / 88200.0;

/// Where a survey has come to after so many seconds at 25 m/s: rows of 6 km, 100 m apart, in gusts.
CAxVector3D surveyed(double seconds)
{
    constexpr double kRow = 6000.0, kApart = 100.0, kSpeed = 25.0;
    const double way = kSpeed * seconds;
    const double row = std::floor(way / kRow);
    const double along = way - row * kRow;
    const double x = std::fmod(row, 2.0) > 0.5 ? kRow - along : along;
    return {kFieldLng + (x - 0.5 * kRow + 0.3 * std::sin(3.1 * seconds)) * kMetreEast,
            kFieldLat + (row * kApart - 1000.0 + 0.3 * std::sin(2.3 * seconds)) * kMetreNorth,
            kHeight + std::sin(0.7 * seconds)};
}

void tell(CAxUavNode& aircraft, const CAxVector3D& place, quint64 time)
{
    QMetaObject::invokeMethod(&aircraft, "slotPositionChanged", Qt::DirectConnection,
                              Q_ARG(double, place.x()), Q_ARG(double, place.y()), Q_ARG(double, place.z()),
                              Q_ARG(quint64, time));
    QMetaObject::invokeMethod(&aircraft, "slotAttitudeChanged", Qt::DirectConnection,
                              Q_ARG(double, 0.1 * std::sin(0.001 * static_cast<double>(time))),
                              Q_ARG(double, 0.0), Q_ARG(double, 1.5), Q_ARG(quint64, time));
}

CAxUavNode& fly()
{
    CAxUavNode* aircraft = bench::globe().CreateUavMarker(nullptr, PlaneFixedWing);
    aircraft->SetFlightMode(true);
    return *aircraft;
}

/// One second of a flight at 50 Hz; microseconds of an update.
double second(CAxUavNode& aircraft, int index)
{
    constexpr int kHertz = 50;
    QElapsedTimer clock;
    clock.start();
    for (int i = 0; i < kHertz; ++i) {
        const double at = index + static_cast<double>(i) / kHertz;
        tell(aircraft, surveyed(at), static_cast<quint64>(1000.0 * at));
    }
    return static_cast<double>(clock.nsecsElapsed()) / 1e3 / kHertz;
}

void UavUpdate(benchmark::State& state)
{
    bench::goTo(bench::kOblique20km);
    for (auto _ : state) {
        constexpr int kShort = 20, kLong = 20000,
                      kSamples = 100; // seconds, seconds, seconds measured of each
        CAxUavNode* shorter = &fly();
        CAxUavNode* longer = &fly();
        for (int i = 0; i < kLong; ++i)
            second(*longer, i);
        // In turns, so that what else the machine does meets both alike.
        std::vector<double> few, many;
        for (int i = 0; i < kSamples; ++i) {
            shorter->ClearAllTrailLine();
            bench::globe().SetFocusAircraft(shorter);
            for (int k = 0; k < kShort; ++k)
                second(*shorter, k);
            few.push_back(second(*shorter, kShort));
            bench::globe().SetFocusAircraft(longer);
            many.push_back(second(*longer, kLong + i));
        }
        std::nth_element(few.begin(), few.begin() + kSamples / 2, few.end());
        std::nth_element(many.begin(), many.begin() + kSamples / 2, many.end());
        state.SetIterationTime(many[kSamples / 2] / 1e6);
        state.counters["vertices"] = longer->GetTrailVertexCount();
        state.counters["few_us"] = few[kSamples / 2];
        state.counters["ratio"] = many[kSamples / 2] / few[kSamples / 2];
    }
    bench::globe().ClearUavMarker();
}
BENCHMARK(UavUpdate)->Name("Uav/update")->Iterations(1)->UseManualTime()->Unit(benchmark::kMicrosecond);

constexpr int kHour = 3600;

double bytesPerVertex(const CAxUavNode& aircraft)
{
    std::size_t bytes = 0;
    const osg::Group* root = aircraft.GetNode()->asGroup();
    for (unsigned i = 0; i < root->getNumChildren(); ++i) {
        const osg::Geode* geode = root->getChild(i)->asGeode();
        for (unsigned k = 0; geode && k < geode->getNumDrawables(); ++k)
            if (const auto* piece = dynamic_cast<const AxTrailGeometry*>(geode->getDrawable(k)))
                bytes += piece->Bytes();
    }
    return static_cast<double>(bytes) / aircraft.GetTrailVertexCount();
}

/// Each second of it is drawn once.
void UavHour(benchmark::State& state)
{
    bench::goTo(bench::kOblique20km);
    for (auto _ : state) {
        CAxUavNode& aircraft = fly();
        std::vector<double> first, last;
        constexpr int kCompared = 300;
        for (int i = 0; i < kHour; ++i) {
            const double time = second(aircraft, i);
            if (i < kCompared)
                first.push_back(time);
            if (i >= kHour - kCompared)
                last.push_back(time);
            if (i % 20 == 0)
                bench::frameMilliseconds();
        }
        std::nth_element(first.begin(), first.begin() + kCompared / 2, first.end());
        std::nth_element(last.begin(), last.begin() + kCompared / 2, last.end());
        state.SetIterationTime(last[kCompared / 2] / 1e6);
        state.counters["start_us"] = first[kCompared / 2];
        state.counters["ratio"] = last[kCompared / 2] / first[kCompared / 2];
        state.counters["bytes"] = bytesPerVertex(aircraft);
    }
    bench::globe().ClearUavMarker();
}
BENCHMARK(UavHour)->Name("Uav/hour")->Iterations(1)->UseManualTime()->Unit(benchmark::kMicrosecond);

void UavTrail(benchmark::State& state)
{
    bench::goTo(bench::kOblique20km);
    const double empty = bench::median(80, bench::frameMilliseconds);
    CAxUavNode& aircraft = fly();
    for (int i = 0; i < kHour; ++i)
        second(aircraft, i);
    bench::frameMilliseconds();
    for (auto _ : state) {
        const double full = bench::median(80, bench::frameMilliseconds);
        state.SetIterationTime(full / 1e3);
        state.counters["empty_ms"] = empty;
        state.counters["ratio"] = full / empty;
    }
    bench::globe().ClearUavMarker();
}
BENCHMARK(UavTrail)->Name("Uav/trail")->Iterations(1)->UseManualTime()->Unit(benchmark::kMillisecond);

/// Each told at 10 Hz; a frame with what it takes to tell them, at 40 frames a second.
void UavFleet(benchmark::State& state)
{
    constexpr int kAircraft = 50, kFramesOfMessage = 4;
    bench::goTo(bench::kOblique20km);
    const double empty = bench::median(80, bench::frameMilliseconds);
    std::vector<CAxUavNode*> fleet;
    for (int i = 0; i < kAircraft; ++i) {
        fleet.push_back(&fly());
        for (int k = 0; k < 60; ++k)
            tell(*fleet.back(), surveyed(60.0 * i + 0.1 * k), static_cast<quint64>(100 * k));
    }
    int frame = 0;
    const auto fourFrames = [&] {
        QElapsedTimer clock;
        clock.start();
        for (int i = 0; i < kFramesOfMessage; ++i, ++frame) {
            for (int k = frame % kFramesOfMessage; k < kAircraft; k += kFramesOfMessage)
                tell(*fleet[static_cast<std::size_t>(k)], surveyed(60.0 * k + 6.0 + 0.025 * frame),
                     static_cast<quint64>(25 * frame));
            bench::frameMilliseconds();
        }
        return static_cast<double>(clock.nsecsElapsed()) / 1e6 / kFramesOfMessage;
    };
    for (auto _ : state) {
        const double full = bench::median(40, fourFrames);
        state.SetIterationTime(full / 1e3);
        state.counters["empty_ms"] = empty;
        state.counters["ratio"] = full / empty;
    }
    bench::globe().ClearUavMarker();
}
BENCHMARK(UavFleet)->Name("Uav/fleet50")->Iterations(1)->UseManualTime()->Unit(benchmark::kMillisecond);

/// The ground below each of fifty that fly on by a metre: as drawn, and from the elevation data.
void UavGround(benchmark::State& state)
{
    constexpr int kAircraft = 50, kSteps = 200;
    bench::goTo(bench::kOblique20km);
    const osg::ref_ptr<osgEarth::MapNode> map = bench::globe().getMapNode();
    const AxPlanGround ground = CAxControl::GetInstance()->GetGround();
    const auto each = [&](auto&& read, std::vector<double>& times) {
        for (int step = 0; step < kSteps; ++step)
            for (int i = 0; i < kAircraft; ++i) {
                const CAxVector3D at = surveyed(60.0 * i + 0.04 * step);
                QElapsedTimer clock;
                clock.start();
                benchmark::DoNotOptimize(read(at.x(), at.y()));
                times.push_back(static_cast<double>(clock.nsecsElapsed()) / 1e3);
            }
        std::sort(times.begin(), times.end());
    };
    for (auto _ : state) {
        std::vector<double> drawn, data;
        each([&](double x, double y) { return AxLoadedHeight(*map, x, y); }, drawn);
        each(ground, data);
        state.SetIterationTime(data[data.size() / 2] / 1e6);
        state.counters["drawn_us"] = drawn[drawn.size() / 2];
        state.counters["drawn_slowest_us"] = drawn.back();
        state.counters["slowest_us"] = data.back();
    }
}
BENCHMARK(UavGround)->Name("Uav/ground50")->Iterations(1)->UseManualTime()->Unit(benchmark::kMicrosecond);

/// A step of the bar over a flight of 1,000,000 points: the update traversal that makes the line anew.
void UavScrub(benchmark::State& state)
{
    bench::goTo(bench::kOblique20km);
    CAxUavNode& aircraft = fly();
    std::vector<CAxVector3D> flight;
    constexpr int kReplayPoints = 1000000;
    flight.reserve(kReplayPoints);
    for (int i = 0; i < kReplayPoints; ++i)
        flight.push_back(surveyed(0.004 * i));
    QElapsedTimer clock;
    clock.start();
    aircraft.CreateReplayFlightLine(flight);
    const double made = static_cast<double>(clock.nsecsElapsed()) / 1e6;
    aircraft.SetPathIndexMask(kReplayPoints);
    bench::frameMilliseconds();
    for (auto _ : state) {
        int step = 0;
        const double moved = bench::median(40, [&] {
            aircraft.SetPathIndexMask((++step * 271829) % kReplayPoints);
            QElapsedTimer update;
            update.start();
            bench::globe().getOSGViewer()->updateTraversal();
            return static_cast<double>(update.nsecsElapsed()) / 1e6;
        });
        state.SetIterationTime(moved / 1e3);
        state.counters["made_ms"] = made;
    }
    bench::globe().ClearUavMarker();
}
BENCHMARK(UavScrub)->Name("Uav/scrub")->Iterations(1)->UseManualTime()->Unit(benchmark::kMillisecond);
} // namespace
