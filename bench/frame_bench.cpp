// A standing frame at the four tour views, against a plain static scene with
// the same triangles and as many equal textures, drawn in the same run; and what
// each part of the view from space costs.
#include "BenchGlobe.h"
#include "StaticScene.h"

#include "viewer/CAxEarthViewer.h"
#include "viewer/overlay/CAxMapToolsWidget.h"

#include <benchmark/benchmark.h>
#include <osg/NodeVisitor>
#include <osgEarth/Map>
#include <osgEarth/MapNode>
#include <osgEarth/ModelLayer>
#include <osgEarthUtil/Sky>
#include <osgViewer/Viewer>

#include <QGraphicsItem>

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

namespace {

constexpr int kFrames = 60;

void Frame(benchmark::State& state, bench::View view)
{
    bench::goTo(view);
    osgViewer::Viewer& viewer = *bench::globe().getOSGViewer();
    double ours = 0.0;
    for (auto _ : state) {
        ours = bench::median(kFrames, bench::frameMilliseconds);
        state.SetIterationTime(ours / 1e3);
    }
    const bench::StaticScene scene = bench::copyDrawnTerrain(viewer);
    const double reference = bench::staticFrameMilliseconds(scene, *viewer.getCamera(), kFrames);
    state.counters["reference_ms"] = reference;
    state.counters["ratio"] = ours / reference;
    state.counters["triangles"] = scene.triangles;
    state.counters["textures"] = scene.textures;
}

template <typename Node> Node* findNode(const std::string& name)
{
    struct Finder : osg::NodeVisitor
    {
        explicit Finder(const std::string& wanted) : osg::NodeVisitor(TRAVERSE_ALL_CHILDREN), name(wanted)
        {
            setNodeMaskOverride(~0u);
        }
        void apply(osg::Node& node) override
        {
            if (!found && node.getName() == name)
                found = dynamic_cast<Node*>(&node);
            if (!found)
                traverse(node);
        }
        const std::string& name;
        Node* found = nullptr;
    } finder(name);
    bench::globe().getOSGViewer()->getSceneData()->accept(finder);
    return finder.found;
}

/// What a part costs a frame, milliseconds: frames with and without it in
/// turns, so that a load that comes and goes meets both.
double costOf(const std::function<void(bool shown)>& show)
{
    constexpr int kTurns = 6;
    constexpr int kFramesInTurn = 12;
    std::vector<double> with;
    std::vector<double> without;
    for (int turn = 0; turn < 2 * kTurns; ++turn) {
        const bool shown = turn % 2 == 0;
        show(shown);
        bench::frameMilliseconds();
        bench::frameMilliseconds();
        for (int i = 0; i < kFramesInTurn; ++i)
            (shown ? with : without).push_back(bench::frameMilliseconds());
    }
    show(true);
    const auto middle = [](std::vector<double>& times) {
        const auto at = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
        std::nth_element(times.begin(), at, times.end());
        return *at;
    };
    return middle(with) - middle(without);
}

void showNode(const char* name, bool shown)
{
    if (auto* node = findNode<osg::Node>(name))
        node->setNodeMask(shown ? ~0u : 0u);
}

void showLayer(const char* name, bool shown)
{
    if (auto* layer = bench::globe().getMapNode()->getMap()->getModelLayerByName(name))
        layer->setVisible(shown);
}

/// Everything that a frame from space is made of.
void Parts(benchmark::State& state)
{
    bench::goTo(bench::kSpace);
    CAxEarthViewer& globe = bench::globe();
    auto* sky = findNode<osgEarth::Util::SkyNode>("SkyNode");
    const std::vector<std::pair<const char*, std::function<void(bool)>>> parts{
        {"labels_ms", [](bool shown) { showLayer("Capital", shown); }},
        {"lines_ms", [](bool shown) { showLayer("Country", shown); }},
        {"graticule_ms", [](bool shown) { showNode("GeodeticGraticule", shown); }},
        {"atmosphere_ms", [sky](bool shown) { sky->setAtmosphereVisible(shown); }},
        {"stars_ms", [sky](bool shown) { sky->setStarsVisible(shown); }},
        {"ground_ms", [](bool shown) { showNode("Terrain", shown); }},
        {"overlays_ms",
         [&globe](bool shown) {
             globe.SetCompassVisible(shown);
             globe.SetCoordinateVisible(shown);
             globe.GetMapToolWidget()->setVisible(shown);
         }},
    };
    for (auto _ : state) {
        state.SetIterationTime(bench::median(kFrames, bench::frameMilliseconds) / 1e3);
        for (const auto& [name, show] : parts)
            state.counters[name] = costOf(show);
        showNode("root", false);
        state.counters["nothing_ms"] = bench::median(kFrames, bench::frameMilliseconds);
        showNode("root", true);
    }
}
BENCHMARK(Parts)->Name("Frame/spaceParts")->Iterations(1)->UseManualTime()->Unit(benchmark::kMillisecond);

BENCHMARK_CAPTURE(Frame, space, bench::kSpace)
    ->Name("Frame/space")
    ->Iterations(1)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Frame, range350km, bench::kRange350km)
    ->Name("Frame/range350km")
    ->Iterations(1)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Frame, oblique20km, bench::kOblique20km)
    ->Name("Frame/oblique20km")
    ->Iterations(1)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Frame, near500m, bench::kNear500m)
    ->Name("Frame/near500m")
    ->Iterations(1)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

} // namespace
