#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QList>
#include <QPointF>

/// A ring of longitudes and latitudes in degrees, the first place not repeated, as a GeoJSON feature (RFC
/// 7946) with these properties: counter-clockwise, and cut in two where it crosses the antimeridian. Empty
/// for fewer than three places and for one that is no number.
QByteArray AreaJson(const QList<QPointF>& ring, const QJsonObject& properties);
