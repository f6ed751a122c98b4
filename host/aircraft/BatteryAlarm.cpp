#include "host/aircraft/BatteryAlarm.h"
#include "host/aircraft/AircraftText.h"

BatteryLevel BatteryLevelOf(const AxAircraftState& state)
{
    if (!state.batteryPercent || *state.batteryPercent > lowBatteryPercent)
        return BatteryLevel::Usual;
    return *state.batteryPercent > criticalBatteryPercent ? BatteryLevel::Low : BatteryLevel::Critical;
}

BatteryLevel BatteryAlarm::Take(const AxAircraftState& state)
{
    if (!IsInTheAir(state))
        told = BatteryLevel::Usual;
    const BatteryLevel level = IsInTheAir(state) ? BatteryLevelOf(state) : BatteryLevel::Usual;
    // Where the number goes to and fro nothing is told again.
    if (level <= told)
        return BatteryLevel::Usual;
    return told = level;
}
