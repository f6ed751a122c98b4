#include <AxAlgorthm/AxConstants.h>
#include <AxAlgorthm/AxPlaneGeometry.h>

#define GEOS_USE_ONLY_R_API
#include <geos_c.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

namespace {
using Points = std::vector<CAxPoint2D>;

double distance(const CAxPoint2D& a, const CAxPoint2D& b)
{
    return std::hypot(a.x() - b.x(), a.y() - b.y());
}

bool geosCallsValid(const Points& ring)
{
    const GEOSContextHandle_t geos = GEOS_init_r();
    const auto count = static_cast<unsigned>(ring.size());
    GEOSCoordSequence* const sequence = GEOSCoordSeq_create_r(geos, count + 1, 2);
    for (unsigned i = 0; i <= count; ++i)
        GEOSCoordSeq_setXY_r(geos, sequence, i, ring[i % count].x(), ring[i % count].y());
    GEOSGeometry* const shell = GEOSGeom_createLinearRing_r(geos, sequence);
    GEOSGeometry* const polygon = GEOSGeom_createPolygon_r(geos, shell, nullptr, 0);
    const bool valid = GEOSisValid_r(geos, polygon) == 1;
    GEOSGeom_destroy_r(geos, polygon);
    GEOS_finish_r(geos);
    return valid;
}

double signedArea(const Points& ring)
{
    double twice = 0.0;
    for (std::size_t i = 0; i < ring.size(); ++i) {
        const CAxPoint2D& a = ring[i];
        const CAxPoint2D& b = ring[(i + 1) % ring.size()];
        twice +=
            (a.x() - ring[0].x()) * (b.y() - ring[0].y()) - (b.x() - ring[0].x()) * (a.y() - ring[0].y());
    }
    return twice / 2.0;
}

bool contains(const Points& ring, const CAxPoint2D& point)
{
    bool inside = false;
    for (std::size_t i = 0, j = ring.size() - 1; i < ring.size(); j = i++) {
        const CAxPoint2D& a = ring[i];
        const CAxPoint2D& b = ring[j];
        if ((a.y() > point.y()) != (b.y() > point.y()) &&
            point.x() < (b.x() - a.x()) * (point.y() - a.y()) / (b.y() - a.y()) + a.x())
            inside = !inside;
    }
    return inside;
}

/// A line of legs of the given length that turns by the given angles (degrees, positive to the left).
Points bentLine(const std::vector<double>& turns, double leg)
{
    Points line{{412345.5, 5412345.25}};
    double course = 0.3;
    for (std::size_t i = 0; i <= turns.size(); ++i) {
        line.emplace_back(line.back().x() + leg * std::cos(course), line.back().y() + leg * std::sin(course));
        if (i < turns.size())
            course += turns[i] * PI / 180.0;
    }
    return line;
}

struct Strip
{
    bool ok = false;
    Points outline;
    QList<int> indices;
};

Strip strip(const Points& line, double width1, double width2)
{
    Strip result;
    result.ok = CreateStripPolygon(line, width1, width2, result.outline, result.indices);
    return result;
}

void expectSound(const Strip& made, const Points& line)
{
    ASSERT_TRUE(made.ok);
    ASSERT_EQ(static_cast<int>(made.outline.size()), made.indices.size());
    EXPECT_TRUE(geosCallsValid(made.outline));
    EXPECT_LT(signedArea(made.outline), 0.0) << "clockwise";
    for (const int index : made.indices) {
        EXPECT_GE(index, 0);
        EXPECT_LT(index, static_cast<int>(line.size()));
    }
}
} // namespace

TEST(Strip, HasWidth1OnTheLeftAndItsBendsMitredUpToTheLimitAndBevelledBeyond)
{
    const Strip straight = strip({{0, 0}, {10, 0}}, 2.0, 3.0);
    ASSERT_TRUE(straight.ok);
    EXPECT_EQ(straight.outline, (Points{{0, 2}, {10, 2}, {10, -3}, {0, -3}}));
    EXPECT_EQ(straight.indices, (QList<int>{0, 1, 1, 0}));
    // Repeated points count once, and indices refer to the caller's line.
    EXPECT_EQ(strip({{0, 0}, {0, 0}, {10, 0}, {10, 0}, {20, 0}}, 1.0, 1.0).indices,
              (QList<int>{0, 2, 4, 4, 2, 0}));
    const Strip mitred = strip({{0, 0}, {10, 0}, {10, 10}}, 1.0, 2.0);
    ASSERT_TRUE(mitred.ok);
    const Points expected{{0, 1}, {9, 1}, {9, 10}, {12, 10}, {12, -2}, {0, -2}};
    ASSERT_EQ(mitred.outline.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i)
        EXPECT_LT(distance(mitred.outline[i], expected[i]), 1e-9) << i;
    EXPECT_EQ(mitred.indices, (QList<int>{0, 1, 2, 2, 1, 0}));

    const Points sharp = bentLine({130.0}, 100.0);
    const Strip bevelled = strip(sharp, 2.0, 2.0);
    expectSound(bevelled, sharp);
    EXPECT_EQ(bevelled.indices, (QList<int>{0, 1, 2, 2, 1, 1, 0}));
    for (int i = 0; i < bevelled.indices.size(); ++i)
        EXPECT_LE(distance(bevelled.outline[i], sharp[bevelled.indices[i]]),
                  2.0 / std::sin(25.0 * PI / 180) + 1e-6);
}

