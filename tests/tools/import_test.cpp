#include "FeatureImport.h"
#include "Progress.h"
#include "ZoneShapes.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {
class Import : public testing::Test
{
protected:
    QString Put(const char* name, const QByteArray& text)
    {
        const QString path = folder.filePath(QString::fromLatin1(name));
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
        return path;
    }

    QStringList Ids() const
    {
        QStringList ids;
        for (const Zone& zone : zones)
            ids << zone.id;
        return ids;
    }

    /// The beginnings of the notes: where and in which field.
    QStringList Places() const
    {
        QStringList places;
        for (const Note& note : notes)
            places << note.place + QLatin1Char('|') + note.field;
        return places;
    }

    QTemporaryDir folder;
    std::vector<Zone> zones;
    std::vector<Lift> lifts;
    Notes notes;
    Progress progress{Progress::Kind::Never};
    QString error;
};
} // namespace

TEST_F(Import, TablesNameTheLineAndTheColumnOfWhatCannotBeUsed)
{
    const QString path = Put("zones.csv", "local_id,lng,lat,radius,enable,area\n"
                                          "a,1.5,2.5,,1,\n"
                                          "b,1,north,,1,\n"
                                          "\"c \"\"two\nlines\"\"\",,,,0,\"1,2|3,4|5,1\"\n"
                                          ",1,2,,1,\n"
                                          "\n"
                                          "d,1,2,500,yes,\n"
                                          "e,1,2,-5,1,\n"
                                          "f,,,,1,\"1,2|3\"\n"
                                          "g,1,2,,maybe,\n"
                                          "h,1,95,,1,\n"
                                          "\"i,j\",1,2,,1,\n"
                                          "k,,,,1,\n"
                                          "区域 7's,1,2,8000,,\n");
    ASSERT_TRUE(ImportZones(path, zones, notes, progress, error)) << qPrintable(error);
    EXPECT_EQ(Ids(), (QStringList{QStringLiteral("a"), QStringLiteral("c \"two\nlines\""),
                                  QStringLiteral("d"), QString::fromUtf8("区域 7's")}));
    EXPECT_EQ(zones[0].ring, (Ring{{1.5, 2.5}}));
    EXPECT_TRUE(zones[0].isEnabled);
    EXPECT_FALSE(zones[1].isEnabled);
    EXPECT_EQ(zones[1].ring.size(), 3u);
    EXPECT_GT(zones[2].ring.size(), 73u) << "circles of another size are outlines, and drawn as such";
    EXPECT_EQ(zones[3].ring.size(), 1u);
    EXPECT_EQ(Places(),
              (QStringList{QStringLiteral("zones.csv:3|lat"), QStringLiteral("zones.csv:6|local_id"),
                           QStringLiteral("zones.csv:9|radius"), QStringLiteral("zones.csv:10|area"),
                           QStringLiteral("zones.csv:11|enable"), QStringLiteral("zones.csv:12|lng, lat"),
                           QStringLiteral("zones.csv:13|local_id"), QStringLiteral("zones.csv:14|")}));
}

TEST_F(Import, GeoJsonGivesPointsPolygonsPiecesAndOtherReferenceSystems)
{
    const QString path = Put("zones.geojson", R"({"type":"FeatureCollection","features":[
      {"type":"Feature","properties":{"id":7,"enable":false},"geometry":{"type":"Point","coordinates":[5,6]}},
      {"type":"Feature","properties":{"id":8},"geometry":{"type":"MultiPolygon","coordinates":[
        [[[0,0],[1,0],[1,1],[0,0]]],[[[3,3],[5,3],[5,5],[3,5],[3,3]],[[3.5,3.5],[4,3.5],[4,4],[3.5,3.5]]]]}},
      {"type":"Feature","properties":{"id":9},"geometry":{"type":"LineString","coordinates":[[0,0],[1,1]]}},
      {"type":"Feature","properties":{"id":10},"geometry":null},
      {"type":"Feature","properties":{"id":11},"geometry":{"type":"Polygon","coordinates":
        [[[170,-20],[190,-20],[190,-10],[170,-10],[170,-20]]]}}]})");
    ASSERT_TRUE(ImportZones(path, zones, notes, progress, error)) << qPrintable(error);
    EXPECT_EQ(Ids().join(QLatin1Char(';')), QStringLiteral("7;8;8 (2);11;11 (2)"));
    EXPECT_FALSE(zones[0].isEnabled);
    EXPECT_EQ(zones[1].ring, (Ring{{0, 0}, {1, 0}, {1, 1}}));
    EXPECT_EQ(zones[2].ring.size(), 4u);
    EXPECT_EQ(
        Places().join(QLatin1Char(';')),
        QStringLiteral("zones.geojson, feature 2|;zones.geojson, feature 3|;zones.geojson, feature 4|"));

    zones.clear();
    const QString utm = Put("utm.geojson", R"({"type":"FeatureCollection",
      "crs":{"type":"name","properties":{"name":"urn:ogc:def:crs:EPSG::32631"}},"features":[
      {"type":"Feature","properties":{"id":"u"},"geometry":{"type":"Point","coordinates":[500000,0]}}]})");
    ASSERT_TRUE(ImportZones(utm, zones, notes, progress, error)) << qPrintable(error);
    ASSERT_EQ(zones.size(), 1u);
    EXPECT_NEAR(zones[0].ring[0].x(), 3.0, 1e-9);
    EXPECT_NEAR(zones[0].ring[0].y(), 0.0, 1e-9);
}

