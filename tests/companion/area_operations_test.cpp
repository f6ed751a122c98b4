#include <AxAlgorthm/AxAreaOperations.h>
#include <AxAlgorthm/AxUnits.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

namespace area_operations {
namespace {
namespace Op = AxAreaOperations;
using Op::Fault;
using Op::Ring;

const QPointF fiji(179.999, -17.0);
const QPointF pole(30.0, 89.99);

/// A star around a place, which crosses itself nowhere.
Ring Star(std::mt19937& random, const QPointF& place, double degrees)
{
    std::uniform_real_distribution<double> share(0.3, 1.0);
    const int points = std::uniform_int_distribution<int>(3, 30)(random);
    Ring ring;
    for (int i = 0; i < points; ++i)
        ring += QPointF(place.x(), place.y() - degrees * share(random));
    for (int i = 0; i < points; ++i)
        ring[i] = Op::Rotated({ring[i]}, 360.0 * i / points, place).value(0);
    return ring;
}

double AreaOf(const Op::Result& result)
{
    double sum = 0.0;
    for (const Op::Area& area : result.areas)
        sum += Op::SquareMetres(area);
    return sum;
}

double AreaOf(const Ring& ring)
{
    return Op::SquareMetres({ring, {}});
}
} // namespace

TEST(AreaOperations, AgreeWithTheAreas)
{
    std::mt19937 random(14);
    std::uniform_real_distribution<double> beside(-0.008, 0.008);
    for (int i = 0; i < 300; ++i) {
        const QPointF place = i % 3 == 0 ? fiji : i % 3 == 1 ? pole : QPointF(-105.0, 37.4);
        const Ring a = Star(random, place, 0.01);
        const Ring b = Star(random, QPointF(place.x() + beside(random), place.y() + beside(random)), 0.01);
        const double whole = AreaOf(a);
        const double united = AreaOf(Op::Unite({a, b}));
        const double rest = AreaOf(Op::Subtract(a, {b}));
        // Places on the grid of 1 mm make that much along some 10 km.
        ASSERT_NEAR(united, AreaOf(b) + rest, 20.0) << i;
        ASSERT_LE(rest, whole + 20.0) << i;

        const Op::Result parts =
            Op::Split(a, {Op::Rotated({QPointF(place.x(), place.y() - 0.02)}, 77.0, place)[0],
                          Op::Rotated({QPointF(place.x(), place.y() - 0.02)}, 250.0, place)[0]});
        if (parts.fault == Fault::None) {
            ASSERT_GE(parts.areas.size(), 2) << i;
            ASSERT_NEAR(AreaOf(parts), whole, 20.0) << i;
            ASSERT_TRUE(a.contains(parts.areas[0].ring[0]) || a.contains(parts.areas[0].ring[1]) ||
                        a.contains(parts.areas[0].ring[2]))
                << i << ": a corner of the ring is a corner of its part, to the bit";
        }
        ASSERT_GT(AreaOf(Op::Buffer(a, 10.0)), whole) << i;
        ASSERT_LT(AreaOf(Op::Buffer(a, -10.0)), whole) << i;
        ASSERT_NEAR(AreaOf(Op::Scaled(a, 2.0, 0.75, place, 33.0)), 1.5 * whole, 1e-4 * whole) << i;
        ASSERT_NEAR(AreaOf(Op::Rotated(a, 123.0, place)), whole, 1e-4 * whole) << i;
    }
}

TEST(AreaOperations, KeepGapsAndNeighbours)
{
    const Ring outer{{10.0, 50.0}, {10.1, 50.0}, {10.1, 50.1}, {10.0, 50.1}};
    const Ring inner{{10.04, 50.04}, {10.06, 50.04}, {10.06, 50.06}, {10.04, 50.06}};
    const Op::Result frame = Op::Subtract(outer, {inner});
    ASSERT_EQ(frame.areas.size(), 1);
    EXPECT_EQ(frame.areas[0].holes.size(), 1);
    // A neighbour along a whole edge leaves no seam.
    const Ring next{{10.1, 50.0}, {10.2, 50.0}, {10.2, 50.1}, {10.1, 50.1}};
    const Op::Result both = Op::Unite({outer, next});
    ASSERT_EQ(both.areas.size(), 1);
    EXPECT_TRUE(both.areas[0].holes.isEmpty());
    // A zigzag of a metre goes, the corners stay.
    Ring zigzag;
    for (int i = 0; i < 1000; ++i)
        zigzag += QPointF(10.0 + 1e-4 * i, 50.0 + (i % 2) * 1e-5);
    zigzag += QList<QPointF>{{10.1, 50.1}, {10.0, 50.1}};
    EXPECT_LE(Op::Simplify(zigzag, 5.0).areas.value(0).ring.size(), 6);
    EXPECT_EQ(Op::SimplifyLine(zigzag.mid(0, 1000), 5.0), (QList<QPointF>{zigzag[0], zigzag[999]}));
    EXPECT_NEAR(AreaOf(Op::BufferLine({{0.0, 0.0}, {0.01, 0.0}}, 100.0)), 1113.2 * 200.0 + 31415.9, 400.0);
}

TEST(AreaOperations, CutLinesWhereTheyAreCrossed)
{
    const QList<QPointF> line{{179.98, 10.0}, {180.0, 10.0}, {-179.98, 10.02}};
    const struct
    {
        QList<QPointF> cut;
        QList<int> points; ///< of the pieces
    } rows[] = {
        {{{179.99, 9.9}, {179.99, 10.1}}, {2, 3}},
        {{{179.985, 9.9}, {179.99, 10.1}, {-179.99, 10.1}, {-179.99, 9.9}}, {2, 3, 2}},
        {{{180.0, 9.9}, {-180.0, 10.1}}, {2, 2}}, // through a vertex
        {{{179.98, 9.9}, {179.98, 10.1}}, {}},    // through its end
        {{{179.99, 10.01}, {179.99, 10.1}}, {}},  // beside it
        {{{179.99, 9.9}}, {}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(&row - rows);
        const QList<QList<QPointF>> pieces = Op::SplitLine(line, row.cut);
        QList<int> points;
        for (const QList<QPointF>& piece : pieces)
            points += piece.size();
        EXPECT_EQ(points, row.points);
        if (pieces.isEmpty())
            continue;
        EXPECT_EQ(pieces.first().first(), line.first());
        EXPECT_EQ(pieces.last().last(), line.last());
        EXPECT_EQ(pieces.first().last(), pieces[1].first());
    }
}

TEST(AreaOperations, RefuseWhatIsNone)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const Ring square{{10.0, 50.0}, {10.1, 50.0}, {10.1, 50.1}, {10.0, 50.1}};
    const struct
    {
        Fault wanted;
        Op::Result result;
    } rows[] = {
        {Fault::NotAnArea, Op::Unite({square, {{1, 2}, {3, 4}}})},
        {Fault::NotAnArea, Op::Simplify({{1, 2}, {3, nan}, {5, 2}}, 1.0)},
        {Fault::NotAnArea, Op::Unite({{{1, 2}, {3, 91}, {5, 2}}})},
        {Fault::Crosses, Op::Unite({{{0, 0}, {1, 1}, {1, 0}, {0, 1}}})},
        {Fault::TooLarge, Op::Unite({square, {{-170, -50}, {-169, -50}, {-169, -49}}})},
        {Fault::BadMeasure, Op::Buffer(square, nan)},
        {Fault::BadMeasure, Op::Buffer(square, 1e308)},
        {Fault::BadMeasure, Op::Simplify(square, -1.0)},
        {Fault::NothingLeft, Op::Buffer(square, -50000.0)},
        {Fault::NothingLeft, Op::Subtract(square, {square})},
        {Fault::NothingLeft, Op::Unite({})},
        {Fault::NotCut, Op::Split(square, {{10.05, 50.05}, {10.2, 50.05}})},
        {Fault::NotCut, Op::Split(square, {{10.05, 50.05}})},
        {Fault::NotCut, Op::Split(square, {{10.05, nan}, {10.2, 50.05}})},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(int(row.result.fault), int(row.wanted)) << "row " << &row - rows;
        EXPECT_TRUE(row.result.areas.isEmpty()) << "row " << &row - rows;
    }
    EXPECT_TRUE(Op::Scaled(square, 0.0, 1.0, square[0]).isEmpty());
    EXPECT_TRUE(Op::Rotated(square, nan, square[0]).isEmpty());
}

TEST(Units, OfLengthsAndAreas)
{
    const struct
    {
        AxUnits::System system;
        double metres;
        const char* length;
        double squareMetres;
        const char* area;
    } rows[] = {
        {AxUnits::System::Metric, 999.0, "999.0 m", 9999.0, "9999 m\302\262"},
        {AxUnits::System::Metric, 12.0, "12.0 m", 9.5, "9.50 m\302\262"},
        {AxUnits::System::Imperial, 0.3048, "1.0 ft", 185.806, "2000 ft\302\262"},
        {AxUnits::System::Mu, 12.0, "12.0 m", 50.0, "50 m\302\262"},
        {AxUnits::System::Metric, 1000.0, "1.000 km", 10000.0, "0.010 km\302\262"},
        {AxUnits::System::Imperial, 304.8, "1000.0 ft", 40468.564224, "10.000 ac"},
        {AxUnits::System::Imperial, 16093.44, "10.000 mi", 5179976.220672, "2.000 mi\302\262"},
        {AxUnits::System::Mu, 50.0, "50.0 m", 10000.0, "15.00 mu (1.0000 ha)"},
    };
    for (const auto& row : rows) {
        AxUnits::Set(row.system);
        EXPECT_EQ(AxUnits::Length(row.metres), QString::fromUtf8(row.length));
        EXPECT_EQ(AxUnits::Area(row.squareMetres), QString::fromUtf8(row.area));
    }
    AxUnits::Set(AxUnits::System::Metric);
}
} // namespace area_operations
