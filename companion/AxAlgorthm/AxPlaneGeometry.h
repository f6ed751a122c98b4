#pragma once

#include <AxAlgorthm/AxAlgorthmExport.h>
#include <AxAlgorthm/CAxPoint2D.h>

#include <QList>
#include <QPointF>

#include <vector>

/// The outline of the band along a centre line, all in plane metres.
///
/// width1 lies to the left of the line as seen from its first towards its last point, width2 to the right.
/// Both are 0 or more and one of them may be 0, in which case the line itself is that edge of the band.
///
/// The outline is an open ring (its first point is not repeated): it starts beside the first centre-line
/// point on the left, follows the left edge to the last point and comes back along the right edge, hence
/// clockwise. Bends are mitred; where a mitre would reach farther than twice the width from the bend it is
/// cut to a bevel of two points. The ends are cut square. Where legs are too short for the bend between
/// them the parts of the band that overlap are merged; such a ring starts at any of its points.
///
/// indices gets one entry per outline point: the index in centreLine of the vertex that produced it. The
/// first of equal neighbouring points stands for all of them, and a point where merged parts cross belongs to
/// the vertex nearest to it.
///
/// False, with outline and indices left empty, for fewer than two distinct points, a total width of 0, a
/// negative or not finite value, or a band that no single valid ring describes (one that encloses a gap).
AXALGORTHM_EXPORT bool CreateStripPolygon(const std::vector<CAxPoint2D>& centreLine, double width1,
                                          double width2, std::vector<CAxPoint2D>& outline,
                                          QList<int>& indices);

/// The points in their order without those that lie within the tolerance (straight distance, the
/// tolerance included) of a point already kept, neighbour or not. Points with a coordinate that is not a
/// number are left out. A negative tolerance counts as 0.
AXALGORTHM_EXPORT std::vector<CAxPoint2D> RemoveSamePoint(const std::vector<CAxPoint2D>& points,
                                                          double tolerance);

/// The foot of the perpendicular from point onto the unbounded line through lineStart and lineEnd. When
/// these two are the same point there is no line, and that point is returned.
AXALGORTHM_EXPORT QPointF CalVerticalIntersectionPoint(const QPointF& point, const QPointF& lineStart,
                                                       const QPointF& lineEnd);
