#include <AxData/planner/AxZoneHoles.h>
#include <AxData/planner/AxZonesAround.h>
#include <support/GeosContext.h>

#include <algorithm>
#include <cmath>
#include <utility>

QList<QList<QPointF>> AxZoneHoles(const AxPlanRequest& request)
{
    constexpr double leastArea = 1.0; // square metres
    QList<QList<QPointF>> holes;
    if (request.kind != AxPlanRequest::Kind::Area || request.outline.size() < 3)
        return holes;
    const AxPlanPlane plane(request.outline);
    const AxPlanLine outline = plane.ToPlane(request.outline);
    double reach = 0.0;
    for (const CAxPoint2D& point : outline)
        reach = std::max(reach, std::hypot(point.x(), point.y()));
    if (!std::isfinite(reach))
        return holes;
    AxZonesAround around(request, plane);
    around.Reach(reach);

    const GeosContext geos;
    const auto valid = [&geos](const AxPlanLine& ring) {
        const GeosContext::Geometry polygon = geos.polygon(ring);
        return geos.own(polygon ? GEOSMakeValid_r(geos.handle(), polygon.get()) : nullptr);
    };
    std::vector<GEOSGeometry*> zones;
    for (const AxZonesAround::Zone& zone : around.Zones())
        for (const AxPlanLine& ring : zone.area.Rings())
            if (GeosContext::Geometry polygon = valid(ring))
                zones.push_back(polygon.release());
    const auto all = geos.own(GEOSGeom_createCollection_r(geos.handle(), GEOS_GEOMETRYCOLLECTION,
                                                          zones.data(), static_cast<unsigned>(zones.size())));
    const auto closed = geos.own(GEOSUnaryUnion_r(geos.handle(), all.get()));
    const auto area = valid(outline);
    const auto met =
        geos.own(closed && area ? GEOSIntersection_r(geos.handle(), area.get(), closed.get()) : nullptr);
    for (int i = 0; met && i < GEOSGetNumGeometries_r(geos.handle(), met.get()); ++i) {
        const GEOSGeometry* const part = GEOSGetGeometryN_r(geos.handle(), met.get(), i);
        double size = 0.0;
        if (GEOSGeomTypeId_r(geos.handle(), part) != GEOS_POLYGON ||
            GEOSArea_r(geos.handle(), part, &size) != 1 || size < leastArea)
            continue;
        QList<QPointF> hole;
        for (const CAxPoint2D& point : geos.vertices<CAxPoint2D>(GEOSGetExteriorRing_r(geos.handle(), part)))
            hole += plane.ToLngLat(point);
        holes += hole;
    }
    return holes;
}
