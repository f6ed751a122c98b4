// Which tiles there are, their addresses, and how fast they are asked for.
#include <AxData/tiles/AxTileArea.h>
#include <AxData/tiles/AxTilePace.h>
#include <AxData/tiles/AxTileService.h>

#include <QPolygonF>

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <set>

namespace {
AxTileArea TilesWithin(double west, double south, double east, double north)
{
    return AxTileArea::OfRectangle({west, south, east, north}).value_or(AxTileArea());
}
} // namespace

TEST(TileArea, CountsWhatItTouches)
{
    const struct
    {
        const char* what;
        AxTileArea area;
        int level;
        qint64 tiles;
    } cases[] = {
        {"the globe", TilesWithin(-180.0, -90.0, 180.0, 90.0), 3, 64},
        {"one tile and no neighbour", TilesWithin(0.0, 0.0, 180.0, axMostTileLatitude), 1, 1},
        {"a corner of four", TilesWithin(-0.1, -0.1, 0.1, 0.1), 4, 4},
        {"both sides of 180 degrees", TilesWithin(179.9, 10.0, -179.9, 10.1), 6, 2},
        {"the same as a ring", *AxTileArea::OfRings({{{179.9, 10.0}, {-179.9, 10.0}, {180.0, 10.1}}}), 6, 2},
        {"two rings with a tile in common",
         *AxTileArea::OfRings({{{1.0, 1.0}, {2.0, 1.0}, {1.0, 2.0}}, {{3.0, 3.0}, {4.0, 3.0}, {3.0, 4.0}}}),
         3, 1},
        {"around a pole, from it to the end of the pyramid",
         *AxTileArea::OfRings({{{-140.0, -60.0}, {-40.0, -60.0}, {50.0, -60.0}, {130.0, -60.0}}}), 2, 8},
        {"nothing", AxTileArea(), 5, 0},
    };
    for (const auto& one : cases)
        EXPECT_EQ(one.area.Count(one.level), one.tiles) << one.what;
    // 5,800 columns of a few rows, in a box of 45 million tiles.
    EXPECT_LT(AxTileArea::OfRings({{{10.0, 40.0}, {10.001, 40.0}, {12.001, 42.0}, {12.0, 42.0}}})->Count(20),
              50000)
        << "a corridor";
    for (const char* wrong :
         {"", "1,2,3", "1,2,3,x", "1,5,2,4", "5,1,5,2", "1,2,3,nan", "1,2,3,95", "1,86,2,87"})
        EXPECT_FALSE(AxTileArea::OfText(QLatin1String(wrong))) << wrong;
    const AxTileBounds across = TilesWithin(179.0, -1.0, -178.0, 2.0).Bounds();
    EXPECT_NEAR(across.west, 179.0, 1e-9);
    EXPECT_NEAR(across.east, -178.0, 1e-9);
    EXPECT_NEAR(across.north, 2.0, 1e-9);
}

// Against each tile by itself.
TEST(TileArea, HasExactlyTheTilesThatARingMeets)
{
    std::mt19937 random(16);
    std::uniform_real_distribution<double> radius(5.0, 40.0);
    constexpr int level = 5;
    constexpr double side = 360.0 / (1 << level);
    for (int round = 0; round < 30; ++round) {
        QList<QPointF> ring;
        QPolygonF onSquare;
        for (int i = 0; i < 9; ++i) {
            const double angle = i * 40.0 * std::acos(-1.0) / 180.0;
            ring += QPointF(20.0 + radius(random) * std::cos(angle), 10.0 + radius(random) * std::sin(angle));
            const double latitude = ring.back().y() * std::acos(-1.0) / 180.0;
            onSquare += QPointF(ring.back().x() + 180.0,
                                180.0 - std::asinh(std::tan(latitude)) * 180.0 / std::acos(-1.0));
        }
        std::set<std::pair<int, int>> expected;
        for (int column = 0; column < 1 << level; ++column)
            for (int row = 0; row < 1 << level; ++row)
                if (onSquare.intersects(QPolygonF(QRectF(column * side, row * side, side, side))))
                    expected.emplace(column, row);
        std::set<std::pair<int, int>> found;
        const AxTileArea area = *AxTileArea::OfRings({ring});
        for (const AxTileRun& run : area.Runs(level))
            for (int row = run.firstRow; row <= run.lastRow; ++row)
                EXPECT_TRUE(found.emplace(run.column, row).second) << "twice";
        EXPECT_EQ(found, expected) << "round " << round;
    }
}

