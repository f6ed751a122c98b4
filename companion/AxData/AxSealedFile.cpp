#include <AxData/AxSealedFile.h>

#include "AxReplaceFile.h"

#include <QFile>
#include <QFileInfo>

#include <sodium.h>

#include <array>

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

bool IsReady(const QByteArray& key, QString& error)
{
    if (key.isEmpty())
        error = AxSealedFile::tr("The key is empty.");
    else if (sodium_init() < 0)
        error = AxSealedFile::tr("The cipher library could not be started.");
    else
        return true;
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
    if (!IsReady(key, error))
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
    if (!IsReady(key, error))
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
    return AxReplaceFile(
        source, target, AxReadableBy::Anyone,
        [&key](QIODevice& from, QIODevice& to, QString& reason) { return Seal(from, to, key, reason); },
        error);
}

bool AxSealedFile::Open(const QString& source, const QString& target, const QByteArray& key, QString& error)
{
    return AxReplaceFile(
        source, target, AxReadableBy::Owner,
        [&key](QIODevice& from, QIODevice& to, QString& reason) { return Open(from, to, key, reason); },
        error);
}

bool AxSealedFile::Copy(const QString& source, const QString& target, QString& error)
{
    return AxReplaceFile(
        source, target, FormOf(source) == Form::Sealed ? AxReadableBy::Anyone : AxReadableBy::Owner,
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
    for (const QString& file : AxFilesBeside(target, axAsideSuffix))
        QFile::remove(file);
}
