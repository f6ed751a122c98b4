#pragma once

#include <AxAlgorthm/AxAlgorthmExport.h>

#include <QList>
#include <QPointF>

/// How far from the aircraft, in metres over ground, a footprint reaches at most.
constexpr double MaxFootprintDistance = 10000.0;

/// What a pinhole camera sees of flat ground, as offsets from the point under the aircraft in metres,
/// x to the east and y to the north.
///
/// height       metres of the camera above the ground, more than 0
/// imageWidth   of the picture, in pixels
/// imageHeight  of the picture, in pixels
/// scale        the focal length in pixels (focal length over pixel pitch)
/// heading      of the aircraft, degrees clockwise from north
/// cameraAngle  of the optical axis from straight down, degrees: 0 looks down, positive values look ahead,
///              90 looks at the horizon, negative values look behind
///
/// The four corners are those of the picture in the order upper left, upper right, lower right, lower
/// left; for a camera that looks ahead, the last two bound the near edge. A ray that would meet the ground
/// beyond MaxFootprintDistance, or never because it points at or above the horizon, ends at that distance
/// in its direction. The list is empty when no corner ray points below the horizon and when an argument
/// is out of range or not finite.
AXALGORTHM_EXPORT QList<QPointF> CalcFootprintMapCoordinate(double height, int imageWidth, int imageHeight,
                                                            double scale, double heading, double cameraAngle);
