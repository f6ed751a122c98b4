#include <AxData/planner/AxPlanAltitudes.h>
#include <AxData/planner/AxRouteHeights.h>

#include <QCoreApplication>

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <tuple>
#include <utility>

namespace {
using Heights = AxPlanRequest::Heights;

/// Between places at which the ground is looked at, metres.
constexpr double lookStep = 10.0;
constexpr double lookStepAcross = 20.0;
/// By which a route that follows the ground may be off what it should follow, metres.
constexpr double followTolerance = 2.0;
/// Of a route's places and looks together, so that no request fills the memory.
constexpr double mostLooks = 20e6;

/// Calls visit(leg, share) from the start of each leg on, and at the end of the last one.
template <typename Visit> bool VisitLegs(const std::vector<AxRoutePlace>& route, Visit visit)
{
    for (std::size_t i = 0; i + 1 < route.size(); ++i) {
        const double length = route[i + 1].along - route[i].along;
        const int steps = std::max(1, static_cast<int>(std::ceil(length / lookStep)));
        const bool isLast = i + 2 == route.size();
        for (int step = 0; step < steps + (isLast ? 1 : 0); ++step)
            if (!visit(i, static_cast<double>(step) / steps))
                return false;
    }
    return true;
}

QString UnknownGround(const QPointF& place)
{
    return QCoreApplication::translate("AxPlanner", "The height of the ground is not known at %1, %2.")
        .arg(place.x(), 0, 'f', 6)
        .arg(place.y(), 0, 'f', 6);
}

class Setter
{
public:
    Setter(const AxPlanRequest& asked, const AxPlanPlane& where, double above)
        : request(asked), plane(where), height(above)
    {
    }
    QString fault;

    std::optional<double> GroundAt(const CAxPoint2D& point)
    {
        const QPointF place = plane.ToLngLat(point);
        const std::optional<double> ground = request.ground(place.x(), place.y());
        if ((!ground || !std::isfinite(*ground)) && fault.isEmpty())
            fault = UnknownGround(place);
        return ground;
    }

    /// Each pass above the highest ground in its swath.
    void KeepOverlap(double swath, std::vector<AxRoutePlace>& route)
    {
        std::vector<AxWantedHeight> wanted;
        for (std::size_t i = 0; i < route.size(); ++i)
            wanted.push_back({route[i].along, std::numeric_limits<double>::lowest(), true});
        for (std::size_t i = 0; i < route.size();) {
            std::size_t end = i + 1;
            while (end < route.size() && route[end].pass == route[i].pass)
                ++end;
            if (route[i].pass >= 0) {
                double highest = std::numeric_limits<double>::lowest();
                for (std::size_t k = i; k + 1 < end; ++k)
                    highest = std::max(highest, HighestBeside(route[k], route[k + 1], swath));
                if (end == i + 1)
                    highest = GroundAt(route[i].place).value_or(0.0);
                for (std::size_t k = i; k < end; ++k)
                    wanted[k].height = highest + height;
            }
            i = end;
        }
        if (!fault.isEmpty())
            return;
        const std::vector<double> flyable =
            AxFlyableHeights(wanted, request.aircraft.climb, request.aircraft.descent);
        for (std::size_t i = 0; i < route.size(); ++i)
            route[i].altitude = flyable[i];
    }

