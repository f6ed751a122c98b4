#include <AxAlgorthm/AxConstants.h>
#include <AxData/planner/AxWayCheck.h>

#include <algorithm>
#include <cmath>

namespace {
using Kind = AxPlanWarning::Kind;
using Role = AxPlanPoint::Role;

/// Metres by which a pass may be left in a bend.
constexpr double mostBeside = 3.0;

/// Bends to one side, from place to place. Turns between passes are planned such that they can be flown.
class BendsTo
{
public:
    BendsTo(const AxPlanRequest& asked, const AxPlanPlane& where, double towards)
        : request(asked), plane(where), side(towards)
    {
    }

    /// By so many radians to the left at a place, metres of straight flight after the place before.
    void Bend(const AxRoutePlace& place, double angle, double metres)
    {
        const double radius = request.aircraft.turnRadius;
        // Radians that the aircraft has yet to turn here; on a straight line it makes up for them.
        late -= metres / radius;
        if (late <= 0.0)
            Straighten();
        else
            length += metres;
        late += side * angle;
        turned += side * angle;
        if (late <= 0.0)
            Straighten();
        const double beside = place.role == Role::HomeLeg ? 0.5 * request.zoneMargin : mostBeside;
        if (late <= 2.0 * std::acos(radius / (radius + beside)))
            return;
        if (!isWarned)
            warnings.push_back({Kind::Bend, plane.ToLngLat(place.place), 0.0, radius});
        isWarned = true;
        warnings.back().value = length / turned;
    }
    void Straighten()
    {
        late = turned = length = 0.0;
        isWarned = false;
    }

    std::vector<AxPlanWarning> warnings;

private:
    const AxPlanRequest& request;
    const AxPlanPlane& plane;
    double side; // 1 left, -1 right
    double late = 0.0;
    double turned = 0.0; // radians of the bend so far
    double length = 0.0; // metres of the bend so far
    bool isWarned = false;
};

std::vector<AxPlanWarning> BendsOn(const AxPlanRequest& request, const AxPlanPlane& plane,
                                   const std::vector<AxRoutePlace>& way)
{
    const double radius = request.aircraft.turnRadius;
    const bool isCircle = request.kind == AxPlanRequest::Kind::Orbit;
    std::vector<AxPlanWarning> warnings;
    if (!(radius > 0.0))
        return warnings;
    if (isCircle && request.radius < radius)
        for (const AxRoutePlace& place : way)
            if (place.pass >= 0) {
                warnings.push_back({Kind::Bend, plane.ToLngLat(place.place), request.radius, radius});
                break;
            }
    BendsTo left(request, plane, 1.0);
    BendsTo right(request, plane, -1.0);
    for (std::size_t i = 1; i + 1 < way.size(); ++i) {
        const AxRoutePlace& place = way[i];
        const AxRoutePlace& before = way[i - 1];
        const AxRoutePlace& after = way[i + 1];
        const bool isOnPass =
            !isCircle && place.pass >= 0 && before.pass == place.pass && after.pass == place.pass;
        if (!isOnPass && place.role != Role::HomeLeg) {
            left.Straighten();
            right.Straighten();
            continue;
        }
        const auto course = [](const AxRoutePlace& from, const AxRoutePlace& to) {
            return std::atan2(to.place.y() - from.place.y(), to.place.x() - from.place.x());
        };
        const double angle = std::remainder(course(place, after) - course(before, place), 2.0 * PI);
        for (BendsTo* bends : {&left, &right})
            bends->Bend(place, angle, AxApart(before.place, place.place));
    }
    warnings.insert(warnings.end(), left.warnings.begin(), left.warnings.end());
    warnings.insert(warnings.end(), right.warnings.begin(), right.warnings.end());
    return warnings;
}
} // namespace

AxAboveGround AxCheckWay(const AxPlanRequest& request, const AxPlanPlane& plane, AxZonesAround& zones,
                         const std::vector<AxRoutePlace>& way)
{
    double reach = 0.0;
    for (const AxRoutePlace& place : way)
        reach = std::max(reach, std::hypot(place.place.x(), place.place.y()));
    zones.Reach(reach);
    std::vector<AxPlanWarning> warnings = zones.WarningsOn(way);
    const std::vector<AxPlanWarning> bends = BendsOn(request, plane, way);
    warnings.insert(warnings.end(), bends.begin(), bends.end());
    AxAboveGround above = AxLookBelow(request, plane, way);
    above.warnings.insert(above.warnings.begin(), warnings.begin(), warnings.end());
    return above;
}
