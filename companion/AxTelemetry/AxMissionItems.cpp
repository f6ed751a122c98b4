#include "AxMissionItems.h"

#include <AxTelemetry/mavlink/AxMavMessages.h>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>

namespace {
constexpr double openValue = std::numeric_limits<double>::quiet_NaN();

/// Units of a message's whole numbers: in a degree, in a metre of local frames, and plain without a place.
double ScaleOf(int frame)
{
    constexpr int globalFrames[] = {0, 3, 5, 6, 10, 11};
    if (std::find(std::begin(globalFrames), std::end(globalFrames), frame) != std::end(globalFrames))
        return 1e7;
    return frame == AxMissionItem::Mission ? 1.0 : 1e4;
}

/// Frames that differed in how their numbers travel only.
int PlainFrame(int frame)
{
    switch (frame) {
    case 5:
        return 0;
    case 6:
        return 3;
    case 11:
        return 10;
    default:
        return frame;
    }
}

qint32 WholeOf(double value, double scale, int openPlace)
{
    if (std::isnan(value))
        return openPlace;
    constexpr double most = axMavOpenPlace - 1.0;
    return static_cast<qint32>(std::lround(std::clamp(value * scale, -most, most)));
}

double OfWhole(qint32 value, double scale)
{
    return value == axMavOpenPlace ? openValue : value / scale;
}

template <class Message> void FillCommon(const AxMissionItem& item, Message& message)
{
    message.frame = static_cast<quint8>(item.frame);
    message.command = static_cast<quint16>(item.command);
    message.autocontinue = item.isContinued ? 1 : 0;
    message.param1 = static_cast<float>(item.params[0]);
    message.param2 = static_cast<float>(item.params[1]);
    message.param3 = static_cast<float>(item.params[2]);
    message.param4 = static_cast<float>(item.params[3]);
    message.z = static_cast<float>(item.altitude);
}

template <class Message> AxMissionItem CommonOf(const Message& message)
{
    AxMissionItem item;
    item.frame = PlainFrame(message.frame);
    item.command = message.command;
    item.isContinued = message.autocontinue != 0;
    item.params = {message.param1, message.param2, message.param3, message.param4};
    item.altitude = message.z;
    return item;
}

void MoveJumps(std::vector<AxMissionItem>& items, double by)
{
    for (AxMissionItem& item : items)
        if (item.command == AxMissionItem::Jump)
            item.params[0] += by;
}

double ZeroIfOpen(double value)
{
    return std::isnan(value) ? 0.0 : value;
}
} // namespace

std::vector<AxMissionItem> AxItemsForAircraft(const AxMission& mission, bool hasHome)
{
    std::vector<AxMissionItem> items = mission.items;
    if (!hasHome) {
        MoveJumps(items, -1.0);
        return items;
    }
    AxMissionItem home;
    home.frame = AxMissionItem::Global;
    home.latitude = ZeroIfOpen(mission.home.latitude);
    home.longitude = ZeroIfOpen(mission.home.longitude);
    home.altitude = ZeroIfOpen(mission.home.altitude);
    items.insert(items.begin(), home);
    return items;
}

AxMission AxMissionOfAircraft(const std::vector<AxMissionItem>& items, bool hasHome)
{
    AxMission mission;
    mission.home = {openValue, openValue, openValue};
    mission.items = items;
    if (!hasHome)
        MoveJumps(mission.items, 1.0);
    if (hasHome && !items.empty()) {
        mission.home = AxHomeOfFile({items[0].latitude, items[0].longitude, items[0].altitude});
        mission.items.erase(mission.items.begin());
    }
    return mission;
}

AxMavMissionItemInt AxMessageOf(const AxMissionItem& item, int openPlace)
{
    AxMavMissionItemInt message;
    FillCommon(item, message);
    const double scale = ScaleOf(item.frame);
    message.x = WholeOf(item.latitude, scale, openPlace);
    message.y = WholeOf(item.longitude, scale, openPlace);
    return message;
}

AxMavMissionItem AxFloatMessageOf(const AxMissionItem& item)
{
    AxMavMissionItem message;
    FillCommon(item, message);
    message.x = static_cast<float>(item.latitude);
    message.y = static_cast<float>(item.longitude);
    return message;
}

AxMissionItem AxItemOf(const AxMavMissionItemInt& message)
{
    AxMissionItem item = CommonOf(message);
    const double scale = ScaleOf(message.frame);
    item.latitude = OfWhole(message.x, scale);
    item.longitude = OfWhole(message.y, scale);
    return item;
}

AxMissionItem AxItemOf(const AxMavMissionItem& message)
{
    AxMissionItem item = CommonOf(message);
    item.latitude = message.x;
    item.longitude = message.y;
    return item;
}
