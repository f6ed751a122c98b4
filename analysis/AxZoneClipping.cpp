#include "analysis/AxZoneClipping.h"
#include "interaction/AxLongitudes.h"

#include <support/GeosContext.h>

#include <algorithm>

using osgEarth::Symbology::MultiGeometry;
using osgEarth::Symbology::Polygon;
using osgEarth::Symbology::Ring;

namespace {
using GeosGeometry = GeosContext::Geometry;

/// The ring as an area that GEOS can reckon with, by the even-odd rule where it crosses itself; null when it
/// bounds none.
GeosGeometry Area(const GeosContext& geos, const AxRing& ring)
{
    GeosGeometry polygon = geos.polygon(ring);
    if (!polygon || geos.isValid(polygon))
        return polygon;
    return geos.own(GEOSMakeValid_r(geos.handle(), polygon.get()));
}

/// A ring whose crossings are so many that they could keep the processor busy for minutes.
bool IsTangled(const GeosContext& geos, const AxRing& ring)
{
    constexpr std::size_t manyPoints = 2000;
    return ring.size() > manyPoints && !geos.isValid(geos.polygon(ring));
}

AxRing MovedBeside(AxRing ring, const AxRing& zone)
{
    if (ring.empty() || zone.empty())
        return ring;
    const double shift = AxLongitudes::NearestTo(zone.front().x(), ring.front().x()) - ring.front().x();
    for (osg::Vec3d& point : ring)
        point.x() += shift;
    return ring;
}

void CopyPoints(const GeosContext& geos, const GEOSGeometry* from, Ring& to)
{
    to.asVector().clear();
    for (const QPointF& point : geos.vertices<QPointF>(from))
        to.push_back(point.x(), point.y(), 0.0);
}

void AddPieces(const GeosContext& geos, const GEOSGeometry* geometry, MultiGeometry& pieces)
{
    const int type = GEOSGeomTypeId_r(geos.handle(), geometry);
    if (type == GEOS_POLYGON && GEOSisEmpty_r(geos.handle(), geometry) == 0) {
        osg::ref_ptr<Polygon> piece = new Polygon;
        CopyPoints(geos, GEOSGetExteriorRing_r(geos.handle(), geometry), *piece);
        const int holes = GEOSGetNumInteriorRings_r(geos.handle(), geometry);
        for (int i = 0; i < holes; ++i) {
            osg::ref_ptr<Ring> hole = new Ring;
            CopyPoints(geos, GEOSGetInteriorRingN_r(geos.handle(), geometry, i), *hole);
            hole->rewind(Ring::ORIENTATION_CW);
            piece->getHoles().push_back(hole);
        }
        piece->osgEarth::Symbology::Geometry::rewind(Ring::ORIENTATION_CCW);
        pieces.add(piece);
    } else if (type == GEOS_MULTIPOLYGON || type == GEOS_GEOMETRYCOLLECTION) {
        const int parts = GEOSGetNumGeometries_r(geos.handle(), geometry);
        for (int i = 0; i < parts; ++i)
            AddPieces(geos, GEOSGetGeometryN_r(geos.handle(), geometry, i), pieces);
    }
}

osg::ref_ptr<MultiGeometry> Difference(const GeosContext& geos, const AxRing& zone,
                                       const std::vector<AxRing>& lifts)
{
    osg::ref_ptr<MultiGeometry> pieces = new MultiGeometry;
    if (lifts.empty()) {
        pieces->add(new Polygon(&zone));
        return pieces;
    }
    GeosGeometry rest = Area(geos, zone);
    for (const AxRing& lift : lifts) {
        const GeosGeometry lifted = Area(geos, lift);
        if (!rest || !lifted)
            continue;
        // A difference that fails leaves the zone as it was: rather too much of it than too little.
        if (GeosGeometry less = geos.own(GEOSDifference_r(geos.handle(), rest.get(), lifted.get())))
            rest = std::move(less);
    }
    if (rest)
        AddPieces(geos, rest.get(), *pieces);
    if (pieces->getComponents().empty())
        pieces->add(new Polygon);
    return pieces;
}
} // namespace

QPolygonF AxOutline(const AxRing& ring)
{
    QPolygonF outline;
    outline.reserve(static_cast<int>(ring.size()));
    for (const osg::Vec3d& point : ring)
        outline += QPointF(point.x(), point.y());
    return outline;
}

AxClippedZone AxClipZone(const AxRing& zone, const std::vector<AxRing>& lifts)
{
    const GeosContext geos;
    AxClippedZone result;
    std::vector<AxRing> usable;
    for (const AxRing& lift : lifts) {
        if (IsTangled(geos, zone) || IsTangled(geos, lift))
            ++result.unusable;
        else
            usable.push_back(MovedBeside(lift, zone));
    }
    result.display = Difference(geos, zone, usable);
    result.outline = AxOutline(zone);
    const QRectF bounds = result.outline.boundingRect();
    for (const AxRing& lift : usable) {
        const QPolygonF lifted = AxOutline(lift);
        if (bounds.intersects(lifted.boundingRect()))
            result.outline = result.outline.subtracted(result.outline.intersected(lifted));
    }
    return result;
}
