#include <osgEarth/GeoData>
#include <osgEarth/GeoMath>
#include <osgEarth/SpatialReference>
#include <osgEarth/Viewpoint>

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
struct GeocentricRow
{
    double lon, lat, height;
    osg::Vec3d world;
};

class Geocentric : public ::testing::TestWithParam<GeocentricRow>
{
};

TEST_P(Geocentric, KnownPointBothWays)
{
    const GeocentricRow& row = GetParam();
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

INSTANTIATE_TEST_SUITE_P(
    Points, Geocentric,
    ::testing::Values(
        GeocentricRow{0, 0, 0, {6378137.0, 0, 0}}, GeocentricRow{90, 0, 0, {0, 6378137.0, 0}},
        GeocentricRow{180, 0, 100, {-6378237.0, 0, 0}}, GeocentricRow{0, 90, 0, {0, 0, 6356752.314245}},
        GeocentricRow{0, -90, 500, {0, 0, -6357252.314245}},
        GeocentricRow{45, 45, 1000, {3194919.14506057, 3194919.14506057, 4488055.51564711}},
        GeocentricRow{-105, 37.4, 2500, {-1313542.76061027, -4902208.32051181, 3854271.52787944}},
        GeocentricRow{151.2, -33.9, 50, {-4643982.39468283, 2553050.92617821, -3537273.2351607}}));

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
struct ProjectedRow
{
    const char* system;
    double lon, lat, x, y;
};

class Projected : public ::testing::TestWithParam<ProjectedRow>
{
};

TEST_P(Projected, KnownPointBothWays)
{
    const ProjectedRow& row = GetParam();
    osg::Vec3d p;
    ASSERT_TRUE(srs("wgs84")->transform(osg::Vec3d(row.lon, row.lat, 12.5), srs(row.system), p));
    EXPECT_NEAR(p.x(), row.x, 1e-3);
    EXPECT_NEAR(p.y(), row.y, 1e-3);
    EXPECT_DOUBLE_EQ(p.z(), 12.5);
    osg::Vec3d back;
    ASSERT_TRUE(srs(row.system)->transform(p, srs("wgs84"), back));
    EXPECT_NEAR(back.x(), row.lon, 1e-8);
    EXPECT_NEAR(back.y(), row.lat, 1e-8);
}

INSTANTIATE_TEST_SUITE_P(
    Systems, Projected,
    ::testing::Values(ProjectedRow{"epsg:32613", -105.0, 37.4, 500000.0, 4139247.17169755},
                      ProjectedRow{"epsg:32756", 151.2, -33.9, 333568.941011552, 6247473.33684402},
                      ProjectedRow{"spherical-mercator", -105.0, 37.4, -11688546.5332937, 4495009.25862632},
                      ProjectedRow{"spherical-mercator", 180.0, 0.0, 20037508.342789, 0.0}));

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

TEST(SpatialReference, OtherDatumsAreShiftedAlsoByWayOfGeocentric)
{
    // Greenwich in OSGB 36 is about 130 m from Greenwich in WGS 84.
    osg::Vec3d direct, world, around;
    ASSERT_TRUE(srs("epsg:4277")->transform(osg::Vec3d(0, 51.4778, 0), srs("wgs84"), direct));
    EXPECT_NEAR(GeoMath::distance(direct, {0, 51.4778, 0}, srs("wgs84")), 130.0, 40.0);
    ASSERT_TRUE(srs("epsg:4277")->transform(osg::Vec3d(0, 51.4778, 0), srs("wgs84")->getECEF(), world));
    ASSERT_TRUE(srs("wgs84")->getECEF()->transform(world, srs("wgs84"), around));
    EXPECT_NEAR(around.x(), direct.x(), 1e-9);
    EXPECT_NEAR(around.y(), direct.y(), 1e-9);
}

TEST(SpatialReference, EqualDefinitionsAreOneInstance)
{
    EXPECT_EQ(srs("wgs84"), srs("EPSG:4326"));
    EXPECT_EQ(srs("spherical-mercator"), srs("epsg:3857"));
    EXPECT_EQ(srs("wgs84"), SpatialReference::create(srs("wgs84")->getWKT()));
    EXPECT_TRUE(srs("epsg:32613")->isEquivalentTo(srs("+proj=utm +zone=13 +datum=WGS84")));
    EXPECT_FALSE(srs("epsg:32613")->isEquivalentTo(srs("epsg:32614")));
    EXPECT_FALSE(srs("wgs84")->isEquivalentTo(srs("plate-carre")));
    EXPECT_EQ(srs("epsg:32613")->getGeographicSRS(), srs("wgs84"));
    EXPECT_TRUE(srs("wgs84")->getECEF()->isECEF());
    EXPECT_EQ(srs("wgs84")->getECEF()->getGeographicSRS(), srs("wgs84"));
    EXPECT_EQ(srs("wgs84")->getECEF(), srs("geocentric"));
    const SpatialReference* other = srs("epsg:4277"); // OSGB 36, on Airy's ellipsoid
    EXPECT_EQ(other->getECEF()->getGeographicSRS(), other);
}

TEST(SpatialReference, NonsenseIsOneLoggedLineAndNull)
{
    const LogCapture log;
    EXPECT_EQ(SpatialReference::create("epsg:no-such-thing"), nullptr);
    EXPECT_EQ(log.lines().size(), 1u);
    EXPECT_EQ(log.linesWith("epsg:no-such-thing"), 1u);
    EXPECT_EQ(SpatialReference::create(""), nullptr);
}

TEST(SpatialReference, UtmZoneOfAPoint)
{
    struct
    {
        double lon, lat;
        const char* expected;
    } const rows[] = {{-180.0, 10.0, "epsg:32601"}, {179.999, 10.0, "epsg:32660"},
                      {180.0, 10.0, "epsg:32601"},  {-105.0, 37.4, "epsg:32613"},
                      {0.0, -0.1, "epsg:32731"},    {5.999, 0.0, "epsg:32631"}};
    for (const auto& row : rows)
        EXPECT_EQ(srs("wgs84")->createUTMFromLonLat(Angle(row.lon), Angle(row.lat)), srs(row.expected))
            << row.lon << " " << row.lat;
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

TEST(GeoPoint, LocalFrameIsEastNorthUp)
{
    const GeoPoint point(srs("wgs84"), -105.0, 37.4, 2500.0, ALTMODE_ABSOLUTE);
    osg::Matrixd frame;
    ASSERT_TRUE(point.createLocalToWorld(frame));
    const auto there = [&](const osg::Vec3d& local) {
        GeoPoint p;
        EXPECT_TRUE(p.fromWorld(srs("wgs84"), local * frame));
        return p;
    };
    EXPECT_NEAR(there({0, 0, 0}).z(), 2500.0, 1e-6);
    EXPECT_GT(there({100, 0, 0}).x(), -105.0);
    EXPECT_NEAR(there({100, 0, 0}).y(), 37.4, 1e-7);
    EXPECT_GT(there({0, 100, 0}).y(), 37.4);
    EXPECT_NEAR(there({0, 0, 100}).z(), 2600.0, 1e-6);
    osg::Matrixd inverse;
    ASSERT_TRUE(point.createWorldToLocal(inverse));
    osg::Vec3d world;
    ASSERT_TRUE(point.toWorld(world));
    EXPECT_LT((world * inverse).length(), 1e-6);
}

TEST(GeoPoint, RelativePointNeedsATerrainToGoToWorld)
{
    osg::Vec3d world;
    EXPECT_FALSE(GeoPoint(srs("wgs84"), 10.0, 10.0).toWorld(world));
    EXPECT_FALSE(GeoPoint(srs("wgs84"), 10.0, 10.0).toWorld(world, nullptr));
    EXPECT_FALSE(GeoPoint().toWorld(world));
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

TEST(GeoExtent, WholeWorldAndInvalidOnes)
{
    const GeoExtent world(srs("wgs84"), -180, -90, 180, 90);
    EXPECT_FALSE(world.crossesAntimeridian());
    EXPECT_DOUBLE_EQ(world.width(), 360.0);
    EXPECT_TRUE(world.contains(180.0, 90.0));
    EXPECT_DOUBLE_EQ(GeoExtent(srs("wgs84"), 0, -90, 360, 90).width(), 360.0);
    const GeoExtent mercator = world.transform(srs("spherical-mercator"));
    EXPECT_NEAR(mercator.xMin(), MERC_MINX, 1e-3);
    EXPECT_NEAR(mercator.yMax(), MERC_MAXY, 1e-3);
    EXPECT_FALSE(GeoExtent().isValid());
    EXPECT_FALSE(GeoExtent(srs("wgs84")).isValid());
    EXPECT_FALSE(GeoExtent().intersects(world));
    GeoExtent empty(srs("wgs84"));
    empty.expandToInclude(5.0, 6.0);
    EXPECT_TRUE(empty.isValid());
    EXPECT_TRUE(empty.contains(5.0, 6.0));
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

TEST(GeoMath, LinesAndTheSphere)
{
    osg::Vec3d a, b;
    EXPECT_EQ(GeoMath::interesectLineWithSphere({-10, 0, 0}, {10, 0, 0}, 5.0, a, b), 2u);
    EXPECT_NEAR(a.x(), -5.0, 1e-12);
    EXPECT_NEAR(b.x(), 5.0, 1e-12);
    EXPECT_EQ(GeoMath::interesectLineWithSphere({-10, 6, 0}, {10, 6, 0}, 5.0, a, b), 0u);
    EXPECT_EQ(GeoMath::intersectLineWithPlane({0, 0, 5}, {1, 0, 3}, osg::Plane(0, 0, 1, -1), a), 1u);
    EXPECT_NEAR(a.z(), 1.0, 1e-12);
    EXPECT_EQ(GeoMath::intersectLineWithPlane({0, 0, 5}, {1, 0, 5}, osg::Plane(0, 0, 1, -1), a), 0u);
    EXPECT_TRUE(GeoMath::isPointVisible({10, 0, 0}, {5, 0, 0}, 5.0));
    EXPECT_FALSE(GeoMath::isPointVisible({10, 0, 0}, {-5, 0, 0}, 5.0));
}

TEST(Units, ParseAndConvert)
{
    struct
    {
        const char* text;
        double metres;
    } const rows[] = {{"12.5", 12.5},  {"12.5m", 12.5}, {"2 km", 2000.0},    {"1e3m", 1000.0},
                      {"10ft", 3.048}, {"1nm", 1852.0}, {"-3 mi", -4828.032}};
    for (const auto& row : rows)
        EXPECT_NEAR(as<Distance>(row.text, Distance(-1.0)).as(Units::METERS), row.metres, 1e-9) << row.text;
    for (const char* bad : {"", "km", "12 bananas", "x12"})
        EXPECT_EQ(as<Distance>(bad, Distance(-1.0)).getValue(), -1.0) << bad;
    EXPECT_NEAR(Angle(180.0).as(Units::RADIANS), 3.14159265358979, 1e-12);
    EXPECT_NEAR(Distance(1.0, Units::KILOMETERS).as(Units::METERS), 1000.0, 1e-12);
    EXPECT_TRUE(Distance(1.0, Units::KILOMETERS) == Distance(1000.0));
    EXPECT_NEAR(Speed(36.0, Units::KILOMETERS_PER_HOUR).as(Units::METERS_PER_SECOND), 10.0, 1e-12);
}

TEST(Viewpoint, ConstructorAndConfigKeepEverything)
{
    const Viewpoint beijing("Beijing", 116.3, 39.9, 12.0, 15.0, -90.0, 25512548.0);
    ASSERT_TRUE(beijing.isValid());
    const Viewpoint again(beijing.getConfig());
    EXPECT_EQ(again.name().value(), "Beijing");
    EXPECT_EQ(again.focalPoint().value().vec3d(), osg::Vec3d(116.3, 39.9, 12.0));
    EXPECT_DOUBLE_EQ(again.getHeading(), 15.0);
    EXPECT_DOUBLE_EQ(again.getPitch(), -90.0);
    EXPECT_DOUBLE_EQ(again.getRange(), 25512548.0);
    EXPECT_FALSE(Viewpoint().isValid());
    Viewpoint following;
    {
        const osg::ref_ptr<osg::Node> node = new osg::Node;
        following.setNode(node.get());
        EXPECT_TRUE(following.isValid());
    }
    EXPECT_FALSE(following.isValid()) << "the node is gone";
}
