#include <AxData/AxReplaceFile.h>
#include <AxData/project/AxProjectFields.h>
#include <AxData/project/AxProjectFile.h>
#include <AxData/project/AxProjectTables.h>
#include <AxData/project/AxSqlFile.h>

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QtEndian>

const QString axProjectSuffix = QStringLiteral(".axproject");

namespace {
using State = AxProjectRead::State;
constexpr int headerBytes = 100; // of a SQLite file
constexpr int versionPlace = 60; // in it, big-endian
constexpr int applicationPlace = 68;
constexpr qint64 mostBytes = qint64(1) << 31;

QString Shown(const QString& path)
{
    return QDir::toNativeSeparators(path);
}

// What a file is, without a word of SQL, which would have to trust it.
struct Header
{
    State state = State::NotThere;
    QString reason;
    int version = 0;
    bool isEmpty = false;
};

quint32 NumberAt(const QByteArray& header, int place)
{
    return qFromBigEndian<quint32>(header.constData() + place);
}

Header HeaderOf(const QString& path)
{
    const auto answer = [](State state, const QString& reason) {
        Header header;
        header.state = state;
        header.reason = reason;
        return header;
    };
    const QFileInfo info(path);
    if (!info.exists())
        return answer(State::NotThere, AxProjectText::tr("There is no such file."));
    if (!info.isFile())
        return answer(State::NotReadable, AxProjectText::tr("This is not a file."));
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return answer(State::NotReadable, AxProjectText::tr("Reading failed: %1.").arg(file.errorString()));
    const QByteArray bytes = file.read(headerBytes);
    if (bytes.isEmpty() && file.error() != QFileDevice::NoError)
        return answer(State::NotReadable, AxProjectText::tr("Reading failed: %1.").arg(file.errorString()));
    Header header = answer(State::NotAProject, AxProjectText::tr("This is no project."));
    header.isEmpty = bytes.isEmpty();
    if (header.isEmpty)
        header.reason = AxProjectText::tr("The file is empty.");
    if (bytes.size() < headerBytes || !bytes.startsWith(QByteArray("SQLite format 3", 16)) ||
        NumberAt(bytes, applicationPlace) != AxProjectTables::projectID)
        return header;
    header.version = static_cast<int>(NumberAt(bytes, versionPlace));
    if (header.version > AxProjectTables::version)
        return answer(State::Newer, AxProjectText::tr("It was written by a later version of the program."));
    if (header.version < 1 || file.size() > mostBytes)
        return answer(State::Damaged, AxProjectText::tr("The file is damaged: %1.")
                                          .arg(AxProjectText::tr("its version or its size cannot be")));
    header.state = header.version < AxProjectTables::version ? State::Migrated : State::Whole;
    header.reason.clear();
    return header;
}

// The bytes of a file that holds the project; empty on a fault.
QByteArray BytesOf(const AxProject& project, QString& fault)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("project"));
    const auto inFolder = [](const QString& reason) {
        return AxProjectText::tr("the folder for temporary files, \"%1\": %2")
            .arg(Shown(QDir::tempPath()), reason);
    };
    if (!folder.isValid()) {
        fault = inFolder(folder.errorString());
        return {};
    }
    {
        AxSqlFile file(path, AxSqlFile::Mode::Write);
        // It lives until its bytes are read: nothing of it has to outlive a fault.
        const bool isWritten =
            file.IsOpen() && file.Run(QStringLiteral("PRAGMA journal_mode = OFF")) &&
            file.Run(QStringLiteral("PRAGMA synchronous = OFF")) && file.database.transaction() &&
            AxProjectTables::Create(file.database, AxProjectTables::projectID, fault) &&
            AxProjectTables::Write(file.database, project, fault) && file.Run(QStringLiteral("COMMIT"));
        if (!isWritten) {
            fault = inFolder(fault.isEmpty() ? file.Fault() : fault);
            return {};
        }
    }
    QFile written(path);
    if (written.open(QIODevice::ReadOnly))
        return written.readAll();
    fault = inFolder(written.errorString());
    return {};
}

