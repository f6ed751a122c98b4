#include <AxData/planner/AxPlanCheck.h>

#include <QCoreApplication>

#include <algorithm>
#include <cmath>

namespace {
QString Text(const char* text)
{
    return QCoreApplication::translate("AxPlanner", text);
}

struct Limit
{
    double value;
    double least;
    bool isLeastAllowed;
    double below; // not reached
    const char* fault;
};

bool IsWithin(const Limit& limit)
{
    return std::isfinite(limit.value) && limit.value < limit.below &&
           (limit.isLeastAllowed ? limit.value >= limit.least : limit.value > limit.least);
}

bool IsPlace(const QPointF& place)
{
    return std::isfinite(place.x()) && std::isfinite(place.y()) && std::abs(place.x()) <= 360.0 &&
           std::abs(place.y()) <= 90.0;
}

constexpr std::size_t LeastPoints(AxPlanRequest::Kind kind)
{
    return kind == AxPlanRequest::Kind::Area ? 3 : kind == AxPlanRequest::Kind::Strip ? 2 : 1;
}
} // namespace

QString AxPlanFault(const AxPlanRequest& request)
{
    using Kind = AxPlanRequest::Kind;
    constexpr double farthest = 1e6; // metres
    if (!request.camera.fault.isEmpty())
        return request.camera.fault;
    if (static_cast<std::size_t>(request.outline.size()) < LeastPoints(request.kind))
        return Text(QT_TRANSLATE_NOOP("AxPlanner", "The area has too few points."));
    QList<QList<QPointF>> rings = request.holes;
    rings += request.outline;
    if (request.home)
        rings += QList<QPointF>{*request.home};
    for (const QList<QPointF>& ring : qAsConst(rings))
        if (!std::all_of(ring.begin(), ring.end(), IsPlace))
            return Text(
                QT_TRANSLATE_NOOP("AxPlanner", "A point of the area or of home is no place on the globe."));

    const AxPlanCamera& camera = request.camera;
    const AxPlanAircraft& aircraft = request.aircraft;
    const Limit limits[] = {
        {camera.sensorWidth, 0.0, false, 1e4,
         QT_TRANSLATE_NOOP("AxPlanner", "The camera's sensor has no width.")},
        {camera.sensorHeight, 0.0, false, 1e4,
         QT_TRANSLATE_NOOP("AxPlanner", "The camera's sensor has no height.")},
        {camera.focalLength, 0.0, false, 1e5,
         QT_TRANSLATE_NOOP("AxPlanner", "The camera's focal length must be more than 0.")},
        {static_cast<double>(camera.imageWidth), 0.0, false, 1e7,
         QT_TRANSLATE_NOOP("AxPlanner", "The camera's picture has no width.")},
        {static_cast<double>(camera.imageHeight), 0.0, false, 1e7,
         QT_TRANSLATE_NOOP("AxPlanner", "The camera's picture has no height.")},
        {camera.shortestInterval, 0.0, true, 1e5,
         QT_TRANSLATE_NOOP("AxPlanner", "The camera's shortest interval must not be negative.")},
        {aircraft.speed, 0.0, false, 1e4,
         QT_TRANSLATE_NOOP("AxPlanner", "The aircraft's speed must be more than 0.")},
        {aircraft.turnRadius, 0.0, true, farthest,
         QT_TRANSLATE_NOOP("AxPlanner", "The radius of turns must not be negative.")},
        {aircraft.leadIn, 0.0, true, farthest,
         QT_TRANSLATE_NOOP("AxPlanner", "The way before a pass must not be negative.")},
        {aircraft.climb, 0.0, false, 1e3,
         QT_TRANSLATE_NOOP("AxPlanner", "The aircraft must be able to climb.")},
        {aircraft.descent, 0.0, false, 1e3,
         QT_TRANSLATE_NOOP("AxPlanner", "The aircraft must be able to descend.")},
        {aircraft.endurance, 0.0, false, 1e9,
         QT_TRANSLATE_NOOP("AxPlanner", "The time that a flight may take must be more than 0.")},
        {request.sideOverlap, 0.0, true, 1.0,
         QT_TRANSLATE_NOOP("AxPlanner", "The side overlap must be at least 0 and less than 100 %.")},
        {request.forwardOverlap, 0.0, true, 1.0,
         QT_TRANSLATE_NOOP("AxPlanner", "The forward overlap must be at least 0 and less than 100 %.")},
        {AxPlannedHeight(request), 0.0, false, farthest,
         QT_TRANSLATE_NOOP("AxPlanner", "The height must be more than 0.")},
        {request.heading.value_or(0.0), -360.0, true, 361.0,
         QT_TRANSLATE_NOOP("AxPlanner", "The direction of the passes is no angle.")},
        {request.meanGround, -farthest, true, farthest,
         QT_TRANSLATE_NOOP("AxPlanner", "The height of the ground is no number.")},
        {request.clearance, 0.0, true, farthest,
         QT_TRANSLATE_NOOP("AxPlanner", "The clearance must not be negative.")},
        {request.windSpeed, 0.0, true, aircraft.speed,
         QT_TRANSLATE_NOOP("AxPlanner", "The wind is as fast as the aircraft.")},
        {request.windFrom, -360.0, true, 361.0,
         QT_TRANSLATE_NOOP("AxPlanner", "The direction of the wind is no angle.")},
        {static_cast<double>(request.passes), 0.0, true, 1e6,
         QT_TRANSLATE_NOOP("AxPlanner", "The number of passes must not be negative.")},
        {static_cast<double>(request.entry), 0.0, true, 4.0,
         QT_TRANSLATE_NOOP("AxPlanner", "There are the entry points 0 to 3.")},
        {request.homeAltitude, -farthest, true, farthest,
         QT_TRANSLATE_NOOP("AxPlanner", "The height of home is no number.")},
        {request.zoneMargin, 0.0, false, farthest,
         QT_TRANSLATE_NOOP("AxPlanner", "The distance from no-fly zones must be more than 0.")},
    };
    for (const Limit& limit : limits)
        if (!IsWithin(limit))
            return Text(limit.fault);
    if (request.kind == Kind::Strip && !(IsWithin({request.leftWidth, 0.0, true, farthest, ""}) &&
                                         IsWithin({request.rightWidth, 0.0, true, farthest, ""}) &&
                                         request.leftWidth + request.rightWidth > 0.0))
        return Text(QT_TRANSLATE_NOOP("AxPlanner", "The strip has no width."));
    if (request.kind == Kind::Orbit && !IsWithin({request.radius, 0.0, false, farthest, ""}))
        return Text(QT_TRANSLATE_NOOP("AxPlanner", "The radius of the circle must be more than 0."));
    if (request.heights != AxPlanRequest::Heights::Constant && !request.ground)
        return Text(QT_TRANSLATE_NOOP("AxPlanner", "Without heights of the ground no route can follow it."));
    return {};
}

double AxPlannedHeight(const AxPlanRequest& request)
{
    return request.height == 0.0 ? request.camera.HeightFor(request.sample) : request.height;
}
