#include "interaction/editing/AxEditRules.h"
#include "scene/base/AxGlobePoint.h"

#include <osg/CoordinateSystemNode>
#include <osg/Math>

#include <algorithm>
#include <cmath>
#include <limits>

using namespace AxGlobe;

namespace {
const osg::EllipsoidModel& Earth()
{
    static const osg::ref_ptr<const osg::EllipsoidModel> wgs84 = new osg::EllipsoidModel;
    return *wgs84;
}

// By the same ellipsoid as the way back: osg's polar radius is cut a little short.
osg::Vec3d EllipsoidWorldOf(const osg::Vec3d& place)
{
    osg::Vec3d world;
    Earth().convertLatLongHeightToXYZ(osg::DegreesToRadians(place.y()), osg::DegreesToRadians(place.x()),
                                      place.z(), world.x(), world.y(), world.z());
    return world;
}

osg::Vec3d PlaceOf(const osg::Vec3d& world)
{
    osg::Vec3d place;
    Earth().convertXYZToLatLongHeight(world.x(), world.y(), world.z(), place.y(), place.x(), place.z());
    place.x() = osg::RadiansToDegrees(place.x());
    place.y() = osg::RadiansToDegrees(place.y());
    return place;
}

osg::Vec3d PlaceUnder(const osg::Vec3d& normal, double altitude)
{
    osg::Vec3d place = LngLatOf(normal);
    place.z() = altitude;
    return place;
}

// Two vertices of a shape as one step from the other, around the end when it is closed.
bool AreNeighbours(int a, int b, int count, bool closed)
{
    const int distance = std::abs(a - b);
    return distance <= 1 || (closed && distance == count - 1);
}
} // namespace

namespace AxEditRules {

std::vector<Edge> EdgesOf(int count, bool closed)
{
    std::vector<Edge> edges;
    for (int i = 0; i + 1 < count; ++i)
        edges.emplace_back(i, i + 1);
    if (closed && count > 2)
        edges.emplace_back(count - 1, 0);
    return edges;
}

OwnParts SnapPartsFor(int index, int count, bool closed)
{
    OwnParts parts;
    const auto isApart = [&](int other) { return !AreNeighbours(index, other, count, closed); };
    for (int i = 0; i < count; ++i)
        if (isApart(i))
            parts.vertices.push_back(i);
    for (const Edge& edge : EdgesOf(count, closed))
        if (isApart(edge.first) && isApart(edge.second))
            parts.edges.push_back(edge);
    return parts;
}

std::optional<Edge> PreviousEdge(int index, int count, bool closed)
{
    if (count < 3 || index < 0 || index >= count)
        return std::nullopt;
    if (closed)
        return Edge((index + count - 2) % count, (index + count - 1) % count);
    return index >= 2 ? Edge(index - 2, index - 1)
                      : (index + 2 < count ? std::make_optional<Edge>(index + 2, index + 1) : std::nullopt);
}

osg::Vec3d MiddleOf(const osg::Vec3d& a, const osg::Vec3d& b)
{
    return PlaceUnder(Middle(NormalAt(a), NormalAt(b)), 0.5 * (a.z() + b.z()));
}

osg::Vec3d KeepAngle(const osg::Vec3d& before, const osg::Vec3d& corner, const osg::Vec3d& wanted,
                     double stepDegrees)
{
    osg::Matrixd toWorld;
    Earth().computeLocalToWorldTransformFromLatLongHeight(
        osg::DegreesToRadians(corner.y()), osg::DegreesToRadians(corner.x()), corner.z(), toWorld);
    const osg::Matrixd toLocal = osg::Matrixd::inverse(toWorld);
    const osg::Vec3d from = EllipsoidWorldOf(before) * toLocal;
    const osg::Vec3d to = EllipsoidWorldOf(wanted) * toLocal;
    const osg::Vec2d previous(-from.x(), -from.y());
    const osg::Vec2d next(to.x(), to.y());
    constexpr double shortest = 1e-3; // metres
    if (!(previous.length() > shortest) || !(next.length() > shortest) || !(stepDegrees > 0.0))
        return wanted;
    const double step = osg::DegreesToRadians(stepDegrees);
    const double heading = std::atan2(previous.y(), previous.x());
    const double turn = std::remainder(std::atan2(next.y(), next.x()) - heading, 2.0 * osg::PI);
    const double kept = heading + step * std::round(turn / step);
    const osg::Vec2d direction(std::cos(kept), std::sin(kept));
    const osg::Vec2d foot = direction * std::max(shortest, next * direction);
    // The ground falls away from the tangent plane: down until the altitude is the wanted one.
    osg::Vec3d local(foot.x(), foot.y(), to.z());
    osg::Vec3d place;
    for (int i = 0; i < 4; ++i) {
        place = PlaceOf(local * toWorld);
        local.z() += wanted.z() - place.z();
    }
    place.z() = wanted.z();
    return place;
}

} // namespace AxEditRules

