#pragma once

#include <AxData/exchange/AxMission.h>

#include <vector>

struct AxMavMissionItem;
struct AxMavMissionItemInt;

/// A mission's items as an aircraft numbers them: home is the first one where `hasHome`, and jumps name items
/// by these numbers.
std::vector<AxMissionItem> AxItemsForAircraft(const AxMission& mission, bool hasHome);

/// The way back. The rest of the mission is as it was made.
AxMission AxMissionOfAircraft(const std::vector<AxMissionItem>& items, bool hasHome);

/// An item as a message, without number and target. Degrees become whole numbers of 1e-7 degrees, or floats
/// with a metre between neighbours. `openPlace` stands for a latitude or longitude left to the autopilot.
AxMavMissionItemInt AxMessageOf(const AxMissionItem& item, int openPlace);
AxMavMissionItem AxFloatMessageOf(const AxMissionItem& item);

AxMissionItem AxItemOf(const AxMavMissionItemInt& message);
AxMissionItem AxItemOf(const AxMavMissionItem& message);

/// For a place left open, by MAVLink.
constexpr int axMavOpenPlace = 0x7FFFFFFF;