    /// As low over the ground as it may be, and with places where it climbs or falls.
    void FollowGround(std::vector<AxRoutePlace>& route)
    {
        const double above = std::max(height, request.clearance);
        std::vector<AxWantedHeight> wanted;
        std::vector<std::pair<std::size_t, double>> legs;
        VisitLegs(route, [&](std::size_t leg, double share) {
            const auto& [from, to] = std::tie(route[leg], route[leg + 1]);
            const std::optional<double> ground = GroundAt(AxBetween(from.place, to.place, share));
            wanted.push_back({from.along + share * (to.along - from.along), ground.value_or(0.0) + above,
                              share == 0.0 || share == 1.0});
            legs.emplace_back(leg, share);
            return fault.isEmpty();
        });
        if (!fault.isEmpty())
            return;
        const std::vector<double> flyable =
            AxFlyableHeights(wanted, request.aircraft.climb, request.aircraft.descent);
        std::vector<AxRoutePlace> followed;
        for (const std::size_t i : AxNeededHeights(wanted, flyable, followTolerance)) {
            const auto [leg, share] = legs[i];
            AxRoutePlace place = share == 1.0 ? route[leg + 1] : route[leg];
            if (share > 0.0 && share < 1.0) {
                const bool isOnPass = route[leg].pass >= 0 && route[leg].pass == route[leg + 1].pass;
                place.place = AxBetween(route[leg].place, route[leg + 1].place, share);
                place.role = isOnPass ? AxPlanPoint::Role::OnPass : AxPlanPoint::Role::Turn;
                place.pass = isOnPass ? route[leg].pass : -1;
                place.along = wanted[i].along;
            }
            place.altitude = flyable[i] + followTolerance;
            followed.push_back(place);
        }
        route = std::move(followed);
    }

private:
    double HighestBeside(const AxRoutePlace& from, const AxRoutePlace& to, double swath)
    {
        const double length = to.along - from.along;
        const int steps = std::max(1, static_cast<int>(std::ceil(length / lookStepAcross)));
        const int aside = std::max(1, static_cast<int>(std::ceil(0.5 * swath / lookStepAcross)));
        const double dx = length > 0.0 ? (to.place.x() - from.place.x()) / length : 1.0;
        const double dy = length > 0.0 ? (to.place.y() - from.place.y()) / length : 0.0;
        double highest = std::numeric_limits<double>::lowest();
        for (int step = 0; step <= steps && fault.isEmpty(); ++step)
            for (int side = -aside; side <= aside; ++side) {
                const double off = 0.5 * swath * side / aside;
                const CAxPoint2D at = AxBetween(from.place, to.place, static_cast<double>(step) / steps);
                highest =
                    std::max(highest, GroundAt({at.x() - off * dy, at.y() + off * dx}).value_or(highest));
            }
        return highest;
    }

    const AxPlanRequest& request;
    const AxPlanPlane& plane;
    double height;
};
} // namespace

QString AxSetAltitudes(const AxPlanRequest& request, const AxPlanPlane& plane, double height, double swath,
                       std::vector<AxRoutePlace>& route)
{
    if (request.heights == Heights::Constant) {
        for (AxRoutePlace& place : route)
            place.altitude = request.meanGround + height;
        return {};
    }
    if (!route.empty() && route.back().along / lookStep > mostLooks)
        return QCoreApplication::translate("AxPlanner", "The route is too long to follow the ground.");
    Setter setter(request, plane, height);
    if (request.heights == Heights::KeepOverlap)
        setter.KeepOverlap(swath, route);
    else
        setter.FollowGround(route);
    return setter.fault;
}

AxAboveGround AxLookBelow(const AxPlanRequest& request, const AxPlanPlane& plane,
                          const std::vector<AxRoutePlace>& route)
{
    using Kind = AxPlanWarning::Kind;
    AxAboveGround result;
    if (route.empty())
        return result;
    if (!request.ground) {
        result.warnings.push_back(
            {Kind::UnknownGround, plane.ToLngLat(route.front().place), 0.0, request.clearance});
        return result;
    }
    double sum = 0.0;
    double passSum = 0.0;
    result.least = result.passLeast = std::numeric_limits<double>::max();
    std::optional<Kind> stretch; // that goes on at the place before
    VisitLegs(route, [&](std::size_t leg, double share) {
        const AxRoutePlace& from = route[leg];
        const AxRoutePlace& to = route[leg + 1];
        const QPointF place = plane.ToLngLat(AxBetween(from.place, to.place, share));
        const std::optional<double> ground = request.ground(place.x(), place.y());
        const bool isKnown = ground && std::isfinite(*ground);
        std::optional<Kind> wrong;
        double above = 0.0;
        if (isKnown) {
            above = from.altitude + share * (to.altitude - from.altitude) - *ground;
            sum += above;
            ++result.looks;
            result.least = std::min(result.least, above);
            if (from.pass >= 0 && from.pass == to.pass) {
                passSum += above;
                ++result.passLooks;
                result.passLeast = std::min(result.passLeast, above);
            }
            if (above < request.clearance)
                wrong = Kind::Clearance;
        } else {
            wrong = Kind::UnknownGround;
        }
        if (wrong && wrong != stretch)
            result.warnings.push_back({*wrong, place, above, request.clearance});
        else if (wrong == Kind::Clearance && above < result.warnings.back().value)
            result.warnings.back() = {*wrong, place, above, request.clearance}; // its lowest place
        stretch = wrong;
        return true;
    });
    result.mean = result.looks > 0 ? sum / result.looks : 0.0;
    if (result.looks == 0)
        result.least = 0.0;
    result.passMean = result.passLooks > 0 ? passSum / result.passLooks : 0.0;
    if (result.passLooks == 0)
        result.passLeast = 0.0;
    return result;
}
