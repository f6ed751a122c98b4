#include "AxOpenedInPlace.h"

#include "AxReplaceFile.h"

#include <AxData/AxSealedFile.h>

#include <QFile>
#include <QFileInfo>

#include <sodium.h>

#include <array>
#include <filesystem>
#include <system_error>

namespace {
const QString sealedSuffix = QStringLiteral(".axsealed.");

/// Hexadecimal digits; empty when the file cannot be read.
QString HashOf(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered) || sodium_init() < 0)
        return {};
    constexpr int chunkBytes = 1 << 20;
    QByteArray chunk(chunkBytes, Qt::Uninitialized);
    crypto_generichash_state state;
    std::array<unsigned char, crypto_generichash_BYTES_MIN> hash{};
    crypto_generichash_init(&state, nullptr, 0, hash.size());
    qint64 got = 0;
    while ((got = file.read(chunk.data(), chunkBytes)) > 0)
        crypto_generichash_update(&state, reinterpret_cast<const unsigned char*>(chunk.constData()),
                                  static_cast<unsigned long long>(got));
    crypto_generichash_final(&state, hash.data(), hash.size());
    if (got < 0)
        return {};
    return QString::fromLatin1(
        QByteArray::fromRawData(reinterpret_cast<const char*>(hash.data()), int(hash.size())).toHex());
}

/// A second name for the file; a second file where there are none.
bool Keep(const QString& path, const QString& name, QString& error)
{
    QFile::remove(name);
    std::error_code failure;
    std::filesystem::create_hard_link(path.toStdU16String(), name.toStdU16String(), failure);
    return !failure || AxSealedFile::Copy(path, name, error);
}

void RemoveSealedBeside(const QString& path)
{
    for (const QString& file : AxFilesBeside(path, sealedSuffix))
        QFile::remove(file);
}
} // namespace

bool AxOpenedInPlace::Open(const QString& path, const QByteArray& key, QString& error)
{
    QString kept;
    const bool done = AxReplaceFile(
        path, path, AxReadableBy::Owner,
        [&key](QIODevice& from, QIODevice& to, QString& reason) {
            return AxSealedFile::Open(from, to, key, reason);
        },
        error,
        [&](const QString& plain, QString& reason) {
            kept = path + sealedSuffix + HashOf(plain);
            return Keep(path, kept, reason);
        });
    if (!done && !kept.isEmpty())
        QFile::remove(kept);
    return done;
}

bool AxOpenedInPlace::Seal(const QString& path, const QByteArray& key, QString& error)
{
    const QStringList beside = AxFilesBeside(path, sealedSuffix);
    if (beside.isEmpty())
        return AxSealedFile::Seal(path, path, key, error);
    QString sealed = path + sealedSuffix + HashOf(path);
    if (!beside.contains(sealed)) {
        // Over the old one, whose owner and permissions it takes.
        sealed = beside.front();
        if (!AxSealedFile::Seal(path, sealed, key, error))
            return false;
    }
    if (!AxRename(sealed, path, error))
        return false;
    RemoveSealedBeside(path);
    return true;
}

void AxOpenedInPlace::TakeUp(const QString& path)
{
    AxSealedFile::RemoveLeftovers(path);
    const QStringList beside = AxFilesBeside(path, sealedSuffix);
    if (beside.isEmpty())
        return;
    const AxSealedFile::Form form = AxSealedFile::FormOf(path);
    const QString hash = form == AxSealedFile::Form::Database ? HashOf(path) : QString();
    QString sealed;
    if (!hash.isEmpty())
        sealed = path + sealedSuffix + hash;
    else if (form == AxSealedFile::Form::None && beside.size() == 1)
        sealed = beside.front(); // what may not be read is another user's plain form
    QString ignored;
    const bool isThere = beside.contains(sealed) && !QFileInfo(sealed).isSymLink();
    const bool isPutBack = isThere && AxRename(sealed, path, ignored);
    // Another plain form, put there after the death, counts.
    const bool isOther = !hash.isEmpty() && !isThere;
    if (isPutBack || isOther || form == AxSealedFile::Form::Sealed)
        RemoveSealedBeside(path);
}
