#pragma once

#include <AxAlgorthm/CAxPoint2D.h>
#include <AxBaseUI/AxBaseUIExport.h>

#include <QPointF>

#include <vector>

/// Whether a closed ring crosses, touches or runs along itself: true when two of its edges share a point
/// that is not simply the vertex between neighbours, so also for a vertex on another edge, a vertex used
/// twice, an edge that runs back over the one before it, and a ring whose points all lie on one line.
///
/// The ring may or may not repeat its first point at the end. Equal points that follow one another count as
/// one. With fewer than three points left there is nothing to cross: false. A coordinate that is not finite
/// makes the ring unusable: true.
AXBASEUI_EXPORT bool isSelfIntersection(std::vector<QPointF> ring);

/// Whether an area is large enough to be split into segments of the given size: true when the longer side
/// of its narrowest enclosing rectangle (in any direction) is greater than the size, so that more than one
/// segment is needed to cover it. Ring and size are in the same plane unit, normally metres. False for a
/// ring without area, for coordinates that are not finite and for a size that is not greater than 0.
AXBASEUI_EXPORT bool isAreaCanSegment(const std::vector<CAxPoint2D>& ring, double size);
