#include <AxData/exchange/AxMissionPoints.h>
#include <AxData/exchange/AxQgcPlan.h>
#include <AxData/exchange/AxRouteFiles.h>
#include <AxData/exchange/AxWplFile.h>
#include <AxData/planner/AxPlanner.h>

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QXmlStreamReader>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {
const QString chineseName = QString::fromUtf8("采石场 <1>&\x01");

/// A block of 600 m by 400 m, its home beside it.
AxPlanRequest blockAt(double longitude, double latitude)
{
    AxPlanRequest request;
    const auto corner = [&](double east, double north) {
        const double away = longitude + east / 111320.0 / std::cos(latitude * 0.0174533);
        return QPointF(away > 180.0 ? away - 360.0 : away, latitude + north / 111320.0);
    };
    request.outline = {corner(0, 0), corner(600, 0), corner(600, 400), corner(0, 400)};
    request.height = 100.0;
    request.meanGround = 1520.25;
    request.home = corner(-300, 50);
    request.homeAltitude = 1500.125;
    return request;
}

/// Routes that differ in everything that files tell apart.
std::vector<AxPlanRequest> requests()
{
    std::vector<AxPlanRequest> made = {blockAt(-105.0, 37.4), blockAt(179.997, -17.0), blockAt(12.0, 0.001)};
    made[0].aircraft.turnRadius = 60.0;
    made[0].aircraft.leadIn = 40.0;
    made[0].camera.name = QStringLiteral("A7R");
    const QPointF inside = made[0].outline[0] + QPointF(0.003, 0.0);
    made[0].holes = {{inside, inside + QPointF(0.001, 0.0), inside + QPointF(0.001, 0.003)}};
    made[1].heading = 80.0;
    made[1].isCrossed = true;
    made[2].heights = AxPlanRequest::Heights::Terrain;
    made[2].aircraft.climb = 1.0;
    made[2].ground = [](double longitude, double) { return 1500.0 + 30.0 * std::sin(longitude * 3000.0); };
    return made;
}

AxMission missionOf(const AxPlanRequest& request)
{
    const AxMissionRead made = AxMissionOf(AxPlanRoute(request), request, chineseName);
    EXPECT_TRUE(made.fault.isEmpty()) << made.fault.toStdString();
    EXPECT_FALSE(made.notes.isEmpty());
    return made.mission;
}

/// What a text calls 0 is what it cannot leave open.
void expectSame(const AxMission& read, const AxMission& written, bool isOpenLost)
{
    const auto same = [isOpenLost](double got, double meant) {
        return std::isnan(meant) ? (isOpenLost ? got == 0.0 : std::isnan(got)) : got == meant;
    };
    EXPECT_TRUE(same(read.home.latitude, written.home.latitude) &&
                same(read.home.longitude, written.home.longitude) &&
                same(read.home.altitude, written.home.altitude));
    ASSERT_EQ(read.items.size(), written.items.size());
    for (std::size_t i = 0; i < read.items.size(); ++i) {
        const AxMissionItem& got = read.items[i];
        const AxMissionItem& meant = written.items[i];
        EXPECT_TRUE(got.command == meant.command && got.frame == meant.frame &&
                    got.isContinued == meant.isContinued && same(got.latitude, meant.latitude) &&
                    same(got.longitude, meant.longitude) && same(got.altitude, meant.altitude))
            << "item " << i;
        for (std::size_t k = 0; k < 4; ++k)
            EXPECT_TRUE(same(got.params[k], meant.params[k])) << "item " << i << " param " << k;
    }
}

/// A plan of one waypoint and a jump back to it, with one part put in the place of another.
QByteArray planWith(const QByteArray& part, const QByteArray& replacement)
{
    QByteArray plan =
        R"({"fileType":"Plan","version":1,"mission":{"version":2,"vehicleType":1,"cruiseSpeed":18.5,
 "plannedHomePosition":[47.5,8.5,null],"items":[
 {"type":"SimpleItem","command":16,"frame":0,"autoContinue":true,"doJumpId":41,"params":[0,0,0,null,47.6,8.6,700]},
 {"type":"SimpleItem","command":177,"frame":2,"autoContinue":true,"doJumpId":42,"params":[41,2,0,0,0,0,0]}]},
 "geoFence":{"version":2,"circles":[{}],"polygons":[{}]},"rallyPoints":{"version":2,"points":[]}})";
    EXPECT_TRUE(part.isEmpty() || plan.contains(part)) << part.constData();
    return plan.replace(part.isEmpty() ? QByteArray("\v") : part, replacement);
}
} // namespace

