#include <osgEarth/GeoData>
#include <osgEarth/GeoMath>
#include <osgEarth/SpatialReference>

#include "LogCapture.h"

#include <atomic>
#include <cmath>
#include <gtest/gtest.h>
#include <thread>

using namespace osgEarth;

namespace {
constexpr double kRad = 3.14159265358979323846 / 180.0;

const SpatialReference* srs(const char* name)
{
    return SpatialReference::get(name);
}
} // namespace

// Values by gdaltransform (EPSG:4979 to EPSG:4978) and by definition of the ellipsoid.
TEST(SpatialReference, KnownGeocentricPointsBothWays)
{
    const struct
    {
        double lon, lat, height;
        osg::Vec3d world;
    } rows[] = {{0, 0, 0, {6378137.0, 0, 0}},
                {90, 0, 0, {0, 6378137.0, 0}},
                {180, 0, 100, {-6378237.0, 0, 0}},
                {0, 90, 0, {0, 0, 6356752.314245}},
                {0, -90, 500, {0, 0, -6357252.314245}},
                {-105, 37.4, 2500, {-1313542.76061027, -4902208.32051181, 3854271.52787944}},
                {151.2, -33.9, 50, {-4643982.39468283, 2553050.92617821, -3537273.2351607}}};
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message() << row.lon << ' ' << row.lat);
        osg::Vec3d world;
        ASSERT_TRUE(GeoPoint(srs("wgs84"), row.lon, row.lat, row.height, ALTMODE_ABSOLUTE).toWorld(world));
        EXPECT_LT((world - row.world).length(), 2e-6);
        GeoPoint back;
        ASSERT_TRUE(back.fromWorld(srs("wgs84"), row.world));
        EXPECT_NEAR(back.y(), row.lat, 1e-11);
        EXPECT_NEAR(back.z(), row.height, 2e-6);
        if (std::abs(row.lat) < 90.0) {
            EXPECT_NEAR(back.x(), row.lon, 1e-11);
        }
    }
}

TEST(SpatialReference, GeocentricRoundTripStaysBelowAMicrometreFromMinesToSpace)
{
    const double heights[] = {-10000.0, -100.0, 0.0, 5.0, 8848.0, 350000.0, 6378137.0, 4.0 * 6378137.0};
    const SpatialReference* wgs84 = srs("wgs84");
    double worst = 0.0;
    for (double height : heights)
        for (double lat = -90.0; lat <= 90.0; lat += 0.9375)
            for (double lon = -180.0; lon < 180.0; lon += 45.0) {
                osg::Vec3d world, local, again;
                ASSERT_TRUE(wgs84->transformToWorld(osg::Vec3d(lon, lat, height), world));
                ASSERT_TRUE(wgs84->transformFromWorld(world, local));
                ASSERT_TRUE(wgs84->transformToWorld(local, again));
                worst = std::max(worst, std::max((again - world).length(), std::abs(local.z() - height)));
            }
    EXPECT_LT(worst, 1e-6);
}

TEST(SpatialReference, CentreOfTheEarthIsNoTrap)
{
    for (const osg::Vec3d& p : {osg::Vec3d(0, 0, 0), osg::Vec3d(1, 0, 0), osg::Vec3d(0, 0, -1)}) {
        osg::Vec3d out;
        ASSERT_TRUE(srs("wgs84")->transformFromWorld(p, out));
        EXPECT_TRUE(std::isfinite(out.x() + out.y() + out.z()));
        EXPECT_LT(out.z(), -6300000.0);
    }
    osg::Vec3d out;
    EXPECT_FALSE(srs("wgs84")->transformFromWorld(osg::Vec3d(std::nan(""), 0, 0), out));
}

// Values by gdaltransform.
TEST(SpatialReference, KnownProjectedPointsBothWays)
{
    const struct
    {
        const char* system;
        double lon, lat, x, y;
    } rows[] = {{"epsg:32613", -105.0, 37.4, 500000.0, 4139247.17169755},
                {"epsg:32756", 151.2, -33.9, 333568.941011552, 6247473.33684402},
                {"spherical-mercator", -105.0, 37.4, -11688546.5332937, 4495009.25862632},
                {"spherical-mercator", 180.0, 0.0, 20037508.342789, 0.0}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.system);
        osg::Vec3d p, back;
        ASSERT_TRUE(srs("wgs84")->transform(osg::Vec3d(row.lon, row.lat, 12.5), srs(row.system), p));
        EXPECT_NEAR(p.x(), row.x, 1e-3);
        EXPECT_NEAR(p.y(), row.y, 1e-3);
        EXPECT_DOUBLE_EQ(p.z(), 12.5);
        ASSERT_TRUE(srs(row.system)->transform(p, srs("wgs84"), back));
        EXPECT_NEAR(back.x(), row.lon, 1e-8);
        EXPECT_NEAR(back.y(), row.lat, 1e-8);
    }
}

TEST(SpatialReference, WhatCannotBeExpressedIsRefusedAndLeavesTheOutputAlone)
{
    osg::Vec3d out(1, 2, 3);
    EXPECT_FALSE(srs("wgs84")->transform(osg::Vec3d(0, 90, 0), srs("spherical-mercator"), out));
    EXPECT_EQ(out, osg::Vec3d(1, 2, 3));
    std::vector<osg::Vec3d> points = {{0, 90, 0}, {10, 10, 0}};
    EXPECT_FALSE(srs("wgs84")->transform(points, srs("spherical-mercator")));
    EXPECT_EQ(points[0], osg::Vec3d(0, 90, 0));
    EXPECT_NEAR(points[1].x(), 1113194.9079, 1e-3) << "the good point is transformed all the same";
    EXPECT_FALSE(GeoPoint().transform(srs("wgs84")).isValid());
}

