#include <AxAlgorthm/AxCoordinate.h>
#include <AxData/geofiles/AxGeoFile.h>

#include <QDate>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

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

/// Shapes of all kinds anywhere but near the poles, over the antimeridian as well.
QVector<AxGeoShape> SomeShapes(unsigned seed)
{
    std::mt19937 random(seed);
    const auto between = [&random](double low, double high) {
        return std::uniform_real_distribution<double>(low, high)(random);
    };
    const QPointF centre(seed % 3 == 0 ? 179.99 : between(-179.0, 179.0), between(-70.0, 70.0));
    const auto around = [&](double part, double size) {
        const double angle = 2.0 * std::acos(-1.0) * part;
        return QPointF(std::remainder(centre.x() + size * std::cos(angle), 360.0),
                       centre.y() + size * std::sin(angle));
    };
    const QString name = QString::fromUtf8("矿区 \"%1\" <&> ä\n😀").arg(seed);
    QVector<AxGeoShape> shapes(4);
    for (int i = 0; i < shapes.size(); ++i) {
        shapes[i].kind = i < 2 ? AxGeoShape::Area : i == 2 ? AxGeoShape::Line : AxGeoShape::Point;
        shapes[i].name = name + QString::number(i);
        shapes[i].attributes[QStringLiteral("kind")] = QStringLiteral("kind %1").arg(i);
        const int count = i < 2 ? 8 + int(seed % 40) : i == 2 ? 2 + int(seed % 7) : 1;
        for (int k = 0; k < count; ++k)
            shapes[i].points +=
                around((k + between(0.0, 0.9)) / count / (i == 2 ? 2.0 : 1.0), between(0.02, 0.03));
    }
    shapes[1].holes = {{around(0.0, 0.003), around(0.3, 0.003), around(0.6, 0.003)}};
    shapes[2].leftWidth = between(0.0, 100.0);
    shapes[2].rightWidth = 0.0;
    shapes[3].radius = 120.0;
    return shapes;
}

/// The ring from its southernmost point on, towards the neighbour that lies further south.
QList<QPointF> Ordered(QList<QPointF> ring)
{
    const auto isBefore = [](const QPointF& a, const QPointF& b) { return a.y() < b.y(); };
    std::rotate(ring.begin(), std::min_element(ring.begin(), ring.end(), isBefore), ring.end());
    if (isBefore(ring.constLast(), ring[1]))
        std::reverse(ring.begin() + 1, ring.end());
    return ring;
}

bool IsNear(QList<QPointF> a, QList<QPointF> b, bool isRing)
{
    constexpr double tenthOfMillimetre = 1e-9;
    if (isRing && a.size() == b.size()) {
        a = Ordered(a);
        b = Ordered(b);
    }
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](const QPointF& p, const QPointF& q) {
        return std::abs(std::remainder(p.x() - q.x(), 360.0)) < tenthOfMillimetre &&
               std::abs(p.y() - q.y()) < tenthOfMillimetre;
    });
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
                       placemark("50%2", several) + placemark("none", "") + "</Folder>"));
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
    EXPECT_EQ(named("50%2 1").kind, AxGeoShape::Point);
    EXPECT_EQ(named("50%2 2").points.size(), 2);
    for (const char* note :
         {"NetworkLink (1)", "2 parts", "Areas with holes: 1.", "without a geometry, which are left out: 1",
          "point and are not taken over: 1", "cut to 200 characters: 1"})
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

