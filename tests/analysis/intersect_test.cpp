// Areas tested against zones by the workers, and zones found by where they lie.
#include "analysis/zones/AxNearZones.h"
#include "analysis/zones/CAxAreaIntersectOperate.h"

#include <osg/Math>
#include <osgEarth/GeoMath>

#include <QSet>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

using osgEarth::Symbology::Polygon;

namespace {
osg::ref_ptr<Polygon> Circle(double x, double y, double degrees, int corners = 40)
{
    osg::ref_ptr<Polygon> ring = new Polygon;
    for (int i = 0; i < corners; ++i) {
        const double angle = 2.0 * osg::PI * i / corners;
        ring->push_back(x + degrees * std::cos(angle), y + degrees * std::sin(angle));
    }
    return ring;
}

AxNoflyZones Zones(const std::vector<std::pair<const char*, osg::ref_ptr<Polygon>>>& polygons)
{
    AxNoflyZones zones;
    for (const auto& [id, polygon] : polygons)
        zones.zonePolygons.insert(id, polygon);
    return zones;
}

QStringList Met(const AxNoflyZones& zones, const Polygon& area)
{
    const std::vector<AxZoneOutline> outlines = AxZoneOutlines(zones);
    const osg::ref_ptr<CAxAreaIntersectOperate> worker =
        new CAxAreaIntersectOperate(outlines.data(), outlines.data() + outlines.size());
    AxPendingWorkers pending;
    pending.Set(1);
    worker->SetJob(area, pending);
    (*worker)(nullptr);
    pending.Wait();
    return worker->Met();
}
} // namespace

TEST(AreaIntersect, FindsZonesThatTouchHoldOrAreHeld)
{
    const AxNoflyZones zones = Zones({{"c overlaps", Circle(20.10, 10.0, 0.06)},
                                      {"b inside", Circle(20.0, 10.0, 0.001)},
                                      {"a around", Circle(20.0, 10.0, 0.17)},
                                      {"d beside", Circle(20.12, 10.12, 0.06)},
                                      {"e far", Circle(60.0, 10.0, 0.07)},
                                      {"f empty", new Polygon}});
    EXPECT_EQ(Met(zones, *Circle(20.0, 10.0, 0.05)), (QStringList{"a around", "b inside", "c overlaps"}));
}

TEST(AreaIntersect, PassesOverZonesWhoseMiddleIsTooFar)
{
    // The area reaches 0.05 degrees: middles within 0.05 * 1.414 * 113 + 20 = 28 km count, 0.25 degrees.
    const AxNoflyZones zones =
        Zones({{"near", Circle(20.0, 10.24, 0.22)}, {"far", Circle(20.0, 9.74, 0.24)}});
    EXPECT_EQ(Met(zones, *Circle(20.0, 10.0, 0.05)), QStringList{"near"});
}

TEST(AreaIntersect, SeesAcrossTheAntimeridian)
{
    const AxNoflyZones zones =
        Zones({{"east", Circle(179.95, 0.0, 0.1)}, {"west", Circle(-180.05, 0.0, 0.1)}});
    for (const double longitude : {180.0, -180.0})
        EXPECT_EQ(Met(zones, *Circle(longitude, 0.0, 0.05)), (QStringList{"east", "west"})) << longitude;
    const std::vector<AxZoneOutline> outlines = AxZoneOutlines(zones);
    EXPECT_TRUE(outlines[0].Contains(-179.98, 0.0));
    EXPECT_FALSE(outlines[0].Contains(-179.9, 0.05));
}

TEST(NearZones, AreWithinTwoDegreesOfALowFocalPoint)
{
    const AxZoneIndex index(Zones({{"edge east", Circle(22.0, 10.0, 0.0)},
                                   {"edge north", Circle(20.0, 12.0, 0.0)},
                                   {"empty", new Polygon},
                                   {"far side", Circle(-178.5, 10.0, 0.0)},
                                   {"hither side", Circle(178.5, -10.0, 0.0)},
                                   {"inside", Circle(21.75, 8.25, 0.0)}}));
    AxNearZones near(index);
    QStringList told;
    const auto tell = [&told](const QString& id, const osg::Vec2d&, bool isNear) {
        told += (isNear ? '+' : '-') + id;
    };
    const auto from = [](double longitude, double latitude, double range) {
        return osgEarth::Viewpoint("", longitude, latitude, 0.0, 0.0, -90.0, range);
    };
    EXPECT_FALSE(near.Update(osgEarth::Viewpoint(), tell));
    EXPECT_FALSE(near.Update(from(20.0, 10.0, AxNearZones::highestRange), tell));
    EXPECT_TRUE(near.Update(from(20.0, 10.0, 1000.0), tell));
    EXPECT_EQ(told, QStringList{"+inside"});
    EXPECT_FALSE(near.Update(from(20.0, 10.0, 2000.0), tell)) << "nothing is told twice";
    near.Update(from(20.25, 10.125, 1000.0), tell);
    near.Update(from(179.75, 10.0, 1000.0), tell);
    EXPECT_EQ(told, (QStringList{"+inside", "+edge east", "+edge north", "-edge east", "-edge north",
                                 "+far side", "-inside"}));
    told.clear();
    near.Update(from(-179.75, -10.0, 1000.0), tell);
    EXPECT_EQ(told, (QStringList{"-far side", "+hither side"}));
}

