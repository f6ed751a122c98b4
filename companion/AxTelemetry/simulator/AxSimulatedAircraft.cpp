#include <AxTelemetry/simulator/AxSimulatedAircraft.h>

#include <algorithm>

AxSimulatedAircraft AxSimulatedAircraftOf(EPlaneType type, const AxPlanAircraft& planned)
{
    AxSimulatedAircraft aircraft;
    aircraft.type = type;
    aircraft.speed = planned.speed;
    if (planned.turnRadius > 0.0)
        aircraft.turnRadius = 0.5 * planned.turnRadius;
    aircraft.climb = std::max(1.0, planned.climb * planned.speed);
    aircraft.descent = std::max(1.0, planned.descent * planned.speed);
    // What may be planned for a flight leaves a reserve.
    aircraft.endurance = 1.6 * planned.endurance;
    return aircraft;
}
