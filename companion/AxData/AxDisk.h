#pragma once

#include <QFile>
#include <QString>

/// What Qt does not offer of the file system. Only AxDisk.cpp calls the operating system. What fails says in
/// `error` what the system says. Any thread.
namespace AxDisk {
/// Makes a file that only this user may read, and opens it for writing. False where the name is taken, be it
/// by a link, which is not followed.
bool CreatePrivate(QFile& file, QString& error);

/// Brings what was written so far to the disk.
bool Sync(QFile& file, QString& error);

/// Brings the names in a folder to the disk, so that a renaming in it outlives a power cut.
void SyncFolder(const QString& folder);

/// Gives a file the owner and the group of another one, as far as this user may: root, who may, would
/// otherwise take files away from whose they are.
void TakeOwner(const QFile& file, const QString& from);
} // namespace AxDisk
