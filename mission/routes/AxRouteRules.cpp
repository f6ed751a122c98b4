#include "mission/routes/AxRouteRules.h"

#include <AxAlgorthm/AxMath.h>

#include <osg/BoundingBox>
#include <osg/Vec4d>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>

namespace AxRouteRules {
namespace {
constexpr double pointTolerance = 1e-6;
constexpr double altitudeTolerance = 1e-5; // metres

void AddSegment(const osg::Vec3d& from, const osg::Vec3d& to, Segments& segments)
{
    segments.points.insert(segments.points.end(), {from, to});
}

void AddColors(const osg::Vec4f& color, Segments& segments)
{
    segments.colors.insert(segments.colors.end(), 2, color);
}

// Below this, numbers would hide the route.
constexpr double leastNumberedPixels = 60.0;
constexpr double pixelsPerNumber = 3000.0; // of the area that the route takes up
constexpr double pixelsAlongNumber = 80.0; // of its sides, for a route that is a line on the screen
constexpr double mostNumbers = 200.0;

constexpr double leastMarkedPixels = 160.0; // five icons side by side

/// The finest of 1, 2, 5, 10, 20, ... that leaves at most so many of `count` numbers.
int RoundStep(int count, double most)
{
    for (int ten = 1;; ten *= 10)
        for (const int step : {ten, 2 * ten, 5 * ten})
            if (count <= most * step)
                return step;
}
} // namespace

Range ThirdShown(int size, int entryPoint, int direction)
{
    const int third = std::max(size, 0) / 3;
    if (entryPoint < 0 || entryPoint > 3 || direction < 0 || direction > 2)
        return {0, third};
    return {third * (entryPoint >= 2 ? 2 - direction : direction), third};
}

double DrawnAltitude(double altitude, double flightHeight, ETaskType type)
{
    return type != TaskVariableHeight && std::abs(altitude) < altitudeTolerance ? flightHeight : altitude;
}

bool IsNoPlace(const osg::Vec3d& place)
{
    return IsEqual(place.x(), 0.0, pointTolerance) && IsEqual(place.y(), 0.0, pointTolerance) &&
           IsEqual(place.z(), 0.0, pointTolerance);
}

void AddSegmentByIndices(int i, osg::Vec3d& previous, const osg::Vec3d& current, int startIndex, int endIndex,
                         const osg::Vec4f& lineColor, Segments& segments)
{
    AddSegment(previous, current, segments);
    // Hosts rely on the gap: without indices there is nothing to tell apart.
    if (startIndex >= 0 && endIndex > 0)
        AddColors(startIndex < i && i < endIndex ? lineColor : flownColor, segments);
    previous = current;
}

void AddSegmentByPlace(int i, osg::Vec3d& previous, const osg::Vec3d& current, int stoppedIn,
                       const osg::Vec4f& lineColor, Segments& segments)
{
    AddSegment(previous, current, segments);
    AddColors(i < stoppedIn ? flownColor : lineColor, segments);
    previous = current;
}

int SegmentNearest(const std::vector<osg::Vec3d>& route, const osg::Vec3d& place)
{
    // A route is small enough to be looked at in the plane around the place, and may cross the antimeridian.
    const double shrink = std::cos(osg::DegreesToRadians(place.y()));
    const auto inPlane = [&](const osg::Vec3d& point) {
        return osg::Vec2d(std::remainder(point.x() - place.x(), 360.0) * shrink, point.y() - place.y());
    };
    int nearest = 0;
    double least = std::numeric_limits<double>::infinity();
    for (std::size_t i = 1; i < route.size(); ++i) {
        const osg::Vec2d from = inPlane(route[i - 1]);
        const osg::Vec2d way = inPlane(route[i]) - from;
        const double share = way.length2() > 0.0 ? std::clamp(-(from * way) / way.length2(), 0.0, 1.0) : 0.0;
        const double distance = (from + way * share).length2();
        if (distance < least) {
            least = distance;
            nearest = static_cast<int>(i);
        }
    }
    return nearest;
}

void AddHomeLegs(const osg::Vec3d& first, const osg::Vec3d& last, const osg::Vec3d& aboveHome,
                 const osg::Vec3d& home, const osg::Vec4f& lineColor, Segments& segments)
{
    for (const osg::Vec3d& end : {first, last})
        if (!IsNoPlace(end)) {
            AddSegment(end, aboveHome, segments);
            AddColors(lineColor, segments);
        }
    AddSegment(aboveHome, home, segments);
    AddColors(lineColor, segments);
}

QString MarkerIcon(int index, int entryPoint)
{
    if (index < 0 || index > 3)
        return {};
    const QLatin1String selected(index == entryPoint ? "sel" : "");
    return QStringLiteral(":/images/Normal/map_airline_show/Waypoint_Set_%1%2_ic.png")
        .arg(QString::number(index + 1), selected);
}

QString HomeIcon(bool landsDownhill)
{
    return landsDownhill ? QStringLiteral(":/images/Normal/Glidepath/landing_point_parachute_ic.png")
                         : QStringLiteral(":/images/Normal/Glidepath/landing_point_True_ic.png");
}

double LabelHeading(const osg::Vec3d& direction)
{
    const double length = direction.length();
    const double level = length > 0.0 ? std::cos(std::asin(direction.z() / length)) * length : 0.0;
    if (!(level > pointTolerance * length))
        return 0.0;
    const double angle = osg::RadiansToDegrees(std::acos(std::min(std::abs(direction.y()) / level, 1.0)));
    if (direction.y() > 0.0)
        return direction.x() > 0.0 ? angle + 270.0 : 90.0 - angle;
    return direction.x() > 0.0 ? 270.0 - angle : angle + 90.0;
}

osg::Vec3d LabelPlace(const osg::Vec3d& first, const osg::Vec3d& second)
{
    const osg::Vec3d way = second - first;
    osg::Vec3d up = first;
    up.normalize();
    // Away from a pole, where there is no east.
    osg::Vec3d east = osg::Vec3d(0.0, 0.0, 1.0) ^ up;
    if (east.normalize() < pointTolerance)
        east = osg::Vec3d(1.0, 0.0, 0.0);
    const osg::Vec3d north = up ^ east;
    const double angle = osg::DegreesToRadians(LabelHeading(way));
    const double back = way.length() / 10.0;
    return first + east * (back * std::sin(angle)) - north * (back * std::cos(angle));
}

std::vector<int> NumbersShown(const std::vector<osg::Vec3d>& points, const osg::Matrixd& toClip, int width,
                              int height)
{
    std::vector<int> inView;
    osg::BoundingBoxd screen;
    for (std::size_t i = 0; i < points.size(); ++i) {
        const osg::Vec4d clip = osg::Vec4d(points[i], 1.0) * toClip;
        if (!(clip.w() > 0.0) || std::abs(clip.x()) > clip.w() || std::abs(clip.y()) > clip.w())
            continue;
        inView.push_back(static_cast<int>(i));
        screen.expandBy(0.5 * width * clip.x() / clip.w(), 0.5 * height * clip.y() / clip.w(), 0.0);
    }
    const double across = screen.xMax() - screen.xMin();
    const double down = screen.yMax() - screen.yMin();
    if (inView.empty() || std::max(across, down) < leastNumberedPixels)
        return {};
    const double room = across * down / pixelsPerNumber + (across + down) / pixelsAlongNumber;
    const int step = RoundStep(static_cast<int>(inView.size()), std::clamp(room, 1.0, mostNumbers));
    const int last = static_cast<int>(points.size()) - 1;
    std::vector<int> chosen;
    std::copy_if(inView.begin(), inView.end(), std::back_inserter(chosen),
                 [&](int i) { return i == 0 || i == last || (i + 1) % step == 0; });
    return chosen;
}

bool AreMarkersInTheWay(const osg::BoundingSphered& route, const osg::Vec3d& eye, double pixel)
{
    const double distance = (route.center() - eye).length();
    return route.radius() > 0.0 && 2.0 * route.radius() < leastMarkedPixels * pixel * distance;
}

QList<CAxVector3D> WithMarkers(const std::vector<osg::Vec3d>& route,
                               const QList<QPair<int, CAxVector3D>>& markers)
{
    QList<CAxVector3D> points;
    points.reserve(static_cast<int>(route.size()));
    for (const osg::Vec3d& point : route)
        points += CAxVector3D(point.x(), point.y(), point.z());
    const QMap<int, CAxVector3D> matches = MatchingMarkers(points, markers);
    for (int i = 0; i < markers.size() && !route.empty(); ++i) {
        const CAxVector3D& marker = markers[i].second;
        if (matches.contains(i))
            continue;
        const int nearest = SegmentNearest(route, {marker.x(), marker.y(), marker.z()});
        points += CAxVector3D(marker.x(), marker.y(), route[static_cast<std::size_t>(nearest)].z());
    }
    return points;
}

QMap<int, CAxVector3D> MatchingMarkers(const QList<CAxVector3D>& points,
                                       const QList<QPair<int, CAxVector3D>>& markers)
{
    QMap<int, CAxVector3D> matches;
    for (int i = 0; i < markers.size(); ++i) {
        const CAxVector3D& marker = markers[i].second;
        const auto match = std::find_if(points.begin(), points.end(), [&marker](const CAxVector3D& point) {
            return IsEqual(point.x(), marker.x(), pointTolerance) &&
                   IsEqual(point.y(), marker.y(), pointTolerance);
        });
        if (match != points.end())
            matches.insert(i, *match);
    }
    return matches;
}
} // namespace AxRouteRules
