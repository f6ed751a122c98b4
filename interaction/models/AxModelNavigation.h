#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <osg/Quat>
#include <osg/Vec3d>

/// How the camera moves around models, and in projected mode: geometry alone.
namespace AxModelNavigation {

/// How far one notch of the wheel moves a focal centre towards a hit that is
/// `distance` metres away; `factor` is +1 towards it and -1 away from it. The
/// centre stays 5 m short of the hit, and is taken back to there when it is nearer.
AXEARTHVIEWER_EXPORT double ScrollStep(double factor, double distance);

/// By how much the focal centre moves when the mouse does, metres in world
/// axes: along the picture's right and up axes. `cameraToWorld` turns camera
/// axes into world axes, dx and dy are in half windows, `distance` is that of
/// the focal centre in metres.
AXEARTHVIEWER_EXPORT osg::Vec3d PanStep(const osg::Quat& cameraToWorld, double distance, double dx,
                                        double dy);

/// A rotation (camera axes to east-north-up) turned freely: dy lifts it about
/// its own horizontal side axis, dx turns it about the vertical, radians.
AXEARTHVIEWER_EXPORT osg::Quat FreeRotation(const osg::Quat& rotation, double dx, double dy);

} // namespace AxModelNavigation
