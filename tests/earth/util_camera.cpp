#include <camera/CameraFlight.h>
#include <camera/CameraMoves.h>
#include <globe/Wgs84.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using namespace osgEarth::Util;

namespace {

const osg::EllipsoidModel kGlobe;
using osgEarth::wgs84::kEquatorialRadius;

const PitchLimits kLimits{-osg::PI_2, osg::DegreesToRadians(-10.0)};

double flatGround(double, double)
{
    return 0.0;
}

osg::Vec3d pointAt(double longitude, double latitude, double height = 0.0)
{
    return toWorld(kGlobe, {osg::DegreesToRadians(latitude), osg::DegreesToRadians(longitude), height});
}

CameraPose view(double longitude, double latitude, double heading, double pitch, double range)
{
    return makePose(kGlobe, pointAt(longitude, latitude), osg::DegreesToRadians(heading),
                    osg::DegreesToRadians(pitch), range);
}

osg::Matrixd projection()
{
    return osg::Matrixd::perspective(30.0, 1.6, 1.0, 1e8);
}

/** Window position (-1..1) of a world point. */
osg::Vec3d onScreen(const CameraPose& pose, const osg::Vec3d& point)
{
    return point * viewMatrix(pose) * projection();
}

/** Largest angle between the axes of two cameras, degrees. */
double turnBetween(const CameraPose& a, const CameraPose& b)
{
    double largest = 0.0;
    for (const osg::Vec3d& axis : {osg::Vec3d(1, 0, 0), osg::Vec3d(0, 1, 0), osg::Vec3d(0, 0, 1)}) {
        const double c = ((a.rotation * a.frame) * axis) * ((b.rotation * b.frame) * axis);
        largest = std::max(largest, std::acos(std::min(1.0, c)));
    }
    return osg::RadiansToDegrees(largest);
}

bool isSound(const CameraPose& pose)
{
    return isFinite(pose.center) && std::isfinite(pose.distance) && std::isfinite(pose.rotation.length2()) &&
           std::isfinite(pose.frame.length2());
}

} // namespace

TEST(CameraPose, LooksWhereHeadingAndPitchSay)
{
    const struct
    {
        double longitude, latitude, heading, pitch;
        osg::Vec3d look, up; // east, north, up at the centre
    } rows[] = {
        {0, 0, 0, -90, {0, 0, -1}, {0, 1, 0}},    {116.3, 39.9, 90, -90, {0, 0, -1}, {1, 0, 0}},
        {-105, 37.4, 0, 0, {0, 1, 0}, {0, 0, 1}}, {179.9, -80, 90, 0, {1, 0, 0}, {0, 0, 1}},
        {10, 90, 180, 0, {0, -1, 0}, {0, 0, 1}},
    };
    for (const auto& row : rows) {
        const CameraPose pose = view(row.longitude, row.latitude, row.heading, row.pitch, 1000.0);
        osg::Matrixd local;
        kGlobe.computeLocalToWorldTransformFromLatLongHeight(
            osg::DegreesToRadians(row.latitude), osg::DegreesToRadians(row.longitude), 0.0, local);
        const osg::Vec3d eye = eyeOf(pose);
        EXPECT_LT((pose.center - eye - osg::Matrixd::transform3x3(row.look, local) * 1000.0).length(), 1e-3);
        const osg::Vec3d up = osg::Matrixd::transform3x3(osg::Vec3d(0, 1, 0), cameraMatrix(pose));
        EXPECT_LT((up - osg::Matrixd::transform3x3(row.up, local)).length(), 1e-6);
        EXPECT_LT((eye * viewMatrix(pose)).length(), 1e-6);
        EXPECT_LT((pose.center * viewMatrix(pose) - osg::Vec3d(0, 0, -1000.0)).length(), 1e-6);
    }
}

