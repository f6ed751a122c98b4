// Zones out of the rows of the zone file: areas, circles, lifts.
#include "LogLines.h"

#include "analysis/zones/AxNoflyZones.h"
#include "analysis/zones/AxZoneArea.h"
#include "analysis/zones/AxZoneClipping.h"

#include <osg/Math>
#include <osgEarth/GeoMath>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

using osgEarth::Symbology::MultiGeometry;
using osgEarth::Symbology::Polygon;

namespace {
QVariant Zone(const QVariant& id, const QVariant& enable, const QVariant& area)
{
    return QVariantList{0.0, 0.0, id, enable, area};
}

QVariant Lift(const QVariant& area, const QVariant& ids, const QVariant& status = 2)
{
    return QVariantList{"2026-01-01", "2026-12-31", area, ids, "pilot", status};
}

const QString square = QStringLiteral("10,50|11,50|11,51|10,51");

double Area(const osgEarth::Symbology::Geometry& ring)
{
    double doubled = 0.0;
    for (std::size_t i = 0; i < ring.size(); ++i) {
        const osg::Vec3d a = ring[i] - ring[0];
        const osg::Vec3d b = ring[(i + 1) % ring.size()] - ring[0];
        doubled += a.x() * b.y() - a.y() * b.x();
    }
    return std::abs(doubled) / 2.0;
}

double Area(const MultiGeometry& pieces)
{
    double area = 0.0;
    for (const auto& part : pieces.getComponents()) {
        const auto& piece = dynamic_cast<const Polygon&>(*part);
        area += Area(static_cast<const osgEarth::Symbology::Geometry&>(piece));
        for (const auto& hole : piece.getHoles())
            area -= Area(static_cast<const osgEarth::Symbology::Geometry&>(*hole));
    }
    return area;
}

bool Contains(const MultiGeometry& pieces, double x, double y)
{
    int rings = 0;
    for (const auto& part : pieces.getComponents()) {
        const auto& piece = dynamic_cast<const Polygon&>(*part);
        rings += AxOutline(piece.asVector()).containsPoint({x, y}, Qt::OddEvenFill) ? 1 : 0;
        for (const auto& hole : piece.getHoles())
            rings += AxOutline(hole->asVector()).containsPoint({x, y}, Qt::OddEvenFill) ? 1 : 0;
    }
    return rings % 2 == 1;
}
} // namespace

TEST(AreaText, GivesTheRingOfWhatIsReadable)
{
    const struct
    {
        const char* text;
        std::size_t ringPoints;
        int unusable;
    } rows[] = {{"", 0, 0},
                {"|", 0, 0},
                {"1", 0, 1},
                {"1,2|", 73, 0},
                {"1,2,300", 73, 0},
                {"nan,nan", 0, 1},
                {"1,inf|2,3|4,5", 2, 1},
                {"1,1e999|2,3|4,5", 2, 1},
                {"\xe4\xb8\x80,two|1,2|3,4|5,6", 3, 1},
                {"1,91|400,2|1,2|3,4", 2, 2},
                {" +1 , -2 |\t3,4\n| 5,6", 3, 0},
                {"1,2x|3,4|5,6", 2, 1},
                {"1|2,3", 1, 1},
                {"1,2|1,2|1,2", 3, 0}};
    for (const auto& row : rows) {
        AxZoneArea area = AxReadArea(QString::fromUtf8(row.text));
        EXPECT_EQ(area.unusable, row.unusable) << row.text;
        EXPECT_EQ(AxZoneShapeOf(std::move(area)).Ring().size(), row.ringPoints) << row.text;
    }
}

TEST(ZoneRing, GoesOnAcrossTheAntimeridian)
{
    const AxRing ring = AxReadArea("179.5,10|-179.5,10|-179.5,11|179.5,11").points;
    ASSERT_EQ(ring.size(), 4u);
    EXPECT_EQ(ring[1], osg::Vec3d(180.5, 10.0, 0.0));
    EXPECT_EQ(ring[3], osg::Vec3d(179.5, 11.0, 0.0));
    const AxRing circle = AxZoneCircle(-179.99, 60.0);
    for (const osg::Vec3d& point : circle)
        EXPECT_LT(std::abs(point.x() + 179.99), 0.2);
}

