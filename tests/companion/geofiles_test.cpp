#include <AxAlgorthm/AxCoordinate.h>
#include <AxData/geofiles/AxGeoFile.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cmath>

namespace {
QByteArray kmlOf(const QByteArray& inside)
{
    return R"(<?xml version="1.0" encoding="UTF-8"?><kml xmlns="http://www.opengis.net/kml/2.2"><Document>)" +
           inside + "</Document></kml>";
}

QByteArray placemark(const QByteArray& name, const QByteArray& geometry)
{
    return "<Placemark><name>" + name + "</name>" + geometry + "</Placemark>";
}

QByteArray kmlRing(const QByteArray& places, const char* border = "outerBoundaryIs")
{
    return QByteArray("<") + border + "><LinearRing><coordinates>" + places +
           "</coordinates></LinearRing></" + border + ">";
}

QByteArray geoJson(const QByteArray& geometry, const QByteArray& properties = "{}")
{
    return R"({"type":"FeatureCollection","features":[{"type":"Feature","properties":)" + properties +
           R"(,"geometry":)" + geometry + "}]}";
}

/// A circle with many corners as a GeoJSON polygon.
QByteArray roundArea(int corners)
{
    QByteArray ring;
    for (int i = 0; i <= corners; ++i) {
        const double angle = 2.0 * std::acos(-1.0) * (i % corners) / corners;
        ring += (i > 0 ? ",[" : "[") + QByteArray::number(12.0 + 0.01 * std::cos(angle), 'f', 12) + ',' +
                QByteArray::number(47.0 + 0.01 * std::sin(angle), 'f', 12) + ']';
    }
    return geoJson(R"({"type":"Polygon","coordinates":[[)" + ring + "]]}");
}

class GeoFiles : public testing::Test
{
protected:
    QString Put(const QString& name, const QByteArray& contents)
    {
        QFile file(folder.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(contents);
        return file.fileName();
    }
    AxGeoContent ReadOf(const QString& name, const QByteArray& contents, const AxGeoReadOptions& options = {})
    {
        return AxReadGeoFile(Put(name, contents), options);
    }

    QTemporaryDir folder;
};

bool HasNote(const AxGeoContent& content, const char* part)
{
    return !content.notes.filter(QLatin1String(part)).isEmpty();
}

double AreaOf(const QList<QPointF>& ring)
{
    std::vector<CAxPoint2D> points;
    for (const QPointF& place : ring)
        points.emplace_back(place.x(), place.y());
    return GeodesicRingArea(points);
}
} // namespace

TEST_F(GeoFiles, KmlGivesAreasLinesAndPointsOfAllFolders)
{
    const QByteArray area = "<Polygon>" + kmlRing("\n10,50,7\n10.1,50,7\n10.1,50.1,7\n10,50,7\n") +
                            kmlRing("10.05,50.01 10.06,50.01 10.06,50.02 10.05,50.01", "innerBoundaryIs") +
                            "</Polygon>";
    const QByteArray line = "<ExtendedData><Data name=\"left_m\"><value>30</value></Data></ExtendedData>"
                            "<LineString><coordinates>179.9,1,5 -179.9,1,9</coordinates></LineString>";
    const QByteArray several = "<MultiGeometry><Point><coordinates>1,2</coordinates></Point>"
                               "<LineString><coordinates>0,0 1,1</coordinates></LineString></MultiGeometry>";
    const AxGeoContent read = ReadOf(
        "a.kml", kmlOf("<NetworkLink><Link><href>http://127.0.0.1:9/a.kml</href></Link></NetworkLink>" +
                       placemark(QByteArray("\xe7\x9f\xbf \"1\"\n") + QByteArray(1000, 'x'), area) +
                       "<Folder><Folder>" + placemark("road", line) + "</Folder>" +
                       placemark("both", several) + placemark("none", "") + "</Folder>"));
    ASSERT_TRUE(read.fault.isEmpty()) << read.fault.toStdString();
    ASSERT_EQ(read.shapes.size(), 4) << read.notes.join('\n').toStdString();
    const AxGeoShape& first = read.shapes[0];
    EXPECT_EQ(first.kind, AxGeoShape::Area);
    EXPECT_TRUE(first.name.startsWith(QString::fromUtf8("矿 \"1\" x")) && first.name.size() == 200);
    EXPECT_EQ(first.points, (QList<QPointF>{{10, 50}, {10.1, 50}, {10.1, 50.1}}));
    ASSERT_EQ(first.holes.size(), 1);
    EXPECT_EQ(first.holes[0].size(), 3);
    EXPECT_EQ(first.altitude, 7.0);
    const auto named = [&](const char* name) {
        for (const AxGeoShape& shape : read.shapes)
            if (shape.name == QLatin1String(name))
                return shape;
        return AxGeoShape();
    };
    const AxGeoShape road = named("road");
    EXPECT_TRUE(road.kind == AxGeoShape::Line && road.points == (QList<QPointF>{{179.9, 1}, {-179.9, 1}}));
    EXPECT_TRUE(road.leftWidth == 30.0 && std::isnan(road.rightWidth) && std::isnan(road.altitude));
    EXPECT_EQ(named("both 1").kind, AxGeoShape::Point);
    EXPECT_EQ(named("both 2").points.size(), 2);
    for (const char* note : {"NetworkLink (1)", "2 parts", "1 areas have holes",
                             "1 features have no geometry", "heights of 1 shapes", "names are cut"})
        EXPECT_TRUE(HasNote(read, note)) << note << " in\n" << read.notes.join('\n').toStdString();
}

TEST_F(GeoFiles, ShapefileIsReadWithoutItsIndexAndNothingIsWrittenBesideIt)
{
    for (const char* suffix : {"shp", "dbf", "prj"})
        ASSERT_TRUE(QFile::copy(QStringLiteral(AX_TEST_DATA "/olinda1.") + suffix,
                                folder.filePath(QStringLiteral("Olinda.") + suffix)));
    const AxGeoContent whole = AxReadGeoFile(QStringLiteral(AX_TEST_DATA "/olinda1.shp"));
    const AxGeoContent read = AxReadGeoFile(folder.filePath(QStringLiteral("Olinda.shp")));
    ASSERT_EQ(read.shapes.size(), 470) << read.fault.toStdString();
    ASSERT_EQ(whole.shapes.size(), 470);
    EXPECT_TRUE(HasNote(read, ".shx") && !HasNote(whole, ".shx"));
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files).size(), 3);
    double area = 0.0;
    for (int i = 0; i < read.shapes.size(); ++i) {
        EXPECT_EQ(read.shapes[i].points, whole.shapes[i].points);
        area += AreaOf(read.shapes[i].points);
    }
    EXPECT_NEAR(area, 43.5e6, 3e6) << "the town's area, m²";
    EXPECT_EQ(read.shapes[0].name, QStringLiteral("Ouro Preto"));
}

