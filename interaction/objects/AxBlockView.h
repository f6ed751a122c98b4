#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <osg/Vec3d>
#include <osgEarth/Viewpoint>

#include <vector>

/// Straight down on a set of places (degrees, degrees, metres), as near as shows
/// them all in a view of 30 degrees. A viewpoint without focal point for none.
AXEARTHVIEWER_EXPORT osgEarth::Viewpoint AxViewpointOver(const std::vector<osg::Vec3d>& places);