TEST(Strip, BendsUpTo150DegreesGiveAValidOutlineWhateverTheLegs)
{
    for (double turn = -150.0; turn <= 150.0; turn += 5.0)
        for (const double leg : {1.0, 3.0, 11.0, 50.0, 2000.0})
            for (const auto& widths : {std::make_pair(3.0, 3.0), {0.0, 3.0}, {40.0, 0.0}, {1.0, 25.0}}) {
                SCOPED_TRACE(testing::Message() << turn << " degrees, legs of " << leg << " m, widths "
                                                << widths.first << " and " << widths.second);
                const Points line = bentLine({turn}, leg);
                const Strip made = strip(line, widths.first, widths.second);
                expectSound(made, line);
                const double mitre = std::max(2.0, 1.0 / std::cos(turn * PI / 360.0));
                const double reach = mitre * std::max(widths.first, widths.second) + 1e-5;
                for (int i = 0; i < made.indices.size(); ++i) {
                    const double own = distance(made.outline[i], line[made.indices[i]]);
                    const auto isNearer = [&](const CAxPoint2D& vertex) {
                        return distance(made.outline[i], vertex) < own - 1e-5;
                    };
                    EXPECT_TRUE(own <= reach || std::none_of(line.begin(), line.end(), isNearer)) << i;
                }
            }
}

TEST(Strip, RandomLinesWithLongLegsKeepEveryPointAtItsVertex)
{
    std::mt19937 random(77);
    std::uniform_real_distribution<double> turn(-60.0, 60.0);
    std::uniform_real_distribution<double> width(0.0, 20.0);
    for (int round = 0; round < 300; ++round) {
        std::vector<double> turns;
        double course = 0.0;
        while (turns.size() < 7) {
            const double next = turn(random);
            if (std::abs(course + next) > 80.0)
                continue; // keeps the line from meeting itself
            course += next;
            turns.push_back(next);
        }
        const Points line = bentLine(turns, 80.0);
        const double width1 = width(random);
        const double width2 = width(random);
        const Strip made = strip(line, width1, width2);
        expectSound(made, line);
        const double reach = std::max(width1, width2) * 2.0 + 1e-6;
        for (int i = 0; i < made.indices.size(); ++i)
            EXPECT_LE(distance(made.outline[i], line[made.indices[i]]), reach);
        for (std::size_t i = 0; i + 1 < line.size(); ++i) {
            const CAxPoint2D middle((line[i].x() + line[i + 1].x()) / 2, (line[i].y() + line[i + 1].y()) / 2);
            EXPECT_TRUE(std::min(width1, width2) <= 1e-3 || contains(made.outline, middle));
        }
    }
}

TEST(Strip, WildLinesGiveAValidOutlineOrNone)
{
    std::mt19937 random(4711);
    std::uniform_real_distribution<double> place(0.0, 60.0);
    std::uniform_real_distribution<double> width(0.0, 30.0);
    int made = 0;
    for (int round = 0; round < 400; ++round) {
        Points line;
        for (int i = 0; i < 6; ++i)
            line.emplace_back(place(random), place(random));
        const Strip result = strip(line, width(random), width(random));
        if (result.ok) {
            ++made;
            expectSound(result, line);
        } else
            EXPECT_TRUE(result.outline.empty() && result.indices.isEmpty());
    }
    EXPECT_GT(made, 100);
}

TEST(Strip, ABandThatEnclosesAGapHasNoOutline)
{
    const Points road{{0, 0}, {100, 0}, {100, 100}, {0, 100}, {0, 0}};
    EXPECT_FALSE(strip(road, 3.0, 3.0).ok);
    EXPECT_TRUE(strip(road, 60.0, 3.0).ok) << "wide enough to fill the gap";
}

TEST(Strip, RefusesWhatCannotBeAStrip)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double inf = std::numeric_limits<double>::infinity();
    const Points good{{0, 0}, {10, 0}};
    for (const Points& line : {Points(), {{3, 3}}, {{3, 3}, {3, 3}, {3, 3}}, {{0, 0}, {nan, 0}}})
        EXPECT_FALSE(strip(line, 1, 1).ok);
    for (const auto& [left, right] : {std::pair{0.0, 0.0}, {-1.0, 5.0}, {5.0, nan}, {inf, 1.0}})
        EXPECT_FALSE(strip(good, left, right).ok) << left << ' ' << right;
    Points outline{{1, 1}};
    QList<int> indices{4};
    EXPECT_FALSE(CreateStripPolygon(good, 0, 0, outline, indices));
    EXPECT_TRUE(outline.empty());
    EXPECT_TRUE(indices.isEmpty());
}
