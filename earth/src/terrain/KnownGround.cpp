#include <osgEarth/KnownGround>

#include "terrain/QuadtreeTerrain.h"
#include "terrain/TileContent.h"

#include <cmath>
#include <osgEarth/MapNode>

namespace osgEarth {
bool isGroundKnown(const MapNode& mapNode, double longitude, double latitude)
{
    if (!std::isfinite(longitude) || !(std::abs(latitude) <= 90.0))
        return false;
    const double normalized = std::remainder(longitude, 360.0);
    const QuadtreeTerrain* terrain = QuadtreeTerrain::of(mapNode);
    const TileContent* content = terrain ? terrain->contentAt(normalized, latitude) : nullptr;
    return content && content->knowsHeightAt(normalized, latitude);
}
} // namespace osgEarth