TEST_F(GeoFiles, ProjectedCoordinatesBecomeDegrees)
{
    const QList<QPointF> corners{{9.5, 47.0}, {9.6, 47.0}, {9.6, 47.1}};
    QByteArray ring;
    for (const QPointF& corner : corners + corners.mid(0, 1)) {
        double x = 0.0;
        double y = 0.0;
        ASSERT_TRUE(LatLng2UTM(corner.y(), corner.x(), x, y));
        ring += (ring.isEmpty() ? "[" : ",[") + QByteArray::number(x, 'f', 4) + ',' +
                QByteArray::number(y, 'f', 4) + ']';
    }
    const QByteArray triangle = R"({"type":"Polygon","coordinates":[[)" + ring + "]]}";
    const QByteArray named =
        R"({"type":"FeatureCollection","crs":{"type":"name","properties":{"name":"urn:ogc:def:crs:EPSG::32632"}},
 "features":[{"type":"Feature","properties":{"Name":"a"},"geometry":)" +
        triangle + "}]}";
    const AxGeoContent read = ReadOf("utm.geojson", named);
    ASSERT_EQ(read.shapes.size(), 1) << read.fault.toStdString();
    ASSERT_EQ(read.shapes[0].points.size(), 3);
    for (int i = 0; i < 3; ++i) {
        EXPECT_NEAR(read.shapes[0].points[i].x(), corners[i].x(), 1e-8);
        EXPECT_NEAR(read.shapes[0].points[i].y(), corners[i].y(), 1e-8);
    }
    EXPECT_TRUE(read.coordinateSystem.contains(QStringLiteral("UTM zone 32N")));
}

TEST_F(GeoFiles, LongRingsAreSimplifiedByTheToleranceThatANoteTells)
{
    const AxGeoContent read = ReadOf("round.geojson", roundArea(20000));
    ASSERT_EQ(read.shapes.size(), 1);
    const AxGeoShape& shape = read.shapes[0];
    EXPECT_LT(shape.points.size(), 200);
    EXPECT_TRUE(HasNote(read, "simplified from 20000 to"));
    for (const QPointF& place : shape.points)
        EXPECT_NEAR(std::hypot(place.x() - 12.0, place.y() - 47.0), 0.01, 1e-9);
    const double exact = std::acos(-1.0) * 0.01 * 0.01 * 111177.0 * 76057.0;
    EXPECT_NEAR(AreaOf(shape.points), exact, 0.004 * exact);
    EXPECT_EQ(ReadOf("fewer.geojson", roundArea(9000)).shapes[0].points.size(), 9000);
}

TEST_F(GeoFiles, AFeatureThatIsNoShapeIsLeftOutAndTold)
{
    const QByteArray good = R"([[1,1],[2,1],[2,2],[1,1]])";
    const struct
    {
        QByteArray rings;
        const char* note;
    } rows[] = {
        {"[[1,89],[2,89],[2,91],[1,89]]", "latitude 91"},
        {"[[1,1],[2,2],[1,1]]", "fewer than three"},
        {"[[1,1],[NaN,2],[2,2],[1,1]]", "no number"},
        {"[[1,1],[1e999,2],[2,2],[1,1]]", "no number"},
        {"[]", "no geometry"},
    };
    for (const auto& row : rows) {
        const QByteArray both = R"({"type":"MultiPolygon","coordinates":[[)" + good + "]]}";
        const QByteArray bad = R"({"type":"Polygon","coordinates":[)" + row.rings + "]}";
        const QByteArray text = geoJson(both + R"(},{"type":"Feature","properties":{},"geometry":)" + bad);
        const AxGeoContent read = ReadOf("a.geojson", text);
        EXPECT_EQ(read.shapes.size(), 1) << row.note << ": " << read.fault.toStdString();
        EXPECT_TRUE(HasNote(read, row.note)) << row.note << " in\n" << read.notes.join('\n').toStdString();
    }
}

TEST_F(GeoFiles, WhatCannotBeReadIsAFaultThatNamesTheFile)
{
    QDir(folder.path()).mkdir(QStringLiteral("folder.kml"));
    QByteArray bomb = "<?xml version=\"1.0\"?><!DOCTYPE k [<!ENTITY a \"aaaaaaaaaa\">";
    for (char c = 'b'; c < 'k'; ++c)
        bomb += QByteArray("<!ENTITY ") + c + " \"" +
                QByteArray("&" + QByteArray(1, char(c - 1)) + ";").repeated(10) + "\">";
    bomb += "]><kml><Document><name>&j;</name></Document></kml>";
    const QByteArray deepJson = QByteArray(100000, '[');
    const struct
    {
        const char* name;
        QByteArray contents;
        const char* fault;
    } rows[] = {
        {"a.kml", bomb, "entities"},
        {"deep.kml", QByteArray("<Folder>").repeated(100000), "too deep"},
        {"half.kml", kmlOf("<Placemark>").chopped(10), "Line 1"},
        {"none.kml", kmlOf(""), "no area, line or point"},
        {"empty.geojson", "", "empty"},
        {"deep.geojson", geoJson(R"({"type":"Polygon","coordinates":)" + deepJson), ""},
        {"text.geojson", "hello", ""},
        {"metres.geojson", geoJson(R"({"type":"Point","coordinates":[500000,5205266]})"), "no area"},
        {"a.shp", QByteArray(200, 'x'), ""},
        {"a.xyz", "1", "not known"},
    };
    for (const auto& row : rows) {
        const AxGeoContent read = ReadOf(row.name, row.contents);
        EXPECT_TRUE(read.fault.contains(QLatin1String(row.name)) &&
                    read.fault.contains(QLatin1String(row.fault)))
            << row.name << ": " << read.fault.toStdString();
        EXPECT_TRUE(read.shapes.isEmpty());
    }
    for (const char* name : {"folder.kml", "missing.kml"})
        EXPECT_FALSE(AxReadGeoFile(folder.filePath(QLatin1String(name))).fault.isEmpty()) << name;
}

TEST_F(GeoFiles, ReadingCanBeCancelled)
{
    int calls = 0;
    const AxGeoContent read =
        AxReadGeoFile(QStringLiteral(AX_TEST_DATA "/olinda1.shp"), {}, [&](int done, int all) {
            EXPECT_LE(done, all);
            return ++calls < 3;
        });
    EXPECT_TRUE(read.isCancelled && read.shapes.isEmpty() && !read.fault.isEmpty());
    EXPECT_EQ(calls, 3);
}
