#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <osg/Vec3d>

#include <optional>

/// The signals of the mouse tell longitude and latitude as a float holds them, a metre or so, but the
/// geocentric point beside them in double precision: the place with all its digits. On a model that point is
/// one of the ground behind it; there the digits are those of AxTellExactPlace(). What is no such pair comes
/// back as it is. Degrees, degrees, metres; the altitude stays that of the signal. On the WGS 84 ellipsoid.
/// Any thread.
AXEARTHVIEWER_EXPORT osg::Vec3d AxExactPlace(const osg::Vec3d& lngLatPos, const osg::Vec3d& worldCoordPos);

/// Where the mouse meets a model, for the signals that tell it from now on, on this thread; nothing when it
/// meets none. Degrees.
AXEARTHVIEWER_EXPORT void AxTellExactPlace(const std::optional<osg::Vec3d>& onModel);