TEST(Exchange, WhatIsWrittenAndReadAgainIsTheSame)
{
    for (const AxPlanRequest& request : requests()) {
        const AxPlanResult route = AxPlanRoute(request);
        const AxMission mission = missionOf(request);
        std::size_t waypoints = 0;
        double shooting = 0.0;
        for (const AxMissionItem& item : mission.items) {
            if (item.command == AxMissionItem::Waypoint) {
                EXPECT_NEAR(item.altitude + request.homeAltitude, route.points[waypoints++].altitude, 1e-3);
            } else if (item.command == AxMissionItem::TriggerDistance) {
                EXPECT_NE(item.params[0] > 0.0, shooting > 0.0) << "on and off by turns";
                shooting = item.params[0];
            }
        }
        EXPECT_EQ(waypoints, route.points.size());
        EXPECT_EQ(shooting, 0.0) << "no photos on the way home";

        expectSame(AxReadWpl(AxWriteWpl(mission).data).mission, mission, true);
        expectSame(AxReadQgcPlan(AxWriteQgcPlan(mission).data).mission, mission, false);
        const AxMissionRead survey = AxReadQgcPlan(AxWriteQgcSurvey(mission, route, request).data);
        ASSERT_TRUE(survey.fault.isEmpty()) << survey.fault.toStdString();
        expectSame(survey.mission, mission, false);
        QStringList notes;
        const std::vector<AxPlanPoint> points = AxPointsOf(survey.mission, notes);
        ASSERT_EQ(points.size(), route.points.size());
        for (std::size_t i = 0; i < points.size(); ++i) {
            EXPECT_EQ(points[i].pass, route.points[i].pass) << i;
            EXPECT_EQ(points[i].role == AxPlanPoint::Role::PassEnd,
                      route.points[i].role == AxPlanPoint::Role::PassEnd)
                << i;
            EXPECT_NEAR(points[i].altitude, route.points[i].altitude, 2e-3) << i;
            EXPECT_NEAR(points[i].longitude, route.points[i].longitude, 1e-9) << i;
        }
        EXPECT_EQ(survey.mission.surveyBegin, mission.surveyBegin);
        EXPECT_EQ(survey.mission.surveyEnd, mission.surveyEnd);
        EXPECT_EQ(survey.mission.isFixedWing, mission.isFixedWing);
        EXPECT_EQ(survey.mission.speed, mission.speed);
    }
}

TEST(Exchange, AFlownMissionClimbsAndComesDownOverHome)
{
    for (const bool hasWings : {true, false}) {
        AxMission plain = missionOf(requests()[1]);
        plain.isFixedWing = hasWings;
        const AxMission flown = AxWithHomeWays(plain, 60.0);
        EXPECT_EQ(AxMissionFault(flown).toStdString(), "");
        const std::size_t before = hasWings ? 2 : 1;
        ASSERT_EQ(flown.items.size(), plain.items.size() + before + 2);
        const std::vector<AxPlanPoint> route = [&plain] {
            QStringList notes;
            return AxPointsOf(plain, notes);
        }();
        const AxMissionItem& climbed = flown.items[before - 1];
        const AxMissionItem& back = flown.items[flown.items.size() - 2];
        EXPECT_EQ(flown.items[0].command, AxMissionItem::TakeOff);
        EXPECT_NEAR(climbed.altitude + plain.home.altitude, route.front().altitude, 0.01);
        EXPECT_NEAR(back.altitude + plain.home.altitude, route.back().altitude, 0.01);
        for (const AxMissionItem& item : {climbed, back})
            EXPECT_TRUE(item.latitude == plain.home.latitude && item.longitude == plain.home.longitude);
        EXPECT_EQ(flown.items.back().command, AxMissionItem::ReturnHome);
    }
}

