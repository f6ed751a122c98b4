#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <osg/Vec2d>

#include <QRectF>
#include <QSizeF>

/**
 * How large a magnifier is, how much it magnifies, and where it stands. Pixels of the map, y downwards,
 * unless a line says otherwise. Plain logic, any thread.
 */
namespace AxMagnifierRules {

constexpr double leastFactor = 1.5;
constexpr double mostFactor = 32.0;

/// What a rectangle that was dragged asks for.
struct Lens
{
    QSizeF size;
    double factor = leastFactor;
};
/// The whole rectangle as large as a lens has room on a map of this size. Of one that is too large to be
/// magnified so the middle is shown at twice its size; one that a hand drew by clicking is a rectangle of a
/// usual size around it.
AXEARTHVIEWER_EXPORT Lens LensFor(const QSizeF& dragged, const QSizeF& map);

/// The size of a lens that was made on a map of another size.
AXEARTHVIEWER_EXPORT QSizeF SizeOn(const QSizeF& map, const QSizeF& wanted);

/// The factor after the wheel was turned by so many eighths of a degree, forward being more.
AXEARTHVIEWER_EXPORT double Turned(double factor, int eighths);

/// Where a lens stands until somebody moves it: in a lower corner, or the upper one on that side, beside what
/// it shows where there is room, and never over it while another corner is free.
AXEARTHVIEWER_EXPORT QPointF FreeCorner(const QSizeF& lens, const QRectF& shown, const QSizeF& map);

/// The place that is next to the wanted one at which a lens is within the map.
AXEARTHVIEWER_EXPORT QPointF Within(const QPointF& wanted, const QSizeF& lens, const QSizeF& map);

/// A part of the picture around a place of it, both from -1 to 1, y upwards: what a lens shows.
AXEARTHVIEWER_EXPORT QRectF PartAround(const osg::Vec2d& middle, const QSizeF& lens, double factor,
                                       const QSizeF& map);

} // namespace AxMagnifierRules
