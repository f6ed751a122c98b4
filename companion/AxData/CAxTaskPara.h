#pragma once

#include <AxAlgorthm/AxMissionTypes.h>
#include <AxAlgorthm/CAxAirLineParam.h>
#include <AxData/AxDataExport.h>
#include <AxData/CAxExtendedTaskParam.h>

#include <functional>

/// The planning parameters of a block. Owned by its CAxBlock, as are the records it hands out; none of the
/// pointers is ever null. GUI thread only.
class AXDATA_EXPORT CAxTaskPara
{
public:
    /// The aircraft that flies the block.
    EPlaneType GetPlaneType() const { return m_planeType; }
    void SetPlaneType(EPlaneType type) { m_planeType = type; }

    /// The camera that it carries.
    ECameraType GetCameraType() const { return m_cameraType; }
    void SetCameraType(ECameraType type) { m_cameraType = type; }

    /// How many parallel route lines the operator wants; 0 leaves it to the planner.
    int GetExpectedRouteCount() const { return m_expectedRouteCount; }
    void SetExpectedRouteCount(int count) { m_expectedRouteCount = count; }

    /// Whether the flying height changes along the route.
    bool IsChangeHighFlying() const { return m_changeHighFlying; }
    void SetChangeHighFlying(bool change) { m_changeHighFlying = change; }

    /// Whether the ways from and to home go round no-fly zones; they are straight at first. A route in three
    /// directions has no room for such ways: it goes straight, and warns of the zones that it meets.
    bool IsHomeLegRoundZones() const { return m_homeLegRoundZones; }
    void SetHomeLegRoundZones(bool round) { m_homeLegRoundZones = round; }

    /// No photos over no-fly zones: whether the parts of the area that lie in zones are holes of it; they are
    /// not at first. Passes go on without photos over holes that are not worth a turn, and ways between
    /// passes may cross them: the route warns of each zone that it meets all the same.
    bool AreZonesHoles() const { return m_zonesAsHoles; }
    void SetZonesAsHoles(bool holes) { m_zonesAsHoles = holes; }

    /// The widths of a strip block in metres to the left and to the right of its centre line. A change of
    /// those of a registered block is told by CAxBlockManager::blockChanged.
    void GetBandingOffset(double& left, double& right) const;
    void SetBandingOffset(double left, double right);

    /// Whether a task's route is three routes of equally many points, one behind the other.
    bool HasThreeDirections() const;

    /// The two records of further parameters.
    CAxAirLineParam* GetAirLineParam() { return &m_airLine; }
    CAxExtendedTaskParam* GetExtendedTaskParam() { return &m_extended; }
    const CAxAirLineParam* GetAirLineParam() const { return &m_airLine; }
    const CAxExtendedTaskParam* GetExtendedTaskParam() const { return &m_extended; }

private:
    friend class CAxBlock;

    // Of the block whose parameters these are. Copies of them are not the block's.
    struct Listener
    {
        Listener() = default;
        Listener(const Listener&) {}
        Listener& operator=(const Listener&) { return *this; }
        std::function<void()> call;
    };
    Listener m_widthsChanged;
    EPlaneType m_planeType = PlaneFixedWing;
    ECameraType m_cameraType = CameraFullFrame;
    int m_expectedRouteCount = 0;
    bool m_changeHighFlying = false;
    bool m_homeLegRoundZones = false;
    bool m_zonesAsHoles = false;
    double m_bandingLeft = 3.0;
    double m_bandingRight = 3.0;
    CAxAirLineParam m_airLine;
    CAxExtendedTaskParam m_extended;
};
