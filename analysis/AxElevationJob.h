#pragma once
#include "analysis/elevation/AxHeightGrid.h"
#include "scene/base/AxEarthViewerExport.h"

#include <osg/ref_ptr>
#include <osgEarth/Map>
#include <osgEarth/TileKey>
#include <osgEarthSymbology/Geometry>

#include <QVariant>

#include <functional>
#include <optional>
#include <vector>

/// Heights of the ground on a grid over an area.
struct AxElevationJob
{
    int number = 0;         ///< tells jobs apart; from 1 on
    bool isAwaited = false; ///< whether a caller waits for its end
    int columns = 0;        ///< of equal cells in each tile, at least one; the places are their middles
    int rows = 0;
    double resolution = 0.0; ///< the finest that is wanted, degrees; 0: the best there is
    osg::ref_ptr<osgEarth::Map> map;
    /// Degrees, each longitude within half a turn of the one before; without points everything counts.
    osg::ref_ptr<const osgEarth::Symbology::Polygon> area;
    std::vector<osgEarth::TileKey> keys; ///< without any, the box around the area is the one tile
    /// A grid is wanted in place of all that but the map: AxAnswerElevations() gives an AxHeightGridPointer.
    std::optional<AxHeightsQuestion> grid;
};

/// The places inside the area, tile by tile, each a list of longitude, latitude (degrees) and altitude
/// (metres). Places without a height are left out. `progress` hears of percent done, 99 at most, and answers
/// whether to go on. Reads the map's sources, so it takes long and belongs on a thread that may wait.
AXEARTHVIEWER_EXPORT QVariantList AxSampleElevations(const AxElevationJob& job,
                                                     const std::function<bool(int percent)>& progress);

/// The answer to the job: the same, or the grid; of one that `progress` ends a list of nothing.
AXEARTHVIEWER_EXPORT QVariant AxAnswerElevations(const AxElevationJob& job,
                                                 const std::function<bool(int percent)>& progress);
