#include "scene/shape/AxScenePick.h"

#include <osg/Camera>
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
        const osg::Vec3d q = s ^ ab;
        const double v = (direction * q) / determinant;
        const double t = (ac * q) / determinant;
        if (u >= 0.0 && v >= 0.0 && u + v <= 1.0 && t > 0.0)
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
