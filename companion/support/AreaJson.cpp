#include "support/AreaJson.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>
#include <cmath>

namespace {
constexpr double HalfTurn = 180.0;
constexpr double FullTurn = 360.0;
constexpr int LeastPlaces = 3;

using Ring = QList<QPointF>;

/// The same ring with longitudes that go on beyond 180 degrees instead of jumping.
Ring carriedOn(const Ring& ring)
{
    Ring carried;
    for (const QPointF& place : ring) {
        const double before = carried.isEmpty() ? place.x() : carried.last().x();
        carried += QPointF(before + std::remainder(place.x() - before, FullTurn), place.y());
    }
    return carried;
}

/// What of a ring lies east (side 1) or west (side -1) of a meridian.
Ring besideMeridian(const Ring& ring, double meridian, double side)
{
    Ring kept;
    for (int i = 0; i < ring.size(); ++i) {
        const QPointF& from = ring[i];
        const QPointF& to = ring[(i + 1) % ring.size()];
        const double fromBeyond = side * (from.x() - meridian);
        const double toBeyond = side * (to.x() - meridian);
        if (fromBeyond >= 0.0)
            kept += from;
        if ((fromBeyond > 0.0 && toBeyond < 0.0) || (fromBeyond < 0.0 && toBeyond > 0.0))
            kept += QPointF(meridian, from.y() + (to.y() - from.y()) * fromBeyond / (fromBeyond - toBeyond));
    }
    return kept;
}

bool isClockwise(const Ring& ring)
{
    double twiceArea = 0.0;
    for (int i = 0; i < ring.size(); ++i) {
        const QPointF& from = ring[i];
        const QPointF& to = ring[(i + 1) % ring.size()];
        twiceArea += from.x() * to.y() - to.x() * from.y();
    }
    return twiceArea < 0.0;
}

QJsonArray polygon(Ring ring, double shift)
{
    if (isClockwise(ring))
        std::reverse(ring.begin(), ring.end());
    QJsonArray places;
    for (const QPointF& place : ring + Ring{ring.first()})
        places += QJsonArray{place.x() + shift, place.y()};
    return {places};
}
} // namespace

QByteArray AreaJson(const QList<QPointF>& ring, const QJsonObject& properties)
{
    const auto isNumber = [](const QPointF& place) {
        return std::isfinite(place.x()) && std::isfinite(place.y());
    };
    if (ring.size() < LeastPlaces || !std::all_of(ring.begin(), ring.end(), isNumber))
        return {};
    const Ring carried = carriedOn(ring);
    const auto [west, east] = std::minmax_element(
        carried.begin(), carried.end(), [](const QPointF& a, const QPointF& b) { return a.x() < b.x(); });
    const double meridian = west->x() < -HalfTurn ? -HalfTurn : HalfTurn;
    // A ring around a pole does not close this way, and stays as it was given.
    const bool isClosed = std::abs(carried.last().x() - carried.first().x()) <= HalfTurn;
    QJsonObject geometry{{"type", "Polygon"}, {"coordinates", polygon(ring, 0.0)}};
    if (isClosed && west->x() < meridian && meridian < east->x()) {
        const bool isAtWest = meridian < 0.0;
        geometry = {
            {"type", "MultiPolygon"},
            {"coordinates",
             QJsonArray{polygon(besideMeridian(carried, meridian, -1.0), isAtWest ? FullTurn : 0.0),
                        polygon(besideMeridian(carried, meridian, 1.0), isAtWest ? 0.0 : -FullTurn)}}};
    }
    return QJsonDocument(QJsonObject{{"type", "Feature"}, {"properties", properties}, {"geometry", geometry}})
        .toJson(QJsonDocument::Compact);
}