TEST(ZoneRing, CircleLiesEightKilometresAround)
{
    for (const osg::Vec2d centre :
         {osg::Vec2d(116.4, 39.9), osg::Vec2d(-70.0, -55.5), osg::Vec2d(3.0, 80.0)}) {
        const AxRing ring = AxZoneCircle(centre.x(), centre.y());
        ASSERT_EQ(ring.size(), 73u);
        EXPECT_EQ(ring.back(), ring.front());
        EXPECT_NEAR(ring.front().x(), centre.x(), 1e-4) << "the first bears north";
        EXPECT_GT(ring.front().y(), centre.y());
        EXPECT_GT(ring[18].x(), centre.x()) << "the others follow clockwise";
        for (std::size_t i = 0; i < ring.size(); ++i) {
            const osg::Vec3d& point = ring[i];
            double lat = 0.0;
            double lon = 0.0;
            osgEarth::GeoMath::destination(
                osg::DegreesToRadians(static_cast<double>(static_cast<float>(centre.y()))),
                osg::DegreesToRadians(static_cast<double>(static_cast<float>(centre.x()))),
                osg::DegreesToRadians(5.0 * static_cast<double>(i)), 8000.0, lat, lon, 6378137.0);
            // A unit of single precision at these places.
            EXPECT_NEAR(point.x(), osg::RadiansToDegrees(lon), 8e-6);
            EXPECT_NEAR(point.y(), osg::RadiansToDegrees(lat), 8e-6);
            EXPECT_EQ(point.x(), static_cast<double>(static_cast<float>(point.x())));
            EXPECT_NEAR(osgEarth::GeoMath::distance(
                            osg::DegreesToRadians(centre.y()), osg::DegreesToRadians(centre.x()),
                            osg::DegreesToRadians(point.y()), osg::DegreesToRadians(point.x()), 6378137.0),
                        8000.0, 3.0);
        }
    }
}

// Zones are looked for by their box, and for most of them there is nothing but that in memory.
TEST(ZoneShape, OfACircleHasTheBoxOfItsRing)
{
    for (double latitude = -90.0; latitude <= 90.0; latitude += 0.125)
        for (const double longitude : {-180.0, 0.0, 116.4, 359.9}) {
            const AxZoneShape shape = AxZoneShape::Circle(longitude, latitude);
            osgEarth::Bounds box;
            for (const osg::Vec3d& point : shape.Ring())
                box.expandBy(point.x(), point.y());
            ASSERT_EQ(shape.Box()._min, box._min) << longitude << ' ' << latitude;
            ASSERT_EQ(shape.Box()._max, box._max) << longitude << ' ' << latitude;
            ASSERT_EQ(shape.Polygon()->asVector(), AxZoneCircle(longitude, latitude));
        }
}

// Rings are kept in a third of the memory.
TEST(ZoneShape, KeepsARingWithinACentimetre)
{
    const QString decimals = QStringLiteral("-73.7781391,40.6413111|-73.77,40.65|-73.7599999,40.6400001");
    EXPECT_EQ(AxZoneShapeOf(AxReadArea(decimals)).Ring(), AxReadArea(decimals).points) << "to the bit";

    std::mt19937 random(9);
    std::uniform_real_distribution<double> unit(-1.0, 1.0);
    for (const double reach : {0.05, 5.0, 89.0, 199.0, 3000.0}) {
        AxRing ring;
        const osg::Vec3d middle(540.0 * unit(random), 0.5 * unit(random), 0.0);
        for (int i = 0; i < 200; ++i)
            ring.push_back(middle +
                           osg::Vec3d(reach * unit(random), std::min(reach, 89.0) * unit(random), 0.0));
        const AxZoneShape shape(ring);
        const AxRing kept = shape.Ring();
        ASSERT_EQ(kept.size(), ring.size());
        osgEarth::Bounds box;
        constexpr double metresADegree = 111319.5;
        for (std::size_t i = 0; i < ring.size(); ++i) {
            EXPECT_LT((kept[i] - ring[i]).length() * metresADegree, 0.01) << reach;
            box.expandBy(kept[i].x(), kept[i].y());
        }
        EXPECT_EQ(shape.Box()._min, box._min);
        EXPECT_EQ(shape.Box()._max, box._max);
    }
}

