#include "ZoneCheck.h"

#include "Progress.h"
#include "ToolText.h"
#include "ZoneShapes.h"

#include <support/GeosContext.h>

#include <QSet>

#include <algorithm>
#include <utility>

namespace {
QString Named(const QString& table, int row, const QString& id)
{
    return id.isEmpty() ? ToolText::tr("%1, row %2").arg(table).arg(row)
                        : ToolText::tr("%1, row %2 (%3)").arg(table).arg(row).arg(id);
}

bool IsNumber(const QVariant& value)
{
    bool isNumber = false;
    value.toDouble(&isNumber);
    return isNumber && !value.isNull();
}

/// The outline of an area text; empty after a note.
Ring CheckedRing(const QString& area, const QString& place, Notes& notes)
{
    const QString field = QStringLiteral("area");
    QString error;
    Ring ring = ParseArea(area, error);
    if (ring.empty()) {
        notes << Note{place, field, error};
        return {};
    }
    if (!IsOnGlobe(ring)) {
        notes << Note{place, field, ToolText::tr("The outline leaves the globe.")};
        return {};
    }
    if (ring.size() < 3)
        return ring;
    ring = Unwrapped(std::move(ring));
    if (IsAroundPole(ring)) {
        notes << Note{place, field, ToolText::tr("The outline goes around a pole.")};
        return {};
    }
    const GeosContext geos;
    if (!geos.isValid(geos.polygon(ring)))
        notes << Note{place, field, ToolText::tr("The outline crosses or touches itself.")};
    return ring;
}

void CheckReach(const Ring& ring, const QString& place, Notes& notes)
{
    const QPointF centre = BoxCentre(ring);
    double reach = 0.0;
    for (const QPointF& point : ring)
        reach = std::max(reach, Distance(centre, point));
    if (reach > FarReachMetres)
        notes << Note{place, QStringLiteral("area"),
                      ToolText::tr("The outline reaches %1 km from its middle. Small areas can lie in it "
                                   "unnoticed; divide zones that reach more than %2 km.")
                          .arg(reach / 1000.0, 0, 'f', 1)
                          .arg(FarReachMetres / 1000.0)};
}

void CheckZone(const QVariantList& row, const QString& place, Notes& notes)
{
    if (row.at(2).toString().isEmpty())
        notes << Note{place, QStringLiteral("local_id"), ToolText::tr("The zone has no id.")};
    if (!IsNumber(row.at(3)))
        notes << Note{place, QStringLiteral("enable"), ToolText::tr("This is neither 1 nor 0.")};
    const Ring ring = CheckedRing(row.at(4).toString(), place, notes);
    if (ring.size() >= 3)
        CheckReach(ring, place, notes);
    for (const int column : {0, 1})
        if (!IsNumber(row.at(column)))
            notes << Note{place, column == 0 ? QStringLiteral("lng") : QStringLiteral("lat"),
                          ToolText::tr("This is no number.")};
}

void CheckTimes(const QVariantList& row, const QDateTime& now, const QString& place, Notes& notes)
{
    const QDateTime begin = LiftTime(row.at(0).toString(), false);
    const QDateTime expiry = LiftTime(row.at(1).toString(), true);
    if (!begin.isValid())
        notes << Note{place, QStringLiteral("begin_at"), ToolText::tr("This is no date.")};
    if (!expiry.isValid())
        notes << Note{place, QStringLiteral("expired_at"), ToolText::tr("This is no date.")};
    else if (expiry < now)
        notes << Note{place, QStringLiteral("expired_at"),
                      ToolText::tr("The lift is out of date since %1.").arg(row.at(1).toString())};
    if (begin.isValid() && expiry.isValid() && expiry < begin)
        notes << Note{place, QStringLiteral("expired_at"), ToolText::tr("The lift ends before it begins.")};
}

void CheckLift(const QVariantList& row, const QSet<QString>& ids, const QString& place, Notes& notes)
{
    const Ring ring = CheckedRing(row.at(2).toString(), place, notes);
    if (ring.size() == 1)
        notes << Note{place, QStringLiteral("area"),
                      ToolText::tr("A single point lifts nothing; an outline needs three.")};
    const QStringList zones = row.at(3).toString().split(QLatin1Char(','), Qt::SkipEmptyParts);
    if (zones.isEmpty())
        notes << Note{place, QStringLiteral("local_ids"), ToolText::tr("The lift names no zone.")};
    else if (row.at(3).toString().size() < 2)
        notes << Note{place, QStringLiteral("local_ids"),
                      ToolText::tr("Lifts that name a zone with an id of one character are passed over.")};
    for (const QString& zone : zones)
        if (!ids.contains(zone))
            notes << Note{place, QStringLiteral("local_ids"),
                          ToolText::tr("There is no zone \"%1\".").arg(zone)};
    if (!IsNumber(row.at(5)))
        notes << Note{place, QStringLiteral("status"), ToolText::tr("This is no number.")};
}
} // namespace

QDateTime LiftTime(const QString& text, bool isEnd)
{
    bool isNumber = false;
    const qint64 seconds = text.toLongLong(&isNumber);
    if (isNumber)
        return QDateTime::fromSecsSinceEpoch(seconds, Qt::UTC);
    const QDate date = QDate::fromString(text, Qt::ISODate);
    if (date.isValid() && text.size() <= 10)
        return isEnd ? date.endOfDay() : date.startOfDay();
    // "2026-05-01 10:00:00" as databases write it
    return QDateTime::fromString(QString(text).replace(QLatin1Char(' '), QLatin1Char('T')), Qt::ISODate);
}

Notes CheckZones(const ZoneRows& rows, const QDateTime& now, Progress& progress)
{
    Notes notes;
    QSet<QString> ids;
    progress.Begin(ToolText::tr("Checking zones"), rows.zones.size());
    for (int i = 0; i < rows.zones.size(); ++i) {
        progress.Step(i);
        const QVariantList row = rows.zones.at(i).toList();
        const QString id = row.at(2).toString();
        const QString place = Named(QStringLiteral("no_fly_zone"), i + 1, id);
        if (ids.contains(id))
            notes << Note{place, QStringLiteral("local_id"),
                          ToolText::tr("The id stands in an earlier row too; the later row counts.")};
        ids.insert(id);
        CheckZone(row, place, notes);
    }
    for (int i = 0; i < rows.lifts.size(); ++i) {
        const QVariantList row = rows.lifts.at(i).toList();
        const QString place = Named(QStringLiteral("lift_no_fly_zone"), i + 1, row.at(3).toString());
        CheckLift(row, ids, place, notes);
        CheckTimes(row, now, place, notes);
    }
    return notes;
}
