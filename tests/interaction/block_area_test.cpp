// The area that a block's dialog shows, against the geodesic one.
#include "scene/shape/AxBlockArea.h"

#include <GeographicLib/Geodesic.hpp>
#include <GeographicLib/PolygonArea.hpp>
#include <osg/Math>
#include <osgEarth/SpatialReference>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <utility>
#include <vector>

namespace {
using Ring = std::vector<osg::Vec3d>;

double Area(const Ring& ring)
{
    static const osg::ref_ptr<const osgEarth::SpatialReference> wgs84 =
        osgEarth::SpatialReference::create("wgs84");
    return AxBlockArea(ring, *wgs84);
}

double GeodesicKm2(const Ring& ring)
{
    GeographicLib::PolygonArea polygon(GeographicLib::Geodesic::WGS84());
    for (const osg::Vec3d& vertex : ring)
        polygon.AddPoint(vertex.y(), vertex.x());
    double perimeter = 0.0;
    double area = 0.0;
    polygon.Compute(false, true, perimeter, area);
    return std::abs(area) / 1e6;
}

// Of the fan's triangles, what the cut cosine and the sphere may cost.
double OwnError(const Ring& ring)
{
    constexpr double ofTheSphere = 0.0137;
    constexpr double ofTheCutSine = 0.0015;
    double error = ofTheSphere * GeodesicKm2(ring);
    const auto toFirst = [&ring](const osg::Vec3d& vertex) {
        double metres = 0.0;
        GeographicLib::Geodesic::WGS84().Inverse(ring[0].y(), ring[0].x(), vertex.y(), vertex.x(), metres);
        return metres / 1000.0;
    };
    for (std::size_t i = 1; i + 1 < ring.size(); ++i)
        error += 0.5 * ofTheCutSine * toFirst(ring[i]) * toFirst(ring[i + 1]);
    return error;
}

// Simple by construction: seen from the middle its corners turn one way.
Ring StarShaped(std::mt19937& random, double lng, double lat, double radiusKm, int corners)
{
    std::uniform_real_distribution<double> jitter(0.0, 0.8);
    std::uniform_real_distribution<double> reach(0.3, 1.0);
    Ring ring;
    for (int i = 0; i < corners; ++i) {
        const double azimuth = (i + jitter(random)) * 360.0 / corners;
        double vertexLat = 0.0;
        double vertexLng = 0.0;
        GeographicLib::Geodesic::WGS84().Direct(lat, lng, azimuth, reach(random) * radiusKm * 1000.0,
                                                vertexLat, vertexLng);
        ring.emplace_back(vertexLng, vertexLat, 100.0);
    }
    return ring;
}
} // namespace

TEST(BlockArea, IsTheGeodesicOneWithinTheMethodsOwnErrorFromAnyVertexAndInBothDirections)
{
    std::mt19937 random(20261121);
    std::uniform_real_distribution<double> anyLng(-180.0, 180.0);
    std::uniform_real_distribution<double> anyLat(-75.0, 75.0);
    std::uniform_real_distribution<double> anySize(-3.0, 2.0); // decades of a kilometre
    for (int i = 0; i < 400; ++i) {
        const double radius = std::pow(10.0, anySize(random));
        const int corners = 3 + i % 30;
        Ring ring = StarShaped(random, anyLng(random), anyLat(random), radius, corners);
        const double area = Area(ring);
        const double truth = GeodesicKm2(ring);
        ASSERT_NEAR(area, truth, OwnError(ring)) << i << ": " << corners << " corners, " << radius << " km";
        const Ring backwards(ring.rbegin(), ring.rend());
        ASSERT_NEAR(Area(backwards), area, 2.0 * OwnError(ring)) << i;
        std::rotate(ring.begin(), ring.begin() + corners / 2, ring.end());
        ASSERT_NEAR(Area(ring), truth, OwnError(ring)) << i << ": it begins with another vertex";
    }
}

TEST(BlockArea, IsRightWherePlanesEnd)
{
    const Ring square{{10.0, 50.0, 0.0}, {10.01, 50.0, 0.0}, {10.01, 50.01, 0.0}, {10.0, 50.01, 0.0}};
    EXPECT_NEAR(Area(square), GeodesicKm2(square), 0.0137 * GeodesicKm2(square));
    Ring reversed(square.rbegin(), square.rend());
    std::rotate(reversed.begin(), reversed.end() - 1, reversed.end());
    EXPECT_EQ(Area(reversed), Area(square)) << "the same fan, the other way round";

    const Ring dateLine{{179.9, 10.0, 0.0}, {-179.9, 10.0, 0.0}, {-179.9, 10.2, 0.0}, {179.9, 10.2, 0.0}};
    EXPECT_NEAR(Area(dateLine), GeodesicKm2(dateLine), 0.0137 * GeodesicKm2(dateLine));
    const Ring pole{{0.0, 88.0, 0.0}, {90.0, 88.0, 0.0}, {180.0, 88.0, 0.0}, {-90.0, 88.0, 0.0}};
    EXPECT_NEAR(Area(pole), GeodesicKm2(pole), 1e-6 * GeodesicKm2(pole)) << "no zone takes it";
    EXPECT_EQ(Area({}), 0.0);
    EXPECT_EQ(Area({{1.0, 2.0, 0.0}, {3.0, 4.0, 0.0}}), 0.0);
}

TEST(BlockArea, OfARingThatIsDraggedIsTheSameWithWhatWasKept)
{
    const osg::ref_ptr<const osgEarth::SpatialReference> wgs84 = osgEarth::SpatialReference::create("wgs84");
    AxKeptPlane kept;
    Ring ring = {{105.9, 10.0, 0.0}, {106.1, 10.0, 0.0}, {106.1, 10.2, 0.0}, {105.9, 10.2, 0.0}};
    const std::pair<std::size_t, osg::Vec3d> moves[] = {{2, {106.2, 10.3, 0.0}},
                                                        {0, {106.0, 9.9, 0.0}}, // of another zone
                                                        {3, {105.9, 200.0, 0.0}},
                                                        {3, {105.9, 10.4, 0.0}}};
    for (const auto& [vertex, place] : moves) {
        ring[vertex] = place;
        const double fresh = AxBlockArea(ring, *wgs84);
        const double area = AxBlockArea(ring, *wgs84, &kept);
        EXPECT_TRUE(area == fresh || (std::isnan(area) && std::isnan(fresh))) << area << ", not " << fresh;
    }
}
