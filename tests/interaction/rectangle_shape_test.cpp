// Rectangles on the ground: their measures by the geodesic, wherever they are.
#include "interaction/objects/AxRectangleShape.h"

#include <GeographicLib/Geodesic.hpp>

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <random>

namespace {
using AxRectangleShape::Ring;

struct Way
{
    double metres = 0.0;
    double heading = 0.0;
};

Way WayBetween(const osg::Vec3d& a, const osg::Vec3d& b)
{
    Way way;
    double arrival = 0.0;
    GeographicLib::Geodesic::WGS84().Inverse(a.y(), a.x(), b.y(), b.x(), way.metres, way.heading, arrival);
    return way;
}

osg::Vec3d From(const osg::Vec3d& place, double heading, double metres)
{
    osg::Vec3d to;
    GeographicLib::Geodesic::WGS84().Direct(place.y(), place.x(), heading, metres, to.y(), to.x());
    return to;
}

double TurnApart(double a, double b)
{
    return std::abs(std::remainder(a - b, 360.0));
}

// Right angles, and sides that are as long as those opposite.
void ExpectRectangle(const Ring& ring, double length, double width)
{
    ASSERT_EQ(ring.size(), 4u);
    for (std::size_t i = 0; i < 4; ++i) {
        const Way next = WayBetween(ring[i], ring[(i + 1) % 4]);
        const Way back = WayBetween(ring[i], ring[(i + 3) % 4]);
        EXPECT_NEAR(next.metres, i % 2 == 0 ? length : width, 1e-3 + 1e-6 * (length + width)) << i;
        EXPECT_NEAR(TurnApart(next.heading, back.heading), 90.0, 1e-3) << i;
    }
}
} // namespace

TEST(RectangleShape, HoldsItsMeasuresAnywhere)
{
    std::mt19937 random(20260714);
    std::uniform_real_distribution<double> anyHeading(0.0, 360.0);
    std::uniform_real_distribution<double> anySide(20.0, 6000.0);
    const std::vector<osg::Vec3d> places{{-105.0, 37.4, 0}, {179.999, -60.0, 0}, {-180.0, 0.0, 0},
                                         {12.0, 84.0, 0},   {30.0, -89.0, 0},    {0.0, 0.0, 0}};
    for (const osg::Vec3d& place : places)
        for (int i = 0; i < 20; ++i) {
            SCOPED_TRACE(testing::Message() << place.x() << " " << place.y() << " #" << i);
            AxRectangle wanted;
            wanted.centre = place;
            wanted.length = anySide(random);
            wanted.width = anySide(random);
            wanted.heading = anyHeading(random);
            wanted.clockwise = i % 2 != 0;
            const Ring ring = AxRectangleShape::CornersOf(wanted);
            ExpectRectangle(ring, wanted.length, wanted.width);
            const auto found = AxRectangleShape::Of(ring);
            ASSERT_TRUE(found);
            EXPECT_NEAR(WayBetween(found->centre, place).metres, 0.0, 1e-4);
            EXPECT_NEAR(found->length, wanted.length, 1e-4);
            EXPECT_NEAR(found->width, wanted.width, 1e-4);
            EXPECT_EQ(found->clockwise, wanted.clockwise);
            // Near a pole the mean direction of the corners is that of another meridian.
            const double exact = std::abs(place.y()) < 80.0 ? 1e-4 : 1.0;
            EXPECT_LT(TurnApart(found->heading, wanted.heading), exact);
            EXPECT_LT(AxRectangleShape::Skew(ring), 1e-3);

            // Each corner and each side to a place outside, by one half of the size.
            for (std::size_t k = 0; k < 4; ++k) {
                const Way diagonal = WayBetween(ring[(k + 2) % 4], ring[k]);
                const osg::Vec3d out = From(ring[(k + 2) % 4], diagonal.heading + 7.0, 1.5 * diagonal.metres);
                const Ring corner = AxRectangleShape::WithCorner(ring, k, out);
                EXPECT_EQ(corner[k], out);
                EXPECT_EQ(corner[(k + 2) % 4], ring[(k + 2) % 4]);
                ExpectRectangle(corner, WayBetween(corner[0], corner[1]).metres,
                                WayBetween(corner[1], corner[2]).metres);

                const osg::Vec3d middle = AxRectangleShape::MiddleOfSide(ring, k);
                const osg::Vec3d across = AxRectangleShape::MiddleOfSide(ring, (k + 2) % 4);
                const Way way = WayBetween(across, middle);
                const Ring side =
                    AxRectangleShape::WithSide(ring, k, From(across, way.heading, 1.5 * way.metres));
                EXPECT_EQ(side[(k + 2) % 4], ring[(k + 2) % 4]);
                EXPECT_EQ(side[(k + 3) % 4], ring[(k + 3) % 4]);
                ExpectRectangle(side, wanted.length * (k % 2 == 0 ? 1.0 : 1.5),
                                wanted.width * (k % 2 == 0 ? 1.5 : 1.0));
            }
            const Ring turned = AxRectangleShape::Turned(ring, 33.0);
            ExpectRectangle(turned, wanted.length, wanted.width);
            const osg::Vec3d there = From(ring[0], 10.0, 20000.0);
            const Ring moved = AxRectangleShape::MovedTo(ring, there);
            EXPECT_EQ(moved[0], there);
            ExpectRectangle(moved, wanted.length, wanted.width);
            ExpectRectangle(AxRectangleShape::OnSide(ring[0], ring[1], ring[3]), wanted.length, wanted.width);
        }
}

