#pragma once

#include <QList>
#include <QString>
#include <QVariant>

namespace bench {

/// As many zones and lifts as the figures are taken with.
constexpr int kZoneCount = 50000;
constexpr int kLiftCount = 5000;

/// Rows of the zone table: four circles to each polygon of a hundred points, all over the globe but around
/// the place of the tour, where other figures are taken without zones.
QList<QVariant> zoneRows();
/// Rows of the lift table: each cuts a zone of its own, every tenth one a second one, too.
QList<QVariant> liftRows();

/// A sealed file of these rows, made at the first call; it goes with the process.
QString zoneFile();

} // namespace bench
