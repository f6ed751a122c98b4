#include <AxAlgorthm/CAxAirLineParam.h>

#include <cmath>

bool CAxAirLineParam::SetRelativeFlyHeight(double metres)
{
    if (!std::isfinite(metres) || metres < 0.0)
        return false;
    m_relativeFlyHeight = metres;
    return true;
}