TEST_F(Import, KmlAndShapefileAreRead)
{
    const QString kml = Put("zones.kml", R"(<?xml version="1.0"?><kml xmlns="http://www.opengis.net/kml/2.2">
      <Document><Placemark><name>Harbour</name><Point><coordinates>7,8,0</coordinates></Point></Placemark>
      <Placemark><name>Range</name><Polygon><outerBoundaryIs><LinearRing><coordinates>
      0,0,0 1,0,0 1,1,0 0,0,0</coordinates></LinearRing></outerBoundaryIs></Polygon></Placemark>
      </Document></kml>)");
    ASSERT_TRUE(ImportZones(kml, zones, notes, progress, error)) << qPrintable(error);
    EXPECT_EQ(Ids(), (QStringList{QStringLiteral("Harbour"), QStringLiteral("Range")}));
    EXPECT_EQ(zones[0].ring, (Ring{{7, 8}}));
    EXPECT_EQ(zones[1].ring.size(), 3u);

    zones.clear();
    ASSERT_TRUE(ImportZones(QStringLiteral(AX_TEST_DATA "/olinda1.shp"), zones, notes, progress, error));
    EXPECT_GE(zones.size(), 470u);
    EXPECT_FALSE(zones[0].id.contains(QLatin1Char('.'))) << qPrintable(zones[0].id);
    for (const Zone& zone : zones) {
        EXPECT_NEAR(BoxCentre(zone.ring).x(), -34.87, 0.1);
        EXPECT_NEAR(BoxCentre(zone.ring).y(), -8.0, 0.1);
    }
}

TEST_F(Import, LiftsHaveZonesDatesAndOutlines)
{
    const QString path = Put("lifts.csv", "local_ids,begin_at,expired_at,user_id,status,lng,lat,radius,area\n"
                                          "\"a, b\",2026-01-01,2026-02-01,u,1,,,,\"1,2|3,4|5,1\"\n"
                                          "c,,,,,10,20,,\n"
                                          ",,,,2,10,20,,\n"
                                          "d,,,,granted,10,20,,\n"
                                          "e,2026;,,,2,10,20,,\n");
    ASSERT_TRUE(ImportLifts(path, lifts, notes, progress, error)) << qPrintable(error);
    ASSERT_EQ(lifts.size(), 2u);
    EXPECT_EQ(lifts[0].zoneIds, (QStringList{QStringLiteral("a"), QStringLiteral("b")}));
    EXPECT_EQ(lifts[0].status, 1);
    EXPECT_EQ(lifts[0].expiry, QStringLiteral("2026-02-01"));
    EXPECT_EQ(lifts[1].status, Lift::granted);
    EXPECT_GT(lifts[1].ring.size(), 3u) << "a point alone frees nothing";
    EXPECT_EQ(Places().join(QLatin1Char(';')),
              QStringLiteral("lifts.csv:4|local_ids;lifts.csv:5|status;lifts.csv:6|begin_at"));

    const QString json = Put("lifts.geojson", R"({"type":"FeatureCollection","features":[
      {"type":"Feature","properties":{"local_ids":["x","y"],"status":2},"geometry":
      {"type":"Polygon","coordinates":[[[0,0],[1,0],[1,1],[0,0]]]}}]})");
    ASSERT_TRUE(ImportLifts(json, lifts, notes, progress, error)) << qPrintable(error);
    EXPECT_EQ(lifts.back().zoneIds, (QStringList{QStringLiteral("x"), QStringLiteral("y")}));
}

TEST_F(Import, FilesThatAreNoneAreNamed)
{
    for (const QString& path : {folder.filePath(QStringLiteral("none.csv")), folder.path(),
                                Put("noise.shp", QByteArray(5000, '\7')), Put("noise.kml", "<kml><Pla"),
                                Put("noise.csv.gz", "no archive"), Put("empty.geojson", {})}) {
        EXPECT_FALSE(ImportZones(path, zones, notes, progress, error)) << qPrintable(path);
        EXPECT_TRUE(error.contains(path)) << qPrintable(error);
    }
    EXPECT_TRUE(zones.empty());
    // The good part of a broken file is kept, and where it ends is said.
    const QString broken =
        Put("zones.geojsonl",
            R"({"type":"Feature","properties":{"id":"a"},"geometry":{"type":"Point","coordinates":[1,2]}}
{"type":"Feature","properties":{"id":"b"},"geom)");
    EXPECT_TRUE(ImportZones(broken, zones, notes, progress, error));
    EXPECT_EQ(Ids(), QStringList{QStringLiteral("a")});
}