TEST(CameraPose, GroundIsFoundAlongTheRayWhateverTheRelief)
{
    const auto hills = [](double latitude, double longitude) {
        return 1500.0 + 800.0 * std::sin(latitude * 3000.0) * std::cos(longitude * 2500.0);
    };
    for (double pitch : {-90.0, -45.0, -20.0, -12.0}) {
        for (double range : {300.0, 20e3, 2e6, 25e6}) {
            CameraPose pose = view(-105.0, 37.4, 70.0, pitch, range);
            pose.center = pointAt(-105.0, 37.4, 2500.0);
            const Ray ray{eyeOf(pose), (pose.center - eyeOf(pose)) / pose.distance};
            const auto distance = groundAlong(kGlobe, ray, hills);
            ASSERT_TRUE(distance) << pitch << " " << range;
            const Geodetic hit = toGeodetic(kGlobe, ray.origin + ray.direction * *distance);
            EXPECT_NEAR(hit.height, hills(hit.latitude, hit.longitude), 0.1);
            // Nothing stands in between.
            for (double share : {0.2, 0.5, 0.8, 0.99}) {
                const Geodetic before = toGeodetic(kGlobe, ray.origin + ray.direction * (*distance * share));
                EXPECT_GT(before.height, hills(before.latitude, before.longitude));
            }
        }
    }
    EXPECT_FALSE(groundAlong(kGlobe, {pointAt(0, 0, 1000.0), pointAt(0, 0) / kEquatorialRadius}, flatGround))
        << "looks into space";
}

TEST(CameraPose, AnEyeUnderTheGroundIsLiftedAndStillSeesItsCentre)
{
    const auto ridge = [](double, double longitude) {
        return longitude < osg::DegreesToRadians(-105.0) ? 3000.0 : 2500.0;
    };
    CameraPose pose = view(-105.0, 37.4, 90.0, -20.0, 500.0); // looks east, away from the ridge
    pose.center = pointAt(-104.999, 37.4, 2510.0);
    ASSERT_TRUE(keepAboveGround(kGlobe, ridge, 400.0, kLimits, SunkenCentre::Rises, pose));
    EXPECT_NEAR(toGeodetic(kGlobe, eyeOf(pose)).height, 3400.0, 0.1);
    EXPECT_NEAR(toGeodetic(kGlobe, pose.center).height, 2510.0, 0.1);
    const osg::Vec3d seen = onScreen(pose, pose.center);
    EXPECT_LT(std::hypot(seen.x(), seen.y()), 1e-9);
    EXPECT_FALSE(keepAboveGround(kGlobe, ridge, 399.0, kLimits, SunkenCentre::Rises, pose));
}

TEST(CameraPose, AViewOfAPlaceWhoseHeightNobodyKnewKeepsItsRangeAndAngle)
{
    const auto plateau = [](double, double) { return 3000.0; };
    CameraPose pose = view(-105.0, 37.4, 120.0, -30.0, 500.0);
    const CameraPose asked = pose;
    ASSERT_TRUE(keepAboveGround(kGlobe, plateau, 1.0, kLimits, SunkenCentre::Rises, pose));
    EXPECT_NEAR(toGeodetic(kGlobe, pose.center).height, 3000.0, 0.01);
    EXPECT_EQ(pose.distance, asked.distance);
    EXPECT_LT(turnBetween(pose, asked), 1e-4);
}

TEST(CameraPose, AGrazedSlopeLiftsTheEyeAndDoesNotThrowTheCameraUp)
{
    const auto plateau = [](double, double) { return 3000.0; };
    CameraPose pose = view(-105.0, 37.4, 120.0, -30.0, 500.0);
    pose.center = pointAt(-105.0, 37.4, 2750.5); // the eye a little under ground, the centre far
    const osg::Vec3d before = eyeOf(pose);
    ASSERT_TRUE(keepAboveGround(kGlobe, plateau, 1.0, kLimits, SunkenCentre::RisesWithTheEye, pose));
    EXPECT_GE(toGeodetic(kGlobe, eyeOf(pose)).height, 3001.0);
    EXPECT_LT((eyeOf(pose) - before).length(), 1.0);
    EXPECT_NEAR(toGeodetic(kGlobe, pose.center).height, 2750.5, 0.1);
}

