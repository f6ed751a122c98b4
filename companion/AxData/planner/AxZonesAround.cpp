#include <AxData/planner/AxPlanAltitudes.h>
#include <AxData/planner/AxZonesAround.h>

#include <algorithm>
#include <cmath>

namespace {
/// A ring of degrees in the plane. Its edges are straight in degrees: they get points where a straight line
/// in the plane would leave them by a metre or more.
AxPlanLine RingIn(const AxPlanPlane& plane, const QList<QPointF>& ring)
{
    constexpr double longestEdge = 0.05; // degrees
    AxPlanLine line;
    QList<QPointF> points;
    for (const QPointF& point : ring)
        if (std::isfinite(point.x()) && std::isfinite(point.y()) && std::abs(point.y()) <= 90.0)
            points += point;
    for (int i = 0; i < points.size(); ++i) {
        const QPointF& from = points[i];
        const QPointF& to = points[i + 1 < points.size() ? i + 1 : 0];
        // Never the long way round the globe, however a ring counts across the antimeridian.
        const double east = std::remainder(to.x() - from.x(), 360.0);
        const double north = to.y() - from.y();
        const int pieces = std::max(1, static_cast<int>(std::ceil(std::hypot(east, north) / longestEdge)));
        for (int piece = 0; piece < pieces; ++piece) {
            const double share = static_cast<double>(piece) / pieces;
            line.push_back(plane.ToPlane(QPointF(from.x() + share * east, from.y() + share * north)));
        }
    }
    return line;
}
} // namespace

bool AxZonesAround::Reach(double metres)
{
    // A little more, so that not each leg asks anew.
    constexpr double more = 1.1;
    if (metres <= m_reach || !m_request.zones)
        return false;
    m_reach = more * metres + 1000.0;
    m_zones.clear();
    const QPointF middle = m_plane.ToLngLat(CAxPoint2D());
    for (const AxPlanZone& zone : m_request.zones(middle.x(), middle.y(), m_reach)) {
        AxPlanLine ring = RingIn(m_plane, zone.ring);
        if (ring.size() > 2)
            m_zones.push_back({zone.name, AxPlaneArea({std::move(ring)})});
    }
    return true;
}

std::vector<AxPlanWarning> AxZonesAround::WarningsOn(const std::vector<AxRoutePlace>& route) const
{
    std::vector<AxPlanWarning> warnings;
    if (route.empty())
        return warnings;
    AxPlanLine corners{route.front().place, route.front().place};
    for (const AxRoutePlace& place : route) {
        corners[0] = {std::min(corners[0].x(), place.place.x()), std::min(corners[0].y(), place.place.y())};
        corners[1] = {std::max(corners[1].x(), place.place.x()), std::max(corners[1].y(), place.place.y())};
    }
    for (const Zone& zone : m_zones) {
        if (!zone.area.MayMeet(corners[0], corners[1]))
            continue;
        bool goesOn = false; // the stretch that the leg before ended in
        for (std::size_t i = 0; i + 1 < route.size(); ++i) {
            const CAxPoint2D& from = route[i].place;
            const CAxPoint2D& to = route[i + 1].place;
            const double length = AxApart(from, to);
            const auto inside = zone.area.Inside(from, to);
            for (const auto& [begin, end] : inside) {
                if (!(goesOn && begin == 0.0))
                    warnings.push_back({AxPlanWarning::Kind::Zone,
                                        m_plane.ToLngLat(AxBetween(from, to, begin)), 0.0, 0.0, zone.name});
                warnings.back().value += (end - begin) * length;
            }
            // A leg without length changes nothing.
            if (length > 0.0)
                goesOn = !inside.empty() && inside.back().second == 1.0;
        }
    }
    return warnings;
}
