#include <AxData/exchange/AxExchangeText.h>
#include <AxData/exchange/AxQgcPlan.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <cmath>

namespace {
constexpr int relativeDistanceMode = 1;

QJsonValue NumberOrNull(double value)
{
    return std::isnan(value) ? QJsonValue() : QJsonValue(value);
}

QJsonArray PlaceOf(const QPointF& lngLat)
{
    return {lngLat.y(), lngLat.x()};
}

/// Items are known by their number in the mission, so that a jump finds its target.
QJsonArray SimpleItems(const AxMission& mission, std::size_t begin, std::size_t end)
{
    QJsonArray items;
    for (std::size_t i = begin; i < end; ++i) {
        const AxMissionItem& item = mission.items[i];
        QJsonArray params;
        for (double param : item.params)
            params += NumberOrNull(param);
        for (double value : {item.latitude, item.longitude, item.altitude})
            params += NumberOrNull(value);
        items += QJsonObject{{"type", "SimpleItem"},
                             {"command", item.command},
                             {"frame", item.frame},
                             {"params", params},
                             {"autoContinue", item.isContinued},
                             {"doJumpId", static_cast<int>(i + 1)}};
    }
    return items;
}

/// Readers turn a plan away whose home is no place: the first place stands for one that is open.
QJsonArray HomeOf(const AxMission& mission)
{
    if (!mission.home.IsOpen())
        return {mission.home.latitude, mission.home.longitude, NumberOrNull(mission.home.altitude)};
    const auto first =
        std::find_if(mission.items.begin(), mission.items.end(),
                     [](const AxMissionItem& item) { return item.command == AxMissionItem::Waypoint; });
    const bool isThere = first != mission.items.end();
    return {isThere ? first->latitude : 0.0, isThere ? first->longitude : 0.0, QJsonValue()};
}

QByteArray PlanWith(const AxMission& mission, const QJsonArray& items)
{
    QJsonObject flown = {{"version", 2},
                         {"firmwareType", 0}, // any autopilot
                         {"vehicleType", mission.isFixedWing ? 1 : 2},
                         {"globalPlanAltitudeMode", relativeDistanceMode},
                         {"plannedHomePosition", HomeOf(mission)},
                         {"items", items}};
    if (mission.speed > 0.0) {
        flown["cruiseSpeed"] = mission.speed;
        flown["hoverSpeed"] = mission.speed;
    }
    const QJsonObject fence = {{"version", 2}, {"circles", QJsonArray()}, {"polygons", QJsonArray()}};
    const QJsonObject rally = {{"version", 2}, {"points", QJsonArray()}};
    return QJsonDocument(QJsonObject{{"fileType", "Plan"},
                                     {"version", 1},
                                     {"groundStation", "AxEarthViewer"},
                                     {"mission", flown},
                                     {"geoFence", fence},
                                     {"rallyPoints", rally}})
        .toJson();
}

QJsonObject CameraOf(const AxMission& mission, const AxPlanResult& route, const AxPlanRequest& request)
{
    const AxPlanCamera& camera = request.camera;
    const double aboveHome = request.meanGround + route.figures.height - mission.home.altitude;
    return {{"version", 2},
            {"CameraName", "Custom Camera"},
            {"SensorWidth", camera.sensorWidth},
            {"SensorHeight", camera.sensorHeight},
            {"ImageWidth", camera.imageWidth},
            {"ImageHeight", camera.imageHeight},
            {"FocalLength", camera.focalLength},
            {"Landscape", true},
            {"FixedOrientation", false},
            {"MinTriggerInterval", camera.shortestInterval},
            {"ValueSetIsDistance", true},
            {"DistanceToSurface", aboveHome},
            {"DistanceMode", relativeDistanceMode},
            {"ImageDensity", 100.0 * route.figures.sample}, // cm a pixel
            {"FrontalOverlap", 100.0 * request.forwardOverlap},
            {"SideOverlap", 100.0 * request.sideOverlap},
            {"AdjustedFootprintSide", route.figures.spacing},
            {"AdjustedFootprintFrontal", route.figures.photoDistance}};
}

/// The corner of the area that the survey begins at: 0 north-west, 1 north-east, 2 south-west, 3 south-east.
int EntryCorner(const std::vector<AxMissionItem>& items, std::size_t begin, std::size_t end)
{
    double south = 90.0;
    double north = -90.0;
    double west = 360.0;
    double east = -360.0;
    // Counted from the first place, so that the antimeridian is nowhere between.
    const auto eastOfFirst = [&](const AxMissionItem& item) {
        return std::remainder(item.longitude - items[begin].longitude, 360.0);
    };
    for (std::size_t i = begin; i < end; ++i) {
        if (items[i].command != AxMissionItem::Waypoint)
            continue;
        south = std::min(south, items[i].latitude);
        north = std::max(north, items[i].latitude);
        west = std::min(west, eastOfFirst(items[i]));
        east = std::max(east, eastOfFirst(items[i]));
    }
    const int isSouth = items[begin].latitude < 0.5 * (south + north) ? 1 : 0;
    const int isEast = 0.0 > 0.5 * (west + east) ? 1 : 0;
    return 2 * isSouth + isEast;
}

QJsonObject SurveyOf(const AxMission& mission, const AxPlanResult& route, const AxPlanRequest& request)
{
    QJsonArray path;
    for (std::size_t i = mission.surveyBegin; i < mission.surveyEnd; ++i)
        if (mission.items[i].command == AxMissionItem::Waypoint)
            path += PlaceOf({mission.items[i].longitude, mission.items[i].latitude});
    const QJsonObject transects = {
        {"version", 2},
        {"TurnAroundDistance", request.aircraft.leadIn},
        {"CameraTriggerInTurnAround", false},
        {"HoverAndCapture", false},
        {"Refly90Degrees", request.isCrossed},
        {"CameraShots", static_cast<int>(route.photos.size())},
        {"CameraCalc", CameraOf(mission, route, request)},
        {"VisualTransectPoints", path},
        {"Items", SimpleItems(mission, mission.surveyBegin, mission.surveyEnd)},
    };
    QJsonArray polygon;
    for (const QPointF& corner : request.outline)
        polygon += PlaceOf(corner);
    return {{"type", "ComplexItem"},
            {"complexItemType", "survey"},
            {"version", 5},
            {"angle", std::fmod(route.heading, 180.0)},
            {"entryLocation", EntryCorner(mission.items, mission.surveyBegin, mission.surveyEnd)},
            {"flyAlternateTransects", false},
            {"splitConcavePolygons", false},
            {"polygon", polygon},
            {"TransectStyleComplexItem", transects}};
}

void NoteWhatIsLost(const AxMission& mission, QStringList& notes)
{
    notes += mission.leftOut;
    if (mission.home.IsOpen())
        notes << AxExchangeText(QT_TRANSLATE_NOOP(
            "AxExchange", "Home is left open; in the file the first waypoint stands for it."));
    if (!mission.name.isEmpty())
        notes << AxExchangeText(
                     QT_TRANSLATE_NOOP("AxExchange", "The format has no place for the name \"%1\"."))
                     .arg(mission.name);
}
} // namespace

