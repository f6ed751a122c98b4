#pragma once

#include <AxData/AxDataExport.h>
#include <AxData/planner/AxPlanPlane.h>
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
    std::vector<bool> isInside; ///< the area
    std::vector<bool> isKnown;  ///< the area where a height of the ground is known; elsewhere no photo counts
    int cells = 0;              ///< inside
    int unknown = 0;            ///< of them those of whose ground no height is known
    int leastPhotos = 0;        ///< of the cells inside of known ground; 0 where there is none
    QPointF leastPhotosAt;      ///< one of those cells: longitude, latitude
    double coarsestSample = 0.0; ///< of the cells that a photo shows; 0 where there is none
    QPointF coarsestSampleAt;    ///< that cell: longitude, latitude
    double finestSample = 0.0;   ///< as the coarsest one
};

/// The ring that photos are counted in, in a plane around the outline: an area's own, or that of the band
/// beside a strip's line. Empty for circles, around which the camera looks inwards, and for bands that
/// enclose a gap.
AXDATA_EXPORT AxPlanLine AxCoverageRing(const AxPlanRequest& request, const AxPlanPlane& plane);

/// Of the route over such a ring, as seen by a camera that looks straight down; cells of so many metres, or
/// larger ones where that would be more than 25 million. Empty where there is no ring, no route, or when
/// isOff turns true meanwhile. Takes seconds: any thread, as far as
/// the request's ground may be asked there.
AXDATA_EXPORT AxPlanCoverage AxCoverageOf(const AxPlanRequest& request, const AxPlanResult& plan, double cell,
                                          const std::atomic<bool>& isOff);
