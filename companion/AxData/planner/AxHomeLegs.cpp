#include <AxData/planner/AxHomeLegs.h>

#include <algorithm>
#include <cmath>
#include <set>

namespace {
double FromMiddle(const CAxPoint2D& point)
{
    return std::hypot(point.x(), point.y());
}
} // namespace

AxHomeLegs::Way AxHomeLegs::Between(const CAxPoint2D& from, const CAxPoint2D& to)
{
    if (!MayBend())
        return {};
    double reach = std::max(FromMiddle(from), FromMiddle(to));
    for (;;) {
        if (m_zones.Reach(reach + 2.0 * m_request.zoneMargin))
            m_obstacles.clear();
        const std::optional<AxPlanLine> way = WayWithinReach(from, to);
        if (!way)
            return {{}, false};
        double farthest = 0.0;
        for (const CAxPoint2D& corner : *way)
            farthest = std::max(farthest, FromMiddle(corner));
        if (farthest <= reach)
            return {*way, true};
        // Out there may be zones that nobody has asked for.
        reach = 1.5 * farthest;
    }
}

const AxObstacle* AxHomeLegs::ObstacleOf(std::size_t zone, const CAxPoint2D& from, const CAxPoint2D& to,
                                         Obstacles& nearEnds)
{
    constexpr double least = 0.5; // metres
    const AxPlaneArea& area = m_zones.Zones()[zone].area;
    double margin = m_request.zoneMargin;
    for (const CAxPoint2D& end : {from, to})
        if (area.Contains(end))
            margin = 0.0;
        else if (area.MayMeet(end, end, 2.0 * margin))
            // Corners lie up to twice the margin away, and an end beyond them.
            margin = std::min(margin, 0.45 * area.DistanceTo(end));
    const bool isFull = margin == m_request.zoneMargin;
    std::optional<AxObstacle>& obstacle = (isFull ? m_obstacles : nearEnds)[zone];
    if (!obstacle && margin > least)
        obstacle = AxObstacleAround(area, margin);
    return obstacle ? &*obstacle : nullptr;
}

std::optional<AxPlanLine> AxHomeLegs::WayWithinReach(const CAxPoint2D& from, const CAxPoint2D& to)
{
    // Only the zones that the way would meet are gone round: a shortest way that meets no other one is the
    // shortest of all.
    std::set<std::size_t> met;
    std::vector<const AxObstacle*> obstacles;
    Obstacles nearEnds;
    AxPlanLine way{from, to};
    for (;;) {
        const std::size_t known = obstacles.size();
        for (std::size_t zone = 0; zone < m_zones.Zones().size(); ++zone) {
            for (std::size_t i = 0; i + 1 < way.size() && met.count(zone) == 0; ++i) {
                if (!m_zones.Zones()[zone].area.MayMeet(way[i], way[i + 1], 2.0 * m_request.zoneMargin))
                    continue;
                const AxObstacle* const obstacle = ObstacleOf(zone, from, to, nearEnds);
                if (obstacle && !obstacle->closed.Inside(way[i], way[i + 1]).empty()) {
                    met.insert(zone);
                    obstacles.push_back(obstacle);
                }
            }
        }
        if (obstacles.size() == known)
            return AxPlanLine(way.begin() + 1, way.end() - 1);
        const std::optional<AxPlanLine> corners = AxShortestWay(from, to, obstacles, m_looks);
        if (!corners)
            return {};
        way.assign({from});
        way.insert(way.end(), corners->begin(), corners->end());
        way.push_back(to);
    }
}
