#include <AxAlgorthm/CAxAirLineParam.h>

#include <cmath>

bool CAxAirLineParam::SetRelativeFlyHeight(double metres)
{
    if (!std::isfinite(metres) || metres < 0.0)
        return false;
    m_relativeFlyHeight = metres;
    return true;
}

bool CAxAirLineParam::SetOverlap(double side, double forward)
{
    if (!(side >= 0.0 && side < 1.0 && forward >= 0.0 && forward < 1.0))
        return false;
    m_sideOverlap = side;
    m_forwardOverlap = forward;
    return true;
}

bool CAxAirLineParam::SetHeading(std::optional<double> degrees)
{
    if (degrees && !std::isfinite(*degrees))
        return false;
    m_heading = degrees ? std::make_optional(std::fmod(*degrees, 360.0)) : std::nullopt;
    return true;
}

bool CAxAirLineParam::SetClearance(double metres)
{
    if (!std::isfinite(metres) || metres < 0.0)
        return false;
    m_clearance = metres;
    return true;
}
