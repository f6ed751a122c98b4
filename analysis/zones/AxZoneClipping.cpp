#include "analysis/zones/AxZoneClipping.h"
#include "analysis/zones/AxZoneHole.h"
#include "scene/base/AxLongitudes.h"

#include <support/GeosContext.h>

#include <algorithm>

using osgEarth::Symbology::MultiGeometry;
using osgEarth::Symbology::Polygon;
using osgEarth::Symbology::Ring;

namespace {
using GeosGeometry = GeosContext::Geometry;

// What the outline's clipper does in milliseconds; a hundred points at random already take it ten seconds.
constexpr std::size_t mostPointsThatCross = 32;
constexpr int mostCrossings = 500;

/// A ring as GEOS reckons with it.
struct Area
{
    /// By the even-odd rule where the ring crosses itself; null when it bounds nothing.
    GeosGeometry polygon;
    /// It crosses itself, and may do so too often.
    bool isTangled = false;
};

Area AreaOf(const GeosContext& geos, const AxRing& ring)
{
    Area area{geos.polygon(ring)};
    if (!area.polygon || geos.isValid(area.polygon))
        return area;
    area.isTangled = ring.size() > mostPointsThatCross;
    if (!area.isTangled)
        area.polygon = geos.own(GEOSMakeValid_r(geos.handle(), area.polygon.get()));
    return area;
}

/// Whether two rings cross each other too often. Few points cannot.
bool CrossOften(const GeosContext& geos, const QPolygonF& outline, const AxRing& ring)
{
    constexpr std::size_t fewPairs = 2000;
    if (static_cast<std::size_t>(outline.size()) * ring.size() < fewPairs)
        return false;
    const GeosGeometry line = geos.ring(std::vector<QPointF>(outline.begin(), outline.end()));
    const GeosGeometry other = geos.ring(ring);
    const GeosGeometry common =
        geos.own(line && other ? GEOSIntersection_r(geos.handle(), line.get(), other.get()) : nullptr);
    return !common || GEOSGetNumGeometries_r(geos.handle(), common.get()) > mostCrossings;
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

osg::ref_ptr<MultiGeometry> Difference(const GeosContext& geos, const AxRing& zone, GeosGeometry rest,
                                       const std::vector<GeosGeometry>& lifts)
{
    osg::ref_ptr<MultiGeometry> pieces = new MultiGeometry;
    if (lifts.empty()) {
        pieces->add(new Polygon(&zone));
        return pieces;
    }
    // A difference that fails leaves the zone as it was: rather too much of it than too little.
    for (const GeosGeometry& lift : lifts)
        if (GeosGeometry less = geos.own(GEOSDifference_r(geos.handle(), rest.get(), lift.get())))
            rest = std::move(less);
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
    if (lifts.size() == 1)
        if (std::optional<AxClippedZone> left = AxZoneWithHole(zone, MovedBeside(lifts.front(), zone)))
            return *std::move(left);
    const GeosContext geos;
    AxClippedZone result;
    result.outline = AxOutline(zone);
    const QRectF bounds = result.outline.boundingRect();
    Area whole = AreaOf(geos, zone);
    std::vector<GeosGeometry> lifted;
    for (const AxRing& lift : lifts) {
        const AxRing ring = MovedBeside(lift, zone);
        Area area = AreaOf(geos, ring);
        // A zone or a lift that bounds nothing leaves all as it is.
        if (!whole.polygon || !area.polygon)
            continue;
        if (whole.isTangled || area.isTangled || CrossOften(geos, result.outline, ring)) {
            ++result.unusable;
            continue;
        }
        lifted.push_back(std::move(area.polygon));
        const QPolygonF outline = AxOutline(ring);
        if (bounds.intersects(outline.boundingRect()))
            result.outline = result.outline.subtracted(result.outline.intersected(outline));
    }
    result.display = Difference(geos, zone, std::move(whole.polygon), lifted);
    return result;
}
