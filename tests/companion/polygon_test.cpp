#include <AxAlgorthm/AxConstants.h>
#include <AxBaseUI/AxPolygonTest.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {
using Ring = std::vector<QPointF>;

Ring circle(int count)
{
    Ring ring;
    for (int i = 0; i < count; ++i) {
        const double angle = 2 * PI * i / count;
        const double radius = 0.02 + 0.002 * std::sin(40 * angle);
        ring.emplace_back(105.0 + radius * std::cos(angle), 37.0 + radius * std::sin(angle));
    }
    return ring;
}
} // namespace

TEST(SelfIntersection, RingsThatBoundOneAreaPass)
{
    const Ring rows[] = {
        {{0, 0}, {10, 0}, {10, 10}, {0, 10}},
        {{0, 0}, {10, 0}, {10, 10}, {0, 10}, {0, 0}},                           // closed
        {{0, 0}, {0, 0}, {10, 0}, {10, 10}, {10, 10}, {0, 10}, {0, 0}, {0, 0}}, // repeated neighbours
        {{0, 0}, {5, 0}, {10, 0}, {10, 10}, {0, 10}},                           // a vertex on a straight edge
        {{0, 0}, {10, 0}, {5, 1}, {10, 10}, {0, 10}},                           // concave
        {{0, 10}, {10, 10}, {10, 0}, {0, 0}},                                   // clockwise
        {},
        {{1, 1}, {2, 2}, {1, 1}}, // without three points nothing can cross
        {{1, 1}, {1, 1}, {1, 1}, {1, 1}},
        circle(2000)};
    for (const Ring& ring : rows)
        EXPECT_FALSE(isSelfIntersection(ring)) << "row " << (&ring - rows);
}

TEST(SelfIntersection, RingsThatMeetThemselvesAreFound)
{
    const Ring rows[] = {
        {{0, 0}, {10, 10}, {10, 0}, {0, 10}},                            // crosses
        {{0, 0}, {10, 0}, {10, 10}, {5, 0}, {0, 10}},                    // a vertex on another edge
        {{0, 0}, {5, 5}, {10, 0}, {10, 10}, {5, 5}, {0, 10}},            // a vertex used twice
        {{0, 0}, {10, 0}, {10, 10}, {10, 5}, {5, 10}, {0, 10}},          // runs back over an edge
        {{0, 0}, {10, 0}, {20, 0}, {10, 0}, {10, 10}},                   // a spike
        {{0, 0}, {10, 0}, {10, 10}, {20, 10}, {20, 0}, {5, 0}, {5, -9}}, // lies on an edge
        {{0, 0}, {5, 5}, {10, 10}},                                      // all on one line
        {{0, 0}, {10, 0}, {10, std::numeric_limits<double>::quiet_NaN()}},
    };
    for (const Ring& ring : rows)
        EXPECT_TRUE(isSelfIntersection(ring)) << "row " << (&ring - rows);

    Ring large = circle(2000);
    std::swap(large[1000], large[1001]);
    EXPECT_TRUE(isSelfIntersection(large));
}

TEST(AreaCanSegment, NeedsASideLongerThanTheSegmentInSomeDirection)
{
    const double size = 2000.0 / std::sqrt(2.0);
    const auto rectangle = [](double width, double height, double turn) {
        std::vector<CAxPoint2D> ring;
        for (const auto& corner :
             {CAxPoint2D(0, 0), CAxPoint2D(width, 0), CAxPoint2D(width, height), CAxPoint2D(0, height)})
            ring.emplace_back(500000 + corner.x() * std::cos(turn) - corner.y() * std::sin(turn),
                              4000000 + corner.x() * std::sin(turn) + corner.y() * std::cos(turn));
        return ring;
    };
    for (const double turn : {0.0, 0.3, PI / 4, 2.0}) {
        EXPECT_TRUE(isAreaCanSegment(rectangle(size + 1, 100, turn), size)) << turn;
        EXPECT_TRUE(isAreaCanSegment(rectangle(100, size + 1, turn), size)) << turn;
        EXPECT_FALSE(isAreaCanSegment(rectangle(size - 1, size - 1, turn), size)) << turn;
    }
    EXPECT_FALSE(isAreaCanSegment({}, size));
    EXPECT_FALSE(isAreaCanSegment({{0, 0}, {9000, 0}, {4000, 0}}, size));
    EXPECT_FALSE(isAreaCanSegment(rectangle(9000, 9000, 0), 0.0));
    EXPECT_FALSE(isAreaCanSegment(rectangle(9000, 9000, 0), std::numeric_limits<double>::quiet_NaN()));
}
