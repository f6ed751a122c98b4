#include "analysis/models/AxOutlinesMeet.h"
#include "scene/base/AxLongitudes.h"

#include <support/GeosContext.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {
using Outline = std::vector<QPointF>;

/// Longitudes that go on from place to place, the first between -180 and 180 degrees.
Outline Continuous(const Outline& outline)
{
    Outline made;
    for (const QPointF& place : outline)
        made.emplace_back(made.empty() ? AxLongitudes::Normalized(place.x())
                                       : AxLongitudes::NearestTo(made.back().x(), place.x()),
                          place.y());
    return made;
}

/// Most outlines are far apart.
struct Extent
{
    explicit Extent(const Outline& outline)
    {
        for (const QPointF& place : outline) {
            west = std::min(west, place.x());
            east = std::max(east, place.x());
            south = std::min(south, place.y());
            north = std::max(north, place.y());
        }
    }
    bool Meets(const Extent& other) const
    {
        return west <= other.east && other.west <= east && south <= other.north && other.south <= north;
    }

    double west = std::numeric_limits<double>::max();
    double east = std::numeric_limits<double>::lowest();
    double south = std::numeric_limits<double>::max();
    double north = std::numeric_limits<double>::lowest();
};

bool IsWhole(const Outline& outline)
{
    return !outline.empty() && std::all_of(outline.begin(), outline.end(), [](const QPointF& place) {
        return std::isfinite(place.x()) && std::isfinite(place.y());
    });
}

GeosContext::Geometry ShapeOf(const GeosContext& geos, const Outline& outline)
{
    if (outline.size() == 1)
        return geos.own(GEOSGeom_createPointFromXY_r(geos.handle(), outline[0].x(), outline[0].y()));
    if (outline.size() == 2) {
        GEOSCoordSequence* const line = GEOSCoordSeq_create_r(geos.handle(), 2, 2);
        for (unsigned i = 0; i < 2; ++i)
            GEOSCoordSeq_setXY_r(geos.handle(), line, i, outline[i].x(), outline[i].y());
        return geos.own(GEOSGeom_createLineString_r(geos.handle(), line));
    }
    GeosContext::Geometry area = geos.polygon(outline);
    return geos.isValid(area) ? std::move(area) : geos.own(GEOSMakeValid_r(geos.handle(), area.get()));
}
} // namespace

bool AxOutlinesMeet(const std::vector<QPointF>& a, const std::vector<QPointF>& b)
{
    if (!IsWhole(a) || !IsWhole(b))
        return false;
    const Outline one = Continuous(a);
    const Extent box(one);
    Outline other = Continuous(b);
    for (QPointF& place : other)
        place.rx() -= AxLongitudes::fullTurn;
    for (int turn = -1; turn <= 1; ++turn) {
        if (box.Meets(Extent(other))) {
            const GeosContext geos;
            const GeosContext::Geometry shape = ShapeOf(geos, one);
            const GeosContext::Geometry turned = ShapeOf(geos, other);
            if (shape && turned && GEOSIntersects_r(geos.handle(), shape.get(), turned.get()) == 1)
                return true;
        }
        for (QPointF& place : other)
            place.rx() += AxLongitudes::fullTurn;
    }
    return false;
}
