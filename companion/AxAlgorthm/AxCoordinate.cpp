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

/// One UTM plane: a zone on one hemisphere.
struct Plane
{
    double meridian;
    double falseNorthing;

    bool forward(double lat, double lng, CAxPoint2D& out) const
    {
        if (!(std::abs(GeographicLib::Math::AngDiff(meridian, lng)) <= MaxFromMeridian))
            return false;
        double x = 0.0;
        double y = 0.0;
        GeographicLib::TransverseMercator::UTM().Forward(meridian, lat, lng, x, y);
        out = CAxPoint2D(x + FalseEasting, y + falseNorthing);
        return true;
    }

    bool inverse(double x, double y, double& lat, double& lng) const
    {
        if (!(std::abs(x) <= MaxPlaneCoordinate && std::abs(y) <= MaxPlaneCoordinate))
            return false;
        double resultLat = 0.0;
        double resultLng = 0.0;
        GeographicLib::TransverseMercator::UTM().Reverse(meridian, x - FalseEasting, y - falseNorthing,
                                                         resultLat, resultLng);
        if (!std::isfinite(resultLat) || !std::isfinite(resultLng))
            return false;
        lat = resultLat;
        lng = resultLng;
        return true;
    }
};

thread_local std::optional<Plane> lastForwardPlane;

bool convertible(double lat, double lng)
{
    return lat >= MinLatitude && lat < MaxLatitude && std::abs(lng) <= MaxLongitude;
}

std::optional<Plane> planeOf(double lat, double lng)
{
    if (!convertible(lat, lng))
        return std::nullopt;
    const int zone = GeographicLib::UTMUPS::StandardZone(lat, lng);
    return Plane{6.0 * zone - 183.0, lat < 0.0 ? FalseNorthingSouth : 0.0};
}
} // namespace

bool LatLng2UTM(double lat, double lng, double& x, double& y)
{
    std::vector<CAxPoint2D> plane;
    if (!LatLng2UTM(std::vector<CAxPoint2D>{CAxPoint2D(lng, lat)}, plane))
        return false;
    x = plane.front().x();
    y = plane.front().y();
    return true;
}

bool UTM2LatLng(double x, double y, double& lat, double& lng)
{
    return lastForwardPlane && lastForwardPlane->inverse(x, y, lat, lng);
}

bool LatLng2UTM(const std::vector<CAxPoint2D>& in, std::vector<CAxPoint2D>& out)
{
    std::vector<CAxPoint2D> result;
    const std::optional<Plane> plane = in.empty() ? std::nullopt : planeOf(in.front().y(), in.front().x());
    bool ok = plane.has_value();
    result.reserve(in.size());
    for (std::size_t i = 0; ok && i < in.size(); ++i) {
        CAxPoint2D point;
        ok = convertible(in[i].y(), in[i].x()) && plane->forward(in[i].y(), in[i].x(), point);
        result.push_back(point);
    }
    if (!ok) {
        out.clear();
        return false;
    }
    lastForwardPlane = plane;
    out = std::move(result);
    return true;
}

bool UTM2LatLng(const std::vector<CAxPoint2D>& in, std::vector<CAxPoint2D>& out)
{
    std::vector<CAxPoint2D> result;
    bool ok = !in.empty();
    result.reserve(in.size());
    for (std::size_t i = 0; ok && i < in.size(); ++i) {
        double lat = 0.0;
        double lng = 0.0;
        ok = UTM2LatLng(in[i].x(), in[i].y(), lat, lng);
        result.emplace_back(lng, lat);
    }
    if (!ok)
        result.clear();
    out = std::move(result);
    return ok;
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
