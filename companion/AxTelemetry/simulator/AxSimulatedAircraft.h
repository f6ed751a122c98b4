#pragma once

#include <AxTelemetry/AxAircraftState.h>

#include <AxData/planner/AxPlanRequest.h>

#include <functional>
#include <optional>

/// The wind everywhere.
struct AXTELEMETRY_EXPORT AxSimulatedWind
{
    double speed = 0.0; ///< m/s, 0 or more
    double from = 0.0;  ///< degrees clockwise from north, from where it blows
};

/// What the simulator is to fly with. A value; what is no number or cannot be is replaced by its default.
struct AXTELEMETRY_EXPORT AxSimulatedAircraft
{
    EPlaneType type = PlaneQuadcopter; ///< copters stop and turn, planes fly turns
    double speed = 12.0;               ///< m/s: of planes through the air, of copters over the ground
    double turnRadius = 60.0;          ///< metres through the air, of planes: no turn is tighter
    double climb = 4.0;                ///< m/s
    double descent = 3.0;              ///< m/s
    double takeOffHeight = 30.0;       ///< metres above home, where the mission has no take-off of its own
    double returnHeight = 60.0;        ///< metres above home: no lower on the way home
    double acceptance = 0.0; ///< metres from a waypoint that count as there; 0: 20 for planes, 2 for copters
    double endurance = 2400.0;   ///< seconds of level flight on a full battery
    double returnBattery = 20.0; ///< percent at which it flies home by itself
    double cameraPitch = -90.0;  ///< degrees; 0 level, -90 straight down
    AxSimulatedWind wind;        ///< as the flight begins; see AxSimulatedVehicle::SetWind()
    /// Where it takes off and lands; without one, the home of its first mission (above the sea), or else its
    /// first waypoint, with the ground below or the sea's level.
    std::optional<AxPlace> home;
    /// Metres above the ellipsoid of the ground at (longitude, latitude) in degrees. Empty, or no answer: as
    /// high as home; no answer where it takes off: for the whole flight. Asked on the thread that steps the
    /// vehicle, once for each metre flown.
    std::function<std::optional<double>(double longitude, double latitude)> ground;

    /// Whether it can stand in the air: all but planes without hover motors.
    bool CanHover() const { return type != PlaneFixedWing; }
    /// Whether it flies on wings between take-off and landing.
    bool HasWings() const
    {
        return type == PlaneFixedWing || type == PlaneTailSitter || type == PlaneQuadPlane;
    }
};

/// The aircraft that a route was planned for. It can turn twice as tight as planned, as it must in wind to
/// stay on the turns.
AXTELEMETRY_EXPORT AxSimulatedAircraft AxSimulatedAircraftOf(EPlaneType type, const AxPlanAircraft& planned);
