#pragma once

#include <AxData/exchange/AxMission.h>

/// The points that a mission flies through, to show it as a route. Altitudes that count from home are added
/// to its own; NaN where a mission leaves them to the terrain or its home's altitude open. Passes are what
/// lies between camera triggers switched on and off. Notes tell what altitudes mean or lack.
AXDATA_EXPORT std::vector<AxPlanPoint> AxPointsOf(const AxMission& mission, QStringList& notes);
