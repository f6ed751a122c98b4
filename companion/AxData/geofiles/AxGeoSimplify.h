#pragma once

#include <QPointF>

#include <functional>
#include <vector>

/// A line or ring of degrees with at most `most` of its points, none of those left out farther than
/// `tolerance` metres from it. Where that takes a larger tolerance, it is doubled as often as needed.
/// Longitudes are continuous. Empty when `goesOn`, which is asked now and then, returns false.
std::vector<QPointF> AxGeoSimplified(const std::vector<QPointF>& points, bool isRing, int most,
                                     double& tolerance, const std::function<bool()>& goesOn);
