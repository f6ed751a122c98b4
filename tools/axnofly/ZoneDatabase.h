#pragma once

#include "ZoneRecords.h"

#include <QList>
#include <QString>
#include <QVariant>

#include <vector>

class Progress;

/// What a zone file holds, as it stands in it.
struct ZoneRows
{
    QList<QVariant> zones; ///< lng, lat, local_id, enable, area
    QList<QVariant> lifts; ///< begin_at, expired_at, area, local_ids, user_id, status
};

/// Writes a zone file, sealed or plain, in place of the target, which stays as it was when that fails.
bool WriteZones(const QString& target, bool isSealed, const std::vector<Zone>& zones,
                const std::vector<Lift>& lifts, Progress& progress, QString& error);

/// Reads a zone file, sealed or plain, and leaves it as it is.
bool ReadZones(const QString& source, ZoneRows& rows, QString& error);
