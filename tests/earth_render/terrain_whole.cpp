// The drawn ground is whole: whatever the sources and wherever the camera, no
// pixel below the horizon shows the sky, and nothing is drawn that is not ground.
#include "layers/TerrainHeights.h"
#include "MadeUpGround.h"
#include "OffscreenGlobe.h"

#include <gtest/gtest.h>

#include <globe/PickRay.h>
#include <osg/Math>
#include <osgEarth/GeoData>
#include <osgEarth/MapNode>
#include <osgEarth/SpatialReference>
#include <osgEarth/Terrain>
#include <random>

using namespace osgEarth;

namespace {
const SpatialReference* geographic()
{
    return SpatialReference::get("wgs84");
}

/// A random place to look from and a direction.
struct Look
{
    double longitude, latitude, height, heading, pitch;
};

std::ostream& operator<<(std::ostream& out, const Look& look)
{
    return out << "from " << look.longitude << ", " << look.latitude << ", " << look.height << " m, heading "
               << look.heading << ", pitch " << look.pitch;
}

} // namespace

class WholeTerrain : public testing::TestWithParam<MadeUpGround>
{
protected:
    WholeTerrain()
    {
        osg::ref_ptr<Map> map = new Map;
        GetParam().write(folder, *map);
        ground = TerrainHeights(*map,
                                Bounds(kMadeUpLongitude - 1.0, kMadeUpLatitude - 1.0, kMadeUpLongitude + 1.0,
                                       kMadeUpLatitude + 1.0),
                                0.0);
        globe = std::make_unique<OffscreenGlobe>(map.get());
    }

    Look randomLook()
    {
        const auto within = [this](double from, double to) {
            return std::uniform_real_distribution<double>(from, to)(random);
        };
        Look look;
        look.longitude = kMadeUpLongitude + within(-0.15, 0.15);
        look.latitude = kMadeUpLatitude + within(-0.15, 0.15);
        look.height =
            std::max(0.0, ground.at(look.longitude, look.latitude)) + std::pow(10.0, within(1.7, 4.3));
        look.heading = within(0.0, 360.0);
        look.pitch = -std::pow(10.0, within(0.3, 1.9));
        return look;
    }

    void lookFrom(const Look& look)
    {
        osg::Vec3d eye;
        geographic()->transformToWorld(osg::Vec3d(look.longitude, look.latitude, look.height), eye);
        osg::Matrixd local;
        GeoPoint(geographic(), look.longitude, look.latitude, look.height).createLocalToWorld(local);
        const double heading = osg::DegreesToRadians(look.heading), pitch = osg::DegreesToRadians(look.pitch);
        const osg::Vec3d ahead(std::sin(heading) * std::cos(pitch), std::cos(heading) * std::cos(pitch),
                               std::sin(pitch));
        const osg::Vec3d up(0, 0, 1);
        globe->viewer().getCamera()->setViewMatrixAsLookAt(eye, ahead * local,
                                                           osg::Matrixd::transform3x3(up, local));
    }

    /// Whether the ray through a pixel meets the globe at sea level, which no made-up ground lies below.
    bool meetsTheGlobe(int x, int y) const
    {
        TerrainRay ray;
        pickRay(*globe->viewer().getCamera(), x + 0.5, y + 0.5, ray);
        const osg::Vec3d scale(1.0 / 6378137.0, 1.0 / 6378137.0, 1.0 / 6356752.3);
        const auto scaled = [&](const osg::Vec3d& v) {
            return osg::Vec3d(v.x() * scale.x(), v.y() * scale.y(), v.z() * scale.z());
        };
        const osg::Vec3d o = scaled(ray.origin), d = scaled(ray.direction);
        const double a = d * d, b = o * d, c = o * o - 1.0;
        return b < 0.0 && b * b > a * c;
    }

    /// Pixels that show the sky below the horizon, or below ground.
    int skyBelowTheHorizon() const
    {
        int count = 0;
        for (int x = 0; x < OffscreenGlobe::kWidth; ++x) {
            bool below = false;
            for (int y = OffscreenGlobe::kHeight - 1; y >= 0; --y) {
                if (!OffscreenGlobe::isHole(globe->pixel(x, y)))
                    below = true;
                // One pixel for the edge of a triangle that a pixel's middle just misses.
                else if (below || (y + 1 < OffscreenGlobe::kHeight && meetsTheGlobe(x, y + 1)))
                    ++count;
            }
        }
        return count;
    }

    /// Largest distance, pixels, of what is picked from the ground as the sources have it.
    double farthestOff(std::string& where) const
    {
        double worst = 0.0;
        const osg::Camera& camera = *globe->viewer().getCamera();
        const osg::Vec3d eye = osg::Matrixd::inverse(camera.getViewMatrix()).getTrans();
        const double pixel = 2.0 * std::tan(osg::DegreesToRadians(15.0)) / OffscreenGlobe::kHeight;
        for (int x = 4; x < OffscreenGlobe::kWidth; x += 8)
            for (int y = 4; y < OffscreenGlobe::kHeight; y += 8) {
                osg::Vec3d world;
                GeoPoint place;
                if (!globe->mapNode().getTerrain()->getWorldCoordsUnderMouse(&globe->viewer(), float(x),
                                                                             float(y), world) ||
                    !place.fromWorld(geographic(), world) || std::abs(place.x() - kMadeUpLongitude) > 0.9 ||
                    std::abs(place.y() - kMadeUpLatitude) > 0.9)
                    continue;
                const double off =
                    std::abs(place.z() - ground.at(place.x(), place.y())) / (pixel * (world - eye).length());
                if (off > worst) {
                    worst = off;
                    where = std::to_string(x) + ", " + std::to_string(y) + " at " +
                            std::to_string(place.x()) + ", " + std::to_string(place.y()) + ", " +
                            std::to_string(place.z()) + " m";
                }
            }
        return worst;
    }

    ScratchFolder folder;
    TerrainHeights ground;
    std::unique_ptr<OffscreenGlobe> globe;
    std::mt19937 random{32};
};

TEST_P(WholeTerrain, ShowsGroundAndNothingElseBelowTheHorizon)
{
    for (int view = 0; view < 8; ++view) {
        const Look look = randomLook();
        lookFrom(look);
        ASSERT_TRUE(globe->drawUntilComplete());
        EXPECT_EQ(skyBelowTheHorizon(), 0) << look;
        std::string where;
        const double off = farthestOff(where);
        EXPECT_LT(off, 12.0) << look << "; " << where;
    }
}

INSTANTIATE_TEST_SUITE_P(MadeUp, WholeTerrain, testing::ValuesIn(madeUpGrounds()),
                         testing::PrintToStringParamName());
