#pragma once

#include <QByteArray>
#include <QString>

#include <functional>

class QIODevice;

/// Makes the new contents of a file out of those of another one.
using AxTransfer = std::function<bool(QIODevice& from, QIODevice& to, QString& error)>;
/// Called with the complete new file, which still bears another name; false keeps the old one.
using AxBeforeRename = std::function<bool(const QString& written, QString& error)>;

/// Who may read what is written.
enum class AxReadableBy
{
    Owner,  ///< the owner of the file that is replaced, nobody else
    Anyone, ///< who could read the file that is replaced; a new file, who may read this user's files
};

/// Writes what `transfer` makes of the source aside, in the target's folder, under a name that nobody can
/// foresee, brings it to the disk, and puts it in the target's place: the target is the old file or the new
/// one at any moment. A symbolic link stays, the file behind it is replaced. On failure the target is as it
/// was, and `error` names the file.
bool AxReplaceFile(const QString& source, const QString& target, AxReadableBy readers,
                   const AxTransfer& transfer, QString& error, const AxBeforeRename& beforeRename = {});

/// The same with contents that are at hand.
bool AxReplaceFile(const QByteArray& contents, const QString& target, AxReadableBy readers, QString& error);

/// Puts a file in another one's place, in one step that outlives a power cut.
bool AxRename(const QString& from, const QString& to, QString& error);

/// The file behind symbolic links.
QString AxRealPath(const QString& path);

/// Files of a target's folder whose names begin with that of the target and this suffix; full paths.
QStringList AxFilesBeside(const QString& target, const QString& suffix);

/// What an AxReplaceFile() that died has left beside a target bears this suffix, at least.
extern const QString axAsideSuffix;
