// How aircraft are drawn, as far as no window is needed.
#include "mission/aircraft/AutoScaleContainer.h"
#include "mission/aircraft/AxFootprintRays.h"
#include "mission/aircraft/AxLineThinning.h"
#include "mission/aircraft/AxMotionSmoother.h"
#include "mission/aircraft/AxTrail.h"
#include "mission/aircraft/AxUavPanel.h"
#include "mission/aircraft/CAxUavNode.h"
#include "scene/base/AxGlobePoint.h"

#include <AxAlgorthm/AxCoordinate.h>
#include <AxAlgorthm/AxMissionTypes.h>

#include <gtest/gtest.h>

#include <osg/LightSource>

#include <QSet>

#include <cmath>
#include <limits>
#include <random>

namespace {
constexpr double pi = AxGlobe::pi;
const double notANumber = std::numeric_limits<double>::quiet_NaN();

double FromSegment(const osg::Vec3d& point, const osg::Vec3d& a, const osg::Vec3d& b)
{
    const osg::Vec3d along = b - a;
    const double share =
        along.length2() > 0.0 ? std::clamp((point - a) * along / along.length2(), 0.0, 1.0) : 0.0;
    return (point - a - along * share).length();
}

/// A flight with turns, seen by a receiver that jitters.
std::vector<osg::Vec3d> Flight(int points, unsigned seed)
{
    std::mt19937 random(seed);
    std::normal_distribution<double> turn(0.0, 0.05), jitter(0.0, 0.1);
    std::vector<osg::Vec3d> flight;
    osg::Vec3d place(-105.0, 37.4, 3100.0);
    double heading = 0.0;
    for (int i = 0; i < points; ++i) {
        heading += turn(random);
        place += osg::Vec3d(6e-6 * std::sin(heading), 5e-6 * std::cos(heading), jitter(random));
        flight.push_back(AxGlobe::WorldOf(place));
    }
    return flight;
}
} // namespace

TEST(AircraftMotion, GoesTheShorterWayAndNeverBeyondWhatWasTold)
{
    AxMotionSmoother motion;
    EXPECT_FALSE(motion.PlaceAt(0.0));
    motion.TellPlace({179.9999, 10.0, 100.0}, 0.0);
    motion.TellAttitude({0.0, 0.0, 2.0 * pi - 0.1}, 0.0);
    EXPECT_EQ(*motion.PlaceAt(0.0), osg::Vec3d(179.9999, 10.0, 100.0));
    motion.TellPlace({-179.9999, 10.0, 110.0}, 0.25);
    motion.TellAttitude({0.0, 0.0, 0.1}, 0.25);
    double before = 100.0;
    for (double t = 0.25; t < 0.6; t += 0.025) {
        const osg::Vec3d place = *motion.PlaceAt(t);
        EXPECT_NEAR(std::abs(std::remainder(place.x(), 360.0)), 180.0, 1.1e-4) << t;
        EXPECT_GE(place.z(), before) << t;
        EXPECT_LE(std::abs(std::remainder((*motion.AttitudeAt(t))[2], 2.0 * pi)), 0.1001) << t;
        before = place.z();
    }
    // A link that has gone leaves it where it was told last, to the bit.
    EXPECT_TRUE(motion.IsSettled(1.0));
    EXPECT_EQ(*motion.PlaceAt(1000.0), osg::Vec3d(-179.9999, 10.0, 110.0));
    // After a gap nothing is made up in between, and then it is smooth again.
    motion.TellPlace({-179.9, 10.0, 200.0}, 30.0);
    EXPECT_EQ(motion.PlaceAt(30.0)->z(), 200.0);
    motion.TellPlace({-179.9, 10.0, 210.0}, 30.1);
    EXPECT_LT(motion.PlaceAt(30.12)->z(), 205.0);
    // A clock that is set back neither.
    motion.TellPlace({-179.9, 10.0, 300.0}, 5.0);
    EXPECT_EQ(motion.PlaceAt(5.0)->z(), 300.0);
    // Nor a jump that was not flown.
    motion.TellPlace({-179.89, 10.0, 300.0}, 5.1);
    EXPECT_NEAR(motion.PlaceAt(5.1)->x(), -179.89, 1e-9);
}

TEST(AircraftMotion, SmoothsMessagesThatComeUnevenly)
{
    // 4 Hz with jitter, 20 m/s north, looked at 40 times a second: no frame moves much more than the mean.
    std::mt19937 random(7);
    std::uniform_real_distribution<double> jitter(-0.03, 0.03);
    AxMotionSmoother motion;
    double last = notANumber, most = 0.0;
    int message = 0;
    for (int frame = 0; frame < 400; ++frame) {
        const double now = frame * 0.025;
        if (now >= message * 0.25 + jitter(random))
            motion.TellPlace({0.0, 0.0, 20.0 * 0.25 * message++}, now);
        const double z = motion.PlaceAt(now)->z();
        if (now > 2.0)
            most = std::max(most, z - last);
        EXPECT_FALSE(z < last);
        last = z;
    }
    EXPECT_LT(most, 2.0 * 20.0 * 0.025);
}

