// The plane operations of Symbology::Geometry, done by OGR (that is, GEOS).
#include "base/Gdal.h"
#include "symbology/OgrGeometry.h"

namespace osgEarth::Symbology {
using Features::fromOgr;
using Features::OgrGeometryPtr;
using Features::toOgr;

namespace {
bool take(OGRGeometryH result, osg::ref_ptr<Geometry>& output)
{
    const OgrGeometryPtr held(result);
    osg::ref_ptr<Geometry> converted = fromOgr(result);
    if (!converted)
        return false;
    output = converted;
    return true;
}

template <typename Operation>
bool binary(const Geometry& a, const Geometry* b, osg::ref_ptr<Geometry>& output, Operation operation)
{
    if (!b)
        return false;
    gdal::ErrorCapture errors;
    const OgrGeometryPtr left = toOgr(a), right = toOgr(*b);
    if (!left || !right)
        return false;
    return take(operation(static_cast<OGRGeometryH>(left.get()), static_cast<OGRGeometryH>(right.get())),
                output);
}
} // namespace

bool Geometry::buffer(double distance, osg::ref_ptr<Geometry>& output,
                      const BufferParameters& parameters) const
{
    gdal::ErrorCapture errors;
    const OgrGeometryPtr self = toOgr(*this);
    if (!self)
        return false;
    const int segments = parameters._cornerSegs > 0 ? parameters._cornerSegs : 8;
    return take(OGR_G_Buffer(static_cast<OGRGeometryH>(self.get()), distance, segments), output);
}

bool Geometry::crop(const Polygon* cropPolygon, osg::ref_ptr<Geometry>& output) const
{
    return binary(*this, cropPolygon, output, OGR_G_Intersection);
}

bool Geometry::crop(const Bounds& bounds, osg::ref_ptr<Geometry>& output) const
{
    if (!bounds.isValid())
        return false;
    osg::ref_ptr<Polygon> box = new Polygon();
    box->push_back(bounds.xMin(), bounds.yMin());
    box->push_back(bounds.xMax(), bounds.yMin());
    box->push_back(bounds.xMax(), bounds.yMax());
    box->push_back(bounds.xMin(), bounds.yMax());
    return crop(box.get(), output);
}

bool Geometry::geounion(const Geometry* other, osg::ref_ptr<Geometry>& output) const
{
    return binary(*this, other, output, OGR_G_Union);
}

bool Geometry::difference(const Polygon* diffPolygon, osg::ref_ptr<Geometry>& output) const
{
    return binary(*this, diffPolygon, output, OGR_G_Difference);
}

bool Geometry::intersects(const Geometry* other) const
{
    if (!other)
        return false;
    gdal::ErrorCapture errors;
    const OgrGeometryPtr left = toOgr(*this), right = toOgr(*other);
    return left && right &&
           OGR_G_Intersects(static_cast<OGRGeometryH>(left.get()), static_cast<OGRGeometryH>(right.get())) !=
               0;
}
} // namespace osgEarth::Symbology
