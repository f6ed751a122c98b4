#include "interaction/measure/AxMeasureHit.h"
#include "scene/shape/AxShapeBatch.h"
#include "scene/shape/AxViewRay.h"

#include <osg/Camera>
#include <osg/Geometry>
#include <osg/NodeVisitor>
#include <osg/TemplatePrimitiveIndexFunctor>
#include <osg/Transform>
#include <osgEarth/ScreenSpaceLayout>

#include <algorithm>
#include <functional>
#include <utility>
#include <vector>

namespace {
constexpr double linePixels = 7.0; // on either side of its middle
constexpr double markPixels = 9.0;
constexpr double nearestDepth = 1e-3; // metres before the eye

// The edges of primitives that are lines.
struct LineEdges
{
    std::vector<std::pair<unsigned, unsigned>> edges;

    void operator()(unsigned) {}
    void operator()(unsigned from, unsigned to) { edges.emplace_back(from, to); }
    void operator()(unsigned, unsigned, unsigned) {}
    void operator()(unsigned, unsigned, unsigned, unsigned) {}
};

class TextFinder : public osg::NodeVisitor
{
public:
    explicit TextFinder(std::function<void(const osg::Drawable&, const osg::Vec3d&)> found)
        : osg::NodeVisitor(TRAVERSE_ALL_CHILDREN), tell(std::move(found))
    {
    }

    void apply(osg::Drawable& drawable) override
    {
        tell(drawable, osg::computeLocalToWorld(getNodePath()).getTrans());
    }

private:
    std::function<void(const osg::Drawable&, const osg::Vec3d&)> tell;
};
} // namespace

AxMeasureHit::AxMeasureHit(const osg::Camera& camera, const osg::Vec3d& world)
    : toClip(camera.getViewMatrix() * camera.getProjectionMatrix()),
      eye(camera.getInverseViewMatrix().getTrans())
{
    if (const osg::Viewport* viewport = camera.getViewport())
        size.set(viewport->width(), viewport->height());
    mouse = windowOf(world);
}

std::optional<osg::Vec2d> AxMeasureHit::windowOf(const osg::Vec3d& world) const
{
    const osg::Vec4d clip = osg::Vec4d(world, 1.0) * toClip;
    if (clip.w() < nearestDepth)
        return std::nullopt;
    return osg::Vec2d((0.5 * clip.x() / clip.w() + 0.5) * size.x(),
                      (0.5 * clip.y() / clip.w() + 0.5) * size.y());
}

bool AxMeasureHit::isOnEdge(const osg::Vec3d& from, const osg::Vec3d& to) const
{
    // Metres before the eye change evenly along the edge.
    osg::Vec3d a = from;
    osg::Vec3d b = to;
    double depthA = (osg::Vec4d(a, 1.0) * toClip).w();
    double depthB = (osg::Vec4d(b, 1.0) * toClip).w();
    if (std::max(depthA, depthB) < 2.0 * nearestDepth)
        return false;
    const osg::Vec3d atEye = a + (b - a) * ((2.0 * nearestDepth - depthA) / (depthB - depthA));
    if (depthA < nearestDepth) {
        a = atEye;
        depthA = 2.0 * nearestDepth;
    } else if (depthB < nearestDepth) {
        b = atEye;
        depthB = 2.0 * nearestDepth;
    }
    const auto first = windowOf(a);
    const auto last = windowOf(b);
    if (!first || !last)
        return false;
    const osg::Vec2d way = *last - *first;
    const double squared = way.length2();
    const double part = squared > 0.0 ? std::clamp(((*mouse - *first) * way) / squared, 0.0, 1.0) : 0.0;
    if ((*first + way * part - *mouse).length() > linePixels)
        return false;
    // A step in the picture is a longer one in the world where it is farther away.
    const double far = part * depthA;
    const double inWorld = far / (far + (1.0 - part) * depthB);
    return !AxIsBehindGlobe(eye, a + (b - a) * inWorld);
}

bool AxMeasureHit::IsOnLine(osg::Geometry& drawn) const
{
    const auto* points = dynamic_cast<const osg::Vec3Array*>(drawn.getVertexArray());
    if (!mouse || !points)
        return false;
    // What single precision leaves over.
    const auto* rest =
        dynamic_cast<const osg::Vec3Array*>(drawn.getVertexAttribArray(AxShapeBatches::restAttribute));
    const auto place = [&](unsigned index) {
        const osg::Vec3d coarse = (*points)[index];
        return rest && index < rest->size() ? coarse + osg::Vec3d((*rest)[index]) : coarse;
    };
    osg::TemplatePrimitiveIndexFunctor<LineEdges> lines;
    drawn.accept(lines);
    return std::any_of(lines.edges.begin(), lines.edges.end(), [&](const auto& edge) {
        return std::max(edge.first, edge.second) < points->size() &&
               isOnEdge(place(edge.first), place(edge.second));
    });
}

bool AxMeasureHit::IsOnMark(const osg::Vec3d& world) const
{
    const auto at = windowOf(world);
    return mouse && at && (*at - *mouse).length() <= markPixels && !AxIsBehindGlobe(eye, world);
}

bool AxMeasureHit::isInText(const osg::Drawable& text, const osg::Vec3d& world) const
{
    const auto at = windowOf(world);
    if (!mouse || !at || AxIsBehindGlobe(eye, world))
        return false;
    osg::Vec2d in = *mouse - *at;
    if (const auto* layout = dynamic_cast<const osgEarth::ScreenSpaceLayoutData*>(text.getUserData()))
        in -= osg::Vec2d(layout->getPixelOffset().x(), layout->getPixelOffset().y());
    const osg::BoundingBox box = text.getBoundingBox();
    return box.valid() && in.x() >= box.xMin() && in.x() <= box.xMax() && in.y() >= box.yMin() &&
           in.y() <= box.yMax();
}

bool AxMeasureHit::IsOnText(osg::Node& label) const
{
    bool isOn = false;
    TextFinder finder(
        [&](const osg::Drawable& text, const osg::Vec3d& world) { isOn = isOn || isInText(text, world); });
    label.accept(finder);
    return isOn;
}
