#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <osg/Vec2d>
#include <osg/Vec3d>
#include <osgEarth/Viewpoint>

#include <vector>

// Looking straight down on a set of places (degrees, degrees, metres), north up.

/// The nearest viewpoint that has them all in the picture, each a twentieth of the picture or more from its
/// border, on this side of the globe. `halfView` is what the view sees to the side and upwards, as tangents
/// of the angles from its middle. It is 300 m away at least, and no farther than shows the whole globe:
/// places all around it cannot be seen at once. `margin` takes it farther away by that share of the distance;
/// below 0 and NaN count as 0. A viewpoint without focal point for no places, and for values that are not
/// finite.
AXEARTHVIEWER_EXPORT osgEarth::Viewpoint AxViewpointOver(const std::vector<osg::Vec3d>& places,
                                                         const osg::Vec2d& halfView, double margin = 0.0);
