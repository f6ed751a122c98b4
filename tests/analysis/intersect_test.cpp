// Areas tested against zones by the workers.
#include "analysis/zones/AxNearZones.h"
#include "analysis/zones/CAxAreaIntersectOperate.h"

#include <osg/Math>

#include <gtest/gtest.h>

#include <cmath>

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
    const osg::ref_ptr<CAxAreaIntersectOperate> worker = new CAxAreaIntersectOperate(AxZoneOutlines(zones));
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
    AxNearZones near(Zones({{"edge east", Circle(22.0, 10.0, 0.0)},
                            {"edge north", Circle(20.0, 12.0, 0.0)},
                            {"empty", new Polygon},
                            {"far side", Circle(-178.5, 10.0, 0.0)},
                            {"hither side", Circle(178.5, -10.0, 0.0)},
                            {"inside", Circle(21.75, 8.25, 0.0)}}));
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
