// Frames while the camera moves, drawn by the widget's own timer as a pilot
// sees them, while the paging threads make the tiles that come into view.
#include "BenchGlobe.h"
#include "FrameWatch.h"

#include "host/TourStops.h"
#include "interaction/input/CAxEarthManipulator.h"
#include "viewer/CAxEarthViewer.h"

#include <benchmark/benchmark.h>
#include <osgEarth/MapNode>
#include <osgEarth/Terrain>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QMouseEvent>

#include <algorithm>
#include <cmath>
#include <functional>
#include <vector>

namespace {

constexpr double kFlightSeconds = 5.0;
constexpr double kLongFrame = 50.0;
constexpr std::size_t kStandingFrames = 15;

/// Counts the tiles that join the scene.
class TileCount : public osgEarth::TerrainCallback
{
public:
    void onTileAdded(const osgEarth::TileKey&, osg::Node*, osgEarth::TerrainCallbackContext&) override
    {
        ++tiles;
    }
    unsigned tiles = 0;
};

double quantile(std::vector<double> values, double share)
{
    if (values.empty())
        return 0.0;
    const auto at = values.begin() + std::lround(share * static_cast<double>(values.size() - 1));
    std::nth_element(values.begin(), at, values.end());
    return *at;
}

double longest(const std::vector<double>& values)
{
    return quantile(values, 1.0);
}

double longFrames(const std::vector<double>& frames)
{
    return static_cast<double>(
        std::count_if(frames.begin(), frames.end(), [](double time) { return time > kLongFrame; }));
}

/// Frames of the resting camera, each place with a complete picture.
std::vector<double> standingFrames(const std::vector<osgEarth::Viewpoint>& places)
{
    std::vector<double> frames;
    for (const osgEarth::Viewpoint& place : places) {
        bench::globe().getManipulator()->setViewpoint(place, 0.0);
        bench::waitFor([] { return bench::globe().IsPictureComplete(); }, 60000);
        FrameWatch watch;
        bench::waitFor([&] { return watch.frames.size() >= kStandingFrames; }, 60000);
        frames.insert(frames.end(), watch.frames.begin(), watch.frames.end());
    }
    return frames;
}

/// A hand that pulls the ground along, stroke after stroke.
class Hand
{
public:
    /// One step a frame; false when all strokes are done.
    bool step()
    {
        if (_stroke == kStrokes)
            return false;
        // Far enough out and back again that tiles expire and are made anew.
        const bool out = _stroke < kStrokes / 2;
        const int x = 640 + (out ? 1 : -1) * (kStep * _move - kStep * kMoves / 2);
        const QPoint at(x, 520 + (out ? 1 : -1) * (_move - kMoves / 2));
        if (_move == 0)
            send(QEvent::MouseButtonPress, at, Qt::LeftButton, Qt::LeftButton);
        else if (_move < kMoves)
            send(QEvent::MouseMove, at, Qt::NoButton, Qt::LeftButton);
        else
            send(QEvent::MouseButtonRelease, at, Qt::LeftButton, Qt::NoButton);
        if (++_move > kMoves) {
            _move = 0;
            ++_stroke;
            places.push_back(bench::globe().getManipulator()->getViewpoint());
        }
        return true;
    }

    /// Where the camera was after each stroke.
    std::vector<osgEarth::Viewpoint> places;

private:
    static constexpr int kStrokes = 12;
    static constexpr int kMoves = 60;
    static constexpr int kStep = 10; ///< pixels a frame

    static void send(QEvent::Type type, QPoint at, Qt::MouseButton button, Qt::MouseButtons held)
    {
        QWidget* viewport = bench::globe().viewport();
        QMouseEvent event(type, at, viewport->mapToGlobal(at), button, held, Qt::NoModifier);
        QCoreApplication::sendEvent(viewport, &event);
    }

    int _stroke = 0;
    int _move = 0;
};

/// The longest frame of a flight from space to 500 m above the ground. The
/// first one of the process is measured, when none of the places on the way
/// has been seen; the counters with `second` are of the same flight once more.
void Flight(benchmark::State& state)
{
    const auto fly = [] {
        CAxEarthManipulator& manipulator = *bench::globe().getManipulator();
        manipulator.setViewpoint(tourStops[bench::kNear500m].Viewpoint(), kFlightSeconds);
        return bench::waitFor([&] { return !manipulator.isSettingViewpoint(); }, 60000);
    };
    bench::goTo(bench::kSpace);
    osg::ref_ptr<TileCount> count = new TileCount;
    bench::globe().getMapNode()->getTerrain()->addTerrainCallback(count);
    for (auto _ : state) {
        FrameWatch watch;
        if (!fly())
            state.SkipWithError("the flight did not end");
        const double tiles = count->tiles;
        QElapsedTimer clock;
        clock.start();
        bench::waitFor([] { return bench::globe().IsPictureComplete(); }, 60000);
        state.SetIterationTime(longest(watch.frames) / 1e3);
        state.counters["frames"] = static_cast<double>(watch.frames.size());
        state.counters["median"] = quantile(watch.frames, 0.5);
        state.counters["p95"] = quantile(watch.frames, 0.95);
        state.counters["over_50ms"] = longFrames(watch.frames);
        state.counters["longest_gap"] = longest(watch.gaps);
        state.counters["tiles"] = tiles;
        state.counters["complete_ms_after"] = static_cast<double>(clock.nsecsElapsed()) / 1e6;
    }
    bench::goTo(bench::kSpace);
    FrameWatch again;
    fly();
    state.counters["second"] = longest(again.frames);
    bench::globe().getMapNode()->getTerrain()->removeTerrainCallback(count);
}

/// The median frame while a hand drags the ground 10 pixels a frame, six
/// strokes to one side and six back: new tiles come in all the while, and on
/// the way back some again that had expired. `ratio` is to the median frame of
/// the resting camera at the places where the strokes ended.
void Pan(benchmark::State& state)
{
    bench::goTo(bench::kOblique20km);
    osg::ref_ptr<TileCount> count = new TileCount;
    bench::globe().getMapNode()->getTerrain()->addTerrainCallback(count);
    for (auto _ : state) {
        Hand hand;
        std::vector<double> frames;
        std::vector<double> gaps;
        {
            FrameWatch watch;
            bool moving = true;
            watch.onFrame = [&] { moving = hand.step(); };
            if (!bench::waitFor([&] { return !moving; }, 120000))
                state.SkipWithError("the drag did not end");
            frames = watch.frames;
            gaps = watch.gaps;
        }
        const double tiles = count->tiles;
        const double median = quantile(frames, 0.5);
        const double standing = quantile(standingFrames(hand.places), 0.5);
        state.SetIterationTime(median / 1e3);
        state.counters["standing_ms"] = standing;
        state.counters["ratio"] = median / standing;
        state.counters["p95"] = quantile(frames, 0.95);
        state.counters["longest"] = longest(frames);
        state.counters["longest_gap"] = longest(gaps);
        state.counters["frames"] = static_cast<double>(frames.size());
        state.counters["tiles"] = tiles;
    }
    bench::globe().getMapNode()->getTerrain()->removeTerrainCallback(count);
}

BENCHMARK(Flight)->Name("Camera/flight")->Iterations(1)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(Pan)->Name("Camera/pan")->Iterations(1)->UseManualTime()->Unit(benchmark::kMillisecond);

} // namespace