TEST(Exchange, SurveyItemHasTheFieldsThatItsReaderAsksFor)
{
    AxPlanRequest request = requests()[0];
    request.heading = 200.0;
    const AxPlanResult route = AxPlanRoute(request);
    const AxExported file = AxWriteQgcSurvey(missionOf(request), route, request);
    QJsonObject item;
    const QJsonArray items = QJsonDocument::fromJson(file.data)["mission"]["items"].toArray();
    for (const QJsonValue& value : items)
        if (value["type"] == QLatin1String("ComplexItem"))
            item = value.toObject();
    const QJsonObject transects = item["TransectStyleComplexItem"].toObject();
    const QJsonObject camera = transects["CameraCalc"].toObject();
    EXPECT_EQ(item["complexItemType"].toString(), QStringLiteral("survey"));
    EXPECT_NEAR(item["angle"].toDouble(), 20.0, 1e-9);
    EXPECT_EQ(item["polygon"].toArray().size(), 4);
    EXPECT_EQ(item["polygon"].toArray()[0].toArray()[1].toDouble(), request.outline[0].x())
        << "latitude first";
    EXPECT_EQ(transects["CameraShots"].toInt(), route.figures.photos);
    EXPECT_EQ(transects["TurnAroundDistance"].toDouble(), 40.0);
    EXPECT_NEAR(camera["DistanceToSurface"].toDouble(), 120.125, 1e-9) << "above home, which lies lower";
    EXPECT_NEAR(camera["ImageDensity"].toDouble(), 100.0 * request.camera.SampleFrom(100.0), 1e-9);
    EXPECT_NEAR(camera["FrontalOverlap"].toDouble(), 80.0, 1e-9);
    // The reader turns a file away that lacks one of these or has it as another type.
    for (const char* key : {"CameraTriggerInTurnAround", "HoverAndCapture", "Refly90Degrees"})
        EXPECT_TRUE(transects[QLatin1String(key)].isBool()) << key;
    for (const char* key :
         {"SensorWidth", "SensorHeight", "ImageWidth", "ImageHeight", "FocalLength", "MinTriggerInterval",
          "AdjustedFootprintSide", "AdjustedFootprintFrontal", "DistanceMode", "SideOverlap", "version"})
        EXPECT_TRUE(camera[QLatin1String(key)].isDouble()) << key;
    for (const char* key : {"Landscape", "FixedOrientation", "ValueSetIsDistance"})
        EXPECT_TRUE(camera[QLatin1String(key)].isBool()) << key;
    EXPECT_EQ(file.notes.size(), 4) << file.notes.join('|').toStdString();
}

