#include "analysis/zones/AxZoneClipping.h"
#include "analysis/zones/AxRingCrossings.h"
#include "analysis/zones/AxZoneHole.h"
#include "scene/base/AxLongitudes.h"

#include <support/GeosContext.h>

#include <algorithm>
#include <optional>
#include <utility>

using osgEarth::Symbology::MultiGeometry;
using osgEarth::Symbology::Polygon;
using osgEarth::Symbology::Ring;

namespace {
using GeosGeometry = GeosContext::Geometry;

constexpr std::size_t leastPoints = 3;
/// Rings that cross more often keep Qt's clipper busy for seconds.
constexpr int fewCrossings = 500;

/// A ring as GEOS reckons with it.
struct Area
{
    /// Null when the ring bounds nothing.
    GeosGeometry polygon;
    bool doesCross = false; ///< the ring itself
    bool isKnown = true;    ///< GEOS has not failed
};

void CollectPolygons(const GeosContext& geos, const GEOSGeometry* geometry, std::vector<GEOSGeometry*>& found)
{
    const int type = GEOSGeomTypeId_r(geos.handle(), geometry);
    if (type == GEOS_POLYGON) {
        if (GEOSisEmpty_r(geos.handle(), geometry) == 0)
            found.push_back(GEOSGeom_clone_r(geos.handle(), geometry));
    } else if (type == GEOS_MULTIPOLYGON || type == GEOS_GEOMETRYCOLLECTION) {
        const int parts = GEOSGetNumGeometries_r(geos.handle(), geometry);
        for (int i = 0; i < parts; ++i)
            CollectPolygons(geos, GEOSGetGeometryN_r(geos.handle(), geometry, i), found);
    }
}

/// What a ring that crosses itself encloses by the even-odd rule; null for nothing, no value when GEOS fails
/// anywhere, because a cell that is passed over would be a hole in a zone. GEOS' own way of making it valid
/// takes ten seconds where this takes a tenth of one.
std::optional<GeosGeometry> EvenOddArea(const GeosContext& geos, const AxRing& ring,
                                        const GeosGeometry& polygon)
{
    const GeosGeometry line = geos.own(GEOSBoundary_r(geos.handle(), polygon.get()));
    const GeosGeometry noded = geos.own(line ? GEOSUnaryUnion_r(geos.handle(), line.get()) : nullptr);
    const GEOSGeometry* const lines[] = {noded.get()};
    const GeosGeometry cells = geos.own(noded ? GEOSPolygonize_r(geos.handle(), lines, 1) : nullptr);
    const QPolygonF outline = AxOutline(ring);
    std::vector<GEOSGeometry*> inside;
    bool isKnown = cells != nullptr;
    const int count = isKnown ? GEOSGetNumGeometries_r(geos.handle(), cells.get()) : 0;
    for (int i = 0; i < count; ++i) {
        const GEOSGeometry* const cell = GEOSGetGeometryN_r(geos.handle(), cells.get(), i);
        const GeosGeometry place = geos.own(GEOSPointOnSurface_r(geos.handle(), cell));
        double x = 0.0;
        double y = 0.0;
        if (!place || GEOSGeomGetX_r(geos.handle(), place.get(), &x) != 1 ||
            GEOSGeomGetY_r(geos.handle(), place.get(), &y) != 1)
            isKnown = false;
        else if (outline.containsPoint({x, y}, Qt::OddEvenFill))
            inside.push_back(GEOSGeom_clone_r(geos.handle(), cell));
    }
    const GeosGeometry all = geos.own(GEOSGeom_createCollection_r(
        geos.handle(), GEOS_MULTIPOLYGON, inside.data(), static_cast<unsigned>(inside.size())));
    if (isKnown && inside.empty())
        return geos.own(nullptr);
    // Cells on both sides of an edge that the ring runs along twice.
    GeosGeometry area = geos.own(isKnown && all ? GEOSUnaryUnion_r(geos.handle(), all.get()) : nullptr);
    if (!area)
        return std::nullopt;
    return area;
}

Area AreaOf(const GeosContext& geos, const AxRing& ring)
{
    Area area{geos.polygon(ring)};
    if (!area.polygon || geos.isValid(area.polygon))
        return area;
    area.doesCross = true;
    std::optional<GeosGeometry> enclosed = EvenOddArea(geos, ring, area.polygon);
    area.isKnown = enclosed.has_value();
    area.polygon = enclosed ? *std::move(enclosed) : geos.own(nullptr);
    return area;
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

template <typename Shape>
osg::ref_ptr<Shape> RingOf(const GeosContext& geos, const GEOSGeometry* from, bool isCounterClockwise)
{
    osg::ref_ptr<Shape> ring = new Shape;
    for (const QPointF& point : geos.vertices<QPointF>(from))
        ring->push_back(point.x(), point.y(), 0.0);
    AxTurnRing(*ring, isCounterClockwise);
    return ring;
}

osg::ref_ptr<MultiGeometry> Pieces(const GeosContext& geos, const GeosGeometry& area)
{
    osg::ref_ptr<MultiGeometry> pieces = new MultiGeometry;
    std::vector<GEOSGeometry*> polygons;
    CollectPolygons(geos, area.get(), polygons);
    for (GEOSGeometry* polygon : polygons) {
        const GeosGeometry owned = geos.own(polygon);
        osg::ref_ptr<Polygon> piece =
            RingOf<Polygon>(geos, GEOSGetExteriorRing_r(geos.handle(), polygon), true);
        const int holes = GEOSGetNumInteriorRings_r(geos.handle(), polygon);
        for (int i = 0; i < holes; ++i)
            piece->getHoles().push_back(
                RingOf<Ring>(geos, GEOSGetInteriorRingN_r(geos.handle(), polygon, i), false));
        pieces->add(piece);
    }
    if (pieces->getComponents().empty())
        pieces->add(new Polygon);
    return pieces;
}

/// From the first ring's beginning to each further ring and back.
void AddRing(const Ring& ring, QPolygonF& outline)
{
    if (ring.empty())
        return;
    const bool isFirst = outline.isEmpty();
    const QPolygonF points = AxOutline(ring.asVector());
    outline += points;
    outline += points.front();
    if (!isFirst)
        outline += outline.front();
}

QPolygonF OutlineOf(const MultiGeometry& pieces)
{
    QPolygonF outline;
    for (const auto& part : pieces.getComponents()) {
        const auto& piece = dynamic_cast<const Polygon&>(*part);
        AddRing(piece, outline);
        for (const auto& hole : piece.getHoles())
            AddRing(*hole, outline);
    }
    return outline;
}

/// By Qt, as areas are tested.
QPolygonF OutlineLess(QPolygonF outline, const std::vector<AxRing>& lifts)
{
    const QRectF bounds = outline.boundingRect();
    for (const AxRing& ring : lifts) {
        const QPolygonF lift = AxOutline(ring);
        if (bounds.intersects(lift.boundingRect()))
            outline = outline.subtracted(outline.intersected(lift));
    }
    return outline;
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

void AxTurnRing(Ring& ring, bool isCounterClockwise)
{
    double doubled = 0.0;
    for (std::size_t i = 0; i < ring.size(); ++i) {
        // From the first point, because far from nought little would be left of a small area.
        const osg::Vec3d a = ring[i] - ring[0];
        const osg::Vec3d b = ring[(i + 1) % ring.size()] - ring[0];
        doubled += a.x() * b.y() - a.y() * b.x();
    }
    if (ring.size() > 2 && (doubled > 0.0) != isCounterClockwise)
        std::reverse(ring.begin() + 1, ring.end());
}

AxClippedZone AxClipZone(const AxRing& zone, const std::vector<AxRing>& lifts)
{
    if (lifts.size() == 1)
        if (std::optional<AxClippedZone> left = AxZoneWithHole(zone, MovedBeside(lifts.front(), zone)))
            return *std::move(left);
    const GeosContext geos;
    AxClippedZone result;
    AxRingCrossings crossings;
    const bool isCountable = crossings.Add(zone);
    Area whole = isCountable ? AreaOf(geos, zone) : Area();
    const bool isCuttable = isCountable && whole.isKnown;
    std::vector<AxRing> used;
    bool doesCross = whole.doesCross;
    for (const AxRing& lift : lifts) {
        const AxRing ring = MovedBeside(lift, zone);
        // A zone or a lift that bounds nothing leaves all as it is.
        if (ring.size() < leastPoints || (isCuttable && !whole.polygon))
            continue;
        const Area area = isCuttable && crossings.Add(ring) ? AreaOf(geos, ring) : Area{{}, false, false};
        if (area.isKnown && !area.polygon)
            continue;
        // A difference that fails leaves the zone as it was: rather too much of it than too little.
        GeosGeometry less =
            geos.own(area.isKnown ? GEOSDifference_r(geos.handle(), whole.polygon.get(), area.polygon.get())
                                  : nullptr);
        if (!less) {
            ++result.unusable;
            continue;
        }
        whole.polygon = std::move(less);
        used.push_back(ring);
        doesCross = doesCross || area.doesCross;
    }
    if (used.empty()) {
        result.display = new MultiGeometry;
        result.display->add(new Polygon(&zone));
        result.outline = AxOutline(zone);
        return result;
    }
    result.display = Pieces(geos, whole.polygon);
    const bool isSimple = !doesCross && crossings.Count() <= fewCrossings;
    result.outline = isSimple ? OutlineLess(AxOutline(zone), used) : OutlineOf(*result.display);
    return result;
}