TEST(ZoneRows, TakesWhatIsInForceAndTheLastOfAnId)
{
    const QString odd = QStringLiteral("O'Hare \"\xe6\x9c\xba\"");
    const AxNoflyZones zones =
        AxReadZones({Zone("b", true, square), Zone("a", 1, "5,5"), Zone("off", 0, square),
                     Zone(odd, "1", "1"), Zone("b", true, "7,7")},
                    {});
    EXPECT_EQ(zones.zonePolygons.keys(), (QStringList{odd, "a", "b"}));
    EXPECT_TRUE(zones.zonePolygons[odd].IsEmpty());
    EXPECT_EQ(zones.zonePolygons["b"].Ring().size(), 73u);
    EXPECT_TRUE(zones.zoneDisplayGeometry.isEmpty());
    EXPECT_TRUE(zones.zoneOutlines.isEmpty());
}

TEST(ZoneRows, PassesOverWhatIsNoRowWithOneLineEach)
{
    const LogLines log;
    const AxNoflyZones zones =
        AxReadZones({QVariant(), QVariant("text"), QVariantList{1, 2, 3}, Zone(QVariant(), true, square),
                     Zone("nulls", QVariant(), square), Zone("noArea", true, QVariant()),
                     Zone("someOutside", true, "1,95|1,2|2,2|2,3"), Zone("good", true, square)},
                    {QVariant(), QVariantList{1}, Lift(square, QVariant()), Lift(square, "good", "text")});
    EXPECT_EQ(zones.zonePolygons.keys(), (QStringList{"good", "noArea", "someOutside"}));
    EXPECT_TRUE(zones.liftEntries.isEmpty());
    EXPECT_EQ(LogLines::lines.size(), 4 + 2 + 2) << LogLines::lines.join('\n').toStdString();
}

// Rows are read in many threads at once.
TEST(ZoneRows, CountInTheOrderOfTheTable)
{
    constexpr int rowCount = 5000;
    constexpr int idCount = 1000;
    QVariantList rows;
    for (int i = 0; i < rowCount; ++i)
        rows += Zone(QString::number(i % idCount), true, QStringLiteral("0,0|%1,0|0,1").arg(i / 100.0));
    rows[4321] = QVariant();
    const LogLines log;
    const AxNoflyZones zones = AxReadZones(rows, {});
    ASSERT_EQ(zones.zonePolygons.size(), idCount);
    for (int id = 0; id < idCount; ++id) {
        const int last = id == 321 ? 3321 : rowCount - idCount + id;
        EXPECT_EQ(zones.zonePolygons[QString::number(id)].Ring().at(1).x(), last / 100.0);
    }
    ASSERT_EQ(LogLines::lines.size(), 1);
    EXPECT_TRUE(LogLines::lines.front().contains("4322")) << LogLines::lines.front().toStdString();
}

TEST(Lifts, OnlyGrantedOnesCutAndOneMayCutSeveralZones)
{
    const QVariantList rows{Zone("z1", true, square), Zone("z2", true, "10.5,50.5|12,50.5|12,52|10.5,52"),
                            Zone("z3", true, square)};
    const QString lift = QStringLiteral("10.6,50.6|10.9,50.6|10.9,50.9|10.6,50.9");
    const AxNoflyZones zones = AxReadZones(rows, {Lift(lift, "z3", 1), Lift(lift, "z3", 3),
                                                  Lift(lift, "z2,,z1"), Lift(square, "z"), Lift("", "z1")});
    EXPECT_EQ(zones.zoneOutlines.keys(), (QStringList{"z1", "z2"}));
    EXPECT_EQ(zones.liftEntries.values("z2"), QStringList{"2026-01-01;2026-12-31;" + lift});
    EXPECT_EQ(zones.liftEntries.count("z1"), 2);
    for (const char* id : {"z1", "z2"}) {
        EXPECT_FALSE(zones.zoneOutlines[id].containsPoint({10.75, 50.75}, Qt::OddEvenFill)) << id;
        EXPECT_FALSE(Contains(*zones.zoneDisplayGeometry[id], 10.75, 50.75)) << id;
    }
    EXPECT_NEAR(Area(*zones.zoneDisplayGeometry["z1"]), 1.0 - 0.09, 1e-9);
    const auto& piece =
        dynamic_cast<const Polygon&>(*zones.zoneDisplayGeometry["z1"]->getComponents().front());
    EXPECT_EQ(piece.getHoles().size(), 1u);
}

