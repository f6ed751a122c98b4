#pragma once

#include <AxAlgorthm/AxMissionTypes.h>
#include <AxData/AxDataExport.h>

#include <QString>

struct AxPlanRequest;

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

    /// The camera by its name in the list of cameras; empty, or one that the list has of another type, leaves
    /// it to the first of the block's camera type. Without the name in the list nothing is planned.
    QString GetCameraName() const { return m_cameraName; }
    void SetCameraName(const QString& name) { m_cameraName = name; }

    /// Where heights change along the route: whether they do so pass by pass, for the overlap, and not along
    /// each pass.
    bool KeepsOverlap() const { return m_keepsOverlap; }
    void SetKeepsOverlap(bool keeps) { m_keepsOverlap = keeps; }

    /// The wind, m/s, and where it comes from, degrees clockwise from north.
    double GetWindSpeed() const { return m_windSpeed; }
    double GetWindFrom() const { return m_windFrom; }
    /// False, and nothing changes, unless both are finite and the speed is not negative.
    bool SetWind(double speed, double from);

    /// Seconds in the air that a flight may take; 0, as at first, is the usual time of the aircraft.
    double GetEndurance() const { return m_endurance; }
    /// False, and nothing changes, unless it is finite and not negative.
    bool SetEndurance(double seconds);

    /// Puts what is set here into a request that has the block's other parameters already.
    void Complete(AxPlanRequest& request, ECameraType camera) const;

    /// Which of the three sub-routes new tasks of the block show at first: 0, 1 or 2.
    int direction = 0;

private:
    int m_flyingMode = 0;
    ETaskType m_taskType = TaskOrthophoto;
    QString m_cameraName;
    bool m_keepsOverlap = false;
    double m_windSpeed = 0.0;
    double m_windFrom = 0.0;
    double m_endurance = 0.0;
};
