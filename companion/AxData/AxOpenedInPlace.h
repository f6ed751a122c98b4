#pragma once

#include <QByteArray>
#include <QString>

/// A zone file that is plain for a while. The sealed file stays beside it meanwhile, under a name that tells
/// which plain form it was opened to: NoflyZone.db.axsealed.<hash>. Sealing is therefore no more than a
/// renaming, which needs no room and no key, keeps owner and permissions, and may be done by whoever finds
/// the two after a death. Whoever calls these holds the file's lock. Any thread.
namespace AxOpenedInPlace {
/// Puts the plain form of a sealed file, which its owner only may read, in the file's place.
bool Open(const QString& path, const QByteArray& key, QString& error);

/// Puts the sealed file back. Where the plain form is another one by now, or no sealed one lies beside it, it
/// is sealed anew with the key.
bool Seal(const QString& path, const QByteArray& key, QString& error);

/// Does away with what a process that died has left: a plain form gives way to the sealed file that it was
/// opened from; other sealed files beside it, and what was being written, go.
void TakeUp(const QString& path);
} // namespace AxOpenedInPlace