// Who asks for a place is answered by the index as by a walk through all zones.
TEST(ZoneIndex, AnswersAsAWalkThroughAllZones)
{
    std::mt19937 random(58770);
    std::uniform_real_distribution<double> unit(-1.0, 1.0);
    // Most of them on either side of the antimeridian, and around the poles.
    const auto place = [&](int round) {
        const double longitude = round % 3 == 0 ? 180.0 * unit(random) : 180.0 + 3.0 * unit(random);
        const double latitude = round % 5 == 0 ? std::copysign(89.0, unit(random)) : 5.0 * unit(random);
        return osg::Vec2d(longitude, latitude + unit(random));
    };
    AxNoflyZones zones;
    for (int i = 0; i < 3000; ++i) {
        const osg::Vec2d middle = place(i);
        const QString id = QString::number(i);
        if (i % 2 == 0)
            zones.zonePolygons.insert(id, AxZoneShape::Circle(std::remainder(middle.x(), 360.0), middle.y()));
        else
            zones.zonePolygons.insert(id, Circle(middle.x(), middle.y(), i % 100 == 1 ? 40.0 : 0.3, 9));
        if (i % 20 == 0)
            zones.zoneOutlines.insert(id, QPolygonF(QRectF(middle.x() + 0.02, middle.y(), 0.1, 0.1)));
    }
    zones.zonePolygons.insert("nothing", AxZoneShape());
    zones.zonePolygons.insert("spiral", Circle(500.0, 0.0, 900.0, 9));
    zones.zonePolygons.insert("endless", Circle(0.0, 0.0, 1e300, 3));
    const AxZoneIndex index(zones);
    AxNearZones near(index);
    QSet<QString> shown;
    int enclosing = 0;
    for (int round = 0; round < 300; ++round) {
        const osg::Vec2d where = place(round);
        QStringList at;
        QSet<QString> isNear;
        for (const AxZoneOutline& zone : index.Outlines()) {
            if (zone.Contains(where.x(), where.y()))
                at += zone.id;
            const bool isWithin = std::abs(std::remainder(zone.middle.x() - where.x(), 360.0)) < 2.0 &&
                                  std::abs(zone.middle.y() - where.y()) < 2.0;
            if (isWithin && std::abs(zone.middle.x() - where.x()) < 400.0)
                isNear += zone.id;
        }
        ASSERT_EQ(index.At(where.x(), where.y()), at) << where.x() << ' ' << where.y();
        enclosing += at.size();
        const auto tell = [&shown](const QString& id, const osg::Vec2d&, bool comes) {
            EXPECT_NE(shown.contains(id), comes);
            comes ? void(shown.insert(id)) : void(shown.remove(id));
        };
        near.Update(osgEarth::Viewpoint("", where.x(), where.y(), 0.0, 0.0, -90.0, 1000.0), tell);
        ASSERT_EQ(shown, isNear) << where.x() << ' ' << where.y();

        const double metres = std::abs(unit(random)) * (round % 10 == 0 ? 1e7 : 1e5);
        const std::vector<std::uint32_t> around = index.Near(where.x(), where.y(), metres);
        for (std::uint32_t i = 0; i < index.Outlines().size(); ++i) {
            const QPointF middle = index.Outlines()[i].bounds.center();
            const double distance = osgEarth::GeoMath::distance(
                osg::DegreesToRadians(where.y()), osg::DegreesToRadians(where.x()),
                osg::DegreesToRadians(middle.y()), osg::DegreesToRadians(middle.x()), 6378137.0);
            if (!index.Outlines()[i].bounds.isNull() && distance <= metres) {
                ASSERT_TRUE(std::binary_search(around.begin(), around.end(), i)) << i;
            }
        }
    }
    EXPECT_GT(enclosing, 1000);
}