TEST(Exchange, PlanMadeElsewhereIsReadWithItsJumpsAndWhatIsLeftOutIsTold)
{
    const AxMissionRead read = AxReadQgcPlan(planWith({}, {}));
    ASSERT_TRUE(read.fault.isEmpty()) << read.fault.toStdString();
    EXPECT_EQ(read.mission.items[1].params[0], 1.0) << "ids of a file need not count from 1";
    EXPECT_EQ(read.mission.speed, 18.5);
    EXPECT_EQ(read.notes.size(), 2) << "an open home altitude, two fences";
    QStringList notes;
    EXPECT_EQ(AxPointsOf(read.mission, notes).front().altitude, 700.0) << "above the sea, whatever home is";
    AxMission overTerrain = read.mission;
    overTerrain.items[0].frame = 10;
    EXPECT_TRUE(std::isnan(AxPointsOf(overTerrain, notes).front().altitude)) << "never taken as safe";
    EXPECT_EQ(notes.size(), 3);
    const QByteArray wpl = "\xEF\xBB\xBFQGC WPL 110\r\n0 1 0 16 0 0 0 0 47.5 8.5 600 1\r\n"
                           "1\t0\t3\t16\t0\t0\t0\t0\t4.76e1\t8.6\t100\t0\r\n\r\n";
    const AxMissionRead text = AxReadWpl(wpl);
    ASSERT_TRUE(text.fault.isEmpty()) << text.fault.toStdString();
    EXPECT_EQ(text.mission.items.front().latitude, 47.6);
    EXPECT_FALSE(text.mission.items.front().isContinued);

    const AxMissionRead landing = AxReadQgcPlan(planWith(
        "\"items\":[", "\"items\":[{\"type\":\"ComplexItem\",\"complexItemType\":\"fwLandingPattern\"},"));
    ASSERT_TRUE(landing.fault.isEmpty()) << landing.fault.toStdString();
    EXPECT_EQ(landing.mission.items.size(), 2u);
    EXPECT_TRUE(landing.notes.join('|').contains("mission.items[0]"))
        << landing.notes.join('|').toStdString();
    EXPECT_TRUE(AxWriteWpl(landing.mission).notes.contains(landing.mission.leftOut.value(0)))
        << "nor is it in what is written again";
}

TEST(Exchange, HomeOfZerosIsAnOpenOne)
{
    const QByteArray wpl = "QGC WPL 110\n0 1 0 16 0 0 0 0 0 0 0 1\n1 0 3 16 0 0 0 0 47.6 8.6 100 1\n";
    for (const AxMissionRead& read :
         {AxReadWpl(wpl),
          AxReadQgcPlan(planWith("47.5,8.5,null", "0,0,0").replace("\"frame\":0", "\"frame\":3"))}) {
        ASSERT_TRUE(read.fault.isEmpty()) << read.fault.toStdString();
        EXPECT_TRUE(read.mission.home.IsOpen());
        QStringList notes = read.notes;
        const std::vector<AxPlanPoint> points = AxPointsOf(read.mission, notes);
        EXPECT_TRUE(std::isnan(points.front().altitude)) << "never above the sea, as if home were there";
        EXPECT_GE(notes.size(), 3) << notes.join('|').toStdString();
        const AxMissionRead again = AxReadWpl(AxWriteWpl(read.mission).data);
        EXPECT_TRUE(again.mission.home.IsOpen()) << again.fault.toStdString();
        const AxExported plan = AxWriteQgcPlan(read.mission);
        EXPECT_EQ(AxReadQgcPlan(plan.data).mission.home.latitude, 47.6);
        EXPECT_FALSE(plan.notes.isEmpty());
        AxPlanResult route;
        route.points = points;
        for (const AxExported& view : {AxWriteKml(route, {}, {}), AxWriteCsv(route, {}, {})})
            EXPECT_TRUE(view.fault.contains("altitude")) << view.fault.toStdString();
    }
}

