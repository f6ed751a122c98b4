#include <AxAlgorthm/AxConstants.h>
#include <AxAlgorthm/AxCoordinate.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <thread>

namespace {
using GeoRing = std::vector<CAxPoint2D>;
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

double metresBetween(const CAxPoint2D& a, const CAxPoint2D& b)
{
    return DistanceBetweenTwoLatLng(CAxVector3D(a.x(), a.y(), 0), CAxVector3D(b.x(), b.y(), 0));
}

GeoRing ringAround(double lng, double lat, double degrees)
{
    return {{lng - degrees, lat - degrees},
            {lng + degrees, lat - degrees},
            {lng + degrees, lat + degrees},
            {lng - degrees, lat + degrees}};
}

void expectRoundTrip(const GeoRing& ring)
{
    GeoRing plane;
    GeoRing back;
    ASSERT_TRUE(LatLng2UTM(ring, plane));
    ASSERT_TRUE(UTM2LatLng(plane, back));
    ASSERT_EQ(back.size(), ring.size());
    for (std::size_t i = 0; i < ring.size(); ++i)
        EXPECT_LT(metresBetween(ring[i], back[i]), 1e-3) << ring[i].x() << ' ' << ring[i].y();
}
} // namespace

TEST(Utm, KnownPoints)
{
    // The last two as PROJ converts them.
    const struct
    {
        double lat, lng, x, y;
    } rows[] = {{0.0, 3.0, 500000.0, 0.0},
                {-0.0, 3.0, 500000.0, 0.0},
                {33.3, 44.4, 444140.54, 3684706.36},
                {-37.8136, 144.9631, 320704.45, 5812911.70}};
    for (const auto& row : rows) {
        double x = 0;
        double y = 0;
        ASSERT_TRUE(LatLng2UTM(row.lat, row.lng, x, y));
        EXPECT_NEAR(x, row.x, 0.01) << row.lat;
        EXPECT_NEAR(y, row.y, 0.01) << row.lat;
    }
}

TEST(Utm, ARingStaysInOnePlane)
{
    const struct
    {
        const char* name;
        double lng, lat;
    } rows[] = {{"zone border", 6.0, 48.0}, {"antimeridian", 180.0, -17.0}, {"antimeridian", -180.0, 65.0},
                {"equator", 9.0, 0.0},      {"Norway", 3.0, 60.0},          {"Svalbard", 9.0, 78.0},
                {"corner", 180.0, 0.0},     {"high north", 42.0, 83.9},     {"high south", 0.0, -79.9}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        GeoRing ring = ringAround(row.lng, row.lat, 0.02);
        for (std::size_t start = 0; start < ring.size(); ++start) {
            std::rotate(ring.begin(), ring.begin() + 1, ring.end());
            expectRoundTrip(ring);
            GeoRing plane;
            ASSERT_TRUE(LatLng2UTM(ring, plane));
            for (std::size_t i = 0; i < ring.size(); ++i) {
                const CAxPoint2D& a = plane[i];
                const CAxPoint2D& b = plane[(i + 1) % plane.size()];
                const double ground = metresBetween(ring[i], ring[(i + 1) % ring.size()]);
                EXPECT_NEAR(std::hypot(a.x() - b.x(), a.y() - b.y()) / ground, 1.0, 2e-3);
            }
        }
    }
}

TEST(Utm, RandomRingsRoundTripWithinAMillimetre)
{
    GeoRing split;
    GeoRing beyond; // the antimeridian, which longitudes may be written across either way
    ASSERT_TRUE(LatLng2UTM(GeoRing{{179.99, 10}, {-179.99, 10}}, split));
    ASSERT_TRUE(LatLng2UTM(GeoRing{{179.99, 10}, {180.01, 10}}, beyond));
    EXPECT_NEAR(split[1].x(), beyond[1].x(), 1e-6);
    std::mt19937 random(20240611);
    std::uniform_real_distribution<double> lng(-180.0, 180.0);
    std::uniform_real_distribution<double> lat(-79.0, 83.0);
    std::uniform_real_distribution<double> step(-0.9, 0.9);
    for (int round = 0; round < 300; ++round) {
        const CAxPoint2D centre(lng(random), lat(random));
        GeoRing ring;
        for (int i = 0; i < 8; ++i)
            ring.emplace_back(centre.x() + step(random), centre.y() + step(random));
        expectRoundTrip(ring);
    }
    expectRoundTrip({{3.0, 0.1}, {32.9, 0.1}, {-26.9, 45.0}, {30.0, 83.0}});
}

