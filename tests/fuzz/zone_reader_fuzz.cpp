// What comes out of zone files, sealed and plain ones: any bytes end in rows or in an error. The first byte
// of the input says which way the rest goes.
#include <AxData/AxSealedFile.h>
#include <AxData/CAxNoflyZoneMgr.h>

#include <QBuffer>
#include <QCoreApplication>
#include <QFile>
#include <QLoggingCategory>
#include <QTemporaryDir>

#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace {
void Require(bool holds)
{
    if (!holds)
        std::abort();
}

bool Seal(QByteArray bytes, QByteArray& sealed, const QByteArray& key)
{
    QBuffer from(&bytes);
    QBuffer to(&sealed);
    QString error;
    return from.open(QIODevice::ReadOnly) && to.open(QIODevice::WriteOnly) &&
           AxSealedFile::Seal(from, to, key, error);
}

bool Open(QByteArray bytes, QByteArray& plain, const QByteArray& key)
{
    QBuffer from(&bytes);
    QBuffer to(&plain);
    QString error;
    const bool done = from.open(QIODevice::ReadOnly) && to.open(QIODevice::WriteOnly) &&
                      AxSealedFile::Open(from, to, key, error);
    Require(done == error.isEmpty());
    return done;
}

/// Bytes that were sealed come back; with a byte changed, cut off or appended they do not.
void Tamper(const QByteArray& input)
{
    if (input.size() < 4)
        return;
    const QByteArray key = input.left(1);
    const QByteArray plain = input.mid(4);
    QByteArray sealed;
    QByteArray again;
    Require(Seal(plain, sealed, key));
    Require(Open(sealed, again, key) && again == plain);
    const int place = (uchar(input[1]) | uchar(input[2]) << 8) % sealed.size();
    QByteArray changed = sealed;
    changed[place] = char(changed[place] ^ (input[3] == 0 ? 1 : input[3]));
    Require(!Open(changed, again, key));
    Require(!Open(sealed.left(place), again, key));
    Require(!Open(sealed + input.mid(3, 1), again, key));
    Require(!Open(sealed, again, key + 'x'));
}

/// Any bytes as a plain database.
void Read(const QByteArray& input)
{
    static const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("zones.db"));
    QFile file(path);
    file.remove(); // truncated files are brought to the disk when they are closed
    Require(file.open(QIODevice::WriteOnly) && file.write(input) == input.size());
    file.close();
    CAxNoflyZoneMgr zones;
    QList<QVariant> rows;
    if (!zones.ConnectDataBase(path))
        return;
    zones.SelectRecord(QStringLiteral("lng, lat, local_id, enable, area"), QStringLiteral("no_fly_zone"), {},
                       {}, rows);
    for (const QVariant& row : qAsConst(rows))
        Require(row.toList().size() == 5);
    zones.SelectRecord(QStringLiteral("begin_at, expired_at, area, local_ids, user_id, status"),
                       QStringLiteral("lift_no_fly_zone"), {}, {}, rows);
    zones.CloseDataBase();
}
} // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    static QCoreApplication application(*argc, *argv);
    QLoggingCategory::setFilterRules(QStringLiteral("ax.data=false"));
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0)
        return 0;
    const QByteArray input(reinterpret_cast<const char*>(data) + 1, int(size) - 1);
    QByteArray plain;
    switch (data[0]) {
    case 's':
        Open(input, plain, CAxNoflyZoneMgr::GetNoflyKey());
        break;
    case 't':
        Tamper(input);
        break;
    case 'p':
        Read(input);
        break;
    default:
        return -1; // says nothing new
    }
    return 0;
}