TEST(CameraPose, AnEyeInAPitClimbsOutOfItWithinThePitchLimits)
{
    // The centre is on the rim, higher than the eye can look up to.
    const auto pit = [](double, double longitude) {
        return longitude < osg::DegreesToRadians(-105.0) ? 100.0 : 600.0;
    };
    for (const PitchLimits& limits : {kLimits, PitchLimits{osg::DegreesToRadians(-60.0), kLimits.highest}}) {
        CameraPose pose = view(-104.9999, 37.4, 90.0, -20.0, 400.0);
        pose.center = pointAt(-104.9999, 37.4, -500.0);
        ASSERT_TRUE(keepAboveGround(kGlobe, pit, 1.0, limits, SunkenCentre::RisesWithTheEye, pose));
        const Geodetic eye = toGeodetic(kGlobe, eyeOf(pose));
        EXPECT_GE(eye.height, pit(eye.latitude, eye.longitude) + 1.0 - 1e-6);
        double heading = 0.0;
        double pitch = 0.0;
        anglesOf(pose.rotation, heading, pitch);
        EXPECT_GE(pitch, limits.lowest - 1e-9);
        EXPECT_LE(pitch, limits.highest + 1e-9);
    }
}

TEST(CameraMoves, DraggingOffTheGlobeStopsAtTheLimbAndStaysFinite)
{
    CameraPose pose = view(10.0, 50.0, 0.0, -90.0, 4.0 * kEquatorialRadius);
    const osg::Vec3d point = pose.center;
    for (double x = 0.0; x <= 1.0; x += 0.1)
        ASSERT_TRUE(
            bringUnder(kGlobe, {point, cursorRay(projection(), x, 0.9)}, HeadingRule::KeepNorth, pose));
    EXPECT_TRUE(isSound(pose));
    EXPECT_FALSE(
        bringUnder(kGlobe, {{0, 0, 0}, cursorRay(projection(), 0, 0)}, HeadingRule::KeepNorth, pose));
}

TEST(CameraMoves, ADragNearTheHorizonCannotFlingTheCamera)
{
    CameraPose pose = view(10.0, 50.0, 0.0, -12.0, 2000.0);
    const osg::Vec3d eye = eyeOf(pose);
    const Ray grab = transformed(cursorRay(projection(), 0.0, 0.0), cameraMatrix(pose));
    const osg::Vec3d point = grab.origin + grab.direction * *groundAlong(kGlobe, grab, flatGround);
    // As many events as a hand makes along the edge of the window, each near the horizon.
    const double farthest = 4.0 * (point - eye).length();
    for (int i = 0; i < 200; ++i) {
        const Ray sight = cursorRay(projection(), 0.002 * i, 0.999);
        ASSERT_TRUE(bringUnder(kGlobe, {point, sight, farthest}, HeadingRule::KeepNorth, pose));
        ASSERT_LT((eyeOf(pose) - point).length(), 1.1 * farthest);
    }
}

TEST(CameraMoves, PanningKeepsTheHeadingAwayFromThePoles)
{
    CameraPose pose = view(179.0, 45.0, 30.0, -50.0, 50e3);
    for (int i = 0; i < 20; ++i)
        slide(kGlobe, 20e3, 5e3, HeadingRule::KeepNorth, pose);
    double heading = 0.0;
    double pitch = 0.0;
    anglesOf(pose.rotation, heading, pitch);
    EXPECT_NEAR(osg::RadiansToDegrees(heading), 30.0, 1e-6);
    EXPECT_NEAR(osg::RadiansToDegrees(pitch), -50.0, 1e-6);
    EXPECT_LT(osg::RadiansToDegrees(toGeodetic(kGlobe, pose.center).longitude), 0.0)
        << "crosses the antimeridian";
}

TEST(CameraMoves, PanningOverAPoleNeverFlipsThePicture)
{
    for (double latitude : {88.0, -88.0}) {
        for (double longitude : {0.0, 45.0, 180.0}) {
            CameraPose pose = view(longitude, latitude, latitude > 0 ? 0.0 : 180.0, -60.0, 300e3);
            const double step = 10e3;
            for (int i = 0; i < 60; ++i) {
                const CameraPose before = pose;
                slide(kGlobe, 0.0, step, HeadingRule::KeepNorth, pose);
                ASSERT_TRUE(isSound(pose));
                EXPECT_LT(turnBetween(before, pose), 0.5);
                EXPECT_NEAR((pose.center - before.center).length(), step, 0.02 * step);
            }
            EXPECT_LT(std::abs(osg::RadiansToDegrees(toGeodetic(kGlobe, pose.center).latitude)), 87.0)
                << "comes down on the other side";
        }
    }
}

