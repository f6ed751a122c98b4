#include <AxData/planner/AxWayCheck.h>

#include <algorithm>
#include <cmath>

AxAboveGround AxCheckWay(const AxPlanRequest& request, const AxPlanPlane& plane, AxZonesAround& zones,
                         const std::vector<AxRoutePlace>& way)
{
    double reach = 0.0;
    for (const AxRoutePlace& place : way)
        reach = std::max(reach, std::hypot(place.place.x(), place.place.y()));
    zones.Reach(reach);
    const std::vector<AxPlanWarning> met = zones.WarningsOn(way);
    AxAboveGround above = AxLookBelow(request, plane, way);
    above.warnings.insert(above.warnings.begin(), met.begin(), met.end());
    return above;
}
