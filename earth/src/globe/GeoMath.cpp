#include <osgEarth/GeoMath>

#include <algorithm>
#include <cmath>

namespace osgEarth {
namespace {
double wrapPi(double angle)
{
    return std::remainder(angle, 2.0 * osg::PI);
}

// Difference of isometric latitudes on the sphere.
double isometric(double lat1, double lat2)
{
    return std::asinh(std::tan(lat2)) - std::asinh(std::tan(lat1));
}

// Stretching of an east-west distance along a rhumb line.
double rhumbScale(double lat1, double lat2)
{
    const double dPsi = isometric(lat1, lat2);
    return std::abs(dPsi) > 1e-12 ? (lat2 - lat1) / dPsi : std::cos(lat1);
}

template <typename F> double sumAlong(const std::vector<osg::Vec3d>& points, F leg)
{
    double sum = 0.0;
    for (size_t i = 1; i < points.size(); ++i)
        sum += leg(points[i - 1], points[i]);
    return sum;
}
} // namespace

double GeoMath::distance(double lat1, double lon1, double lat2, double lon2, double radius)
{
    const double sLat = std::sin((lat2 - lat1) / 2.0), sLon = std::sin((lon2 - lon1) / 2.0);
    const double a = sLat * sLat + std::cos(lat1) * std::cos(lat2) * sLon * sLon;
    return 2.0 * radius * std::atan2(std::sqrt(a), std::sqrt(std::max(0.0, 1.0 - a)));
}

double GeoMath::distance(const std::vector<osg::Vec3d>& points, double radius)
{
    return sumAlong(points, [radius](const osg::Vec3d& a, const osg::Vec3d& b) {
        return distance(a.y(), a.x(), b.y(), b.x(), radius);
    });
}

double GeoMath::distance(const osg::Vec3d& p1, const osg::Vec3d& p2, const SpatialReference* srs)
{
    if (!srs || !srs->isGeographic())
        return (p2 - p1).length();
    return distance(osg::DegreesToRadians(p1.y()), osg::DegreesToRadians(p1.x()),
                    osg::DegreesToRadians(p2.y()), osg::DegreesToRadians(p2.x()),
                    srs->getEllipsoid()->getRadiusEquator());
}

double GeoMath::bearing(double lat1, double lon1, double lat2, double lon2)
{
    const double dLon = lon2 - lon1;
    return std::atan2(std::sin(dLon) * std::cos(lat2),
                      std::cos(lat1) * std::sin(lat2) - std::sin(lat1) * std::cos(lat2) * std::cos(dLon));
}

void GeoMath::midpoint(double lat1, double lon1, double lat2, double lon2, double& out_lat, double& out_lon)
{
    interpolate(lat1, lon1, lat2, lon2, 0.5, out_lat, out_lon);
}

void GeoMath::interpolate(double lat1, double lon1, double lat2, double lon2, double t, double& out_lat,
                          double& out_lon)
{
    const double d = distance(lat1, lon1, lat2, lon2, 1.0);
    if (std::sin(d) < 1e-15) {
        out_lat = lat1;
        out_lon = lon1;
        return;
    }
    const double a = std::sin((1.0 - t) * d) / std::sin(d), b = std::sin(t * d) / std::sin(d);
    const double x = a * std::cos(lat1) * std::cos(lon1) + b * std::cos(lat2) * std::cos(lon2);
    const double y = a * std::cos(lat1) * std::sin(lon1) + b * std::cos(lat2) * std::sin(lon2);
    const double z = a * std::sin(lat1) + b * std::sin(lat2);
    out_lat = std::atan2(z, std::hypot(x, y));
    out_lon = std::atan2(y, x);
}

void GeoMath::destination(double lat1, double lon1, double bearingRad, double distance, double& out_lat,
                          double& out_lon, double radius)
{
    const double d = distance / radius;
    const double s = std::sin(lat1) * std::cos(d) + std::cos(lat1) * std::sin(d) * std::cos(bearingRad);
    out_lat = std::asin(std::clamp(s, -1.0, 1.0));
    out_lon = wrapPi(lon1 + std::atan2(std::sin(bearingRad) * std::sin(d) * std::cos(lat1),
                                       std::cos(d) - std::sin(lat1) * s));
}

double GeoMath::rhumbDistance(double lat1, double lon1, double lat2, double lon2, double radius)
{
    return std::hypot(lat2 - lat1, rhumbScale(lat1, lat2) * wrapPi(lon2 - lon1)) * radius;
}

double GeoMath::rhumbDistance(const std::vector<osg::Vec3d>& points, double radius)
{
    return sumAlong(points, [radius](const osg::Vec3d& a, const osg::Vec3d& b) {
        return rhumbDistance(a.y(), a.x(), b.y(), b.x(), radius);
    });
}

double GeoMath::rhumbBearing(double lat1, double lon1, double lat2, double lon2)
{
    return std::atan2(wrapPi(lon2 - lon1), isometric(lat1, lat2));
}

void GeoMath::rhumbDestination(double lat1, double lon1, double bearing, double distance, double& out_lat,
                               double& out_lon, double radius)
{
    const double d = distance / radius;
    double lat2 = lat1 + d * std::cos(bearing);
    const double scale = rhumbScale(lat1, lat2);
    // Over the pole and down the other side.
    if (std::abs(lat2) > osg::PI_2)
        lat2 = (lat2 > 0.0 ? osg::PI : -osg::PI) - lat2;
    out_lat = lat2;
    out_lon = wrapPi(lon1 + d * std::sin(bearing) / scale);
}

unsigned GeoMath::interesectLineWithSphere(const osg::Vec3d& p0, const osg::Vec3d& p1, double radius,
                                           osg::Vec3d& out_i0, osg::Vec3d& out_i1)
{
    const osg::Vec3d d = p1 - p0;
    const double a = d * d, b = 2.0 * (d * p0), c = p0 * p0 - radius * radius;
    const double discriminant = b * b - 4.0 * a * c;
    if (a <= 0.0 || discriminant < 0.0)
        return 0;
    const double root = std::sqrt(discriminant);
    out_i0 = p0 + d * ((-b - root) / (2.0 * a));
    out_i1 = p0 + d * ((-b + root) / (2.0 * a));
    return discriminant > 0.0 ? 2 : 1;
}

unsigned GeoMath::intersectLineWithPlane(const osg::Vec3d& p0, const osg::Vec3d& p1, const osg::Plane& plane,
                                         osg::Vec3d& out_i0)
{
    const osg::Vec3d d = p1 - p0;
    const double slope = d * plane.getNormal();
    if (std::abs(slope) <= 1e-15 * d.length())
        return 0;
    out_i0 = p0 - d * (plane.distance(p0) / slope);
    return 1;
}

bool GeoMath::isPointVisible(const osg::Vec3d& eye, const osg::Vec3d& target, double radius)
{
    const osg::Vec3d d = target - eye;
    const double length2 = d * d;
    if (length2 <= 0.0)
        return true;
    const double t = std::clamp(-(eye * d) / length2, 0.0, 1.0);
    const osg::Vec3d nearest = eye + d * t;
    // A target on the surface itself is seen.
    return nearest.length() >= radius * (1.0 - 1e-12) || t >= 1.0;
}
} // namespace osgEarth
