// A mouse move through the manipulator over terrain, with and without objects
// in the scene, and the pick alone.
#include "BenchGlobe.h"

#include "interaction/input/CAxEarthManipulator.h"
#include "viewer/CAxEarthViewer.h"

#include <benchmark/benchmark.h>
#include <osg/Geode>
#include <osg/Geometry>
#include <osg/MatrixTransform>
#include <osgEarth/GeoData>
#include <osgEarth/SpatialReference>
#include <osgGA/GUIEventAdapter>
#include <osgViewer/Viewer>

#include <cmath>
#include <vector>

/// Reaches the manipulator's pick.
struct AxManipulatorProbe
{
    static osg::Vec3d Pick(CAxEarthManipulator& manipulator, const osgGA::GUIEventAdapter& event,
                           osgViewer::Viewer& view)
    {
        float lngLat[4];
        bool modelHit = false;
        QString node;
        QString parent;
        return manipulator.getPos(event, view, lngLat, modelHit, node, parent);
    }
};

namespace {

/// The next of many places in the window, all of them on the ground.
osg::ref_ptr<osgGA::GUIEventAdapter> nextMove(unsigned i)
{
    osg::ref_ptr<osgGA::GUIEventAdapter> event = new osgGA::GUIEventAdapter;
    event->setEventType(osgGA::GUIEventAdapter::MOVE);
    event->setInputRange(0.0f, 0.0f, bench::kWidth - 1.0f, bench::kHeight - 1.0f);
    event->setX(static_cast<float>(40 + (i * 37) % 1200));
    event->setY(static_cast<float>(40 + (i * 53) % 360));
    return event;
}

/// A block's shape as the map draws it: an outline and a fill of 20 vertices,
/// 600 m wide, in a frame of its own.
osg::ref_ptr<osg::Node> block(double lng, double lat)
{
    constexpr int kVertices = 20;
    osg::ref_ptr<osg::Vec3Array> ring = new osg::Vec3Array;
    for (int i = 0; i < kVertices; ++i) {
        const double angle = 2.0 * osg::PI * i / kVertices;
        ring->push_back(osg::Vec3d(300.0 * std::cos(angle), 300.0 * std::sin(angle), 0.0));
    }
    osg::ref_ptr<osg::Geometry> shape = new osg::Geometry;
    shape->setVertexArray(ring);
    shape->addPrimitiveSet(new osg::DrawArrays(GL_TRIANGLE_FAN, 0, kVertices));
    shape->addPrimitiveSet(new osg::DrawArrays(GL_LINE_LOOP, 0, kVertices));
    osg::ref_ptr<osg::Geode> geode = new osg::Geode;
    geode->addDrawable(shape);
    osg::Matrixd frame;
    osgEarth::GeoPoint(bench::globe().getSRS(), lng, lat, 3000.0, osgEarth::ALTMODE_ABSOLUTE)
        .createLocalToWorld(frame);
    osg::ref_ptr<osg::MatrixTransform> place = new osg::MatrixTransform(frame);
    place->addChild(geode);
    return place;
}

void Move(benchmark::State& state)
{
    bench::goTo(bench::kOblique20km);
    osg::ref_ptr<osg::Group> objects = new osg::Group;
    const int side = static_cast<int>(std::lround(std::sqrt(static_cast<double>(state.range(0)))));
    for (int i = 0; i < state.range(0); ++i) {
        const int column = i % side;
        const int row = i / side;
        objects->addChild(block(-105.15 + 0.3 * column / side, 37.25 + 0.3 * row / side));
    }
    bench::globe().GetDrawNodeGroup()->addChild(objects);
    objects->getBound();

    CAxEarthManipulator& manipulator = *bench::globe().getManipulator();
    osgViewer::Viewer& view = *bench::globe().getOSGViewer();
    unsigned hits = 0;
    const auto count = QObject::connect(&manipulator, &CAxEarthManipulator::mouseMoveSignal,
                                        [&hits](osg::Drawable*) { ++hits; });
    unsigned i = 0;
    for (auto _ : state)
        manipulator.handle(*nextMove(i++), view);
    QObject::disconnect(count);
    bench::globe().GetDrawNodeGroup()->removeChild(objects);
    state.counters["hits"] = benchmark::Counter(hits, benchmark::Counter::kAvgIterations);
}

void PickAlone(benchmark::State& state)
{
    bench::goTo(bench::kOblique20km);
    CAxEarthManipulator& manipulator = *bench::globe().getManipulator();
    osgViewer::Viewer& view = *bench::globe().getOSGViewer();
    std::vector<osg::ref_ptr<osgGA::GUIEventAdapter>> moves;
    for (unsigned place = 0; place < 1024; ++place)
        moves.push_back(nextMove(place));
    std::size_t i = 0;
    for (auto _ : state) {
        const osg::Vec3d world = AxManipulatorProbe::Pick(manipulator, *moves[i++ % moves.size()], view);
        if (world == osg::Vec3d())
            state.SkipWithError("no ground under the mouse");
    }
}

BENCHMARK(Move)->Name("Camera/move")->Arg(0)->Arg(1000)->Unit(benchmark::kMicrosecond);
BENCHMARK(PickAlone)->Name("Camera/pick")->Unit(benchmark::kMicrosecond);

} // namespace
