#include <AxData/planner/AxPlanAircraft.h>

AxPlanAircraft AxAircraftOfType(EPlaneType type)
{
    // Speed, radius of turns, way before a pass, climb, descent, endurance.
    switch (type) {
    case PlaneFixedWing:
        return {18.0, 60.0, 80.0, 0.12, 0.10, 3600.0};
    case PlaneTailSitter:
        return {16.0, 45.0, 60.0, 0.15, 0.12, 3300.0};
    case PlaneQuadPlane:
        return {20.0, 70.0, 90.0, 0.12, 0.10, 4500.0};
    default: // those that hover
        return {10.0, 0.0, 0.0, 0.4, 0.3, 1500.0};
    }
}
