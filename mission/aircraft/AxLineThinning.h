#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <osg/Vec3d>

#include <vector>

/// Which points of a line to keep so that it has at most so many and looks the same from as near as can be:
/// their indices, ascending, with the first and the last. All of them where they are few enough. Its cost
/// grows with the number of points and no faster. Any thread.
AXEARTHVIEWER_EXPORT std::vector<int> AxThinLine(const std::vector<osg::Vec3d>& points, int most);