TEST(Lifts, OfAnUnknownZoneLeaveAnEmptyOutline)
{
    const LogLines log;
    const AxNoflyZones zones = AxReadZones({Zone("z1", true, square)}, {Lift(square, "nobody")});
    ASSERT_TRUE(zones.zoneOutlines.contains("nobody"));
    EXPECT_TRUE(zones.zoneOutlines["nobody"].isEmpty());
    EXPECT_FALSE(zones.zonePolygons.contains("nobody"));
    EXPECT_EQ(LogLines::lines.size(), 1);
}

TEST(Lifts, CutAZoneIntoPiecesAndAwayAltogether)
{
    const AxRing zone = AxReadArea(square).points;
    const AxClippedZone cut = AxClipZone(zone, {AxReadArea("10.4,49|10.6,49|10.6,52|10.4,52").points});
    EXPECT_EQ(cut.display->getNumComponents(), 2u);
    EXPECT_NEAR(Area(*cut.display), 0.8, 1e-9);
    EXPECT_FALSE(cut.outline.containsPoint({10.5, 50.5}, Qt::OddEvenFill));
    EXPECT_TRUE(cut.outline.containsPoint({10.2, 50.5}, Qt::OddEvenFill));
    EXPECT_TRUE(cut.outline.containsPoint({10.8, 50.5}, Qt::OddEvenFill));

    const AxClippedZone gone = AxClipZone(zone, {AxReadArea("9,49|12,49|12,52|9,52").points});
    ASSERT_EQ(gone.display->getNumComponents(), 1u);
    EXPECT_TRUE(gone.display->getComponents().front()->empty());
    EXPECT_FALSE(gone.outline.containsPoint({10.5, 50.5}, Qt::OddEvenFill));

    const AxClippedZone across = AxClipZone(AxReadArea("179,0|-179,0|-179,2|179,2").points,
                                            {AxReadArea("-180,0.5|-179.5,0.5|-179.5,1|-180,1").points});
    EXPECT_NEAR(Area(*across.display), 4.0 - 0.25, 1e-9) << "the lift is counted from the other side";
}

// Both ways of cutting, one for the eye and one for the test, must leave the same ground.
TEST(Lifts, LeaveTheSameToSeeAndToTest)
{
    std::mt19937 random(20260);
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    for (int round = 0; round < 60; ++round) {
        const double x = -179.0 + 358.0 * unit(random);
        const double y = -80.0 + 160.0 * unit(random);
        const AxRing zone = AxZoneCircle(x, y);
        const double width = zone[18].x() - x;
        const double height = zone[0].y() - y;
        std::vector<AxRing> lifts;
        for (int i = 0; i < 1 + round % 3; ++i) {
            const double cx = x + width * (1.6 * unit(random) - 0.8);
            const double cy = y + height * (1.6 * unit(random) - 0.8);
            AxRing lift;
            const int corners = 3 + round % 8;
            for (int k = 0; k < corners; ++k) {
                const double angle = 2.0 * osg::PI * k / corners;
                const double reach = 0.2 + 0.5 * unit(random);
                lift.emplace_back(cx + width * reach * std::cos(angle), cy + height * reach * std::sin(angle),
                                  0.0);
            }
            lifts.push_back(lift);
        }
        const AxClippedZone cut = AxClipZone(zone, lifts);
        int differing = 0;
        constexpr int tries = 400;
        for (int i = 0; i < tries; ++i) {
            const QPointF place(x + width * (2.0 * unit(random) - 1.0),
                                y + height * (2.0 * unit(random) - 1.0));
            differing += Contains(*cut.display, place.x(), place.y()) !=
                         cut.outline.containsPoint(place, Qt::OddEvenFill);
        }
        // A place right on an edge may go either way.
        EXPECT_LE(differing, 2) << "round " << round;
    }
}

