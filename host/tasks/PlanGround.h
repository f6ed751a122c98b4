#pragma once
#include <AxData/planner/AxPlanRequest.h>

namespace osgEarth {
class Map;
}

/// Heights of a map at the finest level of its files and services, with what it has read of them: a new one
/// for each piece of work. Any thread, one at a time, which waits where a file is read; it keeps the map.
AxPlanGround PlanGroundOf(const osgEarth::Map* map);
