// Frames of a flight over no-fly zones, drawn by the widget's own timer as a
// pilot sees them, against the same flight without zones.
#include "BenchGlobe.h"
#include "FrameWatch.h"

#include "analysis/AxUserOperation.h"
#include "analysis/CAxAncillaryProcess.h"
#include "interaction/input/CAxEarthManipulator.h"
#include "viewer/CAxEarthViewer.h"

#include <benchmark/benchmark.h>
#include <osg/NodeVisitor>
#include <osgViewer/Viewer>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEvent>
#include <QString>

#include <algorithm>
#include <cmath>
#include <vector>

namespace {
constexpr int kZones = 500;
constexpr double kFlightSeconds = 4.0;
constexpr int kRuns = 3;
constexpr double kMiddleLongitude = -105.0;
constexpr double kMiddleLatitude = 37.4;
constexpr double kReach = 1.9; // degrees
constexpr double kZoneRadius = 8000.0;
constexpr double kMetresADegree = 111320.0;

double Longest(const std::vector<double>& frames)
{
    return frames.empty() ? 0.0 : *std::max_element(frames.begin(), frames.end());
}

double Median(std::vector<double> frames)
{
    std::sort(frames.begin(), frames.end());
    return frames.empty() ? 0.0 : frames[frames.size() / 2];
}

/// Two zones in three are circles of 73 points, every third a polygon of a
/// hundred, as the shipped sample has them.
osg::ref_ptr<osgEarth::Symbology::Polygon> Outline(int index, const osg::Vec3d& middle)
{
    osg::ref_ptr<osgEarth::Symbology::Polygon> polygon = new osgEarth::Symbology::Polygon;
    const bool circle = index % 3 != 0;
    const int corners = circle ? 72 : 99;
    const double north = kZoneRadius / kMetresADegree;
    const double east = north / std::cos(osg::DegreesToRadians(middle.y()));
    for (int i = 0; i <= corners; ++i) {
        const double bearing = 2.0 * osg::PI * i / corners;
        const double narrow = circle ? 1.0 : 0.4;
        polygon->push_back(middle.x() + east * std::sin(bearing),
                           middle.y() + narrow * north * std::cos(bearing), 0.0);
    }
    return polygon;
}

/// Those of the zone file that are near are there already, shown or not.
int ZonesInScene()
{
    struct Finder : osg::NodeVisitor
    {
        Finder() : osg::NodeVisitor(TRAVERSE_ALL_CHILDREN) { setNodeMaskOverride(~0u); }
        void apply(osg::Group& group) override
        {
            if (group.getName() == "NoFlyGroup")
                zones = static_cast<int>(group.getNumChildren());
            else
                traverse(group);
        }
        int zones = 0;
    } finder;
    bench::globe().GetDrawNodeGroup()->accept(finder);
    return finder.zones;
}

/// Queues so many at once that there are 500, as the worker does when the camera comes near.
void AddZones()
{
    CAxEarthViewer& viewer = bench::globe();
    const int columns = static_cast<int>(std::ceil(std::sqrt(kZones)));
    for (int i = ZonesInScene(); i < kZones; ++i) {
        const int column = i % columns;
        const int row = i / columns;
        const osg::Vec3d middle(kMiddleLongitude + kReach * (2.0 * column / columns - 1.0),
                                kMiddleLatitude + kReach * (2.0 * row / columns - 1.0), 0.0);
        osg::ref_ptr<AxUserOperation> operation = new AxUserOperation(AddNoFlyZone);
        operation->setEarthViewer(&viewer);
        operation->setUserName(QStringLiteral("bench%1").arg(i));
        operation->setUserPos(middle);
        operation->setUserPolygon(*Outline(i, middle));
        operation->setUserMultiGeometry(osgEarth::Symbology::MultiGeometry());
        operation->Prepare();
        viewer.getOSGViewer()->addUpdateOperation(operation);
    }
}

void RemoveZones()
{
    CAxEarthViewer& viewer = bench::globe();
    for (int i = 0; i < kZones; ++i) {
        osg::ref_ptr<AxUserOperation> operation = new AxUserOperation(RemoveNoFlyZone);
        operation->setEarthViewer(&viewer);
        operation->setUserName(QStringLiteral("bench%1").arg(i));
        viewer.getOSGViewer()->addUpdateOperation(operation);
    }
}

void GoTo(double range, double pitch)
{
    bench::globe().getManipulator()->setViewpoint(
        osgEarth::Viewpoint("", kMiddleLongitude - 0.5, kMiddleLatitude - 0.5, 0.0, 0.0, pitch, range), 0.0);
    bench::waitFor([] { return bench::globe().IsPictureComplete(); }, 60000);
}

/// From over all zones to 20 km above the mountains, looking along the ground
/// at the end; with `act` at its beginning.
const FrameWatch& Fly(FrameWatch& watch, void (*act)())
{
    GoTo(345000.0, -90.0);
    CAxEarthManipulator& manipulator = *bench::globe().getManipulator();
    watch.frames.clear();
    if (act)
        act();
    manipulator.setViewpoint(
        osgEarth::Viewpoint("", kMiddleLongitude + 0.3, kMiddleLatitude + 0.3, 0.0, 40.0, -20.0, 20000.0),
        kFlightSeconds);
    bench::waitFor([&] { return !manipulator.isSettingViewpoint(); }, 120000);
    return watch;
}

/// The longest frame of the flight over zones less that of the same flight
/// without, each the shortest of some flights over known ground. `burst_ms` is
/// the longest frame of a flight in whose first frame all zones are added.
void NoFlyFly(benchmark::State& state)
{
    CAxAncillaryProcess& process = *bench::globe().GetAncillaryProcess();
    const bool shown = process.NoFlyZoneMask();
    for (auto _ : state) {
        FrameWatch watch;
        Fly(watch, nullptr); // makes the ground known
        double without = 1e9;
        double with = 1e9;
        double burst = 1e9;
        double medianWithout = 1e9;
        double medianWith = 1e9;
        for (int run = 0; run < kRuns; ++run) {
            process.SetNoFlyZoneMask(false);
            without = std::min(without, Longest(Fly(watch, nullptr).frames));
            medianWithout = std::min(medianWithout, Median(watch.frames));
            process.SetNoFlyZoneMask(true);
            burst = std::min(burst, Longest(Fly(watch, AddZones).frames));
            with = std::min(with, Longest(Fly(watch, nullptr).frames));
            medianWith = std::min(medianWith, Median(watch.frames));
            state.counters["zones"] = ZonesInScene();
            RemoveZones();
        }
        state.SetIterationTime(std::max(1e-6, (with - without) / 1e3));
        state.counters["without_ms"] = without;
        state.counters["with_ms"] = with;
        state.counters["above_ms"] = with - without;
        state.counters["burst_ms"] = burst;
        state.counters["median_without_ms"] = medianWithout;
        state.counters["median_with_ms"] = medianWith;
    }
    process.SetNoFlyZoneMask(shown);
}

BENCHMARK(NoFlyFly)->Name("NoFly/fly")->Iterations(1)->UseManualTime()->Unit(benchmark::kMillisecond);
} // namespace
