#include "interaction/objects/AxRim.h"

#include <AxData/planner/AxPlanPlane.h>

#include <osg/Math>
#include <osg/Vec2d>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {
constexpr double margin = 0.08;   // of the longer side
constexpr double distance = 0.15; // of the handle that turns, from the box
constexpr double leastFactor = 0.02;

AxPlanPlane PlaneOver(const std::vector<osg::Vec3d>& places)
{
    QList<QPointF> points;
    for (const osg::Vec3d& place : places)
        points += QPointF(place.x(), place.y());
    return AxPlanPlane(points);
}

osg::Vec2d To(const AxPlanPlane& plane, const osg::Vec3d& place)
{
    const CAxPoint2D point = plane.ToPlane(QPointF(place.x(), place.y()));
    return {point.x(), point.y()};
}

osg::Vec3d From(const AxPlanPlane& plane, const osg::Vec2d& point)
{
    const QPointF place = plane.ToLngLat({point.x(), point.y()});
    return {place.x(), place.y(), 0.0};
}

// Anticlockwise, radians.
double TurnOf(const osg::Vec2d& from, const osg::Vec2d& to, double stepDegrees)
{
    const double turn = std::atan2(from.x() * to.y() - from.y() * to.x(), from * to);
    const double step = osg::DegreesToRadians(stepDegrees);
    return step > 0.0 ? step * std::round(turn / step) : turn;
}

osg::Vec2d FactorsOf(const osg::Vec2d& from, const osg::Vec2d& to, bool keepsProportion)
{
    osg::Vec2d factors(to.x() / from.x(), to.y() / from.y());
    if (keepsProportion)
        factors.x() = factors.y() = (to * from) / from.length2();
    return {std::max(factors.x(), leastFactor), std::max(factors.y(), leastFactor)};
}
} // namespace

std::vector<osg::Vec3d> AxRim::Places(const std::vector<osg::Vec3d>& vertices)
{
    if (vertices.size() < 2)
        return {};
    const AxPlanPlane plane = PlaneOver(vertices);
    constexpr double most = std::numeric_limits<double>::max();
    osg::Vec2d low(most, most);
    osg::Vec2d high(-most, -most);
    for (const osg::Vec3d& vertex : vertices) {
        const osg::Vec2d at = To(plane, vertex);
        low.set(std::min(low.x(), at.x()), std::min(low.y(), at.y()));
        high.set(std::max(high.x(), at.x()), std::max(high.y(), at.y()));
    }
    const double side = std::max({high.x() - low.x(), high.y() - low.y(), 1.0});
    const osg::Vec2d beside(margin * side, margin * side);
    low -= beside;
    high += beside;
    std::vector<osg::Vec3d> places;
    for (const osg::Vec2d& point : {low, osg::Vec2d(high.x(), low.y()), high, osg::Vec2d(low.x(), high.y()),
                                    osg::Vec2d(0.5 * (low.x() + high.x()), high.y() + distance * side)})
        places.push_back(From(plane, point));
    return places;
}

std::vector<osg::Vec3d> AxRim::Dragged(const std::vector<osg::Vec3d>& points,
                                       const std::vector<osg::Vec3d>& handles, const Drag& drag)
{
    if (handles.size() != count || drag.handle >= count)
        return points;
    const AxPlanPlane plane = PlaneOver(handles);
    const osg::Vec2d held = To(plane, handles[drag.handle]);
    const osg::Vec2d to = To(plane, drag.to);
    osg::Vec2d origin;
    osg::Vec2d right; // what becomes of a step to the east
    osg::Vec2d up;    // and to the north
    if (drag.handle == turning) {
        origin = (To(plane, handles[0]) + To(plane, handles[2])) * 0.5;
        const double turn = TurnOf(held - origin, to - origin, drag.stepDegrees);
        right.set(std::cos(turn), std::sin(turn));
        up.set(-right.y(), right.x());
    } else {
        origin = To(plane, handles[(drag.handle + 2) % turning]);
        const osg::Vec2d factors = FactorsOf(held - origin, to - origin, drag.keepsProportion);
        right.set(factors.x(), 0.0);
        up.set(0.0, factors.y());
    }
    std::vector<osg::Vec3d> dragged;
    for (const osg::Vec3d& point : points) {
        const osg::Vec2d at = To(plane, point) - origin;
        dragged.push_back(From(plane, origin + right * at.x() + up * at.y()));
    }
    return dragged;
}
