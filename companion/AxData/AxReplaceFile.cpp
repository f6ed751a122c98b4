#include "AxReplaceFile.h"

#include "AxDisk.h"

#include <AxData/AxSealedFile.h>

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>

#include <filesystem>
#include <system_error>

const QString axAsideSuffix = QStringLiteral(".axpart");

namespace {
QString Named(const QString& path, const QString& reason)
{
    return AxSealedFile::tr("\"%1\": %2").arg(QDir::toNativeSeparators(path), reason);
}

QString WriteError(const QString& reason)
{
    return AxSealedFile::tr("Writing failed: %1.").arg(reason);
}

bool OpenSource(QFile& file, QString& error)
{
    const QFileInfo info(file.fileName());
    if (!info.exists())
        error = AxSealedFile::tr("There is no such file.");
    else if (!info.isFile())
        error = AxSealedFile::tr("This is not a file.");
    else if (info.size() == 0)
        error = AxSealedFile::tr("The file is empty.");
    else if (info.size() > AxSealedFile::maxBytes)
        error = AxSealedFile::tr("The file is too large to be a zone file.");
    else if (!file.open(QIODevice::ReadOnly))
        error = AxSealedFile::tr("Reading failed: %1.").arg(file.errorString());
    else
        return true;
    return false;
}

QString UnforeseenName(const QString& target)
{
    const quint64 number = QRandomGenerator::system()->generate64();
    return target + axAsideSuffix + QStringLiteral(".%1").arg(number, 16, 16, QLatin1Char('0'));
}

/// A file that is being written; it goes with the object unless it has been given another name.
class Aside
{
public:
    explicit Aside(const QString& target) : name(UnforeseenName(target)), file(name) {}
    ~Aside()
    {
        file.close();
        if (isMade)
            QFile::remove(name);
    }
    Aside(const Aside&) = delete;
    Aside& operator=(const Aside&) = delete;

    bool Make(AxReadableBy readers, QString& error)
    {
        if (readers == AxReadableBy::Owner) {
            isMade = AxDisk::CreatePrivate(file, error);
        } else {
            isMade = file.open(QIODevice::WriteOnly | QIODevice::NewOnly);
            if (!isMade)
                error = file.errorString();
        }
        return isMade;
    }
    bool Place(const QString& target, QString& error)
    {
        file.close();
        isMade = !AxRename(name, target, error);
        return !isMade;
    }

    const QString name;
    QFile file; // it forgets its name where the system opens it

private:
    bool isMade = false;
};

bool Replace(QIODevice& from, const QString& source, const QString& target, AxReadableBy readers,
             const AxTransfer& transfer, QString& error, const AxBeforeRename& beforeRename)
{
    const QString real = AxRealPath(target);
    if (QFileInfo(real).isDir()) {
        error = Named(target, AxSealedFile::tr("This is a folder."));
        return false;
    }
    Aside to(real);
    if (!to.Make(readers, error)) {
        error = Named(target, WriteError(error));
        return false;
    }
    if (QFile::exists(real)) {
        AxDisk::TakeOwner(to.file, real);
        if (readers == AxReadableBy::Anyone)
            to.file.setPermissions(QFile::permissions(real));
    }
    if (!transfer(from, to.file, error)) {
        error = Named(source, error);
        return false;
    }
    const qint64 written = to.file.pos();
    if (!AxDisk::Sync(to.file, error) || to.file.size() != written) {
        error = Named(target, WriteError(error));
        return false;
    }
    if (beforeRename && !beforeRename(to.name, error))
        return false;
    from.close(); // on Windows an open file cannot be replaced
    return to.Place(real, error);
}
} // namespace

QString AxRealPath(const QString& path)
{
    const QFileInfo info(path);
    const QString real = info.canonicalFilePath();
    if (!real.isEmpty())
        return real;
    // So that a file has the same name before and after it is made.
    const QString folder = QFileInfo(info.absolutePath()).canonicalFilePath();
    return folder.isEmpty() ? info.absoluteFilePath() : QDir(folder).filePath(info.fileName());
}

QStringList AxFilesBeside(const QString& target, const QString& suffix)
{
    const QFileInfo real(AxRealPath(target));
    QStringList files;
    for (const QString& name : real.dir().entryList(QDir::Files | QDir::Hidden | QDir::System))
        if (name.startsWith(real.fileName() + suffix))
            files << real.dir().filePath(name);
    return files;
}

bool AxRename(const QString& from, const QString& to, QString& error)
{
    std::error_code failure;
    std::filesystem::rename(from.toStdU16String(), to.toStdU16String(), failure);
    if (failure) {
        error = Named(to, WriteError(QString::fromStdString(failure.message())));
        return false;
    }
    AxDisk::SyncFolder(QFileInfo(to).path());
    return true;
}

bool AxReplaceFile(const QString& source, const QString& target, AxReadableBy readers,
                   const AxTransfer& transfer, QString& error, const AxBeforeRename& beforeRename)
{
    QFile from(source);
    if (!OpenSource(from, error)) {
        error = Named(source, error);
        return false;
    }
    return Replace(from, source, target, readers, transfer, error, beforeRename);
}

bool AxReplaceFile(const QByteArray& contents, const QString& target, AxReadableBy readers, QString& error)
{
    QBuffer from;
    from.setData(contents);
    from.open(QIODevice::ReadOnly);
    const AxTransfer write = [&contents](QIODevice&, QIODevice& to, QString& reason) {
        // On a full disk the first call writes a part, and only the next one says why it was no more.
        for (qint64 done = 0; done < contents.size();) {
            const qint64 written = to.write(contents.constData() + done, contents.size() - done);
            if (written <= 0) {
                reason = WriteError(to.errorString());
                return false;
            }
            done += written;
        }
        return true;
    };
    return Replace(from, target, target, readers, write, error, {});
}