TEST(SpatialReference, NonsenseIsOneLoggedLineAndNull)
{
    const LogCapture log;
    EXPECT_EQ(SpatialReference::create("epsg:no-such-thing"), nullptr);
    EXPECT_EQ(log.lines().size(), 1u);
    EXPECT_EQ(log.linesWith("epsg:no-such-thing"), 1u);
    EXPECT_EQ(SpatialReference::create(""), nullptr);
}

TEST(SpatialReference, ManyThreadsTransformAtOnce)
{
    std::vector<osg::Vec3d> expected;
    for (int i = 0; i < 50; ++i)
        expected.emplace_back(-108.0 + i * 0.1, 30.0 + i * 0.2, 0.0);
    const std::vector<osg::Vec3d> input = expected;
    ASSERT_TRUE(srs("wgs84")->transform(expected, srs("epsg:32613")));
    std::atomic<int> wrong{0};
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([&] {
            for (int round = 0; round < 50; ++round) {
                std::vector<osg::Vec3d> points = input;
                if (!srs("wgs84")->transform(points, srs("epsg:32613")) || points != expected)
                    ++wrong;
            }
        });
    for (auto& thread : threads)
        thread.join();
    EXPECT_EQ(wrong, 0);
}

TEST(GeoExtent, AcrossTheAntimeridian)
{
    const GeoExtent fiji(srs("wgs84"), 177.0, -20.0, 183.0, -15.0);
    EXPECT_TRUE(fiji.crossesAntimeridian());
    EXPECT_DOUBLE_EQ(fiji.west(), 177.0);
    EXPECT_DOUBLE_EQ(fiji.east(), -177.0);
    EXPECT_DOUBLE_EQ(fiji.width(), 6.0);
    EXPECT_NEAR(std::abs(fiji.getCentroid().x()), 180.0, 1e-12);
    EXPECT_TRUE(fiji.contains(179.0, -17.0));
    EXPECT_TRUE(fiji.contains(-179.0, -17.0));
    EXPECT_FALSE(fiji.contains(0.0, -17.0));

    GeoExtent west, east;
    ASSERT_TRUE(fiji.splitAcrossAntimeridian(west, east));
    EXPECT_DOUBLE_EQ(west.width() + east.width(), 6.0);
    EXPECT_TRUE(fiji.intersects(west));
    EXPECT_TRUE(fiji.intersects(east));
    EXPECT_TRUE(fiji.contains(west));
    EXPECT_TRUE(fiji.contains(east));
    EXPECT_FALSE(west.intersects(east)) << "an edge shared is no intersection";
    EXPECT_FALSE(fiji.intersects(GeoExtent(srs("wgs84"), 0, -20, 176, -15)));

    GeoExtent grown(srs("wgs84"), 178.0, 0.0, 179.0, 1.0);
    grown.expandToInclude(-178.0, 0.5);
    EXPECT_DOUBLE_EQ(grown.width(), 4.0) << "grows the short way round";
}

TEST(GeoMath, GreatCirclesAndRhumbLines)
{
    const double quarter = 6378137.0 * 90.0 * kRad;
    EXPECT_NEAR(GeoMath::distance(0, 0, 0, 90 * kRad), quarter, 1e-6);
    EXPECT_NEAR(GeoMath::distance(0, 0, 90 * kRad, 0), quarter, 1e-6);
    EXPECT_NEAR(GeoMath::distance(0, 179 * kRad, 0, -179 * kRad), quarter / 45.0, 1e-6);
    EXPECT_NEAR(GeoMath::distance({0, 0, 0}, {90, 0, 0}, srs("wgs84")), quarter, 1e-6);
    EXPECT_NEAR(GeoMath::bearing(0, 0, 0, 1 * kRad), 90 * kRad, 1e-12);
    double lat, lon;
    GeoMath::midpoint(0, 170 * kRad, 0, -170 * kRad, lat, lon);
    EXPECT_NEAR(std::abs(lon), 180 * kRad, 1e-12);

    for (double bearing = -170.0; bearing <= 180.0; bearing += 35.0) {
        GeoMath::destination(37.4 * kRad, -105 * kRad, bearing * kRad, 250000.0, lat, lon);
        EXPECT_NEAR(GeoMath::distance(37.4 * kRad, -105 * kRad, lat, lon), 250000.0, 1e-4) << bearing;
        EXPECT_NEAR(GeoMath::bearing(37.4 * kRad, -105 * kRad, lat, lon), bearing * kRad, 1e-9) << bearing;
        GeoMath::rhumbDestination(37.4 * kRad, -105 * kRad, bearing * kRad, 250000.0, lat, lon);
        EXPECT_NEAR(GeoMath::rhumbDistance(37.4 * kRad, -105 * kRad, lat, lon), 250000.0, 1e-3) << bearing;
        EXPECT_NEAR(GeoMath::rhumbBearing(37.4 * kRad, -105 * kRad, lat, lon), bearing * kRad, 1e-9)
            << bearing;
    }
}