TEST(Exchange, BadFilesAreTurnedAwayWholeAndTheFaultSaysWhere)
{
    const QByteArray wpl = "QGC WPL 110\n0\t1\t0\t16\t0\t0\t0\t0\t47\t8\t600\t1\n";
    const QByteArray row = "1\t0\t3\t16\t0\t0\t0\t0\t47\t8\t100\t1\n";
    struct
    {
        const char* what;
        QByteArray data;
        const char* where;
    } const cases[] = {
        {"empty plan", "", "JSON"},
        {"cut off", planWith({}, {}).left(300), "Line 4"},
        {"list", "[]", "no plan"},
        {"other type", planWith("\"Plan\"", "\"Parameters\""), "fileType"},
        {"other version", planWith("\"version\":1", "\"version\":2"), "version 2"},
        {"version as text", planWith("\"version\":1", "\"version\":\"1\""), "version"},
        {"other mission version",
         planWith("{\"version\":2,\"vehicleType\"", "{\"version\":1,\"vehicleType\""), "mission.version"},
        {"no mission", planWith("\"mission\"", "\"fleet\""), "mission"},
        {"short home", planWith("8.5,null", "null"), "plannedHomePosition"},
        {"home off the globe", planWith("47.5", "97.5"), "Home"},
        {"item no object", planWith("\"items\":[", "\"items\":[7,"), "items[0]"},
        {"unknown item", planWith("SimpleItem\",\"command\":16", "Loop\",\"command\":16"), "Loop"},
        {"unknown complex item",
         planWith("\"SimpleItem\",\"command\":16", "\"ComplexItem\",\"complexItemType\":\"StructureScan\""),
         "items[0].complexItemType"},
        {"old survey",
         planWith("\"SimpleItem\",\"command\":16",
                  "\"ComplexItem\",\"complexItemType\":\"survey\",\"version\":3"),
         "version 3"},
        {"part of a command", planWith("\"command\":16", "\"command\":16.5"), "items[0].command"},
        {"text as number", planWith("8.6", "\"8.6\""), "items[0].params[5]"},
        {"six values", planWith(",700]", "]"), "items[0].params"},
        {"place missing", planWith("47.6", "null"), "items[0].params"},
        {"place off the globe", planWith("8.6", "188.6"), "globe"},
        {"jump to nowhere", planWith("[41,", "[43,"), "43"},
        {"other header", "QGC WPL 120\n", "Line 1"},
        {"home alone", wpl, "no items"},
        {"missing columns", wpl + row.left(20), "Line 3"},
        {"comma for point", wpl + QByteArray(row).replace("\t8\t", "\t8,5\t"), "longitude"},
        {"part of a frame", wpl + QByteArray(row).replace("\t3\t16", "\t3.5\t16"), "frame"},
        {"row left out", wpl + "2" + row.mid(1), "Line 3"},
        {"off the globe", wpl + QByteArray(row).replace("\t47\t", "\t-91\t"), "Line 3"},
        {"no number", wpl + QByteArray(row).replace("\t47\t", "\tnan\t"), "Line 3"},
    };
    for (const auto& bad : cases) {
        const bool isText = bad.data.startsWith("QGC");
        const AxMissionRead read = isText ? AxReadWpl(bad.data) : AxReadQgcPlan(bad.data);
        EXPECT_TRUE(read.fault.contains(QLatin1String(bad.where)))
            << bad.what << ": " << read.fault.toStdString();
        EXPECT_TRUE(read.mission.items.empty()) << bad.what;
    }
}

TEST(Exchange, WhatCannotBeWrittenIsRefused)
{
    AxPlanRequest request = requests()[2];
    const AxPlanResult route = AxPlanRoute(request);
    AxMission mission = missionOf(request);
    request.kind = AxPlanRequest::Kind::Strip;
    EXPECT_FALSE(AxWriteQgcSurvey(mission, route, request).fault.isEmpty());
    request.home.reset();
    EXPECT_FALSE(AxMissionOf(route, request, {}).fault.isEmpty()) << "heights above nothing";
    EXPECT_FALSE(AxWriteKml({}, request, {}).fault.isEmpty());
    mission.items.resize(axMostMissionItems - 1);
    EXPECT_TRUE(AxWriteWpl(mission).fault.isEmpty());
    mission.items.resize(axMostMissionItems);
    for (const AxExported& file : {AxWriteWpl(mission), AxWriteQgcPlan(mission)}) {
        EXPECT_TRUE(file.fault.contains(QStringLiteral("65536"))) << file.fault.toStdString();
        EXPECT_TRUE(file.data.isEmpty());
    }
    mission.items.resize(1);
    mission.items[0] = {};
    mission.items[0].altitude = std::numeric_limits<double>::quiet_NaN();
    EXPECT_FALSE(AxWriteQgcPlan(mission).fault.isEmpty());
}

