#include "scene/shape/AxScenePick.h"
#include "scene/shape/AxTriangleChunks.h"

#include <osg/Camera>
#include <osg/Geometry>
#include <osg/LOD>
#include <osg/NodeVisitor>
#include <osg/Projection>
#include <osg/TemplatePrimitiveFunctor>
#include <osg/Transform>
#include <osgEarth/ScreenSpaceLayout>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {
// Bounds are kept in single precision; near the earth's surface that is half a metre.
constexpr double boundSlackMetres = 1.0;

// Nearest meeting of a ray with the primitives of one drawable, in the
// drawable's own coordinates. `distance` is in units of the ray's direction.
struct NearestPrimitive
{
    osg::Vec3d origin;
    osg::Vec3d direction;
    double tolerance = 0.0; // width at distance 1
    double distance = std::numeric_limits<double>::infinity();

    void operator()(const osg::Vec3& a, bool) { Near(a, a); }
    void operator()(const osg::Vec3& a, const osg::Vec3& b, bool) { Near(a, b); }
    void operator()(const osg::Vec3& a, const osg::Vec3& b, const osg::Vec3& c, bool) { Hit(a, b, c); }
    void operator()(const osg::Vec3& a, const osg::Vec3& b, const osg::Vec3& c, const osg::Vec3& d, bool)
    {
        Hit(a, b, c);
        Hit(a, c, d);
    }

private:
    // Möller and Trumbore's test, "Fast, Minimum Storage Ray/Triangle Intersection" (1997), from both sides.
    void Hit(const osg::Vec3d& a, const osg::Vec3d& b, const osg::Vec3d& c)
    {
        const osg::Vec3d ab = b - a;
        const osg::Vec3d ac = c - a;
        const osg::Vec3d p = direction ^ ac;
        const double determinant = ab * p;
        if (determinant == 0.0)
            return;
        const osg::Vec3d s = origin - a;
        const double u = (s * p) / determinant;
        // Most triangles of a large model end here.
        if (!(u >= 0.0 && u <= 1.0))
            return;
        const osg::Vec3d q = s ^ ab;
        const double v = (direction * q) / determinant;
        const double t = (ac * q) / determinant;
        if (v >= 0.0 && u + v <= 1.0 && t > 0.0)
            distance = std::min(distance, t);
    }

    // A line or point counts when the ray passes it within the tolerance.
    void Near(const osg::Vec3d& a, const osg::Vec3d& b)
    {
        if (!(tolerance > 0.0))
            return;
        const osg::Vec3d along = b - a;
        const osg::Vec3d from = origin - a;
        const double dd = direction * direction;
        const double da = direction * along;
        const double aa = along * along;
        const double denominator = dd * aa - da * da;
        double s = 0.0;
        if (denominator > 0.0)
            s = std::clamp((dd * (along * from) - da * (direction * from)) / denominator, 0.0, 1.0);
        const osg::Vec3d point = a + along * s;
        const double t = ((point - origin) * direction) / dd;
        if (t > 0.0 && (origin + direction * t - point).length() <= tolerance * t * std::sqrt(dd))
            distance = std::min(distance, t);
    }
};

// Whether a ray may come as near to a box as `reach`, in the box's coordinates; it may say so wrongly.
bool MayMeetBox(const osg::BoundingBox& box, const osg::Vec3d& origin, const osg::Vec3d& direction,
                double reach)
{
    double from = 0.0;
    double to = std::numeric_limits<double>::infinity();
    for (unsigned axis = 0; axis < 3; ++axis) {
        const double low = static_cast<double>(box._min[axis]) - reach - origin[axis];
        const double high = static_cast<double>(box._max[axis]) + reach - origin[axis];
        if (direction[axis] == 0.0) {
            if (low > 0.0 || high < 0.0)
                return false;
            continue;
        }
        const double atLow = low / direction[axis];
        const double atHigh = high / direction[axis];
        from = std::max(from, std::min(atLow, atHigh));
        to = std::min(to, std::max(atLow, atHigh));
    }
    return from <= to;
}

