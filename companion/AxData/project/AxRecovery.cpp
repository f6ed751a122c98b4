#include <AxData/project/AxProjectFields.h>
#include <AxData/project/AxProjectTables.h>
#include <AxData/project/AxRecovery.h>
#include <AxData/project/AxRecoveryWriter.h>
#include <AxData/project/AxSqlFile.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QSqlQuery>
#include <QStandardPaths>

#include <algorithm>

namespace {
enum class Leftover
{
    Nothing, // that anybody could want
    Something,
    ForAnother // a later version of the program
};

Leftover Read(AxRecovery& recovery)
{
    // A change that was broken off is taken back by this.
    AxSqlFile file(recovery.file, AxSqlFile::Mode::Write);
    const auto fail = [&](const QString& reason) {
        recovery.fault = QStringLiteral("\"%1\": %2")
                             .arg(QDir::toNativeSeparators(recovery.file),
                                  AxProjectText::tr("The file is damaged: %1.").arg(reason));
        return Leftover::Something;
    };
    if (!file.IsOpen())
        return fail(file.Fault());
    if (!file.IsSound())
        return fail(file.Fault());
    const qint64 application = file.Number(QStringLiteral("PRAGMA application_id"));
    const qint64 version = file.Number(QStringLiteral("PRAGMA user_version"));
    if (application == 0)
        return Leftover::Nothing; // its program died while it made it
    if (application == AxRecoveryFile::applicationID && version > AxProjectTables::version)
        return Leftover::ForAnother;
    if (application != AxRecoveryFile::applicationID || version < 1)
        return fail(AxProjectText::tr("its version or its size cannot be"));
    QSqlQuery told(file.database);
    if (told.exec(QStringLiteral("SELECT [path], [written] FROM [recovery]")) && told.next()) {
        recovery.projectPath = told.value(0).toString();
        recovery.time = QDateTime::fromString(told.value(1).toString(), Qt::ISODateWithMs);
    }
    QString fault;
    if (!AxProjectTables::Read(file.database, static_cast<int>(version), recovery.project, fault,
                               &recovery.leftOut))
        return fail(fault);
    return Leftover::Something;
}
} // namespace

QString AxRecoveryFolder()
{
    return QDir(QStandardPaths::writableLocation(QStandardPaths::AppDataLocation))
        .filePath(QStringLiteral("recovery"));
}

QList<AxRecovery> AxFindRecoveries(const QString& folder)
{
    QList<AxRecovery> found;
    for (const QFileInfo& info :
         QDir(folder).entryInfoList({QLatin1Char('*') + AxRecoveryFile::suffix}, QDir::Files)) {
        AxRecovery recovery;
        recovery.file = info.filePath();
        recovery.hold = AxRecoveryFile::LockOf(recovery.file);
        if (!recovery.hold->tryLock(0))
            continue;
        recovery.time = info.lastModified().toUTC();
        switch (Read(recovery)) {
        case Leftover::Something:
            found += recovery;
            break;
        case Leftover::Nothing:
            AxRecoveryFile::Remove(recovery.file);
            break;
        case Leftover::ForAnother:
            break;
        }
    }
    std::sort(found.begin(), found.end(),
              [](const AxRecovery& a, const AxRecovery& b) { return a.time > b.time; });
    return found;
}

QString AxPutRecoveryAside(AxRecovery& recovery)
{
    const QString first = recovery.file + QStringLiteral(".damaged");
    QString aside = first;
    for (int i = 2; QFileInfo::exists(aside); ++i)
        aside = QStringLiteral("%1-%2").arg(first).arg(i);
    if (!QFile::rename(recovery.file, aside))
        return {};
    const QString journal = QStringLiteral("-journal");
    QFile::rename(recovery.file + journal, aside + journal);
    recovery.hold.reset();
    return aside;
}

void AxDropRecovery(AxRecovery& recovery)
{
    AxRecoveryFile::Remove(recovery.file);
    recovery.hold.reset();
}
