#pragma once

#include <AxData/AxDataExport.h>

#include <QByteArray>
#include <QCoreApplication>
#include <QString>

class QIODevice;

/**
 * A file sealed as a whole: enciphered, and authenticated so that a changed, a
 * missing and an appended byte are all noticed.
 *
 * Layout: the eight bytes "AxZones" and 1 (the version), 32 random bytes of salt,
 * the 24 bytes with which a libsodium secret stream (XChaCha20-Poly1305) starts,
 * then that stream: chunks of 65536 plain bytes, each 17 bytes longer when
 * sealed, the last one shorter and marked as the last. The first 40 bytes are
 * authenticated along with each chunk. The stream's key is the 32-byte BLAKE2b
 * hash of the caller's key, keyed by the salt. No file is sealed with an empty
 * key or opened with one.
 *
 * Operations on files write the new form aside in the target's folder, bring it
 * to the disk and rename it, so the target is the old file or the new one at any
 * moment. It keeps its owner; a plain form may be read by that owner only, a
 * sealed one by whom the file that it replaces could be. A failed operation
 * leaves the target as it was and says why in `error`, naming the file. Source
 * and target may be the same file. All functions may be called from any thread.
 */
class AXDATA_EXPORT AxSealedFile
{
    Q_DECLARE_TR_FUNCTIONS(AxSealedFile)

public:
    /// What a file is, told by its first bytes.
    enum class Form
    {
        None,     ///< no such file, or it cannot be read
        Unknown,  ///< neither of the two below
        Sealed,   ///< begins as a sealed file does
        Database, ///< begins as a plain SQLite database does
    };

    /// Reads no more than the file's first bytes.
    static Form FormOf(const QString& path);

    /// Larger files are taken for a mistake: all zones of the world come to some 20 MB.
    static constexpr qint64 maxBytes = qint64(1) << 31;

    /// Writes the sealed form of the file `source` to `target`.
    static bool Seal(const QString& source, const QString& target, const QByteArray& key, QString& error);
    /// Writes the plain form of the sealed file `source` to `target`; false also when the key is another one
    /// or a byte was changed.
    static bool Open(const QString& source, const QString& target, const QByteArray& key, QString& error);
    /// Writes the bytes of `source` to `target` as they are.
    static bool Copy(const QString& source, const QString& target, QString& error);

    /// The same between devices that are open already. What was written to `plain` before a failure is
    /// not to be used.
    static bool Seal(QIODevice& plain, QIODevice& sealed, const QByteArray& key, QString& error);
    static bool Open(QIODevice& sealed, QIODevice& plain, const QByteArray& key, QString& error);

    /// Removes what died operations left beside a target. For whoever knows that none is under way.
    static void RemoveLeftovers(const QString& target);
};
