#pragma once
#include "interaction/objects/CAxHandleAdapter.h"

/// Whether the block of an object has tasks, with routes on the map or without.
inline bool AxHasTasks(const CAxHandleAdapter& object)
{
    const CAxBlock* block = object.GetContainedBlock();
    return !object.GetTaskList().isEmpty() || (block && !block->GetMissionList().isEmpty());
}