void ReadTables(QSqlDatabase& database, int version, AxProjectRead& read, QString& wrong)
{
    if (AxProjectTables::Read(database, version, read.project, wrong))
        return;
    AxProject rest;
    QString more;
    if (AxProjectTables::Read(database, version, rest, more, &read.leftOut))
        read.rest = rest;
    else
        read.leftOut.clear();
}
} // namespace

AxProjectRead AxReadProject(const QString& path)
{
    const Header header = HeaderOf(path);
    AxProjectRead read;
    read.state = header.state;
    QString reason = header.reason;
    if (read.IsRead()) {
        AxSqlFile file(path, AxSqlFile::Mode::Look);
        QString wrong;
        if (!file.IsOpen() || !file.IsSound())
            wrong = file.Fault();
        else
            ReadTables(file.database, header.version, read, wrong);
        if (!wrong.isEmpty()) {
            read.state = State::Damaged;
            reason = AxProjectText::tr("The file is damaged: %1.").arg(wrong);
        }
    }
    if (!read.IsRead())
        read.fault = QStringLiteral("\"%1\": %2").arg(Shown(path), reason);
    return read;
}

QString AxProjectFault(const AxProject& project)
{
    return AxProjectTables::FaultOf(project);
}

namespace {
// Why the file at a path must stay; empty when it may be replaced.
QString WhyKept(const QString& path, const Header& header)
{
    if (header.state == State::NotThere || header.isEmpty)
        return {};
    const AxProjectRead there = AxReadProject(path);
    return there.IsRead() ? QString()
                          : there.fault + QLatin1Char(' ') + AxProjectText::tr("It is not overwritten.");
}

// Copies a file of an earlier version for the programs that read it; the name of the copy, empty on a fault.
QString KeepVersion(const QString& path, int version, QString& fault)
{
    const QString real = AxRealPath(path);
    const bool hasSuffix = real.endsWith(axProjectSuffix, Qt::CaseInsensitive);
    const QString suffix = hasSuffix ? real.right(axProjectSuffix.size()) : QString();
    const QString stem = QStringLiteral("%1.v%2").arg(real.chopped(suffix.size())).arg(version);
    QString copy = stem + suffix;
    for (int i = 2; QFileInfo::exists(copy); ++i)
        copy = QStringLiteral("%1-%2%3").arg(stem).arg(i).arg(suffix);
    QFile file(real);
    if (file.copy(copy))
        return copy;
    fault = QStringLiteral("\"%1\": %2")
                .arg(Shown(copy), AxProjectText::tr("Writing failed: %1.").arg(file.errorString()));
    return {};
}

// What writers that were killed have left; one that lives is done within the minute.
void RemoveLeftovers(const QString& path)
{
    const QDateTime minuteAgo = QDateTime::currentDateTime().addSecs(-60);
    for (const QString& file : AxFilesBeside(path, axAsideSuffix))
        if (QFileInfo(file).lastModified() < minuteAgo)
            QFile::remove(file);
}
} // namespace

bool AxWriteProject(const QString& path, const AxProject& project, QString* fault, QString* kept)
{
    if (kept)
        kept->clear();
    const auto fail = [&](const QString& reason) {
        if (fault)
            *fault = reason;
        return false;
    };
    const auto named = [&](const QString& reason) {
        return QStringLiteral("\"%1\": %2").arg(Shown(path), reason);
    };
    const Header header = HeaderOf(path);
    const QString whyKept = WhyKept(path, header);
    if (!whyKept.isEmpty())
        return fail(whyKept);
    QString reason = AxProjectFault(project);
    if (!reason.isEmpty())
        return fail(named(
            AxProjectText::tr("Nothing is written, because it could not be read again: %1.").arg(reason)));
    const QByteArray bytes = BytesOf(project, reason);
    if (bytes.isEmpty())
        return fail(named(AxProjectText::tr("Writing failed: %1.").arg(reason)));
    QString copy;
    if (header.state == State::Migrated) {
        copy = KeepVersion(path, header.version, reason);
        if (copy.isEmpty())
            return fail(reason);
    }
    if (!AxReplaceFile(bytes, path, AxReadableBy::Anyone, reason)) {
        if (!copy.isEmpty())
            QFile::remove(copy);
        return fail(reason);
    }
    if (kept)
        *kept = copy;
    RemoveLeftovers(path);
    return true;
}
