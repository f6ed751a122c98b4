// A route as JSON: {"mission": {...}, "points": [[longitude, latitude, altitude, role, pass], ...]}, where
// null stands for NaN.
#include <AxData/exchange/AxMissionTask.h>
#include <AxData/project/AxProjectFields.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cmath>
#include <limits>

namespace {
constexpr double leftOpen = std::numeric_limits<double>::quiet_NaN();
constexpr int mostPoints = 1000000;
constexpr int itemNumbers = 10; // command, frame, four parameters, place, altitude, whether it goes on
constexpr int pointNumbers = 5;

QJsonValue Number(double value)
{
    return std::isfinite(value) ? QJsonValue(value) : QJsonValue();
}

double OrOpen(const QJsonValue& value)
{
    return value.toDouble(leftOpen);
}

int Whole(const QJsonValue& value)
{
    return value.toInt(-1);
}

QJsonArray ArrayOf(const AxMissionItem& item)
{
    QJsonArray array{item.command, item.frame};
    for (const double parameter : item.params)
        array += Number(parameter);
    for (const double part : {item.latitude, item.longitude, item.altitude})
        array += Number(part);
    array += item.isContinued;
    return array;
}

AxMissionItem ItemOf(const QJsonArray& array)
{
    AxMissionItem item;
    int next = 0;
    item.command = Whole(array[next++]);
    item.frame = Whole(array[next++]);
    for (double& parameter : item.params)
        parameter = OrOpen(array[next++]);
    for (double* part : {&item.latitude, &item.longitude, &item.altitude})
        *part = OrOpen(array[next++]);
    item.isContinued = array[next].toBool();
    return item;
}

bool ReadMission(const QJsonObject& object, AxMission& mission)
{
    mission.name = object["name"].toString();
    const QJsonArray home = object["home"].toArray();
    mission.home = {OrOpen(home.at(0)), OrOpen(home.at(1)), OrOpen(home.at(2))};
    mission.isFixedWing = object["fixedWing"].toBool();
    mission.speed = object["speed"].toDouble();
    for (const QJsonValue note : object["leftOut"].toArray())
        mission.leftOut += note.toString();
    for (const QJsonValue item : object["items"].toArray()) {
        if (item.toArray().size() != itemNumbers)
            return false;
        mission.items.push_back(ItemOf(item.toArray()));
    }
    const QJsonArray survey = object["survey"].toArray();
    const int begin = Whole(survey.at(0));
    const int end = Whole(survey.at(1));
    if (begin < 0 || end < begin || static_cast<std::size_t>(end) > mission.items.size())
        return false;
    mission.surveyBegin = static_cast<std::size_t>(begin);
    mission.surveyEnd = static_cast<std::size_t>(end);
    return true;
}

bool ReadPoints(const QJsonArray& array, std::vector<AxPlanPoint>& points)
{
    for (const QJsonValue value : array) {
        const QJsonArray numbers = value.toArray();
        const int role = Whole(numbers.at(3));
        AxPlanPoint point;
        point.longitude = OrOpen(numbers.at(0));
        point.latitude = OrOpen(numbers.at(1));
        point.altitude = OrOpen(numbers.at(2));
        point.pass = Whole(numbers.at(4));
        if (numbers.size() != pointNumbers || !AxIsOnGlobe(point.latitude, point.longitude) || role < 0 ||
            role > static_cast<int>(AxPlanPoint::Role::HomeLeg))
            return false;
        point.role = static_cast<AxPlanPoint::Role>(role);
        points.push_back(point);
    }
    return true;
}
} // namespace

QByteArray AxKeptRouteText(const AxKeptRoute& route)
{
    const AxMission& mission = route.mission;
    QJsonArray items;
    for (const AxMissionItem& item : mission.items)
        items += ArrayOf(item);
    QJsonArray points;
    for (const AxPlanPoint& point : route.points)
        points += QJsonArray{point.longitude, point.latitude, Number(point.altitude),
                             static_cast<int>(point.role), point.pass};
    const QJsonArray home{Number(mission.home.latitude), Number(mission.home.longitude),
                          Number(mission.home.altitude)};
    const QJsonObject told{{QStringLiteral("name"), mission.name},
                           {QStringLiteral("home"), home},
                           {QStringLiteral("fixedWing"), mission.isFixedWing},
                           {QStringLiteral("speed"), mission.speed},
                           {QStringLiteral("items"), items},
                           {QStringLiteral("survey"), QJsonArray{static_cast<int>(mission.surveyBegin),
                                                                 static_cast<int>(mission.surveyEnd)}},
                           {QStringLiteral("leftOut"), QJsonArray::fromStringList(mission.leftOut)}};
    return QJsonDocument(QJsonObject{{QStringLiteral("mission"), told}, {QStringLiteral("points"), points}})
        .toJson(QJsonDocument::Compact);
}

std::shared_ptr<const AxKeptRoute> AxKeptRouteOf(const QByteArray& text, QString& reason)
{
    const QJsonObject object = QJsonDocument::fromJson(text).object();
    const QJsonArray points = object["points"].toArray();
    AxKeptRoute route;
    if (points.size() > mostPoints || !ReadMission(object["mission"].toObject(), route.mission) ||
        !ReadPoints(points, route.points)) {
        reason = AxProjectText::tr("it is no route");
        return nullptr;
    }
    // Whether it can be flown is asked where it is exported or sent to an aircraft.
    return std::make_shared<const AxKeptRoute>(std::move(route));
}
