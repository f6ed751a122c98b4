#pragma once
#include <AxData/tiles/AxTileService.h>

#include <QList>

#include <optional>

class CAxEarthViewer;

/// What the map and its view have for a fetch of tiles. GUI thread.
namespace Offline {
/// The tile services of the viewer's map that are in Web Mercator, the uppermost first. None before it is
/// loaded.
QList<AxTileService> ServicesOf(CAxEarthViewer* viewer);
/// A rectangle around the ground that is seen now; nothing where no ground is.
std::optional<AxTileBounds> SeenGround(CAxEarthViewer* viewer);
/// Around the block or line in hand, grown by so many metres; nothing where there is none, or where it
/// cannot be grown.
std::optional<AxTileArea> AroundBlock(CAxEarthViewer* viewer, double metres);
} // namespace Offline
