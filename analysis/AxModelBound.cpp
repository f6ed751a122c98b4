#include "analysis/AxModelBound.h"
#include "scene/base/AxWgs84.h"

#include <support/GeosContext.h>

#include <osg/Drawable>
#include <osg/Geometry>
#include <osg/Math>
#include <osg/NodeVisitor>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace {

/// All vertices below a node, in its parent's frame.
class VertexVisitor : public osg::NodeVisitor
{
public:
    VertexVisitor() : osg::NodeVisitor(TRAVERSE_ALL_CHILDREN) {}

    void apply(osg::Transform& transform) override
    {
        const osg::Matrixd above = toParent;
        transform.computeLocalToWorldMatrix(toParent, this);
        traverse(transform);
        toParent = above;
    }
    void apply(osg::Drawable& drawable) override
    {
        Collector collector;
        collector.vertices = &vertices;
        collector.matrix = toParent;
        drawable.accept(collector);
    }

    std::vector<osg::Vec3d> vertices;
    osg::Matrixd toParent;

private:
    struct Collector : osg::Drawable::ConstAttributeFunctor
    {
        void apply(osg::Drawable::AttributeType type, unsigned count, const osg::Vec3* points) override
        {
            Take(type, count, points);
        }
        void apply(osg::Drawable::AttributeType type, unsigned count, const osg::Vec3d* points) override
        {
            Take(type, count, points);
        }
        template <typename Point>
        void Take(osg::Drawable::AttributeType type, unsigned count, const Point* points)
        {
            for (unsigned i = 0; type == osg::Drawable::VERTICES && i < count; ++i)
                vertices->push_back(osg::Vec3d(points[i]) * matrix);
        }
        std::vector<osg::Vec3d>* vertices = nullptr;
        osg::Matrixd matrix;
    };
};
} // namespace

QVariantList AxModelOutline(const AxModelBoundJob& job)
{
    if (!job.model || !job.srs)
        return {};
    VertexVisitor visitor;
    job.model->accept(visitor);

    // Metres east and north of the first vertex, so that the margin is the same on all sides.
    std::vector<osg::Vec3d> places;
    double lowest = std::numeric_limits<double>::max();
    for (const osg::Vec3d& vertex : visitor.vertices) {
        osg::Vec3d place;
        if (!job.srs->transformFromWorld(vertex * job.modelToWorld, place) || !place.valid())
            return {};
        places.push_back(place);
        lowest = std::min(lowest, place.z());
    }
    if (places.empty())
        return {};
    const osg::Vec3d origin = places.front();
    const double metresNorth = osg::DegreesToRadians(AxWgs84::semiMajorAxis);
    const double metresEast = metresNorth * std::cos(osg::DegreesToRadians(origin.y()));
    if (metresEast < 1.0)
        return {};

    const GeosContext geos;
    std::vector<GEOSGeometry*> points;
    points.reserve(places.size());
    for (const osg::Vec3d& place : places)
        points.push_back(GEOSGeom_createPointFromXY_r(geos.handle(), (place.x() - origin.x()) * metresEast,
                                                      (place.y() - origin.y()) * metresNorth));
    const auto all = geos.own(GEOSGeom_createCollection_r(geos.handle(), GEOS_MULTIPOINT, points.data(),
                                                          static_cast<unsigned>(points.size())));
    auto hull = geos.own(GEOSConvexHull_r(geos.handle(), all.get()));
    if (hull && job.margin > 0.0) {
        constexpr int cornerSegments = 4;
        hull = geos.own(GEOSBuffer_r(geos.handle(), hull.get(), job.margin, cornerSegments));
    }
    if (!hull || GEOSGeomTypeId_r(geos.handle(), hull.get()) != GEOS_POLYGON)
        return {};
    QVariantList outline;
    for (const osg::Vec2d& point :
         geos.vertices<osg::Vec2d>(GEOSGetExteriorRing_r(geos.handle(), hull.get())))
        outline += QVariant(
            QVariantList{origin.x() + point.x() / metresEast, origin.y() + point.y() / metresNorth, lowest});
    return outline;
}

osg::ref_ptr<osg::Geometry> AxOutlineDrawable(const QVariantList& outline,
                                              const osgEarth::SpatialReference& srs)
{
    if (outline.isEmpty())
        return nullptr;
    osg::ref_ptr<osg::Vec3dArray> vertices = new osg::Vec3dArray;
    for (const QVariant& place : outline) {
        const QVariantList numbers = place.toList();
        osg::Vec3d world;
        srs.transformToWorld(
            {numbers.value(0).toDouble(), numbers.value(1).toDouble(), numbers.value(2).toDouble()}, world);
        vertices->push_back(world);
    }
    osg::ref_ptr<osg::Geometry> line = new osg::Geometry;
    line->setVertexArray(vertices);
    line->addPrimitiveSet(new osg::DrawArrays(GL_LINE_LOOP, 0, static_cast<int>(vertices->size())));
    return line;
}
