#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <osg/Vec3d>

#include <optional>

namespace osgEarth {
class MapNode;
}
struct AxViewRay;

/// The ground as it is drawn now, where the line of sight meets it first, geocentric metres; nothing where it
/// meets none. From afar the drawn ground lies kilometres below the real one. Thread of the event traversal.
AXEARTHVIEWER_EXPORT std::optional<osg::Vec3d> AxDrawnGround(osgEarth::MapNode& map, const AxViewRay& ray);

/// Height of the ground that is in memory at a place in degrees, metres above the ellipsoid; nothing where no
/// tile is in memory. It never waits for a file. Thread of the update and event traversals.
AXEARTHVIEWER_EXPORT std::optional<double> AxLoadedHeight(const osgEarth::MapNode& map, double longitude,
                                                          double latitude);
