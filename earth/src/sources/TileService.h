#pragma once
#include "sources/RasterSource.h"

namespace osgEarth {
/// Opens a "tms" or "xyz" source: a service on the web, or a folder of tiles.
std::shared_ptr<RasterSource> openTileService(const TileSourceOptions& options, const RasterRequest& request,
                                              Status& out_status);
} // namespace osgEarth
