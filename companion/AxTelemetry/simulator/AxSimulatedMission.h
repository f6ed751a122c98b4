#pragma once

#include <AxTelemetry/simulator/AxSimulatedGuide.h>

#include <AxData/exchange/AxMission.h>

#include <vector>

/// Commands of missions that the simulator knows beside those of AxMissionItem, by their protocol numbers.
namespace AxSimulatedCommand {
constexpr int CircleForever = 17;
constexpr int CircleTurns = 18;
constexpr int CircleSeconds = 19;
constexpr int ReturnHome = 20;
constexpr int Land = 21;
constexpr int TakeOff = 22;
constexpr int CircleToAltitude = 31;
constexpr int Spline = 82;
constexpr int HoverTakeOff = 84;
constexpr int HoverLand = 85;
constexpr int Delay = 93;
constexpr int LandingBegins = 189;
constexpr int CameraTilt = 205;
constexpr int Photo = 203;
constexpr int PhotoFromImage = 2000;
} // namespace AxSimulatedCommand

/// A mission while it is flown: which item comes next, with jumps. What flies nowhere is handed out in
/// passing.
class AxSimulatedMission
{
public:
    void Set(const AxMission& mission);
    const AxMission& Mission() const { return m_mission; }
    /// Begins with this item; jumps count anew.
    void Begin(int item);

    /// The next item in its order or by a jump; -1 at the end. With more jumps in a row than the mission has
    /// items it ends, and IsEndless() is true: it would never fly anywhere.
    int Next();
    bool IsEndless() const { return m_isEndless; }

    /// The place after an item where a plain way leads on to it; nothing before a jump, a landing, an end.
    int PlaceAfter(int item) const;

    /// Whether the item leads to a place.
    static bool IsWaypoint(const AxMissionItem& item);

private:
    AxMission m_mission;
    std::vector<double> m_jumped; // how often each item has jumped
    int m_next = 0;
    bool m_isEndless = false;
};
