#include "interaction/magnifier/AxMagnifierRules.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace {
// A lens takes no more of the map: what is around is why the pilot looks at a map, and each pixel costs time.
constexpr double mostWide = 0.34;
constexpr double mostHigh = 0.36;
const QSizeF leastSize(160.0, 120.0);
const QSizeF usualPart(80.0, 60.0);
constexpr double trembling = 6.0;
constexpr double usualFactor = 2.0;
constexpr double besideBorder = 12.0;
// One step of a usual wheel.
constexpr double eighthsOfStep = 120.0;
constexpr double factorOfStep = 1.25;

QSizeF RoomOn(const QSizeF& map)
{
    return {std::max(1.0, mostWide * map.width()), std::max(1.0, mostHigh * map.height())};
}
} // namespace

AxMagnifierRules::Lens AxMagnifierRules::LensFor(const QSizeF& dragged, const QSizeF& map)
{
    const bool isClick = dragged.width() < trembling || dragged.height() < trembling;
    const QSizeF part = isClick ? usualPart : dragged;
    const QSizeF room = RoomOn(map);
    const double fits = std::min(room.width() / part.width(), room.height() / part.height());
    Lens lens;
    lens.factor = std::clamp(fits, usualFactor, mostFactor);
    lens.size = (part * lens.factor).expandedTo(leastSize).boundedTo(room);
    return lens;
}

QSizeF AxMagnifierRules::SizeOn(const QSizeF& map, const QSizeF& wanted)
{
    return wanted.boundedTo(RoomOn(map));
}

double AxMagnifierRules::Turned(double factor, int eighths)
{
    return std::clamp(factor * std::pow(factorOfStep, eighths / eighthsOfStep), leastFactor, mostFactor);
}

QPointF AxMagnifierRules::Within(const QPointF& wanted, const QSizeF& lens, const QSizeF& map)
{
    return {std::clamp(wanted.x(), 0.0, std::max(0.0, map.width() - lens.width())),
            std::clamp(wanted.y(), 0.0, std::max(0.0, map.height() - lens.height()))};
}

QPointF AxMagnifierRules::FreeCorner(const QSizeF& lens, const QRectF& shown, const QSizeF& map)
{
    const double low = map.height() - lens.height() - besideBorder;
    const double right = map.width() - lens.width() - besideBorder;
    // The right side has the bar, the compass and the read-out.
    const std::array<QPointF, 4> corners{QPointF(besideBorder, low), QPointF(besideBorder, besideBorder),
                                         QPointF(right, low), QPointF(right, besideBorder)};
    const auto* free = std::find_if(corners.begin(), corners.end(), [&](const QPointF& corner) {
        return !QRectF(corner, lens).intersects(shown);
    });
    return Within(free == corners.end() ? corners.front() : *free, lens, map);
}

QRectF AxMagnifierRules::PartAround(const osg::Vec2d& middle, const QSizeF& lens, double factor,
                                    const QSizeF& map)
{
    const QSizeF part(2.0 * lens.width() / factor / std::max(1.0, map.width()),
                      2.0 * lens.height() / factor / std::max(1.0, map.height()));
    return {QPointF(middle.x() - 0.5 * part.width(), middle.y() - 0.5 * part.height()), part};
}