void MeetChunks(const osg::Geometry& geometry, const AxTriangleChunks& chunks, NearestPrimitive& nearest)
{
    const auto* vertices = dynamic_cast<const osg::Vec3Array*>(geometry.getVertexArray());
    const auto* corners = geometry.getNumPrimitiveSets() == 1
                              ? dynamic_cast<const osg::DrawElementsUInt*>(geometry.getPrimitiveSet(0))
                              : nullptr;
    if (!vertices || !corners)
        return;
    constexpr std::size_t cornersOfChunk = 3 * AxTriangleChunks::trianglesOfOne;
    const double slack = boundSlackMetres * nearest.direction.length();
    for (std::size_t i = 0; i < chunks.boxes.size(); ++i) {
        if (!MayMeetBox(chunks.boxes[i], nearest.origin, nearest.direction, slack))
            continue;
        const std::size_t end = std::min((i + 1) * cornersOfChunk, corners->size());
        for (std::size_t corner = i * cornersOfChunk; corner + 2 < end; corner += 3)
            nearest((*vertices)[(*corners)[corner]], (*vertices)[(*corners)[corner + 1]],
                    (*vertices)[(*corners)[corner + 2]], false);
    }
}

class SceneRay : public osg::NodeVisitor
{
public:
    SceneRay(const AxViewRay& sightLine, const AxSceneQuery& wanted)
        : osg::NodeVisitor(TRAVERSE_ACTIVE_CHILDREN), ray(sightLine), query(wanted),
          isWanted(wanted.under == 0)
    {
        setTraversalMask(query.mask);
    }

    void apply(osg::Node& node) override
    {
        if (MayMeet(node))
            Traverse(node);
    }

    void apply(osg::Transform& transform) override
    {
        if (transform.getReferenceFrame() != osg::Transform::RELATIVE_RF || !MayMeet(transform))
            return;
        const osg::Matrixd outer = matrix;
        const double outerScale = scale;
        transform.computeLocalToWorldMatrix(matrix, this);
        const osg::Vec3d scales = matrix.getScale();
        scale = std::max({scales.x(), scales.y(), scales.z()});
        Traverse(transform);
        matrix = outer;
        scale = outerScale;
    }

    // They draw for another eye than the one that sees the globe.
    void apply(osg::Camera&) override {}
    void apply(osg::Projection&) override {}

    void apply(osg::Drawable& drawable) override
    {
        if (!isWanted && drawable.getNodeMask() != query.under)
            return;
        if (onScreen || IsOnScreen(drawable.getStateSet()))
            MeetOnScreen(drawable);
        else if (MayMeet(drawable))
            Meet(drawable);
    }

    void apply(osg::LOD& lod) override
    {
        if (query.finest || lod.getRangeMode() == osg::LOD::DISTANCE_FROM_EYE_POINT)
            apply(static_cast<osg::Node&>(lod));
        else if (MayMeet(lod))
            Traverse(lod, [this, &lod] { TraverseForSize(lod); });
    }

    // By this a level of detail chooses its child.
    float getDistanceToViewPoint(const osg::Vec3& position, bool) const override
    {
        return query.finest ? 0.0f : static_cast<float>(DistanceTo(position));
    }

    std::vector<AxSceneHit> hits;

private:
    static bool IsOnScreen(const osg::StateSet* state)
    {
        return state && state->getRenderBinMode() != osg::StateSet::INHERIT_RENDERBIN_DETAILS &&
               state->getBinName() == OSGEARTH_SCREEN_SPACE_LAYOUT_BIN;
    }

    void Traverse(osg::Node& node)
    {
        Traverse(node, [this, &node] { traverse(node); });
    }

    template <typename Children> void Traverse(const osg::Node& node, const Children& visit)
    {
        const bool outerOnScreen = onScreen;
        const bool outerIsWanted = isWanted;
        onScreen = onScreen || IsOnScreen(node.getStateSet());
        isWanted = isWanted || node.getNodeMask() == query.under;
        visit();
        onScreen = outerOnScreen;
        isWanted = outerIsWanted;
    }

    // The child that is drawn for the node's diameter in pixels; left to itself, the node would take the
    // finest.
    void TraverseForSize(osg::LOD& lod)
    {
        const double pixels = 2.0 * static_cast<double>(lod.getBound().radius()) * scale /
                              std::max(ray.pixelSize * DistanceTo(lod.getCenter()), 1e-9);
        const unsigned count = std::min(lod.getNumChildren(), lod.getNumRanges());
        for (unsigned i = 0; i < count; ++i)
            if (static_cast<double>(lod.getMinRange(i)) <= pixels &&
                pixels < static_cast<double>(lod.getMaxRange(i)))
                return lod.getChild(i)->accept(*this);
        // The one that would be drawn is still to be loaded.
        if (count > 0 && count < lod.getNumRanges() &&
            pixels >= static_cast<double>(lod.getMinRange(count - 1)))
            lod.getChild(count - 1)->accept(*this);
    }

