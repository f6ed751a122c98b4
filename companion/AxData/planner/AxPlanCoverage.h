#pragma once

#include <AxData/AxDataExport.h>
#include <AxData/planner/AxPlanPlane.h>
#include <AxData/planner/AxPlanRequest.h>
#include <AxData/planner/AxPlanResult.h>

#include <QPointF>

#include <atomic>
#include <cstdint>
#include <optional>
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

/// The ring that photos are counted in, in a plane around the outline: an area's own, a circle, or that of
/// the band beside a strip's line. Empty for bands that enclose a gap.
AXDATA_EXPORT AxPlanLine AxCoverageRing(const AxPlanRequest& request, const AxPlanPlane& plane);

/// Of the route over such a ring, as seen by the camera's lenses, round a circle by one that looks at its
/// middle; cells of so many metres, or larger ones where that would be more than 25 million. Ground below
/// the camera counts as shown wherever it is in the picture, even behind a hill. Empty where there is no
/// ring, no route, or when isOff turns true meanwhile. Takes seconds: any thread, as far as the request's
/// ground may be asked there.
AXDATA_EXPORT AxPlanCoverage AxCoverageOf(const AxPlanRequest& request, const AxPlanResult& plan, double cell,
                                          const std::atomic<bool>& isOff);

/// How much ground at least one photo shows.
struct AXDATA_EXPORT AxCoveredArea
{
    double inside = 0.0; ///< square metres of what was to be shown; holes are not part of it
    double beside = 0.0; ///< square metres of the rest
    bool isKnown = true; ///< false where heights lack inside: such ground does not count
};

/// Of a route, by about 60,000 cells; the rest as AxCoverageOf(). Nothing where there is no route, or when
/// isOff turns true meanwhile. Of a band that encloses a gap all counts as beside.
AXDATA_EXPORT std::optional<AxCoveredArea>
AxCoveredAreaOf(const AxPlanRequest& request, const AxPlanResult& plan, const std::atomic<bool>& isOff);
