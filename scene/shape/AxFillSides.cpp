#include "scene/shape/AxFillSides.h"
#include "scene/base/AxGlobePoint.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {
// What edges along great circles turn inward on the ellipsoid is less, radians.
constexpr double straight = 1e-4;

// Where the verticals around some points meet, but for the globe not being
// round: the place on its axis that the one of their middle leads to.
osg::Vec3d FootOf(const std::vector<osg::Vec3d>& points, const std::vector<unsigned>& ring)
{
    osg::Vec3d up;
    for (const unsigned index : ring)
        up += points[index];
    up.z() /= 1.0 - AxGlobe::eccentricity2;
    up.normalize();
    const double sine = up.z();
    const double radius = AxGlobe::semiMajorAxis / std::sqrt(1.0 - AxGlobe::eccentricity2 * sine * sine);
    return {0.0, 0.0, -AxGlobe::eccentricity2 * radius * sine};
}

// Whether, seen from where its verticals meet, the ring goes round once and
// turns to the left everywhere.
bool IsConvex(const std::vector<osg::Vec3d>& points, const std::vector<unsigned>& ring)
{
    const std::size_t count = ring.size();
    if (count < 3)
        return false;
    std::vector<osg::Vec3d> directions;
    directions.reserve(count);
    const osg::Vec3d foot = FootOf(points, ring);
    for (const unsigned index : ring) {
        directions.push_back(points[index] - foot);
        if (!(directions.back().normalize() > 0.0))
            return false;
    }
    double whole = 0.0;
    for (std::size_t i = 0; i < count; ++i) {
        const osg::Vec3d& corner = directions[i];
        const osg::Vec3d in = corner - directions[i > 0 ? i - 1 : count - 1];
        const osg::Vec3d out = directions[i + 1 < count ? i + 1 : 0] - corner;
        const double turn = std::atan2((in ^ out) * corner, in * out);
        if (turn < -straight || directions[0] * corner < 0.5)
            return false;
        whole += turn;
    }
    // Around twice, as the rim of a star, would be once more.
    return whole < 3.0 * AxGlobe::pi;
}
} // namespace

AxFillSides::AxFillSides(const std::vector<osg::Vec3d>& points, const std::vector<unsigned>& ring,
                         const std::vector<unsigned>& triangles)
{
    std::vector<unsigned> leftward = ring;
    if (!IsConvex(points, leftward)) {
        std::reverse(leftward.begin(), leftward.end());
        if (!IsConvex(points, leftward))
            return;
    }
    sides.reserve(triangles.size() / 3);
    for (std::size_t i = 0; i + 2 < triangles.size(); i += 3) {
        const osg::Vec3d& a = points[triangles[i]];
        const osg::Vec3d& b = points[triangles[i + 1]];
        const osg::Vec3d& c = points[triangles[i + 2]];
        sides.push_back({(a + b + c) / 3.0, ((b - a) ^ (c - a)) * 0.5});
    }
}

// A line of sight lies in one plane with the place where the verticals meet, in
// which a convex fill is a line that goes up and down without a gap. Whoever
// meets its upper side a second time meets its lower one in between.
double AxFillSides::CoveringItself(const osg::Vec3d& eye) const
{
    if (sides.empty())
        return std::numeric_limits<double>::infinity();
    double angle = 0.0;
    for (const Side& side : sides) {
        const osg::Vec3d sight = side.middle - eye;
        if (const double seen = side.area * sight; seen > 0.0)
            angle += seen / (sight.length2() * sight.length());
    }
    return angle;
}
