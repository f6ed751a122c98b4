#include <globe/Wgs84.h>
#include <gtest/gtest.h>
#include <osg/Math>
#include <view/ClipPlanes.h>

#include <cmath>
#include <ostream>

using namespace osgEarth::Util;

namespace {

using osgEarth::wgs84::kEquatorialRadius;

struct Situation
{
    const char* name;
    double height; ///< of the eye above the ground, metres
    double pitch;  ///< degrees
    double ground; ///< height of the ground above the ellipsoid
};

std::ostream& operator<<(std::ostream& out, const Situation& situation)
{
    return out << situation.name;
}

/** Distance from the eye to a sphere of the ground's height, so many degrees below level. */
double distanceToGround(const Situation& s, double below)
{
    const double r = kEquatorialRadius + s.ground;
    const double eye = r + s.height;
    const double sine = std::sin(below);
    const double root = r * r - eye * eye * (1.0 - sine * sine);
    return root < 0.0 ? -1.0 : eye * sine - std::sqrt(root);
}

} // namespace

class ClipPlanesFor : public testing::TestWithParam<Situation>
{
};

TEST_P(ClipPlanesFor, HoldAllThatIsSeenAndTellPixelsApart)
{
    const Situation& s = GetParam();
    const double halfView = 15.0;
    const double lowest = std::min(90.0, -s.pitch + halfView) * osg::PI / 180.0;
    // Depth counts along the middle of the view, and the corners of the window look 27 degrees aside.
    const double nearest = distanceToGround(s, lowest) * std::cos(27.0 * osg::PI / 180.0);
    const double focal = distanceToGround(s, -s.pitch * osg::PI / 180.0);
    ASSERT_GT(nearest, 0.0);
    ASSERT_GT(focal, 0.0);

    ClipSituation situation;
    situation.heightAboveEllipsoid = s.ground + s.height;
    situation.heightAboveGround = s.height;
    for (double counted : {nearest, 0.0, -1.0}) // what the cull traversal found, or could not tell
    {
        situation.nearestDrawn = counted;
        situation.farthestDrawn = 1e9;
        const ClipPlanes planes = chooseClipPlanes(situation, true);
        EXPECT_GT(planes.zNear, 0.0);
        EXPECT_LT(planes.zNear, nearest) << "counted " << counted;
        const double eye = kEquatorialRadius + s.ground + s.height;
        const double horizon = std::sqrt(eye * eye - kEquatorialRadius * kEquatorialRadius);
        const double peak =
            std::sqrt(std::pow(kEquatorialRadius + 9000.0, 2) - kEquatorialRadius * kEquatorialRadius);
        EXPECT_GT(planes.zFar, horizon + peak);

        const double pixel = focal * 2.0 * std::tan(halfView * osg::PI / 180.0) / 800.0;
        const double step =
            focal * focal * (planes.zFar - planes.zNear) / (planes.zNear * planes.zFar) / (1 << 24);
        EXPECT_LT(step, pixel) << "counted " << counted;
    }
}

INSTANTIATE_TEST_SUITE_P(
    Views, ClipPlanesFor,
    testing::Values(Situation{"FiveMetresOblique", 0.9, -10, 0}, Situation{"FiveMetresDown", 5, -90, 0},
                    Situation{"FiveMetresOnAPlateau", 2, -30, 4300}, Situation{"Near", 500, -45, 2500},
                    Situation{"NearLevel", 500, -10, 0}, Situation{"Oblique20km", 7000, -20, 2500},
                    Situation{"Range350km", 350e3, -90, 0}, Situation{"Range2000km", 2e6, -60, 0},
                    Situation{"FourRadii", 4 * kEquatorialRadius, -90, 0},
                    Situation{"TwelveRadii", 12 * kEquatorialRadius, -90, 0}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(ClipPlanes, WhatTouchesTheEyeCannotRuinTheDepthAndAnAircraftBeforeItIsNotCut)
{
    ClipSituation situation;
    situation.heightAboveEllipsoid = 3300.0;
    situation.heightAboveGround = 300.0;
    situation.nearestDrawn = 4.0;
    EXPECT_LT(chooseClipPlanes(situation, true).zNear, 4.0);

    situation.heightAboveEllipsoid = situation.heightAboveGround = 1000e3;
    situation.nearestDrawn = 1e-4;
    const ClipPlanes planes = chooseClipPlanes(situation, true);
    EXPECT_GT(planes.zNear / planes.zFar, 1e-7);
    // An eye below sea level, or below ground that has just been loaded, still gets usable planes.
    situation.heightAboveEllipsoid = situation.heightAboveGround = -430.0;
    const ClipPlanes below = chooseClipPlanes(situation, true);
    EXPECT_GT(below.zNear, 0.0);
    EXPECT_GT(below.zFar, 300e3);
}
