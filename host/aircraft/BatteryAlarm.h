#pragma once
#include <AxTelemetry/AxAircraftState.h>

/// Percent of the charge, of the emptiest battery, from which on it is low and critical.
constexpr int lowBatteryPercent = 25;
constexpr int criticalBatteryPercent = 15;

enum class BatteryLevel
{
    Usual, ///< or not known
    Low,
    Critical
};

BatteryLevel BatteryLevelOf(const AxAircraftState& state);

/// Tells once in a flight that a battery is low, and once that it is critical. A value of one aircraft.
class BatteryAlarm
{
public:
    /// The level that is to be told now; Usual for nothing.
    BatteryLevel Take(const AxAircraftState& state);

private:
    BatteryLevel told = BatteryLevel::Usual;
};