AxExported AxWriteQgcPlan(const AxMission& mission)
{
    AxExported file;
    file.fault = AxMissionFault(mission);
    if (!file.fault.isEmpty())
        return file;
    file.data = PlanWith(mission, SimpleItems(mission, 0, mission.items.size()));
    NoteWhatIsLost(mission, file.notes);
    return file;
}

AxExported AxWriteQgcSurvey(const AxMission& mission, const AxPlanResult& route, const AxPlanRequest& request)
{
    AxExported file;
    file.fault = AxMissionFault(mission);
    const bool isArea = request.kind == AxPlanRequest::Kind::Area && request.outline.size() >= 3;
    const bool isMarked =
        mission.surveyBegin < mission.surveyEnd && mission.surveyEnd <= mission.items.size();
    if (file.fault.isEmpty() && !(isArea && isMarked))
        file.fault = AxExchangeText(QT_TRANSLATE_NOOP(
            "AxExchange", "Only the survey of an area can be a survey item. Write plain mission items."));
    if (!file.fault.isEmpty())
        return file;
    QJsonArray items = SimpleItems(mission, 0, mission.surveyBegin);
    items += SurveyOf(mission, route, request);
    const QJsonArray after = SimpleItems(mission, mission.surveyEnd, mission.items.size());
    for (const QJsonValue& item : after)
        items += item;
    file.data = PlanWith(mission, items);
    NoteWhatIsLost(mission, file.notes);
    file.notes << AxExchangeText(QT_TRANSLATE_NOOP(
        "AxExchange", "QGroundControl flies the route as written until the survey is edited there; then it "
                      "computes its own, with one height and its own turns."));
    if (!request.holes.isEmpty())
        file.notes << AxExchangeText(
            QT_TRANSLATE_NOOP("AxExchange", "The holes of the area are not in the survey item."));
    if (request.isThreeDirections)
        file.notes << AxExchangeText(QT_TRANSLATE_NOOP(
            "AxExchange", "The survey item states only the first of the three directions."));
    if (!request.camera.name.isEmpty())
        file.notes << AxExchangeText(QT_TRANSLATE_NOOP("AxExchange",
                                                       "The camera \"%1\" is written by its measures, as a "
                                                       "custom camera."))
                          .arg(request.camera.name);
    return file;
}
