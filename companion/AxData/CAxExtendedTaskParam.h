#pragma once

#include <AxAlgorthm/AxMissionTypes.h>
#include <AxData/AxDataExport.h>

/// The part of the planning parameters that concerns how a block's tasks are flown; owned by CAxTaskPara.
class AXDATA_EXPORT CAxExtendedTaskParam
{
public:
    /// The flying mode that has three sub-routes, one for each direction.
    static constexpr int ThreeDirections = 2;
    /// The one that flies a second set of passes across the first.
    static constexpr int CrossGrid = 1;

    /// The host's number of the flying mode; 0 at first.
    int GetFlyingMode() const { return m_flyingMode; }
    void SetFlyingMode(int mode) { m_flyingMode = mode; }

    /// What the tasks are flown for.
    ETaskType GetTaskType() const { return m_taskType; }
    void SetTaskType(ETaskType type) { m_taskType = type; }

    /// Which of the three sub-routes new tasks of the block show at first: 0, 1 or 2.
    int direction = 0;

private:
    int m_flyingMode = 0;
    ETaskType m_taskType = TaskOrthophoto;
};