namespace {

FlightEnd end(double longitude, double latitude, double heading, double pitch, double range)
{
    return {{osg::DegreesToRadians(latitude), osg::DegreesToRadians(longitude), 0.0},
            osg::DegreesToRadians(heading),
            osg::DegreesToRadians(pitch),
            range};
}

CameraPose poseAt(const CameraFlight& flight, double share)
{
    const FlightEnd now = flight.at(share);
    return makePose(kGlobe, toWorld(kGlobe, now.place), now.heading, now.pitch, now.range);
}

struct Flight
{
    const char* name;
    FlightEnd from, to;
};

void PrintTo(const Flight& flight, std::ostream* out)
{
    *out << flight.name;
}

} // namespace

class Flights : public testing::TestWithParam<Flight>
{
};

TEST_P(Flights, StartAndEndWhereTheyShouldAndMoveSmoothlyInBetween)
{
    for (bool arc : {true, false}) {
        const CameraFlight flight(GetParam().from, GetParam().to, kEquatorialRadius, arc);
        EXPECT_TRUE(std::isfinite(flight.feltLength()));
        const CameraPose first =
            makePose(kGlobe, toWorld(kGlobe, GetParam().from.place), GetParam().from.heading,
                     GetParam().from.pitch, GetParam().from.range);
        EXPECT_LT((eyeOf(poseAt(flight, 0.0)) - eyeOf(first)).length(), 1e-3);
        CameraPose before = poseAt(flight, 0.0);
        constexpr int kSteps = 2000;
        for (int i = 1; i <= kSteps; ++i) {
            const CameraPose now = poseAt(flight, double(i) / kSteps);
            ASSERT_TRUE(isSound(now));
            EXPECT_GT(now.distance, 0.0);
            EXPECT_LT(now.distance, 1e8);
            if (arc) {
                // In one 2000th of the flight the picture moves by a small part of a window.
                EXPECT_LT((now.center - before.center).length(), 0.05 * now.distance) << i;
                EXPECT_LT(turnBetween(before, now), 1.0) << i;
                EXPECT_NEAR(now.distance / before.distance, 1.0, 0.05) << i;
            }
            before = now;
        }
        const CameraPose last = makePose(kGlobe, toWorld(kGlobe, GetParam().to.place), GetParam().to.heading,
                                         GetParam().to.pitch, GetParam().to.range);
        EXPECT_LT((eyeOf(before) - eyeOf(last)).length(), 1e-3);
        EXPECT_LT(turnBetween(before, last), 1e-4);
    }
}

INSTANTIATE_TEST_SUITE_P(
    All, Flights,
    testing::Values(Flight{"FarBetweenLowViews", end(116.3, 39.9, 0, -60, 800), end(-105, 37.4, 0, -30, 500)},
                    Flight{"OverTheAntimeridian", end(179, 10, 20, -45, 5000), end(-179, 12, -20, -45, 5000)},
                    Flight{"OverThePole", end(0, 80, 0, -60, 20e3), end(180, 80, 0, -60, 20e3)},
                    Flight{"ToTheAntipode", end(0, 0, 0, -90, 1e6), end(180, 0, 0, -90, 1e6)},
                    Flight{"FromSpaceToGround", end(8, 47, 0, -90, 25.5e6), end(8, 47, 90, -20, 5)},
                    Flight{"OnTheSpot", end(8, 47, 170, -90, 1000), end(8, 47, -170, -20, 1000)},
                    Flight{"FromPoleToPole", end(0, 90, 0, -90, 1e5), end(0, -90, 0, -90, 1e5)},
                    Flight{"AFewMetres", end(8, 47, 0, -45, 100), end(8.0001, 47.0001, 10, -45, 90)}));

TEST(CameraFlight, ALongWayDrawsBackAndAShortOneDoesNot)
{
    const CameraFlight far(end(116, 40, 0, -60, 1000), end(-105, 37, 0, -60, 1000), kEquatorialRadius, true);
    EXPECT_GT(far.at(0.5).range, 1e6);
    const CameraFlight straight(end(116, 40, 0, -60, 1000), end(-105, 37, 0, -60, 1000), kEquatorialRadius,
                                false);
    EXPECT_NEAR(straight.at(0.5).range, 1000.0, 1.0);
    const CameraFlight near(end(8, 47, 0, -60, 1000), end(8.0005, 47, 0, -60, 1000), kEquatorialRadius, true);
    EXPECT_LT(near.at(0.5).range, 1010.0);
}
