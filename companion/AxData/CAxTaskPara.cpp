#include <AxData/CAxTaskPara.h>

void CAxTaskPara::GetBandingOffset(double& left, double& right) const
{
    left = m_bandingLeft;
    right = m_bandingRight;
}

void CAxTaskPara::SetBandingOffset(double left, double right)
{
    if (left == m_bandingLeft && right == m_bandingRight)
        return;
    m_bandingLeft = left;
    m_bandingRight = right;
    if (m_widthsChanged.call)
        m_widthsChanged.call();
}

bool CAxTaskPara::HasThreeDirections() const
{
    return AxIsSpecialCamera(m_cameraType, m_planeType) && m_extended.GetTaskType() == TaskOblique &&
           m_extended.GetFlyingMode() == CAxExtendedTaskParam::ThreeDirections;
}
