#pragma once
#include "scene/base/AxEarthViewerExport.h"

/**
 * Sends the notifications of the scene graph and of the map engine, which go
 * to the console by themselves, through Qt's logging under the category
 * "ax.scene", so that a host shows them where it shows its own.
 *
 * Call it once, before the first viewer is made. The lines arrive on the
 * thread that wrote them, which may be a loading thread.
 */
AXEARTHVIEWER_EXPORT void AxRouteSceneLog();