TEST(Exchange, FilesForViewersKeepHeightsNamesAndTheAntimeridian)
{
    const AxPlanRequest request = requests()[1]; // over the antimeridian
    const AxPlanResult route = AxPlanRoute(request);
    QXmlStreamReader kml(AxWriteKml(route, request, chineseName).data);
    QStringList names;
    QStringList line;
    while (!kml.atEnd()) {
        kml.readNext();
        if (kml.isStartElement() && kml.name() == QLatin1String("name"))
            names << kml.readElementText();
        else if (kml.isStartElement() && kml.name() == QLatin1String("coordinates") && line.isEmpty())
            line = kml.readElementText().split('\n', Qt::SkipEmptyParts);
    }
    ASSERT_FALSE(kml.hasError()) << kml.errorString().toStdString();
    EXPECT_EQ(names.first(), QString::fromUtf8("采石场 <1>&"));
    ASSERT_EQ(line.size(), static_cast<int>(route.points.size()));
    EXPECT_NEAR(line.first().section(',', 2).toDouble(), route.points.front().altitude, 1e-3);

    const QList<QByteArray> rows = AxWriteCsv(route, request, {}).data.split('\n');
    EXPECT_EQ(rows.size(), static_cast<int>(route.points.size() + route.photos.size()) + 3);
    for (const QByteArray& row : rows.mid(0, rows.size() - 1))
        EXPECT_EQ(row.count(','), 5) << row.constData();

    const QJsonArray features =
        QJsonDocument::fromJson(AxWriteGeoJson(route, request, chineseName).data)["features"].toArray();
    EXPECT_EQ(features[0]["properties"]["name"].toString(), chineseName);
    const QJsonArray lines = features[0]["geometry"]["coordinates"].toArray();
    EXPECT_GT(lines.size(), 1);
    for (const QJsonValue& part : lines)
        for (int i = 1; i < part.toArray().size(); ++i)
            EXPECT_LT(std::fabs(part[i][0].toDouble() - part[i - 1][0].toDouble()), 1.0);
    EXPECT_EQ(features.last()["geometry"]["coordinates"].toArray().size(), route.figures.photos);

    AxPlanResult warned = route;
    warned.warnings.resize(3);
    for (const AxExported& file : {AxWriteKml(warned, request, {}), AxWriteCsv(warned, request, {}),
                                   AxWriteGeoJson(warned, request, {})}) {
        EXPECT_TRUE(file.notes.join('|').contains("3 warnings")) << file.notes.join('|').toStdString();
        EXPECT_TRUE(file.notes.join('|').contains("speed"));
    }
}

TEST(Exchange, FilesAreTheSameUnderAGermanLocaleAndAreSavedWhole)
{
    const AxPlanRequest request = requests()[0];
    const AxPlanResult route = AxPlanRoute(request);
    const auto all = [&] {
        const AxMission mission = missionOf(request);
        return AxWriteWpl(mission).data + AxWriteQgcSurvey(mission, route, request).data +
               AxWriteKml(route, request, {}).data + AxWriteCsv(route, request, {}).data +
               AxWriteGeoJson(route, request, {}).data;
    };
    const QByteArray usual = all();
    QLocale::setDefault(QLocale(QLocale::German));
    EXPECT_EQ(all(), usual);
    expectSame(AxReadWpl(AxWriteWpl(missionOf(request)).data).mission, missionOf(request), true);
    QLocale::setDefault(QLocale::c());

    const QTemporaryDir folder;
    const QString path = folder.filePath(QString::fromUtf8("采石场.plan"));
    QString error;
    ASSERT_TRUE(AxSaveExport(path, "old", error)) << error.toStdString();
    ASSERT_TRUE(AxSaveExport(path, usual, error)) << error.toStdString();
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), usual);
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden).size(), 1)
        << "nothing is left beside";
    EXPECT_FALSE(AxSaveExport(folder.filePath("none/a.plan"), usual, error));
    EXPECT_TRUE(error.contains(QStringLiteral("none"))) << error.toStdString();
}
