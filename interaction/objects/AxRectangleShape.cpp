#include "interaction/objects/AxRectangleShape.h"
#include "interaction/editing/AxEditRules.h"
#include "scene/base/AxGlobePoint.h"
#include "scene/base/AxLongitudes.h"

#include <AxData/planner/AxPlanPlane.h>

#include <osg/Math>
#include <osg/Vec2d>

#include <algorithm>
#include <cmath>

namespace {
using namespace AxRectangleShape;
using AxLongitudes::sameDegrees;

// Below that, metres, a side has no direction.
constexpr double leastSide = 1e-3;

// Metres east and north of a place.
class Plane
{
public:
    explicit Plane(const osg::Vec3d& origin) : plane({QPointF(origin.x(), origin.y())}) {}
    osg::Vec2d To(const osg::Vec3d& place) const
    {
        const CAxPoint2D point = plane.ToPlane(QPointF(place.x(), place.y()));
        return {point.x(), point.y()};
    }
    osg::Vec3d From(const osg::Vec2d& point) const
    {
        const QPointF place = plane.ToLngLat({point.x(), point.y()});
        return {place.x(), place.y(), 0.0};
    }

private:
    AxPlanPlane plane;
};

osg::Vec2d Unit(const osg::Vec2d& way)
{
    return way / std::max(way.length(), leastSide);
}

osg::Vec2d LeftOf(const osg::Vec2d& way)
{
    return {-way.y(), way.x()};
}

double HeadingOf(const osg::Vec2d& way)
{
    const double degrees = osg::RadiansToDegrees(std::atan2(way.x(), way.y()));
    return degrees < 0.0 ? degrees + 360.0 : degrees;
}

osg::Vec2d Along(double heading)
{
    const double radians = osg::DegreesToRadians(heading);
    return {std::sin(radians), std::cos(radians)};
}

// The first side and the one opposite, added up.
osg::Vec2d FirstSides(const std::vector<osg::Vec2d>& at)
{
    return (at[1] - at[0]) + (at[2] - at[3]);
}

// Two sides that run against each other, as those of a ring that crosses itself, make no length together.
bool HasLength(double together, const osg::Vec2d& one, const osg::Vec2d& other)
{
    constexpr double leastShare = 0.1;
    return together > leastShare * (one.length() + other.length()) && 0.5 * together > leastSide;
}

std::vector<osg::Vec2d> InPlane(const Ring& ring, const Plane& plane)
{
    std::vector<osg::Vec2d> at;
    for (const osg::Vec3d& corner : ring)
        at.push_back(plane.To(corner));
    return at;
}

bool IsUsable(const Ring& ring)
{
    return ring.size() == corners && std::all_of(ring.begin(), ring.end(), [](const osg::Vec3d& corner) {
               return corner.valid() && std::abs(corner.y()) <= 90.0;
           });
}

bool IsSameMeridian(const osg::Vec3d& a, const osg::Vec3d& b)
{
    return std::abs(std::remainder(a.x() - b.x(), AxLongitudes::fullTurn)) < sameDegrees;
}

bool IsSameParallel(const osg::Vec3d& a, const osg::Vec3d& b)
{
    return std::abs(a.y() - b.y()) < sameDegrees;
}

// A side with a length on both counts belongs to the nearer of the two.
bool IsOnParallel(const osg::Vec3d& a, const osg::Vec3d& b)
{
    return std::abs(a.y() - b.y()) <= std::abs(std::remainder(a.x() - b.x(), AxLongitudes::fullTurn));
}

// The corner at the other end of the side along, and of the one across, the first side.
std::size_t AlongFrom(std::size_t corner)
{
    return corner ^ 1u;
}

std::size_t AcrossFrom(std::size_t corner)
{
    return corner ^ 3u;
}

double CosineAt(double latitude)
{
    constexpr double leastCosine = 1e-6; // at a pole
    return std::max(leastCosine, std::cos(osg::DegreesToRadians(latitude)));
}

// Radius of a parallel, metres.
double ParallelAt(double latitude)
{
    return AxGlobe::WorldOf({0.0, latitude, 0.0}).x();
}

// As far from a place as it was from another, in degrees of the latitude.
osg::Vec3d MovedBy(const osg::Vec3d& place, const osg::Vec3d& from, const osg::Vec3d& to)
{
    const double east = std::remainder(place.x() - from.x(), AxLongitudes::fullTurn) * CosineAt(from.y());
    const double latitude = std::clamp(place.y() + to.y() - from.y(), -90.0, 90.0);
    return {to.x() + east / CosineAt(to.y()), latitude, 0.0};
}

// The middle in which a plane is laid: that of the places' directions.
osg::Vec3d MiddleOfAll(const Ring& ring)
{
    osg::Vec3d sum;
    for (const osg::Vec3d& corner : ring)
        sum += AxGlobe::NormalAt(corner);
    sum.normalize();
    return AxGlobe::LngLatOf(sum);
}
} // namespace

