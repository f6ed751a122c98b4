#include <AxData/AxSealedFile.h>

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <sodium.h>

#include <array>
#include <filesystem>
#include <functional>
#include <system_error>

namespace {
constexpr std::array<char, 8> magic{'A', 'x', 'Z', 'o', 'n', 'e', 's', 1};
constexpr int saltBytes = 32;
constexpr int openHeaderBytes = int(magic.size()) + saltBytes;
constexpr int streamHeaderBytes = crypto_secretstream_xchacha20poly1305_HEADERBYTES;
constexpr int chunkBytes = 65536;
constexpr int chunkOverhead = crypto_secretstream_xchacha20poly1305_ABYTES;
static_assert(crypto_secretstream_xchacha20poly1305_KEYBYTES == crypto_generichash_BYTES);
static_assert(saltBytes >= crypto_generichash_KEYBYTES_MIN && saltBytes <= crypto_generichash_KEYBYTES_MAX);

// With its terminating zero, as SQLite writes it.
const QByteArray databaseMagic("SQLite format 3", 16);

const QString asideSuffix = QStringLiteral(".axpart");

unsigned char* Bytes(QByteArray& data)
{
    return reinterpret_cast<unsigned char*>(data.data());
}

const unsigned char* Bytes(const QByteArray& data)
{
    return reinterpret_cast<const unsigned char*>(data.constData());
}

/// The key of one file; wiped when it goes.
class StreamKey
{
public:
    StreamKey(const QByteArray& key, const QByteArray& header)
    {
        crypto_generichash(bytes.data(), bytes.size(), Bytes(key), static_cast<unsigned>(key.size()),
                           Bytes(header) + magic.size(), saltBytes);
    }
    ~StreamKey() { sodium_memzero(bytes.data(), bytes.size()); }
    StreamKey(const StreamKey&) = delete;
    StreamKey& operator=(const StreamKey&) = delete;
    const unsigned char* data() const { return bytes.data(); }

private:
    std::array<unsigned char, crypto_secretstream_xchacha20poly1305_KEYBYTES> bytes{};
};

struct StreamState
{
    crypto_secretstream_xchacha20poly1305_state state{};
    ~StreamState() { sodium_memzero(&state, sizeof(state)); }
};

bool IsReady(QString& error)
{
    if (sodium_init() >= 0)
        return true;
    error = AxSealedFile::tr("The cipher library could not be started.");
    return false;
}

/// Fewer bytes than asked for only at the end of the device. False when reading fails.
bool ReadUpTo(QIODevice& device, int wanted, QByteArray& data)
{
    data.resize(wanted);
    int done = 0;
    while (done < wanted) {
        const qint64 got = device.read(data.data() + done, wanted - done);
        if (got < 0)
            return false;
        if (got == 0)
            break;
        done += int(got);
    }
    data.truncate(done);
    return true;
}

bool Write(QIODevice& device, const QByteArray& data, QString& error)
{
    const qint64 written = device.write(data);
    if (written == data.size())
        return true;
    error = written < 0 ? AxSealedFile::tr("Writing failed: %1.").arg(device.errorString())
                        : AxSealedFile::tr("Writing failed: the disk is full.");
    return false;
}

QString ReadError(const QIODevice& device)
{
    return AxSealedFile::tr("Reading failed: %1.").arg(device.errorString());
}

QString Named(const QString& path, const QString& reason)
{
    return AxSealedFile::tr("\"%1\": %2").arg(QDir::toNativeSeparators(path), reason);
}

/// The file behind symbolic links, so that these survive the renaming.
QString RealPath(const QString& path)
{
    const QString real = QFileInfo(path).canonicalFilePath();
    return real.isEmpty() ? QFileInfo(path).absoluteFilePath() : real;
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
        error = ReadError(file);
    else
        return true;
    return false;
}

using Transfer = std::function<bool(QIODevice& from, QIODevice& to, QString& error)>;

/// Writes what `transfer` makes of the source aside, and puts it in the target's place when it is complete.
bool Replace(const QString& source, const QString& target, const Transfer& transfer, QString& error)
{
    QFile from(source);
    if (!OpenSource(from, error)) {
        error = Named(source, error);
        return false;
    }
    const QString real = RealPath(target);
    if (QFileInfo(real).isDir()) {
        error = Named(target, AxSealedFile::tr("This is a folder."));
        return false;
    }
    const QString aside = real + asideSuffix;
    // Leftovers bear a name of their own this way; QSaveFile alone would leave "zones.db.Xy12zT".
    QSaveFile to(aside);
    if (!to.open(QIODevice::WriteOnly)) {
        error = Named(aside, AxSealedFile::tr("Writing failed: %1.").arg(to.errorString()));
        return false;
    }
    to.setPermissions(QFile::exists(real) ? QFile::permissions(real) : from.permissions());
    if (!transfer(from, to, error)) {
        error = Named(source, error);
        return false;
    }
    const qint64 written = to.pos();
    if (!to.commit() || QFileInfo(aside).size() != written) {
        error = Named(aside, AxSealedFile::tr("Writing failed: %1.").arg(to.errorString()));
        QFile::remove(aside);
        return false;
    }
    from.close(); // on Windows an open file cannot be replaced
    std::error_code failure;
    std::filesystem::rename(aside.toStdU16String(), real.toStdU16String(), failure);
    if (failure) {
        error = Named(target,
                      AxSealedFile::tr("Writing failed: %1.").arg(QString::fromStdString(failure.message())));
        QFile::remove(aside);
        return false;
    }
    return true;
}
} // namespace

