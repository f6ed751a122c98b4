#include <AxAlgorthm/AxConstants.h>
#include <AxAlgorthm/AxCoordinate.h>

#include <GeographicLib/Geodesic.hpp>
#include <GeographicLib/Math.hpp>
#include <GeographicLib/PolygonArea.hpp>
#include <GeographicLib/TransverseMercator.hpp>
#include <GeographicLib/UTMUPS.hpp>

#include <cmath>
#include <optional>

namespace {
constexpr double FalseEasting = 500000.0;
constexpr double FalseNorthingSouth = 10000000.0;
constexpr double MinLatitude = -80.0;
constexpr double MaxLatitude = 84.0;
constexpr double MaxLongitude = 360.0;
constexpr double MaxFromMeridian = 30.0;
constexpr double MaxPlaneCoordinate = 2.0e7;

bool convertible(double lat, double lng)
{
    return lat >= MinLatitude && lat < MaxLatitude && std::abs(lng) <= MaxLongitude;
}

/// Converts all points, or none.
template <typename Convert>
bool convertAll(const std::vector<CAxPoint2D>& in, std::vector<CAxPoint2D>& out, const Convert& convert)
{
    std::vector<CAxPoint2D> result;
    result.reserve(in.size());
    bool ok = !in.empty();
    for (std::size_t i = 0; ok && i < in.size(); ++i) {
        CAxPoint2D point;
        ok = convert(in[i], point);
        result.push_back(point);
    }
    if (!ok)
        result.clear();
    out = std::move(result);
    return ok;
}

/// The planes of the last forward calls of a thread.
struct LastPlanes
{
    std::optional<AxUtmPlane> ofPoint;
    std::optional<AxUtmPlane> ofRing;
};
thread_local LastPlanes last;
} // namespace

std::optional<AxUtmPlane> AxUtmPlane::At(double lat, double lng)
{
    if (!convertible(lat, lng))
        return std::nullopt;
    const int zone = GeographicLib::UTMUPS::StandardZone(lat, lng);
    return AxUtmPlane(6.0 * zone - 183.0, lat < 0.0 ? FalseNorthingSouth : 0.0);
}

bool AxUtmPlane::FromLngLat(const std::vector<CAxPoint2D>& in, std::vector<CAxPoint2D>& out) const
{
    return convertAll(in, out, [this](const CAxPoint2D& place, CAxPoint2D& point) {
        if (!convertible(place.y(), place.x()) ||
            !(std::abs(GeographicLib::Math::AngDiff(meridian, place.x())) <= MaxFromMeridian))
            return false;
        double x = 0.0;
        double y = 0.0;
        GeographicLib::TransverseMercator::UTM().Forward(meridian, place.y(), place.x(), x, y);
        point = CAxPoint2D(x + FalseEasting, y + falseNorthing);
        return true;
    });
}

bool AxUtmPlane::ToLngLat(const std::vector<CAxPoint2D>& in, std::vector<CAxPoint2D>& out) const
{
    return convertAll(in, out, [this](const CAxPoint2D& point, CAxPoint2D& place) {
        if (!(std::abs(point.x()) <= MaxPlaneCoordinate && std::abs(point.y()) <= MaxPlaneCoordinate))
            return false;
        double lat = 0.0;
        double lng = 0.0;
        GeographicLib::TransverseMercator::UTM().Reverse(meridian, point.x() - FalseEasting,
                                                         point.y() - falseNorthing, lat, lng);
        place = CAxPoint2D(lng, lat);
        return std::isfinite(lat) && std::isfinite(lng);
    });
}

bool LatLng2UTM(double lat, double lng, double& x, double& y)
{
    const std::optional<AxUtmPlane> plane = AxUtmPlane::At(lat, lng);
    std::vector<CAxPoint2D> point{CAxPoint2D(lng, lat)};
    if (!plane || !plane->FromLngLat(point, point))
        return false;
    last.ofPoint = plane;
    x = point.front().x();
    y = point.front().y();
    return true;
}

bool UTM2LatLng(double x, double y, double& lat, double& lng)
{
    const std::optional<AxUtmPlane>& plane = last.ofPoint ? last.ofPoint : last.ofRing;
    std::vector<CAxPoint2D> point{CAxPoint2D(x, y)};
    if (!plane || !plane->ToLngLat(point, point))
        return false;
    lat = point.front().y();
    lng = point.front().x();
    return true;
}

bool LatLng2UTM(const std::vector<CAxPoint2D>& in, std::vector<CAxPoint2D>& out)
{
    const std::optional<AxUtmPlane> plane =
        in.empty() ? std::nullopt : AxUtmPlane::At(in.front().y(), in.front().x());
    if (!plane) {
        out.clear();
        return false;
    }
    if (!plane->FromLngLat(in, out))
        return false;
    last.ofRing = plane;
    return true;
}

bool UTM2LatLng(const std::vector<CAxPoint2D>& in, std::vector<CAxPoint2D>& out)
{
    const std::optional<AxUtmPlane>& plane = last.ofRing ? last.ofRing : last.ofPoint;
    if (!plane) {
        out.clear();
        return false;
    }
    return plane->ToLngLat(in, out);
}

double DistanceBetweenTwoLatLng(const CAxVector3D& from, const CAxVector3D& to)
{
    const bool usable = std::isfinite(from.x()) && std::isfinite(to.x()) && std::abs(from.y()) <= 90.0 &&
                        std::abs(to.y()) <= 90.0;
    if (!usable)
        return INVALID_DOUBLE_VALUE;
    double metres = 0.0;
    GeographicLib::Geodesic::WGS84().Inverse(from.y(), from.x(), to.y(), to.x(), metres);
    return metres;
}

double GeodesicRingArea(const std::vector<CAxPoint2D>& ring)
{
    GeographicLib::PolygonArea polygon(GeographicLib::Geodesic::WGS84());
    for (const CAxPoint2D& point : ring) {
        if (!std::isfinite(point.x()) || !(std::abs(point.y()) <= 90.0))
            return INVALID_DOUBLE_VALUE;
        polygon.AddPoint(point.y(), point.x());
    }
    if (ring.size() < 3)
        return 0.0;
    double perimeter = 0.0;
    double area = 0.0;
    polygon.Compute(false, true, perimeter, area);
    return std::abs(area);
}
