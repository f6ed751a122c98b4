#include "analysis/sight/AxLineOfSight.h"

#include <AxData/planner/AxPlanPlane.h>

#include <algorithm>
#include <cmath>

namespace {
// Rounding in the middle of a long line; nobody knows the ground as well as this.
constexpr double touch = 1e-6; // metres
constexpr int mostInProfile = 2000;

bool IsEnd(const AxSightEnd& end)
{
    return std::isfinite(end.place.x()) && std::abs(end.place.y()) <= 90.0 && std::isfinite(end.aboveGround);
}

/// A straight ray in the plane through the middle of a sphere: the inverse of its distance from the middle is
/// a sine of the angle.
class Ray
{
public:
    Ray(double sphere, double distance, double fromHeight, double toHeight)
        : radius(sphere), whole(distance / sphere), from(1.0 / (sphere + fromHeight)),
          to(1.0 / (sphere + toHeight))
    {
    }

    double HeightAt(double distance) const
    {
        const double angle = distance / radius;
        return std::sin(whole) / (from * std::sin(whole - angle) + to * std::sin(angle)) - radius;
    }
    /// Of the far end, so that the ray just passes over a height at a distance; infinite where none does.
    double EndOver(double distance, double height) const
    {
        const double angle = distance / radius;
        const double inverse =
            (std::sin(whole) / (radius + height) - from * std::sin(whole - angle)) / std::sin(angle);
        return inverse > 0.0 ? 1.0 / inverse - radius : std::numeric_limits<double>::infinity();
    }

private:
    double radius;
    double whole; // angle between the ends, radians
    double from;
    double to;
};
} // namespace

AxSightLine AxLineOfSight(const AxSightEnd& from, const AxSightEnd& to, const AxPlanGround& ground,
                          const AxSightOptions& options, const std::atomic<bool>& isOff)
{
    AxSightLine line;
    line.from = from;
    line.to = to;
    line.refraction = std::clamp(options.refraction, 0.0, AxSight::mostRefraction);
    if (!IsEnd(from) || !IsEnd(to) || !ground)
        return line;
    const AxPlanPlane plane({from.place});
    const CAxPoint2D end = plane.ToPlane(to.place);
    const double length = std::hypot(end.x(), end.y());
    if (!(length <= axLongestSight))
        return line;
    line.distance = length;
    const auto groundAt = [&](const QPointF& place) {
        return ground(place.x(), place.y()).value_or(AxSightLine::none);
    };
    line.fromGround = groundAt(from.place);
    line.toGround = groundAt(to.place);
    const double eye = line.fromGround + from.aboveGround;
    const double target = line.toGround + to.aboveGround;
    if (length < touch) {
        line.profile = {{from.place, 0.0, line.fromGround, from.aboveGround},
                        {to.place, length, line.toGround, to.aboveGround}};
        line.seen = std::isnan(eye) ? AxSeen::Unknown : AxSeen::Visible;
        line.neededAboveGround = std::isnan(eye) ? AxSightLine::none : 0.0;
        return line;
    }

    const AxSight::Curvature curvature(from.place.y());
    const double radius = curvature.RadiusAlong(end.x() / length, end.y() / length) / (1.0 - line.refraction);
    const Ray ray(radius, length, eye, target);
    const int steps =
        std::clamp(static_cast<int>(std::ceil(length / std::max(options.step, length / axMostSightSteps))), 2,
                   axMostSightSteps);
    const int inProfile = (steps + mostInProfile - 1) / mostInProfile;
    bool isUnknown = std::isnan(eye) || std::isnan(target);
    double needed = std::isnan(eye) ? AxSightLine::none : line.toGround;
    const auto placeAt = [&](int step, const QPointF& place, double height) {
        const double distance = length * step / steps;
        return AxSightPlace{place, distance, height, ray.HeightAt(distance) - height};
    };
    line.profile.push_back({from.place, 0.0, line.fromGround, from.aboveGround});
    for (int step = 1; step < steps && !isOff; ++step) {
        const double share = static_cast<double>(step) / steps;
        const QPointF place = plane.ToLngLat({share * end.x(), share * end.y()});
        const AxSightPlace here = placeAt(step, place, groundAt(place));
        if (step % inProfile == 0)
            line.profile.push_back(here);
        if (std::isnan(here.ground)) {
            isUnknown = true;
            needed = AxSightLine::none;
            continue;
        }
        // A comparison with what is not known says no, and leaves it so.
        if (ray.EndOver(here.distance, here.ground) > needed)
            needed = ray.EndOver(here.distance, here.ground);
        if (std::isnan(here.clearance))
            continue;
        if (!line.blockedAt && here.clearance < -touch)
            line.blockedAt = here;
        if (!line.tightest || here.clearance < line.tightest->clearance)
            line.tightest = here;
    }
    line.profile.push_back({to.place, length, line.toGround, to.aboveGround});
    line.neededAboveGround = needed - line.toGround;
    line.seen = isOff            ? AxSeen::Unknown
                : line.blockedAt ? AxSeen::Hidden
                : isUnknown      ? AxSeen::Unknown
                                 : AxSeen::Visible;
    return line;
}
