#include "globe/Horizon.h"
#include "globe/PickRay.h"
#include "terrain/ReliefShade.h"
#include "terrain/TileMesh.h"

#include <gtest/gtest.h>
#include <osg/Math>

#include <cmath>

using namespace osgEarth;

namespace {
OccludeePoint occludeeAround(double longitude, double latitude, double halfDegrees, double height)
{
    const osg::Vec3d origin = geodeticToWorld(longitude, latitude, height);
    std::vector<osg::Vec3f> positions;
    for (const double dx : {-halfDegrees, 0.0, halfDegrees})
        for (const double dy : {-halfDegrees, 0.0, halfDegrees})
            positions.emplace_back(geodeticToWorld(longitude + dx, latitude + dy, height) - origin);
    return occludeeOf(origin, positions, 0.0);
}

/// Shade at u 0, 0.5 or 1 and v.
float shadeAt(const ReliefShade& shade, float u, float v)
{
    std::vector<float> factors(3);
    shade.factorsAlong(v, factors);
    return factors[static_cast<std::size_t>(2.0f * u)];
}

HeightRaster slope(float perColumn, float perRow)
{
    HeightRaster raster(65, 1);
    for (int row = -1; row <= 65; ++row)
        for (int column = -1; column <= 65; ++column)
            raster.at(column, row) =
                perColumn * static_cast<float>(column) + perRow * static_cast<float>(row);
    return raster;
}
} // namespace

TEST(Horizon, HidesTheFarSideAndNothingInSight)
{
    const Horizon fromSpace(geodeticToWorld(0.0, 0.0, 4.0 * 6378137.0));
    EXPECT_FALSE(fromSpace.hides(occludeeAround(0.0, 0.0, 2.0, 0.0)));
    EXPECT_FALSE(fromSpace.hides(occludeeAround(70.0, 0.0, 2.0, 0.0)));
    EXPECT_TRUE(fromSpace.hides(occludeeAround(120.0, 0.0, 2.0, 0.0)));
    EXPECT_TRUE(fromSpace.hides(occludeeAround(180.0, 0.0, 2.0, 0.0)));
}

TEST(Horizon, AMountainBehindTheHorizonShowsItsPeak)
{
    // From 100 m the sea horizon is 36 km away and a point of height h shows
    // as far as 36 km + sqrt(2 R h): 4,300 m shows beyond 234 km away.
    const Horizon nearGround(geodeticToWorld(10.0, 45.0, 100.0));
    const double degreesAt200km = 200.0 / 111.2;
    EXPECT_FALSE(nearGround.hides(occludeeAround(10.0, 45.0 + degreesAt200km, 0.02, 4300.0)));
    EXPECT_TRUE(nearGround.hides(occludeeAround(10.0, 45.0 + 5.0 * degreesAt200km, 0.02, 4300.0)));
}

TEST(Horizon, AnEyeUnderGroundSeesEverything)
{
    const Horizon buried(geodeticToWorld(0.0, 0.0, -5000.0));
    EXPECT_FALSE(buried.hides(occludeeAround(180.0, 0.0, 2.0, 0.0)));
}

TEST(ReliefShade, SlopesTowardsTheNorthWestAreLightAndTheOthersDark)
{
    const TileBounds bounds{-105.0, 37.0, -104.9, 37.1};
    EXPECT_TRUE(ReliefShade(bounds, slope(0.0f, 0.0f)).isLevel());
    EXPECT_FLOAT_EQ(shadeAt(ReliefShade(bounds, slope(0.0f, 0.0f)), 0.5f, 0.5f), 1.0f);
    // Ground that rises towards the south-east faces the light.
    EXPECT_GT(shadeAt(ReliefShade(bounds, slope(40.0f, -40.0f)), 0.5f, 0.5f), 1.1f);
    EXPECT_LT(shadeAt(ReliefShade(bounds, slope(-40.0f, 40.0f)), 0.5f, 0.5f), 0.8f);
    // However steep, the picture stays readable.
    EXPECT_GE(shadeAt(ReliefShade(bounds, slope(-4000.0f, 4000.0f)), 0.5f, 0.5f), 0.45f);
}

TEST(ReliefShade, NeighboursAgreeAlongTheirBorder)
{
    const auto hill = [](const TileBounds& bounds) {
        HeightRaster raster(65, 1);
        for (int row = -1; row <= 65; ++row)
            for (int column = -1; column <= 65; ++column) {
                const double x = bounds.west + bounds.width() * column / 64.0;
                const double y = bounds.south + bounds.height() * row / 64.0;
                raster.at(column, row) = static_cast<float>(900.0 * std::sin(x * 40.0) * std::cos(y * 55.0));
            }
        return ReliefShade(bounds, raster);
    };
    const ReliefShade west = hill({10.0, 45.0, 10.1, 45.1});
    const ReliefShade east = hill({10.1, 45.0, 10.2, 45.1});
    for (float v = 0.0f; v <= 1.0f; v += 0.125f)
        EXPECT_NEAR(shadeAt(west, 1.0f, v), shadeAt(east, 0.0f, v), 1e-3f);
}

TEST(PickRay, RunsThroughThePixelWhateverTheClipPlanes)
{
    osg::ref_ptr<osg::Camera> camera = new osg::Camera;
    camera->setViewport(0, 0, 1280, 800);
    const osg::Vec3d eye = geodeticToWorld(-105.0, 37.4, 3000.0);
    const osg::Vec3d centre = geodeticToWorld(-105.01, 37.43, 2500.0);
    osg::Vec3d up = eye;
    up.normalize();
    camera->setViewMatrixAsLookAt(eye, centre, up);
    for (const double nearPlane : {1.0, 1e-4, 1e-8}) {
        camera->setProjectionMatrixAsPerspective(30.0, 1.6, nearPlane, nearPlane * 1e10);
        TerrainRay ray;
        ASSERT_TRUE(pickRay(*camera, 640.0, 400.0, ray));
        osg::Vec3d expected = centre - eye;
        expected.normalize();
        EXPECT_LT((ray.origin - eye).length(), 1e-6);
        EXPECT_LT((ray.direction - expected).length(), 1e-9);
        // 400 pixels up is the upper edge: half of the field of view.
        ASSERT_TRUE(pickRay(*camera, 640.0, 800.0, ray));
        EXPECT_NEAR(std::acos(ray.direction * expected), 15.0 * osg::PI / 180.0, 1e-9);
    }
    camera->setViewport(nullptr);
    TerrainRay ray;
    EXPECT_FALSE(pickRay(*camera, 1.0, 1.0, ray));
}
