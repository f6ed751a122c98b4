#include "AxVehicleModes.h"
#include "AxVehicleKinds.h"
#include "AxVehicleText.h"

namespace {
struct ModeWord
{
    quint32 number;
    const char* word;
};

constexpr ModeWord copterModes[] = {
    {0, QT_TRANSLATE_NOOP("AxVehicle", "Stabilize")},
    {1, QT_TRANSLATE_NOOP("AxVehicle", "Acro")},
    {2, QT_TRANSLATE_NOOP("AxVehicle", "Altitude hold")},
    {3, QT_TRANSLATE_NOOP("AxVehicle", "Mission")},
    {4, QT_TRANSLATE_NOOP("AxVehicle", "Guided")},
    {5, QT_TRANSLATE_NOOP("AxVehicle", "Loiter")},
    {6, QT_TRANSLATE_NOOP("AxVehicle", "Return")},
    {7, QT_TRANSLATE_NOOP("AxVehicle", "Circle")},
    {9, QT_TRANSLATE_NOOP("AxVehicle", "Land")},
    {11, QT_TRANSLATE_NOOP("AxVehicle", "Drift")},
    {13, QT_TRANSLATE_NOOP("AxVehicle", "Sport")},
    {14, QT_TRANSLATE_NOOP("AxVehicle", "Flip")},
    {15, QT_TRANSLATE_NOOP("AxVehicle", "Autotune")},
    {16, QT_TRANSLATE_NOOP("AxVehicle", "Position hold")},
    {17, QT_TRANSLATE_NOOP("AxVehicle", "Brake")},
    {18, QT_TRANSLATE_NOOP("AxVehicle", "Throw")},
    {19, QT_TRANSLATE_NOOP("AxVehicle", "Avoiding traffic")},
    {20, QT_TRANSLATE_NOOP("AxVehicle", "Guided without position")},
    {21, QT_TRANSLATE_NOOP("AxVehicle", "Smart return")},
    {22, QT_TRANSLATE_NOOP("AxVehicle", "Flow hold")},
    {23, QT_TRANSLATE_NOOP("AxVehicle", "Follow")},
    {24, QT_TRANSLATE_NOOP("AxVehicle", "Zigzag")},
    {25, QT_TRANSLATE_NOOP("AxVehicle", "System identification")},
    {26, QT_TRANSLATE_NOOP("AxVehicle", "Autorotation")},
    {27, QT_TRANSLATE_NOOP("AxVehicle", "Return by the mission")},
    {28, QT_TRANSLATE_NOOP("AxVehicle", "Turtle")},
};

constexpr ModeWord planeModes[] = {
    {0, QT_TRANSLATE_NOOP("AxVehicle", "Manual")},
    {1, QT_TRANSLATE_NOOP("AxVehicle", "Circle")},
    {2, QT_TRANSLATE_NOOP("AxVehicle", "Stabilize")},
    {3, QT_TRANSLATE_NOOP("AxVehicle", "Training")},
    {4, QT_TRANSLATE_NOOP("AxVehicle", "Acro")},
    {5, QT_TRANSLATE_NOOP("AxVehicle", "Fly by wire A")},
    {6, QT_TRANSLATE_NOOP("AxVehicle", "Fly by wire B")},
    {7, QT_TRANSLATE_NOOP("AxVehicle", "Cruise")},
    {8, QT_TRANSLATE_NOOP("AxVehicle", "Autotune")},
    {10, QT_TRANSLATE_NOOP("AxVehicle", "Mission")},
    {11, QT_TRANSLATE_NOOP("AxVehicle", "Return")},
    {12, QT_TRANSLATE_NOOP("AxVehicle", "Loiter")},
    {13, QT_TRANSLATE_NOOP("AxVehicle", "Take-off")},
    {14, QT_TRANSLATE_NOOP("AxVehicle", "Avoiding traffic")},
    {15, QT_TRANSLATE_NOOP("AxVehicle", "Guided")},
    {16, QT_TRANSLATE_NOOP("AxVehicle", "Starting up")},
    {17, QT_TRANSLATE_NOOP("AxVehicle", "Hovering: stabilize")},
    {18, QT_TRANSLATE_NOOP("AxVehicle", "Hovering: altitude hold")},
    {19, QT_TRANSLATE_NOOP("AxVehicle", "Hovering: loiter")},
    {20, QT_TRANSLATE_NOOP("AxVehicle", "Hovering: land")},
    {21, QT_TRANSLATE_NOOP("AxVehicle", "Hovering: return")},
    {22, QT_TRANSLATE_NOOP("AxVehicle", "Hovering: autotune")},
    {23, QT_TRANSLATE_NOOP("AxVehicle", "Hovering: acro")},
    {24, QT_TRANSLATE_NOOP("AxVehicle", "Thermal")},
    {25, QT_TRANSLATE_NOOP("AxVehicle", "Loiter, then land hovering")},
    {26, QT_TRANSLATE_NOOP("AxVehicle", "Land")},
};

constexpr quint32 px4Auto = 4;

constexpr ModeWord px4Modes[] = {
    {1, QT_TRANSLATE_NOOP("AxVehicle", "Manual")},
    {2, QT_TRANSLATE_NOOP("AxVehicle", "Altitude hold")},
    {3, QT_TRANSLATE_NOOP("AxVehicle", "Position hold")},
    {px4Auto, QT_TRANSLATE_NOOP("AxVehicle", "Automatic")},
    {5, QT_TRANSLATE_NOOP("AxVehicle", "Acro")},
    {6, QT_TRANSLATE_NOOP("AxVehicle", "Offboard")},
    {7, QT_TRANSLATE_NOOP("AxVehicle", "Stabilize")},
    {8, QT_TRANSLATE_NOOP("AxVehicle", "Rattitude")},
};

constexpr ModeWord px4AutoModes[] = {
    {1, QT_TRANSLATE_NOOP("AxVehicle", "Ready")},  {2, QT_TRANSLATE_NOOP("AxVehicle", "Take-off")},
    {3, QT_TRANSLATE_NOOP("AxVehicle", "Loiter")}, {4, QT_TRANSLATE_NOOP("AxVehicle", "Mission")},
    {5, QT_TRANSLATE_NOOP("AxVehicle", "Return")}, {6, QT_TRANSLATE_NOOP("AxVehicle", "Land")},
    {8, QT_TRANSLATE_NOOP("AxVehicle", "Follow")}, {9, QT_TRANSLATE_NOOP("AxVehicle", "Precision landing")},
};

// From the bit that says most to the one that says least.
constexpr ModeWord baseModes[] = {
    {4, QT_TRANSLATE_NOOP("AxVehicle", "Automatic")},
    {8, QT_TRANSLATE_NOOP("AxVehicle", "Guided")},
    {16, QT_TRANSLATE_NOOP("AxVehicle", "Stabilize")},
    {64, QT_TRANSLATE_NOOP("AxVehicle", "Manual")},
};
constexpr int hasCustomMode = 1; // a bit of the base mode

template <std::size_t count> QString WordOf(const ModeWord (&modes)[count], quint32 number)
{
    for (const ModeWord& mode : modes)
        if (mode.number == number)
            return AxVehicleText(mode.word);
    return AxVehicleText(QT_TRANSLATE_NOOP("AxVehicle", "Mode %1")).arg(number);
}

QString Px4Mode(quint32 customMode)
{
    const quint32 mainMode = (customMode >> 16) & 0xFF;
    const quint32 subMode = (customMode >> 24) & 0xFF;
    return mainMode == px4Auto && subMode != 0 ? WordOf(px4AutoModes, subMode) : WordOf(px4Modes, mainMode);
}
} // namespace

QString AxModeName(int autopilot, int mavType, int baseMode, quint32 customMode)
{
    const AxVehicleFlight flight = AxFlightOf(mavType);
    if (autopilot == axMavArduPilot && flight == AxVehicleFlight::Copter)
        return WordOf(copterModes, customMode);
    if (autopilot == axMavArduPilot && flight == AxVehicleFlight::Plane)
        return WordOf(planeModes, customMode);
    if (autopilot == axMavPx4 && (baseMode & hasCustomMode) != 0)
        return Px4Mode(customMode);
    for (const ModeWord& mode : baseModes)
        if ((static_cast<quint32>(baseMode) & mode.number) != 0)
            return AxVehicleText(mode.word);
    return {};
}
