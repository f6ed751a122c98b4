#pragma once
#include "sources/HeightWindow.h"

#include <memory>
#include <osgEarth/ElevationLayer>
#include <osgEarth/GeoData>
#include <osgEarth/Progress>

namespace osgEarth {
/// Reads the samples that cover a geographic rectangle, with a margin of one:
/// at full resolution when `wantedCellDegrees` is not coarser than the source,
/// else decimated to about that; and up to `reachDegrees` around the rectangle
/// what is needed to blend a step at the edge of the samples. Null when the
/// layer has nothing there, failed, or was called off. Any thread.
std::shared_ptr<const HeightWindow>
readHeightWindow(const ElevationLayer& layer, const GeoExtent& geographicExtent, double wantedCellDegrees,
                 ProgressCallback* progress = nullptr, double reachDegrees = 0.0);
} // namespace osgEarth
