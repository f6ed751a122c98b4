#pragma once
#include "host/tasks/ShownPlan.h"
#include "host/tasks/TaskFiles.h"

#include <AxData/exchange/AxMission.h>

#include <AxTelemetry/simulator/AxSimulatedAircraft.h>

class CAxEarthViewer;

/// The mission that flies the route of a task: as it was read where it comes from a file. GUI thread.
AxMissionRead MissionOfPlan(const ShownPlan& shown);

/// Task and block of the route, for people. GUI thread.
QString RouteName(const ShownPlan& shown);

/// Whether the route was read from a file or an aircraft. GUI thread.
bool IsReadRoute(const ShownPlan& shown);

/// What the simulator flies that route with, over the ground of the map while there is one. GUI thread, also
/// to step it.
AxSimulatedAircraft SimulatedAircraftOfPlan(CAxEarthViewer& viewer, const ShownPlan& shown);

/// Height of the ground at (longitude, latitude) in degrees, metres above the ellipsoid, by the finest data
/// that the map has; nothing where there are none. GUI thread.
std::optional<double> GroundAboveEllipsoid(const CAxEarthViewer& viewer, double longitude, double latitude);

/// Shows a mission as the route of a new task, below the block given or a new one, as the import of a file
/// does. False where it cannot be shown. GUI thread.
bool AddRoute(CAxEarthViewer& viewer, const QString& blockID, TaskFiles::Read route);