void AxSnapTargets::Clear()
{
    vertices.clear();
    arcs.clear();
}

void AxSnapTargets::AddVertex(const osg::Vec3d& lngLatAlt)
{
    vertices.push_back({lngLatAlt, EllipsoidWorldOf(lngLatAlt)});
}

void AxSnapTargets::AddEdge(const osg::Vec3d& a, const osg::Vec3d& b)
{
    const osg::Vec3d from = NormalAt(a);
    const osg::Vec3d to = NormalAt(b);
    const osg::Vec3d across = from ^ to;
    osg::Vec3d side = across ^ from;
    if (side.normalize() > 1e-12)
        arcs.push_back({from, side, std::atan2(across.length(), from * to)});
}

std::optional<osg::Vec3d> AxSnapTargets::Find(const osg::Vec3d& wanted, const AxSnapView& view) const
{
    const Vertex* vertex = nullptr;
    double nearest = AxEditRules::snapPixels;
    for (const Vertex& candidate : vertices) {
        const auto place = view.project(candidate.world);
        if (!place || (*place - view.target).length() > nearest)
            continue;
        nearest = (*place - view.target).length();
        vertex = &candidate;
    }
    if (vertex)
        return vertex->place;

    // On the ground's plane the nearest point is not the one that looks nearest
    // from aslant; a few steps along the edge's picture lead there.
    constexpr int steps = 4;
    constexpr double worthSteps = 20.0 * AxEditRules::snapPixels;
    const osg::Vec3d normal = NormalAt(wanted);
    std::optional<osg::Vec3d> onEdge;
    for (const Arc& arc : arcs) {
        const auto pointAt = [&arc](double t) { return arc.from * std::cos(t) + arc.side * std::sin(t); };
        const auto pictureAt = [&](double t) { return view.project(WorldAt(pointAt(t), wanted.z())); };
        double t = std::clamp(std::atan2(normal * arc.side, normal * arc.from), 0.0, arc.angle);
        auto picture = pictureAt(t);
        if (!picture || (*picture - view.target).length() > worthSteps)
            continue;
        const double ahead = AxEditRules::snapPixels * view.metresPerPixel / semiMajorAxis;
        for (int i = 0; i < steps; ++i) {
            const auto further = pictureAt(t + ahead);
            const osg::Vec2d way = further ? *further - *picture : osg::Vec2d();
            if (!(way.length2() > 0.0))
                break;
            const double wantedT =
                std::clamp(t + ahead * ((view.target - *picture) * way) / way.length2(), 0.0, arc.angle);
            const auto there = pictureAt(wantedT);
            if (!there || (*there - view.target).length() > (*picture - view.target).length())
                break;
            t = wantedT;
            picture = there;
        }
        const double distance = (*picture - view.target).length();
        if (distance > nearest)
            continue;
        nearest = distance;
        onEdge = PlaceUnder(pointAt(t), wanted.z());
    }
    return onEdge;
}
