#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <osg/Vec3d>

/// The signals of the mouse tell longitude and latitude as a float holds them, a metre or so, but the
/// geocentric point beside them in double precision: the place with all its digits. What is no such pair, as
/// on a model above the ground, comes back as it is. Degrees, degrees, metres; the altitude stays that of the
/// signal. On the WGS 84 ellipsoid. Any thread.
AXEARTHVIEWER_EXPORT osg::Vec3d AxExactPlace(const osg::Vec3d& lngLatPos, const osg::Vec3d& worldCoordPos);
