#pragma once
#include "scene/base/AxEarthViewerExport.h"

class CAxHandleAdapter;
class QWidget;

/// How far from the middle of its object a landing or a point of interest may be set, metres.
constexpr double axLandingReach = 7000.0;

/// Whether a place is within that reach: degrees, on a sphere as wide as the equator. GUI thread.
AXEARTHVIEWER_EXPORT bool AxIsInLandingReach(CAxHandleAdapter& object, double longitude, double latitude);

/// The same for a place that the operator has chosen: one beyond the reach is told in a modal box over
/// `parent`, and events run meanwhile.
AXEARTHVIEWER_EXPORT bool AxAcceptsLanding(CAxHandleAdapter& object, double longitude, double latitude,
                                           QWidget* parent);

/// Whether an object can have a landing and a point of interest: blocks can, a set of marks cannot, nor null.
AXEARTHVIEWER_EXPORT bool AxHasLanding(const CAxHandleAdapter* object);
