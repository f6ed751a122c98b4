#include "analysis/zones/AxZoneRing.h"

#include <algorithm>
#include <cmath>

namespace {
constexpr qint64 unitsPerDegree = 10000000;
// What 32 bits hold is 214 degrees to either side.
constexpr double widestDegrees = 400.0;
constexpr int headNumbers = 1;

osgEarth::Bounds BoxOf(const std::vector<osg::Vec3d>& points)
{
    osgEarth::Bounds box;
    for (const osg::Vec3d& point : points)
        box.expandBy(point.x(), point.y());
    return box;
}

/// The division gives the very number that a text of seven decimals is read as.
double Degrees(qint64 units)
{
    return static_cast<double>(units) / unitsPerDegree;
}
} // namespace

bool AxZoneRing::Fits(const std::vector<osg::Vec3d>& points)
{
    const osgEarth::Bounds box = BoxOf(points);
    constexpr double farthest = 1e6;
    return std::all_of(points.begin(), points.end(),
                       [](const osg::Vec3d& point) {
                           return std::abs(point.x()) < farthest && std::abs(point.y()) <= 90.0;
                       }) &&
           (points.empty() || box.width() <= widestDegrees);
}

AxZoneRing::AxZoneRing(const std::vector<osg::Vec3d>& points)
{
    if (points.empty())
        return;
    const auto middle = static_cast<qint32>(std::lround(BoxOf(points).center().x()));
    numbers.reserve(headNumbers + 2 * static_cast<int>(points.size()));
    numbers += middle;
    for (const osg::Vec3d& point : points) {
        numbers += static_cast<qint32>(std::llround(point.x() * unitsPerDegree) - middle * unitsPerDegree);
        numbers += static_cast<qint32>(std::llround(point.y() * unitsPerDegree));
    }
}

std::vector<osg::Vec3d> AxZoneRing::Points() const
{
    std::vector<osg::Vec3d> points;
    points.reserve(static_cast<std::size_t>(numbers.size() / 2));
    for (int i = headNumbers; i < numbers.size(); i += 2)
        points.emplace_back(Degrees(numbers[0] * unitsPerDegree + numbers[i]), Degrees(numbers[i + 1]), 0.0);
    return points;
}

osgEarth::Bounds AxZoneRing::Box() const
{
    osgEarth::Bounds box;
    for (int i = headNumbers; i < numbers.size(); i += 2)
        box.expandBy(Degrees(numbers[0] * unitsPerDegree + numbers[i]), Degrees(numbers[i + 1]));
    return box;
}