namespace AxRectangleShape {

Ring Between(const osg::Vec3d& a, const osg::Vec3d& b)
{
    return {a, {b.x(), a.y(), a.z()}, b, {a.x(), b.y(), b.z()}};
}

Ring OnSide(const osg::Vec3d& a, const osg::Vec3d& b, const osg::Vec3d& place)
{
    const Plane plane(AxEditRules::MiddleOf(a, b));
    const osg::Vec2d from = plane.To(a);
    const osg::Vec2d to = plane.To(b);
    if ((to - from).length() < leastSide)
        return {a, b};
    const osg::Vec2d left = LeftOf(Unit(to - from));
    const osg::Vec2d out = left * ((plane.To(place) - from) * left);
    return {a, b, plane.From(to + out), plane.From(from + out)};
}

Ring CornersOf(const AxRectangle& rectangle)
{
    const Plane plane(rectangle.centre);
    const osg::Vec2d along = Along(rectangle.heading) * (0.5 * rectangle.length);
    const osg::Vec2d across =
        LeftOf(Along(rectangle.heading)) * (0.5 * rectangle.width * (rectangle.clockwise ? -1.0 : 1.0));
    return {plane.From(-along - across), plane.From(along - across), plane.From(along + across),
            plane.From(-along + across)};
}

std::optional<AxRectangle> Of(const Ring& ring)
{
    if (!IsUsable(ring))
        return std::nullopt;
    AxRectangle found;
    found.centre = MiddleOfAll(ring);
    // The Earth is no ball: the middle of large ones is found step by step.
    constexpr int steps = 3;
    for (int i = 0; i < steps; ++i) {
        const Plane plane(found.centre);
        const std::vector<osg::Vec2d> at = InPlane(ring, plane);
        const osg::Vec3d centre = plane.From((at[0] + at[1] + at[2] + at[3]) * 0.25);
        found.centre = {centre.x(), centre.y(), 0.0};
    }
    const std::vector<osg::Vec2d> at = InPlane(ring, Plane(found.centre));
    const osg::Vec2d first = FirstSides(at);
    const osg::Vec2d along = Unit(first);
    const double across = LeftOf(along) * ((at[3] - at[0]) + (at[2] - at[1]));
    if (!HasLength(first.length(), at[1] - at[0], at[2] - at[3]) ||
        !HasLength(std::abs(across), at[3] - at[0], at[2] - at[1]))
        return std::nullopt;
    found.length = 0.5 * first.length();
    found.width = 0.5 * std::abs(across);
    found.heading = HeadingOf(along);
    found.clockwise = across < 0.0;
    return found;
}

double Skew(const Ring& ring)
{
    const auto rectangle = Of(ring);
    if (!rectangle)
        return 0.0;
    const Plane plane(rectangle->centre);
    const Ring straight = CornersOf(*rectangle);
    double farthest = 0.0;
    for (std::size_t i = 0; i < corners; ++i)
        farthest = std::max(farthest, (plane.To(ring[i]) - plane.To(straight[i])).length());
    return farthest;
}

bool IsUpright(const Ring& ring)
{
    if (!IsUsable(ring))
        return false;
    const auto isAll = [&ring](bool firstOnParallel) {
        for (std::size_t i = 0; i < corners; ++i) {
            const osg::Vec3d& next = ring[(i + 1) % corners];
            const bool onParallel = (i % 2 == 0) == firstOnParallel;
            if (onParallel ? !IsSameParallel(ring[i], next) : !IsSameMeridian(ring[i], next))
                return false;
        }
        return true;
    };
    return isAll(true) || isAll(false);
}

Ring WithCorner(const Ring& ring, std::size_t corner, const osg::Vec3d& place)
{
    Ring moved = ring;
    const std::size_t opposite = (corner + 2) % corners;
    moved[corner] = place;
    osg::Vec3d& along = moved[AlongFrom(corner)];
    osg::Vec3d& across = moved[AcrossFrom(corner)];
    if (IsUpright(ring)) {
        const bool firstOnParallel = IsOnParallel(ring[0], ring[1]);
        osg::Vec3d& onParallel = firstOnParallel ? along : across;
        osg::Vec3d& onMeridian = firstOnParallel ? across : along;
        onParallel.set(ring[opposite].x(), place.y(), onParallel.z());
        onMeridian.set(place.x(), ring[opposite].y(), onMeridian.z());
        return moved;
    }
    const Plane plane(ring[opposite]);
    const osg::Vec2d direction = Unit(FirstSides(InPlane(ring, plane)));
    const osg::Vec2d to = plane.To(place);
    // From the opposite corner, which is the plane's origin.
    across = plane.From(direction * (to * direction));
    along = plane.From(LeftOf(direction) * (to * LeftOf(direction)));
    return moved;
}

Ring WithSide(const Ring& ring, std::size_t side, const osg::Vec3d& place)
{
    Ring moved = ring;
    const std::size_t from = side;
    const std::size_t to = (side + 1) % corners;
    if (IsUpright(ring)) {
        for (const std::size_t corner : {from, to})
            IsOnParallel(ring[from], ring[to]) ? moved[corner].y() = place.y()
                                               : moved[corner].x() = place.x();
        return moved;
    }
    // Sides along the first one move across it, the two others along it.
    const auto still = side % 2 == 0 ? AcrossFrom : AlongFrom;
    const osg::Vec3d& a = ring[still(from)];
    const osg::Vec3d& b = ring[still(to)];
    const Ring onStill = OnSide(a, b, place);
    if (onStill.size() != corners)
        return ring;
    moved[to] = onStill[2];
    moved[from] = onStill[3];
    return moved;
}

Ring Turned(const Ring& ring, double degrees)
{
    auto rectangle = Of(ring);
    if (!rectangle || !std::isfinite(degrees))
        return ring;
    rectangle->heading = degrees;
    return CornersOf(*rectangle);
}

Ring MovedTo(const Ring& ring, const osg::Vec3d& firstCorner)
{
    auto rectangle = Of(ring);
    if (!rectangle)
        return ring;
    if (IsUpright(ring)) {
        // A degree of longitude is as long as its parallel has it: what was as wide stays as wide.
        const osg::Vec3d step = firstCorner - ring[0];
        const double before = ring[0].y() + 0.5 * (ring[2].y() - ring[0].y());
        const double wider = ParallelAt(before) / std::max(1.0, ParallelAt(before + step.y()));
        Ring moved = ring;
        for (osg::Vec3d& corner : moved)
            corner.set(firstCorner.x() +
                           wider * std::remainder(corner.x() - ring[0].x(), AxLongitudes::fullTurn),
                       corner.y() + step.y(), corner.z());
        return moved;
    }
    // The way from the first corner to the centre hardly changes with the place.
    constexpr int steps = 4;
    rectangle->centre = MovedBy(rectangle->centre, ring[0], firstCorner);
    Ring moved = CornersOf(*rectangle);
    for (int i = 0; i < steps; ++i) {
        rectangle->centre = MovedBy(rectangle->centre, moved[0], firstCorner);
        moved = CornersOf(*rectangle);
    }
    moved[0] = firstCorner;
    return moved;
}

double HeadingTo(const osg::Vec3d& from, const osg::Vec3d& to)
{
    return HeadingOf(Plane(from).To(to));
}

osg::Vec3d MiddleOfSide(const Ring& ring, std::size_t side)
{
    const osg::Vec3d& a = ring[side];
    const osg::Vec3d& b = ring[(side + 1) % corners];
    return AxEditRules::MiddleOf(a, b);
}

osg::Vec3d PlaceToTurnAt(const AxRectangle& rectangle)
{
    // Beyond the side by a part of the size, so that the two handles stand apart in every zoom.
    constexpr double beyond = 0.15;
    const double distance = 0.5 * rectangle.length + beyond * (rectangle.length + rectangle.width);
    return Plane(rectangle.centre).From(Along(rectangle.heading) * distance);
}

} // namespace AxRectangleShape
