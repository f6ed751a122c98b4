#include <AxData/AxReplaceFile.h>
#include <AxData/exchange/AxExchangeText.h>
#include <AxData/exchange/AxMission.h>
#include <AxData/exchange/AxRouteNotes.h>

#include <QLocale>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {
using Role = AxPlanPoint::Role;
constexpr double leftOpen = std::numeric_limits<double>::quiet_NaN();

/// A millionth of a metre on the ground, a millimetre in height: finer digits only make files long.
double RoundedDegrees(double degrees)
{
    return std::round(degrees * 1e9) / 1e9 + 0.0;
}

double RoundedMetres(double metres)
{
    return std::round(metres * 1e3) / 1e3 + 0.0;
}

AxMissionItem WithoutPlace(int command, std::array<double, 4> params)
{
    AxMissionItem item;
    item.command = command;
    item.frame = AxMissionItem::Mission;
    item.params = params;
    return item;
}

/// Commands that fly to or act at a place. With the first few a place is a must; the others do without one.
bool NeedsPlace(int command)
{
    constexpr int commands[] = {AxMissionItem::Waypoint, 17, 18, 19, 82, 4501};
    return std::find(std::begin(commands), std::end(commands), command) != std::end(commands);
}

bool MayHavePlace(int command)
{
    constexpr int commands[] = {21, 22, 31, 84, 85, 179, 195, 201, 5000, 5001, 5002, 5003, 5004, 5100};
    return NeedsPlace(command) ||
           std::find(std::begin(commands), std::end(commands), command) != std::end(commands);
}

bool HasGlobalFrame(int frame)
{
    constexpr int frames[] = {0, 3, 5, 6, 10, 11};
    return std::find(std::begin(frames), std::end(frames), frame) != std::end(frames);
}

QStringList NotesOn(const AxPlanResult& route, const AxPlanRequest& request)
{
    QStringList notes;
    notes << AxExchangeText(
                 QT_TRANSLATE_NOOP("AxExchange",
                                   "Heights are metres above the home point. Its altitude, %1 m, is "
                                   "written as the map has it; other programs take it for metres "
                                   "above the sea."))
                 .arg(QLocale().toString(request.homeAltitude, 'f', 1));
    notes << AxExchangeText(QT_TRANSLATE_NOOP(
        "AxExchange", "Take-off and landing are not in the route; add them in the ground station."));
    notes << AxExchangeText(
        QT_TRANSLATE_NOOP("AxExchange", "The no-fly zones are not in the file, neither as a fence."));
    return notes + AxNotesOfAnyFormat(route, request);
}

void AddPoint(AxMission& mission, const AxPlanPoint& point, double homeAltitude, double photoDistance)
{
    AxMissionItem item;
    item.params[3] = leftOpen; // 0 would turn a multicopter's nose to the north
    item.latitude = RoundedDegrees(point.latitude);
    item.longitude = RoundedDegrees(point.longitude);
    item.altitude = RoundedMetres(point.altitude - homeAltitude);
    mission.items.push_back(item);
    const bool isStart = point.role == Role::PassStart;
    if (photoDistance > 0.0 && (isStart || point.role == Role::PassEnd))
        mission.items.push_back(WithoutPlace(AxMissionItem::TriggerDistance,
                                             {isStart ? RoundedMetres(photoDistance) : 0.0, 0.0, 1.0, 0.0}));
}
} // namespace

AxMission AxWithHomeWays(AxMission mission, double turnRadius)
{
    constexpr double wingsTakeOff = 30.0; // metres above home before the first turn
    const auto isWaypoint = [](const AxMissionItem& item) { return item.command == AxMissionItem::Waypoint; };
    auto& items = mission.items;
    const auto first = std::find_if(items.begin(), items.end(), isWaypoint);
    if (first == items.end() || mission.home.IsOpen())
        return mission;
    AxMissionItem overHome = *first;
    overHome.params = {0.0, 0.0, 0.0, leftOpen};
    overHome.latitude = mission.home.latitude;
    overHome.longitude = mission.home.longitude;
    AxMissionItem back = overHome;
    back.altitude = std::find_if(items.rbegin(), items.rend(), isWaypoint)->altitude;
    std::vector<AxMissionItem> before;
    AxMissionItem takeOff = overHome;
    takeOff.command = AxMissionItem::TakeOff;
    if (mission.isFixedWing) {
        takeOff.params[0] = 15.0; // degrees of climb
        takeOff.altitude = std::min(wingsTakeOff, overHome.altitude);
        before.push_back(takeOff);
        overHome.command = AxMissionItem::CircleToAltitude;
        overHome.params = {0.0, RoundedMetres(turnRadius), 0.0, 1.0};
        before.push_back(overHome);
    } else {
        before.push_back(takeOff);
    }
    mission.surveyBegin += mission.surveyEnd > 0 ? before.size() : 0;
    mission.surveyEnd += mission.surveyEnd > 0 ? before.size() : 0;
    for (AxMissionItem& item : items)
        if (item.command == AxMissionItem::Jump)
            item.params[0] += static_cast<double>(before.size());
    items.insert(items.begin(), before.begin(), before.end());
    items.push_back(back);
    items.push_back(WithoutPlace(AxMissionItem::ReturnHome, {0.0, 0.0, 0.0, 0.0}));
    return mission;
}

