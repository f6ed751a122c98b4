#include "ZoneDatabase.h"

#include "Progress.h"
#include "ToolText.h"
#include "ZoneShapes.h"

#include <AxData/AxPrivateFolder.h>
#include <AxData/AxSealedFile.h>
#include <AxData/CAxNoflyZoneMgr.h>

#include <QFileInfo>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>

namespace {
const QString connectionName = QStringLiteral("axnofly-write");

struct Table
{
    QString definition;
    QString insertion;
};

Table ZoneTable()
{
    return {QStringLiteral("CREATE TABLE no_fly_zone(lng REAL, lat REAL, local_id TEXT, enable INTEGER, "
                           "area TEXT)"),
            QStringLiteral("INSERT INTO no_fly_zone VALUES(?, ?, ?, ?, ?)")};
}

Table LiftTable()
{
    return {QStringLiteral("CREATE TABLE lift_no_fly_zone(begin_at TEXT, expired_at TEXT, area TEXT, "
                           "local_ids TEXT, user_id TEXT, status INTEGER)"),
            QStringLiteral("INSERT INTO lift_no_fly_zone VALUES(?, ?, ?, ?, ?, ?)")};
}

bool Insert(const QSqlDatabase& database, const std::vector<Zone>& zones, const std::vector<Lift>& lifts,
            Progress& progress, QString& error)
{
    QSqlQuery query(database);
    const auto run = [&](bool done) {
        if (!done)
            error = query.lastError().databaseText();
        return done;
    };
    // The file is renamed into place when it is complete, so SQLite need not guard it. Outlines of some
    // hundred points fill pages of 16 kB best.
    for (const char* setting :
         {"PRAGMA page_size = 16384", "PRAGMA journal_mode = OFF", "PRAGMA synchronous = OFF", "BEGIN"})
        if (!run(query.exec(QLatin1String(setting))))
            return false;
    if (!run(query.exec(ZoneTable().definition)) || !run(query.exec(LiftTable().definition)))
        return false;

    progress.Begin(ToolText::tr("Writing zones"), qint64(zones.size()));
    if (!run(query.prepare(ZoneTable().insertion)))
        return false;
    qint64 count = 0;
    for (const Zone& zone : zones) {
        const QPointF centre = BoxCentre(zone.ring);
        query.bindValue(0, centre.x());
        query.bindValue(1, centre.y());
        query.bindValue(2, zone.id);
        query.bindValue(3, zone.isEnabled ? 1 : 0);
        query.bindValue(4, FormatArea(zone.ring));
        if (!run(query.exec()))
            return false;
        progress.Step(++count);
    }
    if (!run(query.prepare(LiftTable().insertion)))
        return false;
    for (const Lift& lift : lifts) {
        query.bindValue(0, lift.begin);
        query.bindValue(1, lift.expiry);
        query.bindValue(2, FormatArea(lift.ring));
        query.bindValue(3, lift.zoneIds.join(QLatin1Char(',')));
        query.bindValue(4, lift.user);
        query.bindValue(5, lift.status);
        if (!run(query.exec()))
            return false;
    }
    return run(query.exec(QStringLiteral("COMMIT")));
}
} // namespace

bool WriteZones(const QString& target, bool isSealed, const std::vector<Zone>& zones,
                const std::vector<Lift>& lifts, Progress& progress, QString& error)
{
    const AxPrivateFolder work;
    if (!work.IsValid()) {
        error = ToolText::tr("There is no temporary folder: %1.").arg(work.ErrorString());
        return false;
    }
    const QString plain = work.FilePath();
    bool done = false;
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), connectionName);
        database.setDatabaseName(plain);
        if (!database.open())
            error = database.lastError().text();
        else
            done = Insert(database, zones, lifts, progress, error);
        database.close();
    }
    QSqlDatabase::removeDatabase(connectionName);
    if (!done) {
        error = ToolText::tr("The zones cannot be written: %1.").arg(error);
        return false;
    }
    return isSealed ? AxSealedFile::Seal(plain, target, CAxNoflyZoneMgr::GetNoflyKey(), error)
                    : AxSealedFile::Copy(plain, target, error);
}

bool ReadZones(const QString& source, ZoneRows& rows, QString& error)
{
    const AxPrivateFolder work;
    if (!work.IsValid()) {
        error = ToolText::tr("There is no temporary folder: %1.").arg(work.ErrorString());
        return false;
    }
    const QString plain = work.FilePath();
    CAxNoflyZoneMgr file;
    const bool done =
        file.DecryptionNoflyFile(source, plain) && file.ConnectDataBase(plain) &&
        file.SelectRecord(QStringLiteral("lng, lat, local_id, enable, area"), QStringLiteral("no_fly_zone"),
                          {}, {}, rows.zones) &&
        file.SelectRecord(QStringLiteral("begin_at, expired_at, area, local_ids, user_id, status"),
                          QStringLiteral("lift_no_fly_zone"), {}, {}, rows.lifts);
    if (!done)
        error = file.GetLastError().replace(plain, source);
    return done;
}
