#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <QPointF>

#include <vector>

/// Whether two outlines on the globe have a place in common, be it on their edges. Longitude, latitude,
/// degrees, of any turn, the first not repeated; three places and more enclose an area, two are a line, one a
/// point. Edges are straight in longitude and latitude and go the shorter way around, so they may cross the
/// antimeridian. An outline that crosses itself encloses what its loops do. False for an empty one, and where
/// a place is no number. Any thread.
AXEARTHVIEWER_EXPORT bool AxOutlinesMeet(const std::vector<QPointF>& a, const std::vector<QPointF>& b);
