#include "layers/LayerHeights.h"

#include "sources/RasterSource.h"

namespace osgEarth {
std::shared_ptr<const HeightWindow> readHeightWindow(const ElevationLayer& layer, const GeoExtent& extent,
                                                     double wantedCellDegrees, ProgressCallback* progress,
                                                     double reachDegrees)
{
    const std::shared_ptr<RasterSource> source = layer.isOpen() ? layer.getSource() : nullptr;
    if (!source || (progress && progress->isCanceled()))
        return nullptr;
    return source->readHeights(extent, wantedCellDegrees, reachDegrees, progress);
}
} // namespace osgEarth
