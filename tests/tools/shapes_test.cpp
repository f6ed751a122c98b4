#include "AirportImport.h"
#include "ZoneShapes.h"

#include <GeographicLib/LocalCartesian.hpp>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace {
double SegmentDistance(const QPointF& p, const QPointF& a, const QPointF& b)
{
    const QPointF along = b - a;
    const double share =
        std::clamp(QPointF::dotProduct(p - a, along) / QPointF::dotProduct(along, along), 0.0, 1.0);
    const QPointF offset = p - (a + share * along);
    return std::hypot(offset.x(), offset.y());
}

/// Signed area in square degrees.
double Area(const Ring& ring)
{
    double twice = 0.0;
    for (std::size_t i = 0; i < ring.size(); ++i) {
        const QPointF& a = ring[i];
        const QPointF& b = ring[(i + 1) % ring.size()];
        twice += a.x() * b.y() - b.x() * a.y();
    }
    return twice / 2.0;
}

std::vector<Zone> ZonesOf(const Airport& airport, Notes& notes)
{
    return AirportZones(airport, QStringLiteral("here"), notes);
}
} // namespace

TEST(AreaText, IsReadWholeOrNotAtAll)
{
    const QList<QPair<const char*, std::size_t>> rows{{"1,2", 1},
                                                      {"1,2|", 1},
                                                      {" 1 , 2 ", 1},
                                                      {"1,2,30|3,4|5,6", 3},
                                                      {"1,2|3,4|5,6|1,2", 3},
                                                      {"", 0},
                                                      {"|", 0},
                                                      {"1", 0},
                                                      {"1,2|3,4", 0},
                                                      {"1,2|3|5,6", 0},
                                                      {"a,b|1,2|3,4", 0},
                                                      {"1;2|3;4", 0},
                                                      {"1,2,3,4|5,6|7,8", 0}};
    for (const auto& [text, points] : rows) {
        QString error;
        EXPECT_EQ(ParseArea(QString::fromLatin1(text), error).size(), points) << text;
        EXPECT_EQ(error.isEmpty(), points > 0) << text;
    }
    QString error;
    EXPECT_FALSE(IsOnGlobe(ParseArea(QStringLiteral("nan,nan|inf,2|3,4"), error)));
    const Ring ring{{-179.1234564, 89.5}, {0.0, 0.0000005}, {12.5, -1.0}};
    const Ring again = ParseArea(FormatArea(ring), error);
    ASSERT_EQ(again.size(), ring.size());
    for (std::size_t i = 0; i < ring.size(); ++i)
        EXPECT_NEAR(again[i].x(), ring[i].x(), 1e-6);
}

TEST(OnMap, CutsOutlinesAtTheEdgeOfTheMapAndRefusesThosePastAPole)
{
    const Ring inside{{170, 1}, {179, 1}, {179, 3}, {170, 3}};
    ASSERT_EQ(OnMap(inside).size(), 1u);
    EXPECT_EQ(OnMap(inside).front(), inside);
    // The same outline, as files write it: longitudes that jump, and longitudes beyond the edge.
    for (const Ring& across :
         {Ring{{179, 1}, {-178, 1}, {-178, 3}, {179, 3}}, Ring{{179, 1}, {182, 1}, {182, 3}, {179, 3}}}) {
        const std::vector<Ring> pieces = OnMap(across);
        ASSERT_EQ(pieces.size(), 2u);
        double area = 0.0;
        for (const Ring& piece : pieces) {
            EXPECT_TRUE(IsOnGlobe(piece));
            area += std::abs(Area(piece));
        }
        EXPECT_NEAR(area, 6.0, 1e-9);
    }
    EXPECT_TRUE(OnMap({{0, 80}, {90, 80}, {180, 80}, {-90, 80}}).empty());
}

TEST(AirportZone, RunsAlongTheRunwaysAtTheDistanceOfItsKind)
{
    Notes notes;
    const std::vector<Zone> zones =
        ZonesOf({QStringLiteral("X"),
                 QStringLiteral("large_airport"),
                 {10.02, 60.0},
                 QStringLiteral("10.00,59.99,10.05,60.01|10.00,60.01,10.01,60.02")},
                notes);
    ASSERT_EQ(zones.size(), 1u);
    EXPECT_TRUE(notes.isEmpty());
    const Ring& ring = zones.front().ring;
    EXPECT_GE(ring.size(), 90u);
    EXPECT_LE(ring.size(), 110u);
    const GeographicLib::LocalCartesian plane(60.0, 10.02, 0.0);
    const auto metres = [&plane](const QPointF& degrees) {
        double x = 0.0;
        double y = 0.0;
        double z = 0.0;
        plane.Forward(degrees.y(), degrees.x(), 0.0, x, y, z);
        return QPointF(x, y);
    };
    const std::vector<QPointF> ends{metres({10.00, 59.99}), metres({10.05, 60.01}), metres({10.01, 60.02}),
                                    metres({10.00, 60.01})};
    for (const QPointF& point : ring) {
        double nearest = 1e9;
        for (std::size_t i = 0; i < ends.size(); ++i)
            nearest = std::min(nearest, SegmentDistance(metres(point), ends[i], ends[(i + 1) % ends.size()]));
        EXPECT_NEAR(nearest, 5000.0, 10.0);
    }
}

TEST(AirportZone, FallsBackToTheCircleAndSaysWhichRunwayIsImpossible)
{
    struct Row
    {
        const char* type;
        double latitude;
        const char* runways;
        std::size_t points; ///< 0: no zone; 1: the circle; 2: an outline
        int remarks;
    };
    const char* const good = "10,50,10.02,50.01";
    for (const Row& row :
         {Row{"heliport", 50, good, 1, 0}, Row{"small_airport", 50, "", 1, 0},
          Row{"medium_airport", 50, good, 2, 0}, Row{"seaplane_base", 50, good, 0, 0},
          Row{"small_airport", 50, "10,50,10.02", 1, 1}, Row{"small_airport", 50, "10,50,x,50", 1, 1},
          Row{"small_airport", 50, "10,50,10,500", 1, 1}, Row{"small_airport", 50, "10,50,11,50", 1, 1},
          Row{"small_airport", 50, "20,50,20.01,50|10,50,10.02,50.01", 2, 1},
          Row{"large_airport", -89.9, "10,-89.9,12,-89.9", 1, 0}}) {
        Notes notes;
        const std::vector<Zone> zones = ZonesOf({QStringLiteral("X"),
                                                 QString::fromLatin1(row.type),
                                                 {10.01, row.latitude},
                                                 QString::fromLatin1(row.runways)},
                                                notes);
        ASSERT_EQ(zones.size(), row.points > 0 ? 1u : 0u) << row.type << ' ' << row.runways;
        if (row.points > 0) {
            EXPECT_EQ(std::min<std::size_t>(2, zones.front().ring.size()), row.points) << row.runways;
        }
        EXPECT_EQ(notes.size(), row.remarks) << row.runways;
    }
    Notes notes;
    const std::vector<Zone> both = ZonesOf({QStringLiteral("X"),
                                            QStringLiteral("small_airport"),
                                            {179.99, 10.0},
                                            QStringLiteral("179.99,10,-179.99,10")},
                                           notes);
    ASSERT_EQ(both.size(), 2u);
    EXPECT_EQ(both[1].id, QStringLiteral("X (2)"));
}
