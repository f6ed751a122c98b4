#include "mission/aircraft/AxVideoFootprint.h"
#include "scene/base/AxGlobePoint.h"
#include "scene/shape/AxStateOverGround.h"

#include <algorithm>

namespace {
constexpr std::size_t mostSamples = 16;
const osg::Vec4 footprintColor(0.0f, 0.9f, 1.0f, 1.0f);
constexpr float footprintWidth = 2.0f;
constexpr int footprintBin = 13; // over areas, below the trail
} // namespace

AxVideoFootprint::AxVideoFootprint() : line(new AxWorldGeometry)
{
    setName("VideoFootprint");
    line->SetLineWidth(footprintWidth);
    const osg::ref_ptr<osg::StateSet> state = AxStateOverGround();
    state->setRenderBinDetails(footprintBin, "RenderBin");
    setStateSet(state);
    addChild(line);
}

AxVideoFootprint::~AxVideoFootprint() = default;

void AxVideoFootprint::Add(const AxVideoSight& sight, const AxGroundHeights& heights)
{
    samples.push_back(sight);
    if (samples.size() > mostSamples)
        samples.pop_front();
    outline = AxVideoOutlineOf(samples.back(), heights);
    draw();
}

void AxVideoFootprint::SetShown(bool shown)
{
    if (shown == isShown)
        return;
    isShown = shown;
    draw();
}

void AxVideoFootprint::Clear()
{
    samples.clear();
    outline = AxVideoOutline();
    draw();
}

void AxVideoFootprint::draw()
{
    std::vector<osg::Vec3d> world;
    if (isShown)
        for (const CAxVector3D& point : outline.points)
            world.push_back(AxGlobe::WorldOf({point.x(), point.y(), point.z()}));
    line->SetPoints(world);
    if (world.empty())
        return;
    auto* colors = static_cast<osg::Vec4Array*>(line->getColorArray());
    std::fill(colors->begin(), colors->end(), footprintColor);
    line->addPrimitiveSet(new osg::DrawArrays(GL_LINE_LOOP, 0, static_cast<int>(world.size())));
}
