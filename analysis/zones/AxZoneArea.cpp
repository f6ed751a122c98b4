#include "analysis/zones/AxZoneArea.h"
#include "scene/base/AxLongitudes.h"
#include "scene/base/AxSinglePrecision.h"
#include "scene/base/AxWgs84.h"

#include <osg/Math>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string_view>

namespace {
using AxLongitudes::fullTurn;
constexpr double poleLatitude = 90.0;
constexpr double circleMetres = 8000.0;
constexpr int circleSegments = 72;

std::string_view Trimmed(std::string_view text)
{
    constexpr std::string_view blank = " \t\r\n";
    const std::size_t first = text.find_first_not_of(blank);
    return first == std::string_view::npos ? std::string_view()
                                           : text.substr(first, text.find_last_not_of(blank) + 1 - first);
}

bool ReadNumber(std::string_view text, double& number)
{
    text = Trimmed(text);
    if (!text.empty() && text.front() == '+')
        text.remove_prefix(1);
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size() && std::isfinite(number);
}

/// Cuts the text off at the separator and returns what stood before it.
std::string_view TakePart(std::string_view& text, char separator)
{
    const std::size_t at = text.find(separator);
    const std::string_view part = text.substr(0, at);
    text.remove_prefix(at == std::string_view::npos ? text.size() : at + 1);
    return part;
}

bool ReadPoint(std::string_view part, osg::Vec3d& point)
{
    return ReadNumber(TakePart(part, ','), point.x()) && ReadNumber(TakePart(part, ','), point.y()) &&
           std::abs(point.x()) <= fullTurn && std::abs(point.y()) <= poleLatitude;
}
/// Destinations from the middle of a circle.
class Circle
{
public:
    struct Offset
    {
        double longitude, latitude;
    };

    Circle(double centreLongitude, double centreLatitude)
        : longitude(AxSinglePrecision(centreLongitude)),
          sinLat(std::sin(osg::DegreesToRadians(AxSinglePrecision(centreLatitude)))),
          cosLat(std::cos(osg::DegreesToRadians(AxSinglePrecision(centreLatitude))))
    {
    }

    /// Degrees east of the middle, and the latitude itself.
    Offset At(int segment) const
    {
        static const double sinDistance = std::sin(circleMetres / AxWgs84::semiMajorAxis);
        static const double cosDistance = std::cos(circleMetres / AxWgs84::semiMajorAxis);
        const double bearing = osg::DegreesToRadians(fullTurn * segment / circleSegments);
        const double s = sinLat * cosDistance + cosLat * sinDistance * std::cos(bearing);
        return {osg::RadiansToDegrees(
                    std::atan2(std::sin(bearing) * sinDistance * cosLat, cosDistance - sinLat * s)),
                AxSinglePrecision(osg::RadiansToDegrees(std::asin(std::min(s, 1.0))))};
    }

    double East(const Offset& offset) const { return AxSinglePrecision(longitude + offset.longitude); }
    double West(const Offset& offset) const { return AxSinglePrecision(longitude - offset.longitude); }

private:
    double longitude, sinLat, cosLat;
};
} // namespace

AxZoneArea AxReadArea(const QString& area)
{
    AxZoneArea result;
    const QByteArray bytes = area.toLatin1();
    std::string_view rest(bytes.constData(), static_cast<std::size_t>(bytes.size()));
    constexpr std::size_t shortestPart = 4; // "1,2|"
    const auto separators = static_cast<std::size_t>(std::count(rest.begin(), rest.end(), '|'));
    result.points.reserve(std::min(separators, rest.size() / shortestPart) + 1);
    while (!rest.empty()) {
        const std::string_view part = TakePart(rest, '|');
        if (part.empty())
            continue;
        ++result.parts;
        osg::Vec3d point;
        if (!ReadPoint(part, point)) {
            ++result.unusable;
            result.misread += part.find(',') != std::string_view::npos ? 1 : 0;
            continue;
        }
        // The first one decides on which side of the antimeridian the ring lies.
        point.x() =
            AxLongitudes::NearestTo(result.points.empty() ? 0.0 : result.points.back().x(), point.x());
        result.points.push_back(point);
    }
    return result;
}

std::vector<osg::Vec3d> AxZoneCircle(double longitude, double latitude)
{
    const Circle circle(longitude, latitude);
    std::vector<osg::Vec3d> ring(circleSegments + 1);
    // East and west mirror each other.
    for (int i = 0; i <= circleSegments / 2; ++i) {
        const Circle::Offset offset = circle.At(i);
        ring[static_cast<std::size_t>(i)].set(circle.East(offset), offset.latitude, 0.0);
        ring[static_cast<std::size_t>(circleSegments - i)].set(circle.West(offset), offset.latitude, 0.0);
    }
    ring.back() = ring.front();
    return ring;
}

osgEarth::Bounds AxZoneCircleBox(double longitude, double latitude)
{
    // The nearer the pole, the farther north of the middle is the circle's easternmost point.
    constexpr double eastmostBearsEast = 85.0;
    constexpr int east = circleSegments / 4;
    osgEarth::Bounds box;
    if (std::abs(latitude) > eastmostBearsEast) {
        for (const osg::Vec3d& point : AxZoneCircle(longitude, latitude))
            box.expandBy(point.x(), point.y());
        return box;
    }
    const Circle circle(longitude, latitude);
    for (const int i : {0, east - 1, east, east + 1, circleSegments / 2}) {
        const Circle::Offset offset = circle.At(i);
        box.expandBy(circle.East(offset), offset.latitude);
        box.expandBy(circle.West(offset), offset.latitude);
    }
    return box;
}

AxZoneShape AxZoneShapeOf(AxZoneArea&& area)
{
    if (area.points.empty())
        return AxZoneShape();
    if (area.parts < 2)
        return AxZoneShape::Circle(area.points.front().x(), area.points.front().y());
    osg::ref_ptr<osgEarth::Symbology::Polygon> polygon = new osgEarth::Symbology::Polygon;
    polygon->asVector() = std::move(area.points);
    return AxZoneShape(polygon);
}
