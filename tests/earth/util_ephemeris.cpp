#include <globe/Geodetic.h>
#include <gtest/gtest.h>
#include <osgEarthUtil/Ephemeris>
#include <sky/SiderealAngle.h>

#include <cmath>

using namespace osgEarth;
using namespace osgEarth::Util;

namespace {

struct Angles
{
    double declination, hourAngle; // degrees; west of Greenwich
};

Angles anglesOf(const osg::Vec3d& position)
{
    return {osg::RadiansToDegrees(std::asin(position.z() / position.length())),
            -osg::RadiansToDegrees(std::atan2(position.y(), position.x()))};
}

double apart(double a, double b)
{
    return std::abs(std::remainder(a - b, 360.0));
}

} // namespace

// Meeus, Astronomical Algorithms, examples 25.a (sun, 1992 October 13) and 47.a (moon, 1992 April 12), 0 h
// TD.
TEST(Ephemeris, AgreesWithWorkedExamples)
{
    osg::ref_ptr<Ephemeris> ephemeris = new Ephemeris;
    const double deltaT = 59.0 / 3600.0; // TD ahead of UT in 1992, hours
    const DateTime sunTime(1992, 10, 12, 24.0 - deltaT);
    const osg::Vec3d sun = ephemeris->getSunPositionECEF(sunTime);
    EXPECT_NEAR(anglesOf(sun).declination, -7.785, 0.02);
    EXPECT_LT(apart(osg::RadiansToDegrees(siderealAngle(sunTime)) - anglesOf(sun).hourAngle, 198.381), 0.02);
    EXPECT_NEAR(sun.length() / 149597870700.0, 0.99766, 2e-4);

    const DateTime moonTime(1992, 4, 11, 24.0 - deltaT);
    const osg::Vec3d moon = ephemeris->getMoonPositionECEF(moonTime);
    EXPECT_NEAR(anglesOf(moon).declination, 13.768, 0.3);
    EXPECT_LT(apart(osg::RadiansToDegrees(siderealAngle(moonTime)) - anglesOf(moon).hourAngle, 134.688), 0.4);
    EXPECT_NEAR(moon.length(), 368409.7e3, 2000e3);
}
