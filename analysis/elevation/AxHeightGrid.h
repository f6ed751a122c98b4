#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <osgEarth/Map>

#include <QMetaType>
#include <QPointF>

#include <cstddef>
#include <functional>
#include <memory>
#include <vector>

/// Of which ground the heights are wanted.
struct AxHeightsQuestion
{
    /// Longitude, latitude, degrees, of any turn, the first not repeated. What it encloses an odd number of
    /// times counts.
    std::vector<QPointF> ring;
    /// Side of a cell, metres; 0: as fine as the finest heights in the area, and 20 along each side at least.
    double cell = 0.0;
    /// In the box around the area; the cells are made so large that it holds.
    std::size_t mostCells = 4000000;
};

/// Heights of the ground inside an area, on a grid of equal steps in longitude and latitude. A plain value.
struct AXEARTHVIEWER_EXPORT AxHeightGrid
{
    double west = 0.0;    ///< edge of the first column, degrees; may lie beyond 180
    double south = 0.0;   ///< edge of the first row, degrees
    double stepLng = 0.0; ///< of a cell, degrees
    double stepLat = 0.0; ///< of a cell, degrees
    int columns = 0;      ///< of cells
    int rows = 0;         ///< of cells
    double cell = 0.0;    ///< side of a cell, metres
    /// Distance of the finest heights that the map has in the area, metres; 0: none, or the cell was given.
    double cellOfData = 0.0;
    /// Of the cells' middles, row by row from the south-west, metres as the map's data count them
    /// (CAxEarthViewer::AreMapHeightsAboveEllipsoid()); NaN outside the area and where none is known.
    std::vector<float> heights;
    std::size_t inside = 0; ///< how many cells have their middle in the area
    std::size_t known = 0;  ///< how many of these have a height
    /// Of the known ones, metres likewise; the mean is that of the ground's area. 0 for none.
    double lowest = 0.0;
    double highest = 0.0;
    double mean = 0.0;
    QPointF lowestPlace; ///< longitude, latitude, degrees, -180 to 180
    QPointF highestPlace;

    /// The middle of a cell: longitude, latitude, degrees, -180 to 180.
    QPointF PlaceOf(int column, int row) const;
};

/// Reads the heights, at the finest level of the map's files and services unless the cells are coarser.
/// An area too small for the middle of a cell has one cell, at its first corner. Without cells for a
/// ring that encloses nothing or is no places, without a map, and when `goOn`, which hears from time to time
/// what share is done, answers false. Waits where a file is read: belongs on a thread that may.
AXEARTHVIEWER_EXPORT AxHeightGrid AxHeightGridOf(const AxHeightsQuestion& question, const osgEarth::Map* map,
                                                 const std::function<bool(double share)>& goOn = {});

/// As an answer of the worker.
using AxHeightGridPointer = std::shared_ptr<const AxHeightGrid>;
Q_DECLARE_METATYPE(AxHeightGridPointer)
