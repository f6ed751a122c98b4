#pragma once

#include <AxData/planner/AxPlaneArea.h>
#include <AxData/planner/AxPlanRequest.h>
#include <AxData/planner/AxPlanResult.h>

#include <QString>

#include <vector>

struct AxRoutePlace;

/// The no-fly zones around the area of a request, in its plane. It asks for them as far as it has to.
class AxZonesAround
{
public:
    struct Zone
    {
        QString name;
        AxPlaneArea area;
    };

    /// Both outlive it.
    AxZonesAround(const AxPlanRequest& request, const AxPlanPlane& plane) : m_request(request), m_plane(plane)
    {
    }

    /// Sees to it that all zones within so many metres of the plane's middle are known; false when they were.
    /// Zones then have other numbers.
    bool Reach(double metres);
    const std::vector<Zone>& Zones() const { return m_zones; }

    /// A warning for each stretch of a route in a zone, the places of the route within reach.
    std::vector<AxPlanWarning> WarningsOn(const std::vector<AxRoutePlace>& route) const;

private:
    const AxPlanRequest& m_request;
    const AxPlanPlane& m_plane;
    double m_reach = -1.0;
    std::vector<Zone> m_zones;
};