AxSealedFile::Form AxSealedFile::FormOf(const QString& path)
{
    QFile file(path);
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly))
        return Form::None;
    const QByteArray start = file.read(databaseMagic.size());
    if (start == databaseMagic)
        return Form::Database;
    return start.startsWith(QByteArray::fromRawData(magic.data(), int(magic.size()))) ? Form::Sealed
                                                                                      : Form::Unknown;
}

bool AxSealedFile::Seal(QIODevice& plain, QIODevice& sealed, const QByteArray& key, QString& error)
{
    if (!IsReady(error))
        return false;
    QByteArray header(magic.data(), int(magic.size()));
    header.resize(openHeaderBytes);
    randombytes_buf(Bytes(header) + magic.size(), saltBytes);
    const StreamKey streamKey(key, header);
    StreamState stream;
    QByteArray streamHeader(streamHeaderBytes, Qt::Uninitialized);
    crypto_secretstream_xchacha20poly1305_init_push(&stream.state, Bytes(streamHeader), streamKey.data());
    if (!Write(sealed, header, error) || !Write(sealed, streamHeader, error))
        return false;

    QByteArray chunk;
    QByteArray box;
    do {
        if (!ReadUpTo(plain, chunkBytes, chunk)) {
            error = ReadError(plain);
            return false;
        }
        const unsigned char tag =
            chunk.size() < chunkBytes ? crypto_secretstream_xchacha20poly1305_TAG_FINAL : 0;
        box.resize(chunk.size() + chunkOverhead);
        crypto_secretstream_xchacha20poly1305_push(&stream.state, Bytes(box), nullptr, Bytes(chunk),
                                                   static_cast<unsigned>(chunk.size()), Bytes(header),
                                                   static_cast<unsigned>(header.size()), tag);
        if (!Write(sealed, box, error))
            return false;
    } while (chunk.size() == chunkBytes);
    return true;
}

bool AxSealedFile::Open(QIODevice& sealed, QIODevice& plain, const QByteArray& key, QString& error)
{
    if (!IsReady(error))
        return false;
    QByteArray header;
    QByteArray streamHeader;
    if (!ReadUpTo(sealed, openHeaderBytes, header) || !ReadUpTo(sealed, streamHeaderBytes, streamHeader)) {
        error = ReadError(sealed);
        return false;
    }
    if (!header.startsWith(QByteArray::fromRawData(magic.data(), int(magic.size())))) {
        error = tr("This is not a sealed zone file.");
        return false;
    }
    if (streamHeader.size() < streamHeaderBytes) {
        error = tr("The file is cut short.");
        return false;
    }
    const StreamKey streamKey(key, header);
    StreamState stream;
    if (crypto_secretstream_xchacha20poly1305_init_pull(&stream.state, Bytes(streamHeader),
                                                        streamKey.data()) != 0) {
        error = tr("The file is damaged.");
        return false;
    }

    QByteArray box;
    QByteArray chunk;
    bool isFirst = true;
    for (;;) {
        if (!ReadUpTo(sealed, chunkBytes + chunkOverhead, box)) {
            error = ReadError(sealed);
            return false;
        }
        if (box.size() < chunkOverhead) {
            error = tr("The file is cut short.");
            return false;
        }
        chunk.resize(box.size() - chunkOverhead);
        unsigned char tag = 0;
        if (crypto_secretstream_xchacha20poly1305_pull(&stream.state, Bytes(chunk), nullptr, &tag, Bytes(box),
                                                       static_cast<unsigned>(box.size()), Bytes(header),
                                                       static_cast<unsigned>(header.size())) != 0) {
            error = isFirst ? tr("The file is sealed with another key, or it is damaged.")
                            : tr("The file is damaged or cut short.");
            return false;
        }
        if (!Write(plain, chunk, error))
            return false;
        if (tag == crypto_secretstream_xchacha20poly1305_TAG_FINAL)
            break;
        isFirst = false;
    }
    char beyond = 0;
    if (sealed.read(&beyond, 1) > 0) {
        error = tr("Something was appended to the file.");
        return false;
    }
    return true;
}

bool AxSealedFile::Seal(const QString& source, const QString& target, const QByteArray& key, QString& error)
{
    return Replace(
        source, target,
        [&key](QIODevice& from, QIODevice& to, QString& reason) { return Seal(from, to, key, reason); },
        error);
}

bool AxSealedFile::Open(const QString& source, const QString& target, const QByteArray& key, QString& error)
{
    return Replace(
        source, target,
        [&key](QIODevice& from, QIODevice& to, QString& reason) { return Open(from, to, key, reason); },
        error);
}

bool AxSealedFile::Copy(const QString& source, const QString& target, QString& error)
{
    return Replace(
        source, target,
        [](QIODevice& from, QIODevice& to, QString& reason) {
            QByteArray chunk;
            do {
                if (!ReadUpTo(from, chunkBytes, chunk)) {
                    reason = ReadError(from);
                    return false;
                }
                if (!Write(to, chunk, reason))
                    return false;
            } while (chunk.size() == chunkBytes);
            return true;
        },
        error);
}

void AxSealedFile::RemoveLeftovers(const QString& target)
{
    const QFileInfo real(RealPath(target));
    const QString aside = real.fileName() + asideSuffix;
    const QDir folder = real.dir();
    for (const QString& name : folder.entryList(QDir::Files | QDir::Hidden)) {
        if (name == aside || name.startsWith(aside + QLatin1Char('.')))
            QFile::remove(folder.filePath(name));
    }
}