TEST(AircraftTrail, LeavesOutNoMoreThanItSays)
{
    const std::vector<osg::Vec3d> flight = Flight(10000, 3);
    AxTrailDetail detail;
    for (const osg::Vec3d& point : flight)
        detail.Add(point);
    ASSERT_EQ(detail.Runs().size(), 3u);
    for (std::size_t run = 0; run < detail.Runs().size(); ++run)
        for (std::size_t level = 0; level < AxTrailDetail::strides.size(); ++level) {
            const auto stride = static_cast<std::size_t>(AxTrailDetail::strides[level]);
            const std::size_t first = run * AxTrailDetail::runLength;
            const std::size_t end = std::min(first + AxTrailDetail::runLength, flight.size() - 1);
            double off = 0.0;
            for (std::size_t i = first; i + stride <= end; i += stride)
                for (std::size_t k = i; k <= i + stride; ++k)
                    off = std::max(off, FromSegment(flight[k], flight[i], flight[i + stride]));
            EXPECT_NEAR(static_cast<double>(detail.Runs()[run].errors[level]), off, 1e-3)
                << run << ' ' << stride;
        }
    const AxTrailDetail::Run& run = detail.Runs()[0];
    EXPECT_EQ(detail.StrideFor(run, flight[100], 1e-3), 1) << "from within";
    EXPECT_EQ(detail.StrideFor(run, flight[0] * 1.5, 1e-3), 128) << "from space";
}

TEST(AircraftTrail, GrowsByGeometriesOf100000)
{
    AxTrail trail;
    const osg::Vec4f red(1.0f, 0.0f, 0.0f, 1.0f);
    const std::vector<osg::Vec3d> flight = Flight(AxTrailGeometry::mostVertices + 400, 5);
    int distinct = 0;
    osg::Vec3f before;
    osg::BoundingBox all;
    for (const osg::Vec3d& point : flight) {
        const bool isNew = osg::Vec3f(point) != before;
        EXPECT_EQ(trail.Append(point, 2.0f, red, "Uav-Traj"), isNew);
        EXPECT_FALSE(trail.Append(point, 2.0f, red, "Uav-Traj"));
        distinct += isNew;
        before = osg::Vec3f(point);
        all.expandBy(before);
        const int count = trail.Count();
        if (count == AxTrailGeometry::mostVertices || count == AxTrailGeometry::mostVertices + 1) {
            EXPECT_EQ(trail.Node()->getNumDrawables(), count > AxTrailGeometry::mostVertices ? 2u : 1u);
        }
    }
    EXPECT_EQ(trail.Count(), distinct);
    EXPECT_LE(static_cast<double>(trail.Bytes()) / trail.Count(), 20.0);
    const osg::BoundingBox bound = trail.Node()->getBoundingBox();
    EXPECT_TRUE(bound.contains(all._min) && bound.contains(all._max));
    const auto* first = trail.Node()->getDrawable(0)->asGeometry();
    EXPECT_EQ(first->getNumPrimitiveSets(), 1u);
    EXPECT_EQ(first->getPrimitiveSet(0)->getNumIndices(), unsigned(AxTrailGeometry::mostVertices));
    trail.Clear();
    EXPECT_EQ(trail.Count(), 0);
    EXPECT_TRUE(trail.Append(flight[0], 2.0f, red, "Uav-Traj"));
}

TEST(AircraftReplay, ThinsALongFlightToItsShape)
{
    for (const int points : {0, 1, 2, 999, 60000}) {
        const std::vector<osg::Vec3d> flight = Flight(points, 11);
        const std::vector<int> kept = AxThinLine(flight, 1000);
        ASSERT_EQ(kept.size() <= 1000, true) << points;
        if (points <= 1000) {
            EXPECT_EQ(kept.size(), flight.size());
            continue;
        }
        EXPECT_EQ(kept.front(), 0);
        EXPECT_EQ(kept.back(), points - 1);
        double off = 0.0;
        for (std::size_t i = 0; i + 1 < kept.size(); ++i) {
            ASSERT_LT(kept[i], kept[i + 1]);
            for (int k = kept[i]; k < kept[i + 1]; ++k)
                off = std::max(off, FromSegment(flight[std::size_t(k)], flight[std::size_t(kept[i])],
                                                flight[std::size_t(kept[i + 1])]));
        }
        // 36 km in 1,000 points.
        EXPECT_LT(off, 10.0);
    }
}

