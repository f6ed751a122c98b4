#include "symbology/OgrGeometry.h"
#include "base/Gdal.h"
#include <cpl_conv.h>

namespace osgEarth::Features {
using namespace Symbology;

namespace {
void addPoints(OGRGeometryH target, const Geometry& source, bool close)
{
    OGR_G_SetPointCount(target, static_cast<int>(source.size() + (close ? 1u : 0u)));
    int i = 0;
    for (const osg::Vec3d& p : source)
        OGR_G_SetPoint(target, i++, p.x(), p.y(), p.z());
    if (close)
        OGR_G_SetPoint(target, i, source.front().x(), source.front().y(), source.front().z());
}

void addRing(OGRGeometryH polygon, const Ring& ring)
{
    if (ring.size() < 3)
        return;
    OGRGeometryH made = OGR_G_CreateGeometry(wkbLinearRing);
    addPoints(made, ring, ring.isOpen());
    OGR_G_AddGeometryDirectly(polygon, made);
}

Vec3dVector pointsOf(OGRGeometryH geometry)
{
    Vec3dVector points;
    const int count = OGR_G_GetPointCount(geometry);
    points.reserve(static_cast<size_t>(count));
    for (int i = 0; i < count; ++i)
        points.emplace_back(OGR_G_GetX(geometry, i), OGR_G_GetY(geometry, i), OGR_G_GetZ(geometry, i));
    return points;
}

osg::ref_ptr<Geometry> polygonFrom(OGRGeometryH geometry)
{
    osg::ref_ptr<Polygon> polygon;
    for (int i = 0; i < OGR_G_GetGeometryCount(geometry); ++i) {
        const Vec3dVector points = pointsOf(OGR_G_GetGeometryRef(geometry, i));
        osg::ref_ptr<Ring> ring = i == 0 ? (polygon = new Polygon(&points)).get() : new Ring(&points);
        ring->rewind(i == 0 ? Geometry::ORIENTATION_CCW : Geometry::ORIENTATION_CW);
        if (i > 0 && ring->isValid())
            polygon->getHoles().push_back(ring);
    }
    return polygon.valid() && polygon->isValid() ? polygon : nullptr;
}
} // namespace

OgrGeometryPtr toOgr(const Geometry& geometry)
{
    OGRGeometryH made = nullptr;
    switch (geometry.getType()) {
    case Geometry::TYPE_POLYGON:
    case Geometry::TYPE_RING: {
        if (geometry.size() < 3)
            return {};
        made = OGR_G_CreateGeometry(wkbPolygon);
        addRing(made, static_cast<const Ring&>(geometry));
        if (const auto* polygon = dynamic_cast<const Polygon*>(&geometry))
            for (const auto& hole : polygon->getHoles())
                addRing(made, *hole);
        break;
    }
    case Geometry::TYPE_LINESTRING:
        if (geometry.empty())
            return {};
        made = OGR_G_CreateGeometry(wkbLineString);
        addPoints(made, geometry, false);
        break;
    case Geometry::TYPE_MULTI: {
        made = OGR_G_CreateGeometry(wkbGeometryCollection);
        for (const auto& part : static_cast<const MultiGeometry&>(geometry).getComponents())
            if (OgrGeometryPtr converted = toOgr(*part))
                OGR_G_AddGeometryDirectly(made, converted.release());
        // A collection of polygons only is a multi-polygon, which more operations accept.
        OGRGeometryH narrowed =
            geometry.getComponentType() == Geometry::TYPE_POLYGON ? OGR_G_ForceToMultiPolygon(made) : made;
        return OgrGeometryPtr(narrowed);
    }
    default:
        if (geometry.empty())
            return {};
        made = OGR_G_CreateGeometry(wkbMultiPoint);
        for (const osg::Vec3d& p : geometry) {
            OGRGeometryH point = OGR_G_CreateGeometry(wkbPoint);
            OGR_G_SetPoint(point, 0, p.x(), p.y(), p.z());
            OGR_G_AddGeometryDirectly(made, point);
        }
        break;
    }
    return OgrGeometryPtr(made);
}

osg::ref_ptr<Geometry> fromOgr(OGRGeometryH geometry)
{
    if (!geometry || OGR_G_IsEmpty(geometry))
        return {};
    switch (wkbFlatten(OGR_G_GetGeometryType(geometry))) {
    case wkbPoint: {
        const Vec3dVector points = pointsOf(geometry);
        return new PointSet(&points);
    }
    case wkbMultiPoint: {
        osg::ref_ptr<PointSet> set = new PointSet();
        for (int i = 0; i < OGR_G_GetGeometryCount(geometry); ++i)
            for (const osg::Vec3d& p : pointsOf(OGR_G_GetGeometryRef(geometry, i)))
                set->push_back(p);
        return set;
    }
    case wkbLineString: {
        const Vec3dVector points = pointsOf(geometry);
        return new LineString(&points);
    }
    case wkbPolygon:
        return polygonFrom(geometry);
    case wkbMultiLineString:
    case wkbMultiPolygon:
    case wkbGeometryCollection: {
        osg::ref_ptr<MultiGeometry> multi = new MultiGeometry();
        for (int i = 0; i < OGR_G_GetGeometryCount(geometry); ++i)
            if (osg::ref_ptr<Geometry> part = fromOgr(OGR_G_GetGeometryRef(geometry, i)))
                multi->add(part.get());
        if (multi->getComponents().empty())
            return {};
        return multi;
    }
    default:
        return {};
    }
}

std::string toWkt(const Geometry& geometry)
{
    const OgrGeometryPtr ogr = toOgr(geometry);
    char* text = nullptr;
    if (!ogr || OGR_G_ExportToIsoWkt(static_cast<OGRGeometryH>(ogr.get()), &text) != OGRERR_NONE)
        return {};
    std::string wkt(text);
    CPLFree(text);
    return wkt;
}

osg::ref_ptr<Geometry> fromWkt(const std::string& wkt)
{
    gdal::ErrorCapture errors;
    std::string copy(wkt);
    char* text = &copy[0];
    OGRGeometryH made = nullptr;
    if (OGR_G_CreateFromWkt(&text, nullptr, &made) != OGRERR_NONE)
        return {};
    return fromOgr(static_cast<OGRGeometryH>(OgrGeometryPtr(made).get()));
}
} // namespace osgEarth::Features
