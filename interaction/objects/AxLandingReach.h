#pragma once
#include "scene/base/AxEarthViewerExport.h"

class CAxHandleAdapter;

/// How far from the middle of its object a landing or a point of interest may be set, metres.
constexpr double axLandingReach = 7000.0;

/// Whether a place is within that reach: degrees, on a sphere as wide as the equator. GUI thread.
AXEARTHVIEWER_EXPORT bool AxIsInLandingReach(CAxHandleAdapter& object, double longitude, double latitude);