TEST(Utm, PointsThatHaveNoPlaceInThePlaneLeaveTheOutputEmpty)
{
    const CAxPoint2D good(10.0, 50.0);
    const CAxPoint2D bad[] = {
        {10, 90},   {10, -90},  {10, 84},  {10, -80.001},
        {kNaN, 50}, {10, kNaN}, {361, 50}, {std::numeric_limits<double>::infinity(), 50},
        {60, 50}};
    GeoRing out;
    for (const CAxPoint2D& point : bad) {
        out = {{1, 1}};
        EXPECT_FALSE(LatLng2UTM(GeoRing{good, point}, out)) << point.x() << ' ' << point.y();
        EXPECT_TRUE(out.empty());
    }
    EXPECT_FALSE(LatLng2UTM(GeoRing(), out));
    double x = 7;
    double y = 8;
    EXPECT_FALSE(LatLng2UTM(kNaN, 10, x, y));
    EXPECT_EQ(x, 7);
    ASSERT_TRUE(LatLng2UTM(50, 10, x, y));
    for (const GeoRing& plane : {GeoRing(), GeoRing{{x, y}, {kNaN, y}}, GeoRing{{1e9, y}}}) {
        out = {{1, 1}};
        EXPECT_FALSE(UTM2LatLng(plane, out));
        EXPECT_TRUE(out.empty());
    }
}

TEST(Utm, AFailedForwardCallAndOtherThreadsKeepTheZone)
{
    double x = 0;
    double y = 0;
    ASSERT_TRUE(LatLng2UTM(50.0, 10.0, x, y));
    GeoRing ignored;
    ASSERT_FALSE(LatLng2UTM(GeoRing{{100.0, 10.0}, {100.0, 89.0}}, ignored));
    bool inverseBeforeForward = true;
    std::thread([&inverseBeforeForward] {
        double a = 0;
        double b = 0;
        inverseBeforeForward = UTM2LatLng(500000.0, 5000000.0, a, b);
        LatLng2UTM(-30.0, 100.0, a, b);
    }).join();
    EXPECT_FALSE(inverseBeforeForward);
    double lat = 0;
    double lng = 0;
    ASSERT_TRUE(UTM2LatLng(x, y, lat, lng));
    EXPECT_NEAR(lat, 50.0, 1e-9);
    EXPECT_NEAR(lng, 10.0, 1e-9);
}

TEST(Utm, APointInBetweenChangesNeitherARingsZoneNorAPlane)
{
    const GeoRing ring{{10.0, 50.0}, {10.1, 50.0}, {10.1, 50.1}};
    GeoRing plane;
    ASSERT_TRUE(LatLng2UTM(ring, plane));
    const std::optional<AxUtmPlane> south = AxUtmPlane::At(-30.0, 100.0);
    ASSERT_TRUE(south && !AxUtmPlane::At(84.0, 0.0));
    double x = 0;
    double y = 0;
    ASSERT_TRUE(LatLng2UTM(-30.0, 100.0, x, y));
    GeoRing back;
    ASSERT_TRUE(UTM2LatLng(plane, back));
    EXPECT_NEAR(back[2].x(), 10.1, 1e-9);
    ASSERT_TRUE(south->ToLngLat({{x, y}}, back));
    EXPECT_NEAR(back[0].x(), 100.0, 1e-9);
    EXPECT_NEAR(back[0].y(), -30.0, 1e-9);
    double lat = 0;
    double lng = 0;
    ASSERT_TRUE(UTM2LatLng(x, y, lat, lng));
    EXPECT_NEAR(lng, 100.0, 1e-9) << "nor does a ring change a point's";
}

TEST(Distance, IsTheGeodesicOnTheEllipsoid)
{
    // One degree of the equator, a quarter meridian of WGS84, and altitudes that do not matter.
    EXPECT_NEAR(DistanceBetweenTwoLatLng({0, 0, 0}, {1, 0, 0}), 111319.4908, 1e-3);
    EXPECT_NEAR(DistanceBetweenTwoLatLng({10, 0, 500}, {10, 90, -20}), 10001965.7293, 1e-3);
    EXPECT_NEAR(DistanceBetweenTwoLatLng({179.5, 0, 0}, {-179.5, 0, 0}), 111319.4908, 1e-3);
    EXPECT_EQ(DistanceBetweenTwoLatLng({10, 91, 0}, {10, 0, 0}), INVALID_DOUBLE_VALUE);
    EXPECT_EQ(DistanceBetweenTwoLatLng({kNaN, 1, 0}, {10, 0, 0}), INVALID_DOUBLE_VALUE);
}
