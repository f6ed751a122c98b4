#pragma once

#include "Notes.h"
#include "ZoneRecords.h"

#include <QString>

#include <vector>

class Progress;

/// Zones and lifts out of a file of features. Coordinates in another reference system than degrees on
/// WGS 84 are converted when the file names theirs.
///
/// Fields, in any case, with further names in parentheses:
/// zones  local_id (id, name), enable (enabled)
/// lifts  local_ids (zones), begin_at (begin), expired_at (expiry), user_id (user), status
/// both   the shape: area (the text of zone files), or lng (lon, longitude, x) and lat (latitude, y), or
///        the feature's geometry, points or polygons; radius for points, in metres
///
/// A file that cannot be read at all gives false and an `error`. What of it cannot be used is left out and
/// noted; the rest is appended.
bool ImportZones(const QString& path, std::vector<Zone>& zones, Notes& notes, Progress& progress,
                 QString& error);
bool ImportLifts(const QString& path, std::vector<Lift>& lifts, Notes& notes, Progress& progress,
                 QString& error);
