#pragma once

#include <AxAlgorthm/AxAlgorthmExport.h>

#include <optional>

/// How the lines of a block are flown; a value type, owned by the block's task parameters.
class AXALGORTHM_EXPORT CAxAirLineParam
{
public:
    /// Metres above the average altitude of the block's terrain.
    double GetRelativeFlyHeight() const { return m_relativeFlyHeight; }

    /// False, and nothing changes, unless the height is finite and not negative.
    bool SetRelativeFlyHeight(double metres);

    /// The shares of a photo that the next pass, and the next photo of the pass, show again.
    double GetSideOverlap() const { return m_sideOverlap; }
    double GetForwardOverlap() const { return m_forwardOverlap; }
    /// False, and nothing changes, unless both are at least 0 and less than 1.
    bool SetOverlap(double side, double forward);

    /// Of the passes, degrees clockwise from north; nothing leaves it to the planner.
    std::optional<double> GetHeading() const { return m_heading; }
    /// False, and nothing changes, unless the heading is finite.
    bool SetHeading(std::optional<double> degrees);

    /// Least metres above the ground anywhere on the route.
    double GetClearance() const { return m_clearance; }
    /// False, and nothing changes, unless it is finite and not negative.
    bool SetClearance(double metres);

private:
    double m_relativeFlyHeight = 300.0;
    double m_sideOverlap = 0.7;
    double m_forwardOverlap = 0.8;
    double m_clearance = 50.0;
    std::optional<double> m_heading;
};
