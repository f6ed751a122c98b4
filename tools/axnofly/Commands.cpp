#include "Commands.h"

#include "AirportImport.h"
#include "FeatureImport.h"
#include "Progress.h"
#include "ToolText.h"
#include "ZoneCheck.h"
#include "ZoneDatabase.h"
#include "ZoneShapes.h"

#include <AxData/AxSealedFile.h>
#include <AxData/CAxNoflyZoneMgr.h>

#include <QFileInfo>
#include <QHash>
#include <QSet>
#include <QTextStream>

namespace {
constexpr double metresPerKilometre = 1000.0;

void Print(const QString& line)
{
    QTextStream(stdout) << line << '\n';
}

void PrintNotes(const Notes& notes)
{
    QTextStream out(stderr);
    for (const Note& note : notes)
        out << note.Line() << '\n';
}

/// Of several zones with one id the globe would show the last, so the others would be lost unnoticed.
void RemoveDuplicates(std::vector<Zone>& zones, Notes& notes)
{
    QSet<QString> ids;
    std::vector<Zone> kept;
    kept.reserve(zones.size());
    for (Zone& zone : zones) {
        if (ids.contains(zone.id)) {
            notes << Note{
                zone.id, {}, ToolText::tr("A zone with this id was read before; this one is left out.")};
            continue;
        }
        ids.insert(zone.id);
        kept.push_back(std::move(zone));
    }
    zones = std::move(kept);
}

using Importer = bool (*)(const QString&, std::vector<Zone>&, Notes&, Progress&, QString&);

bool ImportAll(const QStringList& files, Importer import, std::vector<Zone>& zones, Notes& notes,
               Progress& progress, QString& error)
{
    for (const QString& file : files)
        if (!import(file, zones, notes, progress, error))
            return false;
    return true;
}
} // namespace

ExitStatus Complain(ExitStatus status, const QString& reason)
{
    QTextStream(stderr) << "axnofly: " << reason << Qt::endl;
    return status;
}

ExitStatus Build(const BuildJob& job, Progress& progress)
{
    std::vector<Zone> zones;
    std::vector<Lift> lifts;
    Notes notes;
    QString error;
    if (!ImportAll(job.airports, &ImportAirports, zones, notes, progress, error) ||
        !ImportAll(job.zones, &ImportZones, zones, notes, progress, error))
        return Complain(Failed, error);
    for (const QString& file : job.lifts)
        if (!ImportLifts(file, lifts, notes, progress, error))
            return Complain(Failed, error);
    RemoveDuplicates(zones, notes);
    if (!job.isQuiet)
        PrintNotes(notes);
    if (zones.empty())
        return Complain(Failed,
                        ToolText::tr("There is no zone to write; \"%1\" stays as it is.").arg(job.target));
    if (job.isStrict && !notes.isEmpty())
        return Complain(
            Doubtful,
            ToolText::tr("Not everything can be used (%1 remarks); nothing is written.").arg(notes.size()));
    if (!WriteZones(job.target, job.isSealed, zones, lifts, progress, error))
        return Complain(Failed, error);
    Print(ToolText::tr("%1: %2 zones, %3 lifts, %4 remarks")
              .arg(job.target)
              .arg(zones.size())
              .arg(lifts.size())
              .arg(notes.size()));
    return Done;
}

ExitStatus List(const ListJob& job)
{
    QPointF place;
    double kilometres = 0.0;
    if (!job.around.isEmpty()) {
        const QStringList parts = job.around.split(QLatin1Char(','));
        bool areNumbers[3] = {};
        place = QPointF(parts.value(0).toDouble(&areNumbers[0]), parts.value(1).toDouble(&areNumbers[1]));
        kilometres = parts.value(2).toDouble(&areNumbers[2]);
        if (parts.size() != 3 || !areNumbers[0] || !areNumbers[1] || !areNumbers[2] || !IsOnGlobe({place}))
            return Complain(WrongUse, ToolText::tr("--near needs longitude,latitude,kilometres."));
    }
    ZoneRows rows;
    QString error;
    if (!ReadZones(job.source, rows, error))
        return Complain(Failed, error);

    if (job.showsLifts) {
        Print(QStringLiteral("zones\tbegin\texpiry\tstatus\tuser\tpoints"));
        for (const QVariant& entry : qAsConst(rows.lifts)) {
            const QVariantList row = entry.toList();
            Print(QStringList{row.at(3).toString(), row.at(0).toString(), row.at(1).toString(),
                              row.at(5).toString(), row.at(4).toString(),
                              QString::number(ParseArea(row.at(2).toString(), error).size())}
                      .join(QLatin1Char('\t')));
        }
        return Done;
    }

    QHash<QString, int> lifts;
    for (const QVariant& entry : qAsConst(rows.lifts))
        for (const QString& id : entry.toList().at(3).toString().split(QLatin1Char(','), Qt::SkipEmptyParts))
            ++lifts[id];
    Print(QStringLiteral("id\tlongitude\tlatitude\tpoints\tenabled\tlifts"));
    for (const QVariant& entry : qAsConst(rows.zones)) {
        const QVariantList row = entry.toList();
        const QPointF centre(row.at(0).toDouble(), row.at(1).toDouble());
        if (!job.around.isEmpty() &&
            !(IsOnGlobe({centre}) && Distance(place, centre) <= kilometres * metresPerKilometre))
            continue;
        Print(QStringList{row.at(2).toString(), QString::number(centre.x(), 'f', 6),
                          QString::number(centre.y(), 'f', 6),
                          QString::number(ParseArea(row.at(4).toString(), error).size()),
                          row.at(3).toBool() ? QStringLiteral("1") : QStringLiteral("0"),
                          QString::number(lifts.value(row.at(2).toString()))}
                  .join(QLatin1Char('\t')));
    }
    return Done;
}

ExitStatus Check(const QString& source, Progress& progress)
{
    ZoneRows rows;
    QString error;
    if (!ReadZones(source, rows, error))
        return Complain(Failed, error);
    const Notes notes = CheckZones(rows, QDateTime::currentDateTime(), progress);
    for (const Note& note : notes)
        Print(note.Line());
    Print(ToolText::tr("%1: %2 zones, %3 lifts, %4 remarks")
              .arg(source)
              .arg(rows.zones.size())
              .arg(rows.lifts.size())
              .arg(notes.size()));
    if (rows.zones.isEmpty())
        return Complain(Failed,
                        ToolText::tr("\"%1\" holds no zone; the globe does not start with it.").arg(source));
    return notes.isEmpty() ? Done : Doubtful;
}

ExitStatus Seal(const QString& source, const QString& target)
{
    // Such a file beside it holds changes that the database does not have yet.
    for (const char* suffix : {"-wal", "-journal"})
        if (QFileInfo(source + QLatin1String(suffix)).size() > 0)
            return Complain(Failed,
                            ToolText::tr("\"%1\" is being changed by another program: there is \"%2\".")
                                .arg(source, source + QLatin1String(suffix)));
    CAxNoflyZoneMgr file;
    return file.EncryptionNoflyFile(source, target) ? Done : Complain(Failed, file.GetLastError());
}

ExitStatus Open(const QString& source, const QString& target)
{
    QString error;
    const bool isPlain = AxSealedFile::FormOf(source) == AxSealedFile::Form::Database;
    const bool done = isPlain ? AxSealedFile::Copy(source, target, error)
                              : AxSealedFile::Open(source, target, CAxNoflyZoneMgr::GetNoflyKey(), error);
    return done ? Done : Complain(Failed, error);
}