// A lift well inside its zone is not handed to the clippers; what comes of it must not show that.
TEST(Lifts, InsideAZoneLeaveWhatTheClippersWouldLeave)
{
    std::mt19937 random(41);
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    const auto star = [&](double x, double y, double reach, int corners, bool isClosed) {
        AxRing ring;
        const int turn = unit(random) < 0.5 ? 1 : -1;
        for (int i = 0; i < corners; ++i) {
            const double angle = turn * 2.0 * osg::PI * i / corners;
            const double radius = reach * (1.0 - 0.4 * unit(random));
            ring.emplace_back(x + radius * std::cos(angle), y + radius * std::sin(angle), 0.0);
        }
        if (isClosed)
            ring.push_back(ring.front());
        return ring;
    };
    const auto fromLeast = [](std::vector<osg::Vec3d> ring) {
        std::rotate(ring.begin(), std::min_element(ring.begin(), ring.end()), ring.end());
        return ring;
    };
    int holes = 0;
    for (int round = 0; round < 300; ++round) {
        const double x = -170.0 + 340.0 * unit(random);
        const double y = -80.0 + 160.0 * unit(random);
        const AxRing zone =
            round % 4 == 0 ? AxZoneCircle(x, y) : star(x, y, 0.07, 3 + round % 90, round % 3 == 0);
        const AxRing lift =
            star(x + 0.02 * unit(random), y, 0.03 * unit(random), 3 + round % 7, round % 2 == 0);
        const AxClippedZone cut = AxClipZone(zone, {lift});
        const QPolygonF outline = AxOutline(zone);
        ASSERT_EQ(cut.outline, outline.subtracted(outline.intersected(AxOutline(lift)))) << "round " << round;

        // Two lifts always go to the clippers.
        AxRing elsewhere = lift;
        for (osg::Vec3d& point : elsewhere)
            point.x() += 1.0;
        const AxClippedZone clipped = AxClipZone(zone, {lift, elsewhere});
        ASSERT_EQ(cut.display->getNumComponents(), clipped.display->getNumComponents()) << "round " << round;
        for (unsigned i = 0; i < cut.display->getNumComponents(); ++i) {
            const auto& piece = dynamic_cast<const Polygon&>(*cut.display->getComponents()[i]);
            const auto& other = dynamic_cast<const Polygon&>(*clipped.display->getComponents()[i]);
            ASSERT_EQ(fromLeast(piece.asVector()), fromLeast(other.asVector())) << "round " << round;
            ASSERT_EQ(piece.getHoles().size(), other.getHoles().size()) << "round " << round;
            for (std::size_t hole = 0; hole < piece.getHoles().size(); ++hole, ++holes)
                ASSERT_EQ(fromLeast(piece.getHoles()[hole]->asVector()),
                          fromLeast(other.getHoles()[hole]->asVector()))
                    << "round " << round;
        }
    }
    EXPECT_GT(holes, 150);
}

TEST(Lifts, AreLeftOutWholeWhereRingsCrossInThousandsOfPlacesOrPointsAreNone)
{
    std::mt19937 random(7);
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    QString tangle;
    for (int i = 0; i < 100000; ++i)
        tangle += QStringLiteral("%1,%2|").arg(10.0 + unit(random)).arg(50.0 + unit(random));
    // Without its third corner it would be wider than what was granted.
    const QString misread = QStringLiteral("10.2,50.2|10.8,50.2|10.5,5O.5|10.8,50.8|10.2,50.8");
    const LogLines log;
    const AxNoflyZones zones =
        AxReadZones({Zone("z1", true, square), Zone("z2", true, tangle), Zone("z3", true, square)},
                    {Lift(tangle, "z1"), Lift(square, "z2"), Lift(misread, "z3")});
    for (const char* id : {"z1", "z3"})
        EXPECT_NEAR(Area(*zones.zoneDisplayGeometry[id]), 1.0, 1e-9) << id;
    EXPECT_EQ(zones.zoneOutlines["z2"].size(), 100000);
    ASSERT_EQ(LogLines::lines.size(), 3);
    for (const char* id : {"z1", "z2", "z3"})
        EXPECT_TRUE(LogLines::lines.join(' ').contains(id)) << id;
}

