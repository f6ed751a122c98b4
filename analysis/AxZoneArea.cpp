#include "analysis/AxZoneArea.h"
#include "interaction/AxLongitudes.h"
#include "interaction/AxSinglePrecision.h"

#include <osg/Math>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string_view>

namespace {
constexpr double fullTurn = 360.0;
constexpr double poleLatitude = 90.0;
constexpr double circleMetres = 8000.0;
constexpr int circleSegments = 72;
constexpr double sphereMetres = 6378137.0;

std::string_view Trimmed(std::string_view text)
{
    constexpr std::string_view blank = " \t\r\n";
    const std::size_t first = text.find_first_not_of(blank);
    return first == text.npos ? std::string_view()
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
    text.remove_prefix(at == text.npos ? text.size() : at + 1);
    return part;
}

bool ReadPoint(std::string_view part, osg::Vec3d& point)
{
    return ReadNumber(TakePart(part, ','), point.x()) && ReadNumber(TakePart(part, ','), point.y()) &&
           std::abs(point.x()) <= fullTurn && std::abs(point.y()) <= poleLatitude;
}
} // namespace

AxZoneArea AxReadArea(const QString& area)
{
    AxZoneArea result;
    const QByteArray bytes = area.toLatin1();
    std::string_view rest(bytes.constData(), static_cast<std::size_t>(bytes.size()));
    while (!rest.empty()) {
        const std::string_view part = TakePart(rest, '|');
        if (part.empty())
            continue;
        ++result.parts;
        osg::Vec3d point;
        if (!ReadPoint(part, point)) {
            ++result.unusable;
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
    const auto centreLongitude = AxSinglePrecision(longitude);
    const double lat = osg::DegreesToRadians(AxSinglePrecision(latitude));
    const double sinLat = std::sin(lat);
    const double cosLat = std::cos(lat);
    static const double sinDistance = std::sin(circleMetres / sphereMetres);
    static const double cosDistance = std::cos(circleMetres / sphereMetres);
    std::vector<osg::Vec3d> ring(circleSegments + 1);
    // East and west mirror each other.
    for (int i = 0; i <= circleSegments / 2; ++i) {
        const double bearing = osg::DegreesToRadians(fullTurn * i / circleSegments);
        const double s = sinLat * cosDistance + cosLat * sinDistance * std::cos(bearing);
        const double east = osg::RadiansToDegrees(
            std::atan2(std::sin(bearing) * sinDistance * cosLat, cosDistance - sinLat * s));
        const auto pointLatitude = AxSinglePrecision(osg::RadiansToDegrees(std::asin(std::min(s, 1.0))));
        ring[static_cast<std::size_t>(i)].set(AxSinglePrecision(centreLongitude + east), pointLatitude, 0.0);
        ring[static_cast<std::size_t>(circleSegments - i)].set(AxSinglePrecision(centreLongitude - east),
                                                               pointLatitude, 0.0);
    }
    ring.back() = ring.front();
    return ring;
}

std::vector<osg::Vec3d> AxZoneRing(const AxZoneArea& area)
{
    if (area.parts >= 2)
        return area.points;
    return area.points.empty() ? std::vector<osg::Vec3d>()
                               : AxZoneCircle(area.points.front().x(), area.points.front().y());
}