AxMissionHome AxHomeOfFile(const AxMissionHome& stated)
{
    const bool isZero = stated.latitude == 0.0 && stated.longitude == 0.0 &&
                        (stated.altitude == 0.0 || std::isnan(stated.altitude));
    return isZero ? AxMissionHome{leftOpen, leftOpen, leftOpen} : stated;
}

bool AxIsOnGlobe(double latitude, double longitude)
{
    return std::fabs(latitude) <= 90.0 && std::fabs(longitude) <= 180.0;
}

QString AxItemFault(const AxMissionItem& item)
{
    const bool isOutOfRange = item.command < 0 || item.command > 65535 || item.frame < 0 || item.frame > 255;
    if (isOutOfRange)
        return AxExchangeText(QT_TRANSLATE_NOOP("AxExchange", "the command or the frame is out of range"));
    for (double value : {item.params[0], item.params[1], item.params[2], item.params[3], item.latitude,
                         item.longitude, item.altitude})
        if (std::isinf(value))
            return AxExchangeText(QT_TRANSLATE_NOOP("AxExchange", "a value is infinite"));
    if (!HasGlobalFrame(item.frame) || !MayHavePlace(item.command))
        return {};
    const bool isLeftOpen = std::isnan(item.latitude) && std::isnan(item.longitude);
    if (!(isLeftOpen && !NeedsPlace(item.command)) && !AxIsOnGlobe(item.latitude, item.longitude))
        return AxExchangeText(QT_TRANSLATE_NOOP("AxExchange", "the place is not on the globe"));
    if (NeedsPlace(item.command) && std::isnan(item.altitude))
        return AxExchangeText(QT_TRANSLATE_NOOP("AxExchange", "the altitude is missing"));
    return {};
}

QString AxMissionFault(const AxMission& mission)
{
    const std::size_t count = mission.items.size();
    if (count == 0)
        return AxExchangeText(QT_TRANSLATE_NOOP("AxExchange", "The mission has no items."));
    if (count + 1 > axMostMissionItems)
        return AxExchangeText(QT_TRANSLATE_NOOP("AxExchange",
                                                "The mission has %1 items; with home no more than "
                                                "%2 are possible. Split the route."))
            .arg(count + 1)
            .arg(axMostMissionItems);
    const AxMissionHome& home = mission.home;
    if (!(home.IsOpen() || AxIsOnGlobe(home.latitude, home.longitude)) || std::isinf(home.altitude))
        return AxExchangeText(QT_TRANSLATE_NOOP("AxExchange", "Home is no place on the globe."));
    for (std::size_t i = 0; i < count; ++i) {
        QString fault = AxItemFault(mission.items[i]);
        const double target = mission.items[i].params[0];
        if (mission.items[i].command == AxMissionItem::Jump &&
            !(target >= 1.0 && target <= static_cast<double>(count) && target == std::floor(target)))
            fault = AxExchangeText(QT_TRANSLATE_NOOP("AxExchange", "the item to jump to does not exist"));
        if (!fault.isEmpty())
            return AxExchangeText(QT_TRANSLATE_NOOP("AxExchange", "Item %1: %2.")).arg(i + 1).arg(fault);
    }
    return {};
}

AxMissionRead AxMissionOf(const AxPlanResult& route, const AxPlanRequest& request, const QString& name)
{
    AxMissionRead made;
    if (!route.IsPlanned()) {
        made.fault = AxExchangeText(QT_TRANSLATE_NOOP("AxExchange", "There is no route to write."));
        return made;
    }
    if (!request.home || !std::isfinite(request.homeAltitude)) {
        made.fault = AxExchangeText(QT_TRANSLATE_NOOP(
            "AxExchange", "The route has no home point, and heights count from it. Set one first."));
        return made;
    }
    AxMission mission;
    mission.name = name;
    mission.home = {RoundedDegrees(request.home->y()), RoundedDegrees(request.home->x()),
                    RoundedMetres(request.homeAltitude)};
    mission.isFixedWing = request.aircraft.turnRadius > 0.0;
    mission.speed = request.aircraft.speed;
    // The speed of a plane is that through the air (0), of a multicopter that over the ground (1).
    mission.items.push_back(WithoutPlace(AxMissionItem::ChangeSpeed,
                                         {mission.isFixedWing ? 0.0 : 1.0, mission.speed, -1.0, 0.0}));
    mission.surveyBegin = mission.items.size();
    for (const AxPlanPoint& point : route.points)
        AddPoint(mission, point, request.homeAltitude, route.figures.photoDistance);
    mission.surveyEnd = mission.items.size();
    made.fault = AxMissionFault(mission);
    if (!made.fault.isEmpty())
        return made;
    made.notes = NotesOn(route, request);
    made.mission = mission;
    return made;
}

bool AxSaveExport(const QString& path, const QByteArray& data, QString& error)
{
    return AxReplaceFile(data, path, AxReadableBy::Anyone, error);
}
