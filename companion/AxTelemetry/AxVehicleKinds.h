#pragma once

#include <AxAlgorthm/AxMissionTypes.h>

/// The numbers of MAV_AUTOPILOT and MAV_TYPE that make a difference here.
constexpr int axMavArduPilot = 3;
constexpr int axMavNoAutopilot = 8;
constexpr int axMavPx4 = 12;
constexpr int axMavGroundStation = 6;

/// Without a word for so long, milliseconds, an aircraft has lost its link.
constexpr long long axMavSilentMs = 3000;

/// Who this station is: its system, and MAV_COMP_ID_MISSIONPLANNER, what ground stations are.
constexpr int axMavStationSystem = 255;
constexpr int axMavStationComponent = 190;

/// How a MAV_TYPE flies, which decides what its mode numbers mean.
enum class AxVehicleFlight
{
    Other, ///< does not fly, or nobody knows how
    Copter,
    Plane, ///< with or without the means to hover
    None   ///< no vehicle: a ground station, a camera, a beacon
};

AxVehicleFlight AxFlightOf(int mavType);

/// The aircraft that a MAV_TYPE is shown as.
EPlaneType AxPlaneTypeOf(int mavType);
