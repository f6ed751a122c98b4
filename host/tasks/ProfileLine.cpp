#include "host/tasks/ProfileLine.h"

#include <AxAlgorthm/AxMath.h>
#include <AxData/planner/AxPlanPlane.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {
// Looks at the ground between the points: so many on the whole route, and none closer than metres that no
// height file resolves.
constexpr double mostLooks = 20000.0;
constexpr double closestLooks = 5.0;
constexpr double metresPerDegree = 111320.0; // of latitude
// More of them are not told apart in a plot.
constexpr std::size_t mostWarnings = 500;

struct Corner
{
    QPointF lngLat;
    double altitude = 0.0;
    bool isFlownTo = true; ///< from the one before
};

std::vector<Corner> CornersOf(const ShownPlan& shown)
{
    std::vector<Corner> corners;
    const std::vector<AxPlanPoint>& points = shown.plan.points;
    // Three directions are flown one by one.
    const std::size_t parts = shown.request.isThreeDirections && points.size() % 3 == 0 ? 3 : 1;
    const std::size_t count = points.size() / parts;
    for (std::size_t i = 0; i < points.size(); ++i) {
        const QPointF place(points[i].longitude, points[i].latitude);
        const bool isFirst = i % count == 0;
        const bool isLast = i % count == count - 1;
        // Level from home and back.
        if (isFirst && shown.request.home)
            corners.push_back({*shown.request.home, points[i].altitude, false});
        corners.push_back({place, points[i].altitude, !isFirst || shown.request.home});
        if (isLast && shown.request.home)
            corners.push_back({*shown.request.home, points[i].altitude});
    }
    return corners;
}

ProfilePlace PlaceOf(double along, const QPointF& lngLat, double altitude, const AxPlanGround& ground)
{
    const std::optional<double> height = ground(lngLat.x(), lngLat.y());
    return {along, lngLat.x(), lngLat.y(), altitude,
            height.value_or(std::numeric_limits<double>::quiet_NaN())};
}

void AddWarnings(const std::vector<AxPlanWarning>& warnings, ProfileLine& line)
{
    for (const AxPlanWarning& warning : warnings) {
        if (line.warnings.size() == mostWarnings)
            return;
        if (const auto place =
                line.NearestTo(warning.place.x(), warning.place.y(), std::numeric_limits<double>::infinity()))
            line.warnings.push_back({warning, *place});
    }
}
} // namespace

std::size_t ProfileLine::NearestAlong(double along) const
{
    const auto after =
        std::lower_bound(places.begin(), places.end(), along,
                         [](const ProfilePlace& place, double wanted) { return place.along < wanted; });
    if (after == places.begin())
        return 0;
    const auto before = after - 1;
    const bool isBefore = after == places.end() || along - before->along < after->along - along;
    return static_cast<std::size_t>((isBefore ? before : after) - places.begin());
}

std::optional<std::size_t> ProfileLine::NearestTo(double longitude, double latitude, double reach) const
{
    const double narrowing = std::cos(DegreeToRadians(latitude));
    std::optional<std::size_t> nearest;
    double least = reach / metresPerDegree * (reach / metresPerDegree);
    for (std::size_t i = 0; i < places.size(); ++i) {
        const double east = std::remainder(places[i].longitude - longitude, 360.0) * narrowing;
        const double north = places[i].latitude - latitude;
        const double apart = east * east + north * north;
        if (apart <= least) {
            least = apart;
            nearest = i;
        }
    }
    return nearest;
}

ProfileLine ProfileOf(const ShownPlan& shown, const AxPlanGround& ground, const std::atomic<bool>& isOff)
{
    ProfileLine line;
    if (!shown.plan.IsPlanned())
        return line;
    const std::vector<Corner> corners = CornersOf(shown);
    const AxPlanPlane plane(shown.request.outline);
    AxPlanLine route;
    double length = 0.0;
    for (const Corner& corner : corners) {
        route.push_back(plane.ToPlane(corner.lngLat));
        if (route.size() > 1 && corner.isFlownTo)
            length += AxApart(route[route.size() - 2], route.back());
    }
    const double step = std::max(closestLooks, length / mostLooks);

    double along = 0.0;
    line.places.push_back(PlaceOf(0.0, corners.front().lngLat, corners.front().altitude, ground));
    for (std::size_t i = 0; i + 1 < route.size(); ++i) {
        const double leg = corners[i + 1].isFlownTo ? AxApart(route[i], route[i + 1]) : 0.0;
        const int steps = std::max(1, static_cast<int>(std::ceil(leg / step)));
        const double climb = corners[i + 1].altitude - corners[i].altitude;
        for (int k = 1; k <= steps; ++k) {
            if (isOff)
                return {};
            const double share = static_cast<double>(k) / steps;
            const QPointF lngLat =
                k == steps ? corners[i + 1].lngLat : plane.ToLngLat(AxBetween(route[i], route[i + 1], share));
            line.places.push_back(
                PlaceOf(along + share * leg, lngLat, corners[i].altitude + share * climb, ground));
        }
        along += leg;
    }
    AddWarnings(shown.plan.warnings, line);
    return line;
}
