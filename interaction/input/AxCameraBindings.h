#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <osgEarthUtil/EarthManipulator>

/// What mouse, wheel and keys do to the camera, whatever the map engine takes for granted.
AXEARTHVIEWER_EXPORT void AxBindCamera(osgEarth::Util::EarthManipulator::Settings& settings);