    double DistanceTo(const osg::Vec3d& local) const { return (local * matrix - ray.eye).length(); }

    bool MayMeet(const osg::Node& node) const
    {
        if (!node.isCullingActive())
            return true;
        const osg::BoundingSphere& bound = node.getBound();
        if (!bound.valid())
            return false;
        const double radius = static_cast<double>(bound.radius()) * scale + boundSlackMetres;
        const osg::Vec3d toCenter = osg::Vec3d(bound.center()) * matrix - ray.eye;
        const double along = toCenter * ray.direction;
        if (along < -radius)
            return false;
        const double reach = radius + Tolerance() * std::max(along, 0.0);
        return (toCenter - ray.direction * along).length2() <= reach * reach;
    }

    double Tolerance() const { return ray.pixelSize * query.tolerancePixels; }

    void Meet(osg::Drawable& drawable)
    {
        osg::Matrixd toLocal;
        if (!toLocal.invert(matrix))
            return;
        osg::TemplatePrimitiveFunctor<NearestPrimitive> nearest;
        nearest.origin = ray.eye * toLocal;
        nearest.direction = osg::Matrixd::transform3x3(ray.direction, toLocal);
        nearest.tolerance = Tolerance();
        // With a tolerance the reach grows with the distance; the sphere has looked at that.
        if (!(nearest.tolerance > 0.0) && drawable.isCullingActive() &&
            !MayMeetBox(drawable.getBoundingBox(), nearest.origin, nearest.direction,
                        boundSlackMetres * nearest.direction.length()))
            return;
        const osg::Geometry* geometry = drawable.asGeometry();
        const auto* chunks = dynamic_cast<const AxTriangleChunks*>(drawable.getComputeBoundingBoxCallback());
        if (geometry && chunks)
            MeetChunks(*geometry, *chunks, nearest);
        else
            drawable.accept(nearest);
        if (!std::isfinite(nearest.distance))
            return;
        Keep(drawable, ray.eye + ray.direction * nearest.distance, nearest.distance);
    }

    void MeetOnScreen(osg::Drawable& drawable)
    {
        if (!query.labels)
            return;
        const osg::Vec3d anchor = matrix.getTrans();
        const auto place = ray.Project(anchor);
        if (!place)
            return;
        osg::Vec2d mouse = ray.window - place->window;
        if (const auto* layout = dynamic_cast<const osgEarth::ScreenSpaceLayoutData*>(drawable.getUserData()))
            mouse -= osg::Vec2d(layout->getPixelOffset().x(), layout->getPixelOffset().y());
        const osg::BoundingBox& box = drawable.getBoundingBox();
        if (box.valid() && mouse.x() >= static_cast<double>(box.xMin()) &&
            mouse.x() <= static_cast<double>(box.xMax()) && mouse.y() >= static_cast<double>(box.yMin()) &&
            mouse.y() <= static_cast<double>(box.yMax()))
            Keep(drawable, anchor, place->depth);
    }

    void Keep(osg::Drawable& drawable, const osg::Vec3d& world, double distance)
    {
        if (!AxIsBehindGlobe(ray.eye, world))
            hits.push_back(
                {getNodePath(), &drawable, world, distance, onScreen || IsOnScreen(drawable.getStateSet())});
    }

    const AxViewRay& ray;
    const AxSceneQuery& query;
    osg::Matrixd matrix;
    double scale = 1.0;
    bool onScreen = false;
    bool isWanted;
};
} // namespace

std::vector<AxSceneHit> AxPickScene(osg::Node& root, const AxViewRay& ray, const AxSceneQuery& query)
{
    SceneRay visitor(ray, query);
    root.accept(visitor);
    std::stable_sort(visitor.hits.begin(), visitor.hits.end(), [](const AxSceneHit& a, const AxSceneHit& b) {
        return a.onScreen != b.onScreen ? a.onScreen : a.distance < b.distance;
    });
    return std::move(visitor.hits);
}
