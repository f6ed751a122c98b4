#pragma once

#include <AxData/AxDataExport.h>
#include <AxData/planner/AxPlanRequest.h>
#include <AxData/planner/AxPlanResult.h>

#include <QPointF>

#include <atomic>
#include <cstdint>
#include <vector>

/// What the photos of a route really show of each piece of ground, of its true height.
struct AXDATA_EXPORT AxPlanCoverage
{
    int columns = 0;   ///< from west to east
    int rows = 0;      ///< from south to north
    double cell = 0.0; ///< metres
    std::vector<QPointF>
        corners; ///< south-west, south-east, north-east, north-west of all cells: longitude, latitude
    std::vector<std::uint16_t> photos; ///< that show the cell's middle; row by row from the south-west
    std::vector<float>
        sample; ///< metres of ground a pixel in the best of them; 0 outside the area and without a photo
    std::vector<bool> isInside;  ///< the area
    int leastPhotos = 0;         ///< of the cells inside
    QPointF leastPhotosAt;       ///< one of those cells: longitude, latitude
    double coarsestSample = 0.0; ///< of the cells inside that a photo shows
    QPointF coarsestSampleAt;    ///< that cell: longitude, latitude
    int unknown = 0;             ///< cells inside of whose ground no height is known: no photo counts there
};

/// Of an area's route; cells of so many metres, or larger ones where that would be more than 25 million.
/// Empty where there is no route, or when isOff turns true meanwhile. Takes seconds: any thread, as far as
/// the request's ground may be asked there.
AXDATA_EXPORT AxPlanCoverage AxCoverageOf(const AxPlanRequest& request, const AxPlanResult& plan, double cell,
                                          const std::atomic<bool>& isOff);
