#include <AxData/CAxExtendedTaskParam.h>
#include <AxData/planner/AxPlanCameras.h>

#include <cmath>

bool CAxExtendedTaskParam::SetWind(double speed, double from)
{
    if (!std::isfinite(speed) || speed < 0.0 || !std::isfinite(from))
        return false;
    m_windSpeed = speed;
    m_windFrom = std::fmod(from, 360.0);
    return true;
}

bool CAxExtendedTaskParam::SetEndurance(double seconds)
{
    if (!std::isfinite(seconds) || seconds < 0.0)
        return false;
    m_endurance = seconds;
    return true;
}

void CAxExtendedTaskParam::Complete(AxPlanRequest& request, ECameraType camera) const
{
    if (!m_cameraName.isEmpty())
        request.camera = AxCameraOfType(camera, m_cameraName);
    if (m_keepsOverlap && request.heights == AxPlanRequest::Heights::Terrain)
        request.heights = AxPlanRequest::Heights::KeepOverlap;
    request.windSpeed = m_windSpeed;
    request.windFrom = m_windFrom;
    if (m_endurance > 0.0)
        request.aircraft.endurance = m_endurance;
}
