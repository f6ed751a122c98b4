#pragma once

#include <AxData/planner/AxPlanRequest.h>
#include <AxData/planner/AxWayRound.h>
#include <AxData/planner/AxZonesAround.h>

#include <map>
#include <optional>

/// The ways between home and places of a route: straight, or as the request asks round the no-fly zones. A
/// zone that has home or the place in it is not gone round.
class AxHomeLegs
{
public:
    struct Way
    {
        AxPlanLine corners; ///< in between; none on a straight way
        bool isFound = true;
    };

    /// Both outlive it.
    AxHomeLegs(const AxPlanRequest& request, AxZonesAround& zones) : m_request(request), m_zones(zones) {}

    /// Straight where no way round is found. Of a route in three directions always straight.
    Way Between(const CAxPoint2D& from, const CAxPoint2D& to);
    /// Whether ways may be other than straight.
    bool MayBend() const { return m_request.goesRoundZones && !m_request.isThreeDirections; }

private:
    /// By the numbers of their zones; nothing for a zone that is not gone round.
    using Obstacles = std::map<std::size_t, std::optional<AxObstacle>>;

    const AxObstacle* ObstacleOf(std::size_t zone, const CAxPoint2D& from, const CAxPoint2D& to,
                                 Obstacles& nearEnds);
    std::optional<AxPlanLine> WayWithinReach(const CAxPoint2D& from, const CAxPoint2D& to);

    const AxPlanRequest& m_request;
    AxZonesAround& m_zones;
    Obstacles m_obstacles; // of the zones within reach
    double m_looks = 5e7;  // at obstacles that are left for all ways together: a second or so
};
