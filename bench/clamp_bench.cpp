// The handles of a polygon: a tile that arrives over all of them, a mouse move
// among them, a step of a drag, and a frame.
#include "BenchGlobe.h"

#include "interaction/editing/CAxDragger.h"
#include "interaction/editing/CAxHandleAdapterEditor.h"
#include "interaction/objects/AxHandleAdapterState.h"
#include "interaction/objects/CAxHandleAdapter.h"
#include "viewer/CAxEarthViewer.h"

#include <benchmark/benchmark.h>
#include <osgEarth/MapNode>
#include <osgEarth/SpatialReference>
#include <osgEarth/Terrain>
#include <osgGA/EventVisitor>
#include <osgViewer/Viewer>

#include <cmath>
#include <memory>

namespace {

constexpr int kHandles = 1000;
constexpr double kLongitude = -105.0;
constexpr double kLatitude = 37.4;

/// Nothing but vertices, on a circle 4 km wide.
class Vertices : public CAxHandleAdapter
{
public:
    Vertices() : CAxHandleAdapter(&bench::globe(), nullptr)
    {
        for (int i = 0; i < kHandles; ++i) {
            const double angle = 2.0 * osg::PI * i / kHandles;
            GetAnchor().emplace_back(kLongitude + 0.02 * std::cos(angle), kLatitude + 0.02 * std::sin(angle),
                                     3000.0);
        }
        d->anchorEditor = new CAxHandleAdapterEditor(this, GetViewer()->getMapNode());
        GetViewer()->GetDrawNodeGroup()->addChild(d->anchorEditor);
    }
    ~Vertices() override { GetViewer()->GetDrawNodeGroup()->removeChild(d->anchorEditor); }