TEST_F(GeoFiles, HeightsOfKmlCountFromWhatItsModeSays)
{
    QByteArray marks;
    for (const char* mode : {"absolute", "relativeToGround", "clampToGround", ""}) {
        const QByteArray tag = *mode ? QByteArray("<altitudeMode>") + mode + "</altitudeMode>" : QByteArray();
        for (const char* height : {"10", "0"})
            marks +=
                placemark(mode, "<Point>" + tag + "<coordinates>1,2," + height + "</coordinates></Point>");
    }
    const AxGeoContent read = ReadOf("m.kml", kmlOf(marks));
    ASSERT_EQ(read.shapes.size(), 8) << read.fault.toStdString();
    const double none = std::numeric_limits<double>::quiet_NaN();
    const double expected[] = {10.0, 0.0, none, none, none, none, 10.0, none};
    for (int i = 0; i < 8; ++i)
        EXPECT_TRUE(read.shapes[i].altitude == expected[i] ||
                    (std::isnan(expected[i]) && std::isnan(read.shapes[i].altitude)))
            << i << ": " << read.shapes[i].altitude;
    EXPECT_TRUE(HasNote(read, "above the ground that are not taken over: 1."));
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
        int shapes = 1;
    } rows[] = {
        {"[[1,89],[2,89],[2,91],[1,89]]", "latitude 91"},
        {"[[1,1],[2,2],[1,1]]", "fewer than three"},
        {"[[1,1],[NaN,2],[2,2],[1,1]]", "no number"},
        {"[[1,1],[1e999,2],[2,2],[1,1]]", "no number"},
        {"[]", "without a geometry"},
        {"[[1,1],[2,1],[2,2],[1,1]],[[1.5,1.2],[1.6,1.2],[1.5,1.2]]", "Hole 1 of Layer", 2},
    };
    for (const auto& row : rows) {
        const QByteArray both = R"({"type":"MultiPolygon","coordinates":[[)" + good + "]]}";
        const QByteArray bad = R"({"type":"Polygon","coordinates":[)" + row.rings + "]}";
        const QByteArray text = geoJson(both + R"(},{"type":"Feature","properties":{},"geometry":)" + bad);
        const AxGeoContent read = ReadOf("a.geojson", text);
        EXPECT_EQ(read.shapes.size(), row.shapes) << row.note << ": " << read.fault.toStdString();
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
        {"no.kmz", "hello", "no KMZ"},
        {"no.gpkg", QByteArray("SQLite format 3\0", 16) + QByteArray(200, 'x'), ""},
        {"metres.geojson", geoJson(R"({"type":"Point","coordinates":[500000,5205266]})"), "no area"},
        {"a.shp", QByteArray(200, 'x'), ""},
        {"zero.dxf", QByteArray("0\nSECTION\n2\nENTITIES\n0\nCIRCLE\n8\na\0b\n0\nENDSEC\n", 44), "ASCII DXF"},
        {"a.xyz", "1", "not known"},
    };
    for (const auto& row : rows) {
        const AxGeoContent read = ReadOf(row.name, row.contents);
        EXPECT_TRUE(read.fault.contains(QLatin1String(row.name)) &&
                    read.fault.contains(QLatin1String(row.fault)))
            << row.name << ": " << read.fault.toStdString();
        EXPECT_TRUE(read.shapes.isEmpty());
    }
    for (const char* name : {"huge.kml", "huge.geojson"}) {
        ASSERT_TRUE(QFile(Put(QLatin1String(name), "{")).resize(129LL * 1024 * 1024));
        EXPECT_TRUE(AxReadGeoFile(folder.filePath(QLatin1String(name))).fault.contains("129 MB")) << name;
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

TEST_F(GeoFiles, WhatIsWrittenIsReadAgain)
{
    const struct
    {
        AxGeoFormat format;
        const char* suffix;
        bool hasFields;
    } rows[] = {
        {AxGeoFormat::Kml, "kml", true},         {AxGeoFormat::Kmz, "kmz", true},
        {AxGeoFormat::GeoJson, "geojson", true}, {AxGeoFormat::Shapefile, "shp", true},
        {AxGeoFormat::GeoPackage, "gpkg", true}, {AxGeoFormat::Csv, "csv", true},
        {AxGeoFormat::Dxf, "dxf", false},
    };
    for (unsigned seed = 0; seed < 6; ++seed)
        for (const auto& row : rows) {
            const QVector<AxGeoShape> shapes = SomeShapes(seed);
            const QString path = folder.filePath(QStringLiteral("s%1.").arg(seed) + row.suffix);
            const AxGeoWritten written = AxWriteGeoFile(path, row.format, shapes);
            ASSERT_TRUE(written.fault.isEmpty()) << written.fault.toStdString();
            QVector<AxGeoShape> read = AxReadGeoFile(path).shapes;
            if (row.format == AxGeoFormat::Kmz) {
                QFile archive(path);
                ASSERT_TRUE(archive.open(QIODevice::ReadOnly));
                const int year = 1980 + (uchar(archive.readAll()[13]) >> 1);
                EXPECT_LE(std::abs(year - QDate::currentDate().year()), 1);
            }
            if (row.format == AxGeoFormat::Shapefile)
                for (const char* other : {"s%1_lines.shp", "s%1_points.shp"})
                    read += AxReadGeoFile(folder.filePath(QString(other).arg(seed))).shapes;
            ASSERT_EQ(read.size(), shapes.size()) << row.suffix;
            for (int i = 0; i < shapes.size(); ++i) {
                SCOPED_TRACE(testing::Message() << row.suffix << ", seed " << seed << ", shape " << i);
                const bool isArea = shapes[i].kind == AxGeoShape::Area;
                EXPECT_EQ(read[i].kind, shapes[i].kind);
                EXPECT_TRUE(IsNear(read[i].points, shapes[i].points, isArea));
                ASSERT_EQ(read[i].holes.size(), shapes[i].holes.size());
                EXPECT_TRUE(shapes[i].holes.isEmpty() || IsNear(read[i].holes[0], shapes[i].holes[0], true));
                EXPECT_TRUE(std::isnan(read[i].altitude));
                if (!row.hasFields)
                    continue;
                EXPECT_EQ(read[i].name, QString(shapes[i].name).replace('\n', ' '));
                EXPECT_EQ(read[i].attributes, shapes[i].attributes);
                for (const auto field :
                     {&AxGeoShape::leftWidth, &AxGeoShape::rightWidth, &AxGeoShape::radius})
                    EXPECT_TRUE(std::isnan(shapes[i].*field)
                                    ? std::isnan(read[i].*field)
                                    : std::abs(read[i].*field - shapes[i].*field) < 1e-9);
            }
        }
    EXPECT_TRUE(QDir(folder.path())
                    .entryList({QStringLiteral("*.axpart*"), QStringLiteral(".s*")},
                               QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot)
                    .isEmpty());
}

TEST_F(GeoFiles, AFileThatCannotBeWrittenStaysAsItWas)
{
    const QString old = Put(QStringLiteral("old.kml"), "old");
    QVector<AxGeoShape> shapes = SomeShapes(1);
    shapes[0].points[1].setY(91.0);
    EXPECT_TRUE(AxWriteGeoFile(old, AxGeoFormat::Kml, shapes).fault.contains(QStringLiteral("on the globe")));
    EXPECT_FALSE(AxWriteGeoFile(old, AxGeoFormat::Kml, {}).fault.isEmpty());
    const QString nowhere = folder.filePath(QStringLiteral("no/such/folder.shp"));
    for (const AxGeoFormat format : {AxGeoFormat::Kml, AxGeoFormat::Shapefile})
        EXPECT_TRUE(AxWriteGeoFile(nowhere, format, SomeShapes(1)).fault.contains("folder.shp"));
    const QString others = Put(QStringLiteral("old_points.shp"), "old");
    EXPECT_TRUE(AxWriteGeoFile(folder.filePath("old.shp"), AxGeoFormat::Shapefile, SomeShapes(1))
                    .fault.contains(QStringLiteral("old_points.shp")));
    EXPECT_FALSE(QFile::exists(folder.filePath("old.shp")));
    const QString set = folder.filePath("set.shp");
    ASSERT_TRUE(AxWriteGeoFile(set, AxGeoFormat::Shapefile, SomeShapes(1)).fault.isEmpty());
    shapes = SomeShapes(2);
    shapes.removeLast(); // the point
    const AxGeoWritten again = AxWriteGeoFile(set, AxGeoFormat::Shapefile, shapes);
    EXPECT_TRUE(again.fault.isEmpty()) << again.fault.toStdString();
    EXPECT_EQ(again.notes.filter(QStringLiteral("set_points.shp")).size(), 1);
    EXPECT_EQ(AxReadGeoFile(folder.filePath("set_lines.shp")).shapes[0].points.size(),
              shapes.last().points.size());
    ASSERT_TRUE(QFile::remove(set));
    EXPECT_TRUE(AxWriteGeoFile(set, AxGeoFormat::Shapefile, shapes).fault.contains("set_lines.shp"))
        << "nobody was asked";
    for (const QString& name : {old, others}) {
        QFile file(name);
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        EXPECT_EQ(file.readAll(), "old");
    }
}

TEST_F(GeoFiles, TablesAndDrawingsAreReadAsTheyCome)
{
    const AxGeoContent table =
        ReadOf("a.csv", "Name;Kind;Longitude;Latitude\nA;area;12,0;47,0\nA;area;12,1;47\nA;area;12,1;47,1\n"
                        "B;line;1;2\nB;line;3;4\nC;;5;6\nD;line;7;8\nE;line;x;8\nE;line;9;8\n");
    ASSERT_EQ(table.shapes.size(), 3) << table.fault.toStdString() << table.notes.join('\n').toStdString();
    EXPECT_EQ(table.shapes[0].points, (QList<QPointF>{{12.0, 47.0}, {12.1, 47.0}, {12.1, 47.1}}));
    EXPECT_TRUE(table.shapes[1].kind == AxGeoShape::Line && table.shapes[2].kind == AxGeoShape::Point);
    EXPECT_TRUE(HasNote(table, "that are points: 1.") && HasNote(table, "fewer than two") &&
                HasNote(table, "no number"));
    const AxGeoContent nameless =
        ReadOf("c.csv", "kind,longitude,latitude\n,1,2\nline,3,4\nline,5,6\n,7,8\n");
    ASSERT_EQ(nameless.shapes.size(), 3);
    EXPECT_EQ(nameless.shapes[1].points.size(), 2);
    EXPECT_EQ(nameless.shapes[1].name + nameless.shapes[2].name, QStringLiteral("c 2c 4"));
    const AxGeoContent heights = ReadOf("h.csv", "name,lon,lat,Elevation\nA,1,2,\"1234,5\"\nB,3,4,\n");
    ASSERT_EQ(heights.shapes.size(), 2);
    EXPECT_TRUE(heights.shapes[0].altitude == 1234.5 && std::isnan(heights.shapes[1].altitude));
    EXPECT_TRUE(ReadOf("b.csv", "a,b\n1,2\n").fault.contains(QStringLiteral("longitude")));

    const QByteArray drawing =
        "0\nSECTION\n2\nENTITIES\n0\nLWPOLYLINE\n8\nPit\n90\n3\n70\n1\n10\n500000\n20\n5205266\n"
        "10\n501000\n20\n5205266\n10\n501000\n20\n5206266\n0\nENDSEC\n0\nEOF\n";
    const AxGeoContent open = ReadOf("a.dxf", drawing);
    EXPECT_TRUE(open.isSystemMissing && open.shapes.isEmpty());
    AxGeoReadOptions options;
    for (const char* wrong : {"EPSG:0", "/etc/passwd", "http://127.0.0.1:9/a.prj"}) {
        options.assumedSystem = QLatin1String(wrong);
        EXPECT_TRUE(ReadOf("a.dxf", drawing, options).fault.contains(QStringLiteral("no coordinate system")))
            << wrong;
    }
    options.assumedSystem = QStringLiteral("EPSG:32632");
    const AxGeoContent read = ReadOf("a.dxf", drawing, options);
    ASSERT_EQ(read.shapes.size(), 1) << read.fault.toStdString();
    EXPECT_TRUE(read.shapes[0].kind == AxGeoShape::Area && read.shapes[0].name == QStringLiteral("Pit"));
    EXPECT_NEAR(read.shapes[0].points[0].x(), 9.0, 1e-6);
}
