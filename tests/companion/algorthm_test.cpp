#include <AxAlgorthm/AxConstants.h>
#include <AxAlgorthm/AxFootprint.h>
#include <AxAlgorthm/AxMath.h>
#include <AxAlgorthm/AxPlaneGeometry.h>
#include <AxAlgorthm/AxUniqueID.h>
#include <AxAlgorthm/CAxAirLineParam.h>

#include <QSet>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <thread>

namespace {
constexpr double NaN = std::numeric_limits<double>::quiet_NaN();
constexpr double Infinity = std::numeric_limits<double>::infinity();
} // namespace

TEST(AxMath, HeadingsForDisplayLieWithinOneTurn)
{
    const struct
    {
        double radians;
        double degrees;
    } rows[] = {{0.0, 0.0}, {PI / 2, 90.0}, {-PI / 2, 270.0}, {2 * PI, 0.0}, {5 * PI, 180.0}, {-1e-18, 0.0}};
    for (const auto& row : rows) {
        const double angle = Radian2Angle(row.radians);
        EXPECT_NEAR(angle, row.degrees, 1e-9) << row.radians;
        EXPECT_GE(angle, 0.0);
        EXPECT_LT(angle, 360.0);
        EXPECT_FALSE(std::signbit(angle)) << row.radians;
    }
}

TEST(AxMath, RoundingGoesToTheNearestIntegerAndNeverOverflows)
{
    EXPECT_EQ(qrealToIntNumber(2.5), 3);
    EXPECT_EQ(qrealToIntNumber(-2.5), -3);
    EXPECT_EQ(qrealToIntNumber(-0.4), 0);
    EXPECT_EQ(qrealToIntNumber(8999.0 * DVAngleFactor), 90);
    EXPECT_EQ(qrealToIntNumber(1e300), std::numeric_limits<int>::max());
    EXPECT_EQ(qrealToIntNumber(-Infinity), std::numeric_limits<int>::min());
    EXPECT_EQ(qrealToIntNumber(NaN), 0);
}

TEST(CreateUniqueID, NeverRepeatsEvenAcrossThreads)
{
    constexpr int Count = 5000;
    std::vector<QString> ids[4];
    std::vector<std::thread> threads;
    for (auto& mine : ids)
        threads.emplace_back([&mine] {
            for (int i = 0; i < Count; ++i)
                mine.push_back(CreateUniqueID());
        });
    QSet<QString> all;
    for (std::size_t i = 0; i < threads.size(); ++i) {
        threads[i].join();
        for (const QString& id : ids[i])
            all.insert(id);
    }
    EXPECT_EQ(all.size(), 4 * Count);
    EXPECT_FALSE(all.contains(QString()));
}

TEST(RemoveSamePoint, LooksBeyondNeighboursAndKeepsTheOrder)
{
    const std::vector<CAxPoint2D> points{{0, 0}, {5, 0}, {0.25, 0}, {5, 5}, {NaN, 1}, {5, 0}, {5.5, 5}};
    const std::vector<CAxPoint2D> expected{{0, 0}, {5, 0}, {5, 5}};
    EXPECT_EQ(RemoveSamePoint(points, 0.5), expected);
    EXPECT_EQ(RemoveSamePoint(points, -1.0).size(), 5u);
    EXPECT_TRUE(RemoveSamePoint({}, 1.0).empty());
}

TEST(CalVerticalIntersectionPoint, ProjectsTheFirstArgument)
{
    EXPECT_EQ(CalVerticalIntersectionPoint({3, 4}, {0, 0}, {10, 0}), QPointF(3, 0));
    EXPECT_EQ(CalVerticalIntersectionPoint({20, 4}, {0, 0}, {10, 0}), QPointF(20, 0));
    EXPECT_EQ(CalVerticalIntersectionPoint({3, 4}, {1, 1}, {1, 1}), QPointF(1, 1));

    const QPointF foot =
        CalVerticalIntersectionPoint({500000.0, 4000010.0}, {500000.0, 4000000.0}, {500001.0, 4000001.0});
    EXPECT_NEAR(foot.x(), 500005.0, 1e-6);
    EXPECT_NEAR(foot.y(), 4000005.0, 1e-6);
}

TEST(Footprint, IsTheImageScaledByHeightOverFocalLengthAndTurnedClockwiseFromNorth)
{
    const QList<QPointF> corners = CalcFootprintMapCoordinate(100.0, 4000, 3000, 5000.0, 90.0, 0.0);
    const QList<QPointF> expected{{30, 40}, {30, -40}, {-30, -40}, {-30, 40}};
    ASSERT_EQ(corners.size(), 4);
    for (int i = 0; i < 4; ++i) {
        EXPECT_NEAR(corners[i].x(), expected[i].x(), 1e-9);
        EXPECT_NEAR(corners[i].y(), expected[i].y(), 1e-9);
    }
}

TEST(Footprint, TiltLooksAheadAndWidensTheFarEdge)
{
    // Focal length 1000, 1000 pixels high: the rays to the edges stand 26.565 degrees off the axis.
    const QList<QPointF> corners = CalcFootprintMapCoordinate(100.0, 1000, 1000, 1000.0, 0.0, 45.0);
    const double half = std::atan(0.5);
    EXPECT_NEAR(corners[0].y(), 100.0 * std::tan(PI / 4 + half), 1e-6);
    EXPECT_NEAR(corners[2].y(), 100.0 * std::tan(PI / 4 - half), 1e-6);
    EXPECT_GT(corners[1].x() - corners[0].x(), corners[2].x() - corners[3].x());
    const QList<QPointF> behind = CalcFootprintMapCoordinate(100.0, 1000, 1000, 1000.0, 0.0, -45.0);
    EXPECT_NEAR(behind[2].y(), -corners[0].y(), 1e-6);
}

TEST(Footprint, RaysThatMissTheGroundEndAtTheStatedDistance)
{
    for (const double angle : {70.0, 89.99, 90.0, 100.0, 116.0}) {
        const QList<QPointF> corners = CalcFootprintMapCoordinate(100.0, 1000, 1000, 1000.0, 30.0, angle);
        ASSERT_EQ(corners.size(), 4) << angle;
        for (const QPointF& corner : corners)
            EXPECT_LE(std::hypot(corner.x(), corner.y()), MaxFootprintDistance * (1 + 1e-12)) << angle;
        EXPECT_NEAR(std::hypot(corners[0].x(), corners[0].y()), MaxFootprintDistance, 1e-6) << angle;
    }
}

TEST(Footprint, WithoutGroundInViewOrWithBadArgumentsThereIsNone)
{
    EXPECT_TRUE(CalcFootprintMapCoordinate(100.0, 1000, 1000, 1000.0, 0.0, 130.0).isEmpty());
    EXPECT_TRUE(CalcFootprintMapCoordinate(0.0, 1000, 1000, 1000.0, 0.0, 0.0).isEmpty());
    EXPECT_TRUE(CalcFootprintMapCoordinate(100.0, 0, 1000, 1000.0, 0.0, 0.0).isEmpty());
    EXPECT_TRUE(CalcFootprintMapCoordinate(100.0, 1000, 1000, 0.0, 0.0, 0.0).isEmpty());
    EXPECT_TRUE(CalcFootprintMapCoordinate(100.0, 1000, 1000, 1000.0, NaN, 0.0).isEmpty());
    EXPECT_TRUE(CalcFootprintMapCoordinate(100.0, 1000, 1000, 1000.0, 0.0, Infinity).isEmpty());
}
