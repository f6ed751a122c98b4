#pragma once

#include <AxData/AxDataExport.h>

#include <vector>

/// A place along a route and the least height that is wanted there.
struct AXDATA_EXPORT AxWantedHeight
{
    double along = 0.0;  ///< metres flown from the start, growing
    double height = 0.0; ///< metres
    bool isKept = false; ///< a point of the route itself, which stays whatever lies around it
};

/// The lowest heights that are nowhere below what is wanted and climb and fall no steeper than the limits
/// (rise over run, more than 0).
AXDATA_EXPORT std::vector<double> AxFlyableHeights(const std::vector<AxWantedHeight>& wanted, double climb,
                                                   double descent);

/// Numbers of the places that suffice: straight lines between them, raised by tolerance metres, are nowhere
/// below the heights and nowhere more than twice the tolerance above them. First, last and kept ones are
/// among them.
AXDATA_EXPORT std::vector<std::size_t> AxNeededHeights(const std::vector<AxWantedHeight>& places,
                                                       const std::vector<double>& heights, double tolerance);