TEST(RectangleShape, UprightOnesStayOnTheirMeridiansAndParallels)
{
    for (const Ring& ring : {AxRectangleShape::Between({179.99, 60.0, 0}, {-179.99, 60.02, 0}),
                             Ring{{10, 50, 0}, {10, 50.02, 0}, {10.04, 50.02, 0}, {10.04, 50, 0}}}) {
        const osg::Vec3d out(ring[2].x() + 0.01, ring[2].y() + 0.01, 0.0);
        EXPECT_TRUE(AxRectangleShape::IsUpright(AxRectangleShape::WithCorner(ring, 2, out)));
        for (std::size_t side = 0; side < 4; ++side)
            EXPECT_TRUE(AxRectangleShape::IsUpright(AxRectangleShape::WithSide(ring, side, out)));
        const Ring moved = AxRectangleShape::MovedTo(ring, {ring[0].x(), ring[0].y() - 40.0, 0.0});
        EXPECT_TRUE(AxRectangleShape::IsUpright(moved));
        // A degree of a meridian is not as long everywhere.
        EXPECT_NEAR(AxRectangleShape::Of(moved)->length / AxRectangleShape::Of(ring)->length, 1.0, 1e-2);
        EXPECT_FALSE(AxRectangleShape::IsUpright(AxRectangleShape::Turned(ring, 30.0)));
    }
}

TEST(RectangleShape, TakesWhatIsNearlyOneAndNothingElse)
{
    const Ring nearly{{10, 50, 0}, {10.02, 50, 0}, {10.021, 50.01, 0}, {10, 50.01, 0}};
    ASSERT_TRUE(AxRectangleShape::Of(nearly));
    EXPECT_NEAR(AxRectangleShape::Of(nearly)->length, 1470.0, 20.0);
    EXPECT_NEAR(AxRectangleShape::Skew(nearly), 35.0, 20.0);
    const std::vector<Ring> refused{
        {},
        {{10, 50, 0}, {10.02, 50, 0}, {10.02, 50, 0}, {10, 50, 0}},
        {{10, 50, 0}, {10.02, 50, 0}, {10, 50.01, 0}, {10.02, 50.01, 0}},
        {{10, 50, 0}, {10.02, std::nan(""), 0}, {10.02, 50.01, 0}, {10, 50.01, 0}},
        {{10, 91, 0}, {10.02, 91, 0}, {10.02, 92, 0}, {10, 92, 0}},
    };
    for (std::size_t i = 0; i < refused.size(); ++i)
        EXPECT_FALSE(AxRectangleShape::Of(refused[i])) << i;
}
