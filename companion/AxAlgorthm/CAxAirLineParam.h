#pragma once

#include <AxAlgorthm/AxAlgorthmExport.h>

/// How the lines of a block are flown; a value type, owned by the block's task parameters.
class AXALGORTHM_EXPORT CAxAirLineParam
{
public:
    /// Metres above the average altitude of the block's terrain.
    double GetRelativeFlyHeight() const { return m_relativeFlyHeight; }

    /// False, and nothing changes, unless the height is finite and not negative.
    bool SetRelativeFlyHeight(double metres);

private:
    double m_relativeFlyHeight = 300.0;
};