TEST(AircraftVideo, RaysMeetTheGround)
{
    const auto flat = [](double, double) { return std::optional<double>(200.0); };
    // Rises by 0.2 m a metre to the north.
    const auto slope = [](double, double lat) {
        return std::optional<double>(200.0 + (lat - 47.0) * 111200.0 * 0.2);
    };
    AxVideoSight sight;
    sight.camera = {14.5, 47.0, 300.0};
    sight.height = 100.0;
    sight.scale = 2.0 * 5000.0 / 2.883;
    sight.heading = 30.0;
    sight.cameraAngle = 40.0;
    const AxVideoOutline plane = AxVideoOutlineOf(sight, nullptr);
    const AxVideoOutline onFlat = AxVideoOutlineOf(sight, flat);
    const AxVideoOutline onSlope = AxVideoOutlineOf(sight, slope);
    ASSERT_EQ(plane.corners.size(), 4u);
    ASSERT_EQ(onSlope.corners.size(), 4u);
    EXPECT_FALSE(plane.meetsRelief);
    EXPECT_TRUE(onSlope.meetsRelief);
    EXPECT_GT(plane.width, 10.0);
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_LT(DistanceBetweenTwoLatLng(plane.corners[i], onFlat.corners[i]), 0.5) << i;
        const CAxVector3D& met = onSlope.corners[i];
        EXPECT_NEAR(met.z(), *slope(met.x(), met.y()), 1e-6) << i;
        // On the ray to where it meets the plane.
        const double down = (300.0 - met.z()) / 100.0;
        EXPECT_NEAR(DistanceBetweenTwoLatLng(sight.camera, met),
                    down * DistanceBetweenTwoLatLng(sight.camera, plane.corners[i]), 1.0)
            << i;
    }
    // Ahead is where the nose points, also at the border of a UTM zone.
    sight.camera = {17.9, 60.0, 300.0};
    const AxVideoOutline atBorder = AxVideoOutlineOf(sight, nullptr);
    const double east = 0.5 * (atBorder.corners[0].x() + atBorder.corners[1].x()) - 17.9;
    const double north = 0.5 * (atBorder.corners[0].y() + atBorder.corners[1].y()) - 60.0;
    EXPECT_NEAR(std::atan2(east * 0.5 * 1.0025, north) * 180.0 / pi, 30.0, 0.3);

    struct Row
    {
        const char* name;
        std::function<void(AxVideoSight&)> change;
    };
    for (const Row& row : {Row{"no zoom", [](AxVideoSight& s) { s.scale = 0.0; }},
                           Row{"below the ground", [](AxVideoSight& s) { s.height = -5.0; }},
                           Row{"over the horizon", [](AxVideoSight& s) { s.cameraAngle = 170.0; }},
                           Row{"no height", [](AxVideoSight& s) { s.camera.setZ(notANumber); }},
                           Row{"at the pole", [](AxVideoSight& s) { s.camera.setY(89.0); }},
                           Row{"no heading", [](AxVideoSight& s) { s.heading = notANumber; }}}) {
        AxVideoSight changed = sight;
        row.change(changed);
        EXPECT_TRUE(AxVideoOutlineOf(changed, flat).points.empty()) << row.name;
    }
}

TEST(AircraftModel, HasAReadableSizeAndAFileOfItsOwn)
{
    osg::ref_ptr<AutoScaleContainer> container = new AutoScaleContainer;
    container->SetPixels(60.0);
    container->SetLimits(1.0, 1000.0);
    EXPECT_EQ(container->ScaleFor(600.0), 1.0);
    EXPECT_EQ(container->ScaleFor(6.0), 10.0);
    EXPECT_EQ(container->ScaleFor(1e-5), 1000.0);
    EXPECT_EQ(container->ScaleFor(-1.0), 1.0);
    container->SetLimits(5.0, 2.0);
    EXPECT_EQ(container->ScaleFor(6.0), 5.0) << "the smallest scale wins";

    QSet<QString> stems;
    for (int type = PlaneFixedWing; type <= PlaneObliqueCopter; ++type)
        stems += GetPlaneStringByType(static_cast<EPlaneType>(type));
    EXPECT_EQ(stems.size(), 7);
    EXPECT_FALSE(stems.contains(QString()));
    EXPECT_EQ(GetPlaneStringByType(static_cast<EPlaneType>(7)), QString());
}

TEST(AircraftPanel, WritesDegrees)
{
    EXPECT_EQ(AxPanelNumber(7.5), "   7.500000");
    EXPECT_EQ(AxPanelNumber(-7.5), "-  7.500000");
    EXPECT_EQ(AxPanelNumber(-105.1234567), "-105.123457");
    EXPECT_EQ(AxPanelNumber(0.0), "   0.000000");
}

TEST(AircraftLight, ShinesFromWhereItIsPut)
{
    const auto lamp = CAxUavNode::CreateLightSource(3, {10.0, 20.0, 30.0}, {0.0f, 0.0f, -1.0f});
    const auto* light = dynamic_cast<const osg::LightSource*>(lamp->getChild(0))->getLight();
    EXPECT_EQ(lamp->getMatrix().getTrans(), osg::Vec3d(10.0, 20.0, 30.0));
    EXPECT_EQ(light->getLightNum(), 3);
    EXPECT_EQ(light->getPosition(), osg::Vec4(0.0f, 0.0f, 0.0f, 1.0f));
    EXPECT_EQ(light->getDirection(), osg::Vec3(0.0f, 0.0f, -1.0f));
}
