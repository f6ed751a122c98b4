#pragma once

#include <AxData/exchange/AxMission.h>

/// A mission as a plan of QGroundControl (JSON, version 1): plain mission items. Any thread.
AXDATA_EXPORT AxExported AxWriteQgcPlan(const AxMission& mission);

/// The same with the survey as one survey item, as which QGroundControl shows and edits it: camera, overlaps
/// and area of the request, and the items to fly. Only for areas. Until it is edited there, the items are
/// flown as they are.
AXDATA_EXPORT AxExported AxWriteQgcSurvey(const AxMission& mission, const AxPlanResult& route,
                                          const AxPlanRequest& request);

/// The mission of a plan; the items of surveys and corridors stand among the others in the order flown. A
/// landing pattern is left out and noted; other compound items are a fault.
AXDATA_EXPORT AxMissionRead AxReadQgcPlan(const QByteArray& data);
