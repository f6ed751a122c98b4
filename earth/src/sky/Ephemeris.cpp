#include "globe/Wgs84.h"
#include "sky/SiderealAngle.h"
#include <osgEarthUtil/Ephemeris>

#include <cmath>
#include <osg/Math>

namespace osgEarth::Util {
namespace {
constexpr double kAstronomicalUnit = 149597870700.0; // metres, IAU 2012
constexpr double kJ2000 = 946728000.0;               // 2000-01-01 12:00 UTC in Unix time

double radians(double degrees)
{
    return degrees * osg::PI / 180.0;
}

double sinDegrees(double degrees)
{
    return std::sin(radians(degrees));
}

double cosDegrees(double degrees)
{
    return std::cos(radians(degrees));
}

/// Days since noon of 1 January 2000.
double daysSinceJ2000(const DateTime& dt)
{
    return (static_cast<double>(dt.asTimeStamp()) - kJ2000) / 86400.0;
}

/// Ecliptic longitude and latitude (degrees) to right ascension and declination (radians).
void eclipticToEquator(double longitude, double latitude, double days, double& ra, double& decl)
{
    const double obliquity = 23.439 - 0.0000004 * days;
    const double x = cosDegrees(latitude) * cosDegrees(longitude);
    const double y = cosDegrees(latitude) * sinDegrees(longitude);
    const double z = sinDegrees(latitude);
    ra = std::atan2(cosDegrees(obliquity) * y - sinDegrees(obliquity) * z, x);
    decl = std::asin(sinDegrees(obliquity) * y + cosDegrees(obliquity) * z);
}
} // namespace

double siderealAngle(const DateTime& dt)
{
    const double hours = std::fmod(18.697374558 + 24.06570982441908 * daysSinceJ2000(dt), 24.0);
    return radians((hours < 0.0 ? hours + 24.0 : hours) * 15.0);
}

osg::Vec3d Ephemeris::getSunPositionECEF(const DateTime& dt) const
{
    const double n = daysSinceJ2000(dt);
    const double meanLongitude = 280.460 + 0.9856474 * n;
    const double meanAnomaly = 357.528 + 0.9856003 * n;
    const double longitude =
        meanLongitude + 1.915 * sinDegrees(meanAnomaly) + 0.020 * sinDegrees(2.0 * meanAnomaly);
    const double distance =
        1.00014 - 0.01671 * cosDegrees(meanAnomaly) - 0.00014 * cosDegrees(2.0 * meanAnomaly);
    double ra = 0.0;
    double decl = 0.0;
    eclipticToEquator(longitude, 0.0, n, ra, decl);
    return getECEFfromRADecl(ra - siderealAngle(dt), decl, distance * kAstronomicalUnit);
}

osg::Vec3d Ephemeris::getMoonPositionECEF(const DateTime& dt) const
{
    const double n = daysSinceJ2000(dt);
    const double t = n / 36525.0;
    const double longitude =
        218.32 + 481267.881 * t + 6.29 * sinDegrees(135.0 + 477198.87 * t) -
        1.27 * sinDegrees(259.3 - 413335.36 * t) + 0.66 * sinDegrees(235.7 + 890534.22 * t) +
        0.21 * sinDegrees(269.9 + 954397.74 * t) - 0.19 * sinDegrees(357.5 + 35999.05 * t) -
        0.11 * sinDegrees(186.5 + 966404.03 * t);
    const double latitude = 5.13 * sinDegrees(93.3 + 483202.02 * t) +
                            0.28 * sinDegrees(228.2 + 960400.89 * t) -
                            0.28 * sinDegrees(318.3 + 6003.15 * t) - 0.17 * sinDegrees(217.6 - 407332.21 * t);
    const double parallax =
        0.9508 + 0.0518 * cosDegrees(135.0 + 477198.87 * t) + 0.0095 * cosDegrees(259.3 - 413335.36 * t) +
        0.0078 * cosDegrees(235.7 + 890534.22 * t) + 0.0028 * cosDegrees(269.9 + 954397.74 * t);
    double ra = 0.0;
    double decl = 0.0;
    eclipticToEquator(longitude, latitude, n, ra, decl);
    return getECEFfromRADecl(ra - siderealAngle(dt), decl, wgs84::kEquatorialRadius / sinDegrees(parallax));
}

osg::Vec3d Ephemeris::getECEFfromRADecl(double ra, double decl, double range) const
{
    return osg::Vec3d(std::cos(decl) * std::cos(ra), std::cos(decl) * std::sin(ra), std::sin(decl)) * range;
}
} // namespace osgEarth::Util