// What crosses itself encloses what the even-odd rule says, for the eye and for the test, at any size.
TEST(Lifts, CutWhateverCrosses)
{
    const auto bow = [](double x, double y, double half, int points) {
        AxRing ring;
        for (int i = 0; i < points; ++i) {
            const double angle = 2.0 * osg::PI * i / points;
            ring.emplace_back(x + half * std::cos(angle), y + half * std::sin(2.0 * angle), 0.0);
        }
        return ring;
    };
    // Two combs, each in order, one across the other.
    AxRing upright;
    constexpr int teeth = 40;
    for (int i = 0; i < teeth; ++i)
        for (const auto& [along, across] : {std::pair{0.0, 0.0}, {0.25, 1.0}, {0.5, 1.0}, {0.75, 0.0}})
            upright.emplace_back((i + along) / teeth, across, 0.0);
    upright.emplace_back(1.0, -0.1, 0.0);
    upright.emplace_back(0.0, -0.1, 0.0);
    AxRing lying = upright;
    for (osg::Vec3d& point : lying)
        point.set(point.y(), point.x(), 0.0);
    std::mt19937 random(22);
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    AxRing tangle;
    for (int i = 0; i < 100; ++i)
        tangle.emplace_back(unit(random), unit(random), 0.0);
    AxRing spike = bow(0.5, 0.5, 0.3, 60);
    spike.insert(spike.begin() + 20, {osg::Vec3d(0.9, 0.9, 0.0), spike[19]});
    const AxRing plain = AxReadArea("0.2,0.2|0.7,0.25|0.6,0.8|0.3,0.7").points;
    const struct
    {
        const char* name;
        AxRing zone;
        std::vector<AxRing> lifts;
    } rows[] = {{"few points", plain, {AxReadArea("0.3,0.3|0.5,0.6|0.5,0.3|0.3,0.6").points}},
                {"zone of many points", bow(0.5, 0.5, 0.5, 400), {plain}},
                {"lift of many points", plain, {bow(0.4, 0.5, 0.3, 200)}},
                {"both, and another lift", bow(0.5, 0.5, 0.5, 99), {bow(0.4, 0.4, 0.3, 50), plain}},
                {"a tangle", tangle, {plain}},
                {"by a tangle", plain, {tangle}},
                {"a spike", spike, {plain}},
                {"combs", upright, {lying}}};
    for (const auto& row : rows) {
        const AxClippedZone cut = AxClipZone(row.zone, row.lifts);
        EXPECT_EQ(cut.unusable, 0) << row.name;
        int differing = 0;
        for (int i = 0; i < 1000; ++i) {
            const QPointF place(unit(random), unit(random));
            bool isLeft = AxOutline(row.zone).containsPoint(place, Qt::OddEvenFill);
            for (const AxRing& lift : row.lifts)
                isLeft = isLeft && !AxOutline(lift).containsPoint(place, Qt::OddEvenFill);
            differing += Contains(*cut.display, place.x(), place.y()) != isLeft ? 1 : 0;
            differing += cut.outline.containsPoint(place, Qt::OddEvenFill) != isLeft ? 1 : 0;
        }
        // A place right on an edge may go either way.
        EXPECT_LE(differing, 2) << row.name;
    }
}

TEST(Lifts, AreReadForTheOperator)
{
    const AxNoflyZones zones = AxReadZones({Zone("z1", true, square)}, {Lift(square, "z1"), Lift("", "z1")});
    const QDateTime noon(QDate(2026, 12, 31), QTime(12, 0));
    ASSERT_EQ(AxLiftsOf(zones, "z1", noon).size(), 2);
    EXPECT_EQ(AxLiftsOf(zones, "z1", noon).front().begin, "2026-01-01");
    EXPECT_FALSE(AxLiftsOf(zones, "z1", noon).front().isOutOfDate) << "a day lasts to its end";
    EXPECT_TRUE(AxLiftsOf(zones, "z1", noon.addDays(1)).front().isOutOfDate);
    for (const char* past : {"2026-12-31 11:59:00", "2026-12-31T11:59", "1767225600", "2025-06-01"})
        EXPECT_TRUE(AxIsPast(past, noon)) << past;
    for (const char* open : {"2026-12-31 12:01:00", "", "soon", "2027-13-45", "99999999999"})
        EXPECT_FALSE(AxIsPast(open, noon)) << open;
}