    void SetAdapterVisible(bool, QString) override {}
    void ClearPoints() override {}
    int CheckGeometry() override { return 1; }
    void updateAdapter() override {}
};

/// A tile of the terrain that lies under all handles.
class FindTile : public osg::NodeVisitor
{
public:
    FindTile() : osg::NodeVisitor(TRAVERSE_ALL_CHILDREN) {}
    void apply(osg::Node& node) override
    {
        const osgEarth::Terrain& terrain = *bench::globe().getMapNode()->getTerrain();
        double height = 0.0;
        for (const double side : {-0.02, 0.02})
            if (!terrain.getHeight(&node, bench::globe().getSRS(), kLongitude + side, kLatitude + side,
                                   &height)) {
                traverse(node);
                return;
            }
        tile = &node;
        traverse(node);
    }
    osg::ref_ptr<osg::Node> tile;
};

/// How far down the quadtree tiles still lie under all handles.
osgEarth::TileKey keyOver(const osgEarth::Profile& profile)
{
    osgEarth::TileKey key;
    for (unsigned level = 1; level < 20; ++level) {
        const osgEarth::TileKey west = profile.createTileKey(kLongitude - 0.02, kLatitude - 0.02, level);
        if (west != profile.createTileKey(kLongitude + 0.02, kLatitude + 0.02, level))
            break;
        key = west;
    }
    return key;
}

/// What waits to clamp: 0 nothing, as everything was clamped at a finer level;
/// 1 every handle.
void Clamp(benchmark::State& state)
{
    bench::goTo(bench::kOblique20km);
    Vertices object;
    osgEarth::Terrain& terrain = *bench::globe().getMapNode()->getTerrain();
    FindTile finder;
    bench::globe().getMapNode()->accept(finder);
    const osgEarth::TileKey key = keyOver(*terrain.getProfile());
    if (!finder.tile || !key.valid()) {
        state.SkipWithError("no tile under all handles");
        return;
    }
    const auto arrive = [&] { terrain.fireTileAdded(key, finder.tile); };
    // Values that were set once stay, as they do after the first move of a block.
    object.GetAnchorEditor()->SetMoveAdapter(false);
    arrive();
    if (object.GetAnchor().front().z() == 3000.0)
        state.SkipWithError("nothing was clamped");
    for (auto _ : state) {
        if (state.range(0) > 0) {
            state.PauseTiming();
            object.GetAnchorEditor()->ResetClampAlt();
            arrive();
            state.ResumeTiming();
        }
        arrive();
    }
}

osg::ref_ptr<osgGA::GUIEventAdapter> event(osgGA::GUIEventAdapter::EventType type, double x, double y)
{
    osg::ref_ptr<osgGA::GUIEventAdapter> made = new osgGA::GUIEventAdapter;
    made->setEventType(type);
    made->setInputRange(0.0f, 0.0f, bench::kWidth - 1.0f, bench::kHeight - 1.0f);
    made->setX(static_cast<float>(x));
    made->setY(static_cast<float>(y));
    made->setButton(type == osgGA::GUIEventAdapter::PUSH ? osgGA::GUIEventAdapter::LEFT_MOUSE_BUTTON : 0);
    return made;
}

void send(CAxHandleAdapterEditor& editor, osgGA::GUIEventAdapter* made)
{
    osg::ref_ptr<osgGA::EventVisitor> visitor = new osgGA::EventVisitor;
    visitor->setActionAdapter(bench::globe().getOSGViewer());
    visitor->addEvent(made);
    editor.accept(*visitor);
}

void HoverHandles(benchmark::State& state)
{
    bench::goTo(bench::kOblique20km);
    Vertices object;
    double i = 0.0;
    for (auto _ : state) {
        i += 7.0;
        send(*object.GetAnchorEditor(),
             event(osgGA::GUIEventAdapter::MOVE, 300.0 + std::fmod(i, 600.0), 200.0 + std::fmod(i, 350.0)));
    }
}

void Drag(benchmark::State& state)
{
    bench::goTo(bench::kOblique20km);
    Vertices object;
    CAxHandleAdapterEditor& editor = *object.GetAnchorEditor();
    const osg::Camera& camera = *bench::globe().getOSGViewer()->getCamera();
    const osg::Vec3d place =
        editor.GetDraggerList()[0]->GetWorld() * camera.getViewMatrix() * camera.getProjectionMatrix();
    const double x = 0.5 * (place.x() + 1.0) * (bench::kWidth - 1.0);
    const double y = 0.5 * (place.y() + 1.0) * (bench::kHeight - 1.0);
    send(editor, event(osgGA::GUIEventAdapter::PUSH, x, y));
    if (!editor.GetDrag())
        state.SkipWithError("no handle under the mouse");
    double i = 0.0;
    for (auto _ : state) {
        i += 1.0;
        send(editor, event(osgGA::GUIEventAdapter::DRAG, x + 20.0 * std::sin(i), y + 20.0 * std::cos(i)));
    }
    send(editor, event(osgGA::GUIEventAdapter::MOVE, x, y));
}

/// A frame with all handles in view, and without them.
void Frame(benchmark::State& state)
{
    bench::goTo(bench::kOblique20km);
    std::unique_ptr<Vertices> object = state.range(0) > 0 ? std::make_unique<Vertices>() : nullptr;
    for (int i = 0; i < 5; ++i)
        bench::frameMilliseconds();
    for (auto _ : state)
        state.SetIterationTime(bench::median(5, bench::frameMilliseconds) * 1e-3);
}

BENCHMARK(Clamp)->Name("Shapes/clamp")->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);
BENCHMARK(HoverHandles)->Name("Shapes/hoverHandles")->Unit(benchmark::kMicrosecond);
BENCHMARK(Drag)->Name("Shapes/dragHandle")->Unit(benchmark::kMicrosecond);
BENCHMARK(Frame)
    ->Name("Shapes/frameHandles")
    ->Arg(0)
    ->Arg(kHandles)
    ->UseManualTime()
    ->Iterations(10)
    ->Unit(benchmark::kMillisecond);

} // namespace
