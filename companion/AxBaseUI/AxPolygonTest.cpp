#include <AxBaseUI/AxPolygonTest.h>

#include <support/GeosContext.h>

#include <algorithm>
#include <cmath>

namespace {
template <typename Point> bool isFinite(const Point& point)
{
    return std::isfinite(point.x()) && std::isfinite(point.y());
}

bool isSame(const QPointF& a, const QPointF& b)
{
    return !(a.x() < b.x() || a.x() > b.x() || a.y() < b.y() || a.y() > b.y());
}
} // namespace

bool isSelfIntersection(std::vector<QPointF> ring)
{
    if (!std::all_of(ring.begin(), ring.end(), isFinite<QPointF>))
        return true;
    ring.erase(std::unique(ring.begin(), ring.end(), isSame), ring.end());
    while (ring.size() > 1 && isSame(ring.front(), ring.back()))
        ring.pop_back();
    if (ring.size() < 3)
        return false;
    const GeosContext geos;
    const GeosContext::Geometry line = geos.ring(ring);
    return !line || GEOSisSimple_r(geos.handle(), line.get()) != 1;
}

bool isAreaCanSegment(const std::vector<CAxPoint2D>& ring, double size)
{
    if (!(size > 0.0) || !std::all_of(ring.begin(), ring.end(), isFinite<CAxPoint2D>))
        return false;
    const GeosContext geos;
    const GeosContext::Geometry area = geos.polygon(ring);
    const GeosContext::Geometry box =
        geos.own(area ? GEOSMinimumRotatedRectangle_r(geos.handle(), area.get()) : nullptr);
    if (!box || GEOSGeomTypeId_r(geos.handle(), box.get()) != GEOS_POLYGON)
        return false;
    const auto corners = geos.vertices<CAxPoint2D>(GEOSGetExteriorRing_r(geos.handle(), box.get()));
    if (corners.size() != 4)
        return false;
    const auto side = [&corners](std::size_t i) {
        return std::hypot(corners[i + 1].x() - corners[i].x(), corners[i + 1].y() - corners[i].y());
    };
    return std::max(side(0), side(1)) > size;
}