TEST(TileService, AddressesAreFilledOrRefused)
{
    const AxTile tile{3, 5, 1};
    const QPair<const char*, const char*> filled[] = {
        {"https://a.org/{z}/{x}/{y}.png?key=1", "https://a.org/3/5/1.png?key=1"},
        {" https://a.org/${z}/${x}/${-y}.png ", "https://a.org/3/5/6.png"},
        {"http://{s}.a.org/{z}/{x}/{y}", "http://a.a.org/3/5/1"},
        {"http://t[1234].a.org/{z}/{x}/{y}", "http://t3.a.org/3/5/1"},
        {"http://[::1]:80/{z}/{x}/{y}", "http://[::1]:80/3/5/1"},
    };
    for (const auto& [address, url] : filled) {
        EXPECT_EQ(AxTileAddressFault(QLatin1String(address)), QString()) << address;
        EXPECT_EQ(AxTileUrl(QLatin1String(address), tile), QUrl(QLatin1String(url))) << address;
    }
    for (const char* wrong : {"", "https://a.org/{z}/{x}", "https://a.org/{z}/{y}", "https://a.org/{x}/{y}",
                              "https://a.org/{z}/{x}/{y}/{q}", "https://a.org/{z}/{x}/{y}/{-y}",
                              "ftp://a.org/{z}/{x}/{y}", "file:///{z}/{x}/{y}", "/{z}/{x}/{y}.png"})
        EXPECT_NE(AxTileAddressFault(QLatin1String(wrong)), QString()) << wrong;
    const auto mark = [](const char* query) {
        return AxTileAddressMark(QStringLiteral("https://a.org/{z}/{x}/{y}?") + QLatin1String(query));
    };
    EXPECT_EQ(mark("Api_Key=old&v=1&tk=a"), mark("Api_Key=new&v=1&tk=b")) << "a renewed key";
    EXPECT_NE(mark("key=old&v=1"), mark("key=old&v=2"));
}

TEST(TilePace, WaitsLongerEachTimeAndGivesUp)
{
    AxTilePace pace(4, 1);
    qint64 now = 0;
    qint64 former = 0;
    for (int i = 0; i < AxTilePace::mostPauses; ++i) {
        const qint64 whole = std::min(AxTilePace::longestPause, AxTilePace::firstPause << i);
        pace.Failed(now);
        pace.Failed(now + 1); // was under way with it
        EXPECT_GE(pace.Wait(now), whole / 2);
        EXPECT_LE(pace.Wait(now), whole);
        EXPECT_FALSE(pace.IsGivenUp());
        EXPECT_NE(pace.Wait(now), former);
        former = pace.Wait(now);
        now += former;
    }
    pace.Answered();
    pace.Failed(now);
    EXPECT_LE(pace.Wait(now), AxTilePace::firstPause) << "an answer has ended the row";
    for (int i = 0; i < AxTilePace::mostPauses && !pace.IsGivenUp(); ++i) {
        now += pace.Wait(now);
        pace.Failed(now);
    }
    EXPECT_TRUE(pace.IsGivenUp());
}

TEST(TilePace, LeavesABusyServiceAlone)
{
    AxTilePace pace(4, 1);
    pace.Busy(1000, 30000);
    pace.Busy(1001, 0);
    EXPECT_EQ(pace.AtOnce(), 2) << "halved once for requests that were under way together";
    EXPECT_GE(pace.Wait(1000), 30000);
    for (int i = 0; i < 100; ++i)
        pace.Answered();
    EXPECT_EQ(pace.AtOnce(), 4);
    EXPECT_FALSE(pace.IsGivenUp());
    pace.Busy(100000, AxTilePace::longestRetryAfter + 1);
    EXPECT_TRUE(pace.IsGivenUp());
}
