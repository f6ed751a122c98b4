#pragma once
#include "host/tasks/CoverageScale.h"
#include "host/tasks/ShownPlan.h"

#include <osg/Vec3d>

#include <QImage>
#include <QPointF>

#include <atomic>
#include <optional>
#include <vector>

/// How a measure is painted.
struct CoveragePainting
{
    CoverageScale scale;
    std::vector<double> shares; ///< of the area, 0 to 1, by the scale's step; unknown ground is in none
    QImage picture;             ///< a pixel a cell, north above; see-through outside the area
};

/// The ground below a picture, as a grid of its places from corner to corner, row by row from the south-west.
struct CoverageGround
{
    int columns = 0;
    int rows = 0;
    std::vector<osg::Vec3d> places; ///< geocentric, metres
};

/// A value and where it is: longitude, latitude.
struct CoverageWorst
{
    double value = 0.0;
    QPointF place;
};

/// What the photos of a plan show of its area, made ready for the map. A plain value.
struct CoverageReport
{
    double cell = 0.0; ///< metres
    int cells = 0;     ///< of the area; 0 where nothing can be counted
    int unknown = 0;   ///< of them those of whose ground no height is known
    /// Of known ground; nothing where there is none. The coarsest sample is that of a place that a photo
    /// shows.
    std::optional<CoverageWorst> leastPhotos;
    std::optional<CoverageWorst> coarsestSample; ///< metres of ground a pixel
    CoveragePainting photos;
    CoveragePainting sample;
    CoverageGround ground; ///< below both pictures
};

/// The colours of the stripes in which unknown ground is painted.
extern const QColor coverageUnknownLight;
extern const QColor coverageUnknownDark;

/// Cells are as many as are counted in about a second. `percent` is told how far it has come. A report
/// without cells where AxCoverageRing() has no ring, or when isOff turns true meanwhile. Any thread, as far
/// as the ground may be asked there.
CoverageReport CoverageReportOf(const ShownPlan& shown, const AxPlanGround& ground, std::atomic<int>& percent,
                                const std::atomic<bool>& isOff);
