#include <globe/Geodetic.h>
#include <gtest/gtest.h>
#include <osgEarthUtil/Ephemeris>

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

// From the definitions: the equinoxes and solstices of 2024 (UTC), when the
// sun's declination is 0 or the obliquity.
TEST(Ephemeris, SunStandsOverTheRightLatitudeAtTheTurnsOfTheYear)
{
    const struct
    {
        DateTime when;
        double declination;
    } rows[] = {{DateTime(2024, 3, 20, 3.1), 0.0},
                {DateTime(2024, 6, 20, 20.85), 23.436},
                {DateTime(2024, 9, 22, 12.73), 0.0},
                {DateTime(2024, 12, 21, 9.35), -23.436}};
    osg::ref_ptr<Ephemeris> ephemeris = new Ephemeris;
    for (const auto& row : rows)
        EXPECT_NEAR(anglesOf(ephemeris->getSunPositionECEF(row.when)).declination, row.declination, 0.02);
}

// Meeus, Astronomical Algorithms, examples 25.a (sun, 1992 October 13) and 47.a (moon, 1992 April 12), 0 h
// TD.
TEST(Ephemeris, AgreesWithWorkedExamples)
{
    osg::ref_ptr<Ephemeris> ephemeris = new Ephemeris;
    const double deltaT = 59.0 / 3600.0; // TD ahead of UT in 1992, hours
    const DateTime sunTime(1992, 10, 12, 24.0 - deltaT);
    const osg::Vec3d sun = ephemeris->getSunPositionECEF(sunTime);
    EXPECT_NEAR(anglesOf(sun).declination, -7.785, 0.02);
    EXPECT_LT(
        apart(osg::RadiansToDegrees(Ephemeris::siderealAngle(sunTime)) - anglesOf(sun).hourAngle, 198.381),
        0.02);
    EXPECT_NEAR(sun.length() / 149597870700.0, 0.99766, 2e-4);

    const DateTime moonTime(1992, 4, 11, 24.0 - deltaT);
    const osg::Vec3d moon = ephemeris->getMoonPositionECEF(moonTime);
    EXPECT_NEAR(anglesOf(moon).declination, 13.768, 0.3);
    EXPECT_LT(
        apart(osg::RadiansToDegrees(Ephemeris::siderealAngle(moonTime)) - anglesOf(moon).hourAngle, 134.688),
        0.4);
    EXPECT_NEAR(moon.length(), 368409.7e3, 2000e3);
}

TEST(Ephemeris, SunIsSouthOfGreenwichAtNoonLessTheEquationOfTime)
{
    osg::ref_ptr<Ephemeris> ephemeris = new Ephemeris;
    // Early November the sundial is 16.4 minutes ahead, mid February 14.2 behind.
    EXPECT_NEAR(anglesOf(ephemeris->getSunPositionECEF(DateTime(2024, 11, 3, 12.0))).hourAngle, 4.1, 0.1);
    EXPECT_NEAR(anglesOf(ephemeris->getSunPositionECEF(DateTime(2024, 2, 11, 12.0))).hourAngle, -3.55, 0.1);
}

TEST(Ephemeris, EarthTurnsOnceInASiderealDay)
{
    // Meeus, example 12.a: 1987 April 10, 0 h UT: 13 h 10 min 46.37 s.
    EXPECT_NEAR(osg::RadiansToDegrees(Ephemeris::siderealAngle(DateTime(1987, 4, 10, 0.0))), 197.69320, 1e-3);
}

TEST(DateTime, CarriesCalendarOverflowAndReadsBack)
{
    const struct
    {
        DateTime when;
        const char* text;
    } rows[] = {{DateTime(1970, 1, 1, 0.0), "1970-01-01T00:00:00Z"},
                {DateTime(2000, 2, 29, 23.5), "2000-02-29T23:30:00Z"},
                {DateTime(1900, 2, 29, 0.0), "1900-03-01T00:00:00Z"},
                {DateTime(2023, 12, 31, 24.0), "2024-01-01T00:00:00Z"},
                {DateTime(1969, 12, 31, 23.0), "1969-12-31T23:00:00Z"},
                {DateTime(2024, 12, 31, 12.25), "2024-12-31T12:15:00Z"}};
    for (const auto& row : rows) {
        EXPECT_EQ(row.when.asISO8601(), row.text);
        const DateTime again(row.when.year(), row.when.month(), row.when.day(), row.when.hours());
        EXPECT_EQ(again.asTimeStamp(), row.when.asTimeStamp());
    }
}
