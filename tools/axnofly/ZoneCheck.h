#pragma once

#include "Notes.h"
#include "ZoneDatabase.h"

#include <QDateTime>

class Progress;

/// The globe looks for zones that an area meets within the area's own reach and this many metres; what of
/// a zone lies farther from the zone's middle can be missed.
constexpr double FarReachMetres = 20000.0;

/// Everything doubtful about the rows of a zone file. Lifts that expired before `now` are out of date.
Notes CheckZones(const ZoneRows& rows, const QDateTime& now, Progress& progress);

/// Begin and expiry of lifts: a date, or date and time, as ISO 8601 writes them, or seconds since 1970. A
/// date alone ends with its day when `isEnd`. Invalid when the text is none of them.
QDateTime LiftTime(const QString& text, bool isEnd);
