#include "AxVehicleKinds.h"

#include <algorithm>
#include <iterator>

namespace {
struct VehicleKind
{
    int mavType;
    AxVehicleFlight flight;
    EPlaneType shown;
};

constexpr VehicleKind vehicleKinds[] = {
    {0, AxVehicleFlight::Other, PlaneQuadcopter},   // generic
    {1, AxVehicleFlight::Plane, PlaneFixedWing},    //
    {2, AxVehicleFlight::Copter, PlaneQuadcopter},  //
    {3, AxVehicleFlight::Copter, PlaneQuadcopter},  // coaxial helicopter
    {4, AxVehicleFlight::Copter, PlaneQuadcopter},  // helicopter
    {5, AxVehicleFlight::None, PlaneQuadcopter},    // antenna tracker
    {6, AxVehicleFlight::None, PlaneQuadcopter},    // ground station
    {13, AxVehicleFlight::Copter, PlaneHexacopter}, //
    {14, AxVehicleFlight::Copter, PlaneOctocopter}, //
    {15, AxVehicleFlight::Copter, PlaneQuadcopter}, // three rotors
    {16, AxVehicleFlight::Plane, PlaneFixedWing},   // flapping wing
    {18, AxVehicleFlight::None, PlaneQuadcopter},   // onboard computer
    {19, AxVehicleFlight::Plane, PlaneTailSitter},  // two rotors
    {20, AxVehicleFlight::Plane, PlaneTailSitter},  // four rotors
    {21, AxVehicleFlight::Plane, PlaneQuadPlane},   // tilting rotors
    {22, AxVehicleFlight::Plane, PlaneQuadPlane},   // rotors for hovering alone
    {23, AxVehicleFlight::Plane, PlaneTailSitter},  //
    {24, AxVehicleFlight::Plane, PlaneQuadPlane},   // tilting wing
    {25, AxVehicleFlight::Plane, PlaneQuadPlane},   // another that hovers
    {26, AxVehicleFlight::None, PlaneQuadcopter},   // gimbal
    {27, AxVehicleFlight::None, PlaneQuadcopter},   // traffic beacon
    {28, AxVehicleFlight::Plane, PlaneFixedWing},   // steered parachute
    {29, AxVehicleFlight::Copter, PlaneOctocopter}, // twelve rotors
    {30, AxVehicleFlight::None, PlaneQuadcopter},   // camera
    {31, AxVehicleFlight::None, PlaneQuadcopter},   // charging station
    {32, AxVehicleFlight::None, PlaneQuadcopter},   // collision beacon
    {33, AxVehicleFlight::None, PlaneQuadcopter},   // servo
    {34, AxVehicleFlight::None, PlaneQuadcopter},   // identification beacon
    {35, AxVehicleFlight::Copter, PlaneOctocopter}, // ten rotors
    {36, AxVehicleFlight::None, PlaneQuadcopter},   // battery
    {37, AxVehicleFlight::None, PlaneQuadcopter},   // parachute
    {38, AxVehicleFlight::None, PlaneQuadcopter},   // log
    {39, AxVehicleFlight::None, PlaneQuadcopter},   // on-screen display
    {40, AxVehicleFlight::None, PlaneQuadcopter},   // inertial sensors
    {41, AxVehicleFlight::None, PlaneQuadcopter},   // satellite receiver
    {42, AxVehicleFlight::None, PlaneQuadcopter},   // winch
};

const VehicleKind& KindOf(int mavType)
{
    const auto* const found = std::find_if(std::begin(vehicleKinds), std::end(vehicleKinds),
                                           [&](const VehicleKind& kind) { return kind.mavType == mavType; });
    return found != std::end(vehicleKinds) ? *found : vehicleKinds[0];
}
} // namespace

AxVehicleFlight AxFlightOf(int mavType)
{
    return KindOf(mavType).flight;
}

EPlaneType AxPlaneTypeOf(int mavType)
{
    return KindOf(mavType).shown;
}
