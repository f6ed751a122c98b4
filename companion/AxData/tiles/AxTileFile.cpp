#include <AxData/project/AxSqlFile.h>
#include <AxData/tiles/AxTileFetch.h>
#include <AxData/tiles/AxTileFile.h>
#include <AxData/tiles/AxTilePicture.h>
#include <AxData/tiles/AxTileText.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSqlError>
#include <QSqlQuery>
#include <QStringList>
#include <QVariant>

#include <algorithm>
#include <array>
#include <cmath>

namespace {
// "MPBX": what MBTiles 1.3 asks for.
constexpr int applicationId = 0x4d504258;

// In the table "metadata", beside the names that MBTiles gives.
const QString serviceFact = QStringLiteral("ax_service");
const QString levelsFact = QStringLiteral("ax_levels");
/// As "bounds", but with an east less than its west where the tiles lie across 180 degrees.
const QString boundsFact = QStringLiteral("ax_bounds");

QString LevelsText(const AxTileJob& job)
{
    return QStringLiteral("%1-%2").arg(job.firstLevel).arg(job.lastLevel);
}

QString Number(double value)
{
    return QString::number(value, 'f', 7);
}

QString BoundsText(const AxTileBounds& bounds)
{
    return QStringList{Number(bounds.west), Number(bounds.south), Number(bounds.east), Number(bounds.north)}
        .join(QLatin1Char(','));
}

// MBTiles has no bounds across 180 degrees.
AxTileBounds WithoutCrossing(AxTileBounds bounds)
{
    if (bounds.east < bounds.west) {
        bounds.west = -180.0;
        bounds.east = 180.0;
    }
    return bounds;
}

std::optional<AxTileBounds> BoundsOf(const QString& text)
{
    const QStringList parts = text.split(QLatin1Char(','));
    if (parts.size() != 4)
        return {};
    std::array<double, 4> numbers{};
    for (int i = 0; i < 4; ++i) {
        bool isNumber = false;
        numbers[static_cast<std::size_t>(i)] = parts[i].toDouble(&isNumber);
        if (!isNumber || !std::isfinite(numbers[static_cast<std::size_t>(i)]))
            return {};
    }
    const AxTileBounds bounds{numbers[0], numbers[1], numbers[2], numbers[3]};
    const bool isOnGlobe = std::abs(bounds.west) <= 180.0 && std::abs(bounds.east) <= 180.0 &&
                           bounds.south >= -90.0 && bounds.south < bounds.north && bounds.north <= 90.0;
    return isOnGlobe ? std::make_optional(bounds) : std::nullopt;
}

// The narrowest that has both, be it across 180 degrees.
AxTileBounds BoundsOfBoth(const AxTileBounds& a, const AxTileBounds& b)
{
    constexpr double wholeTurn = 360.0;
    const auto eastOf = [](double from, double longitude) {
        return longitude < from ? longitude + wholeTurn : longitude;
    };
    const auto widthFrom = [&](const AxTileBounds& first, const AxTileBounds& second) {
        const double begin = eastOf(first.west, second.west);
        return std::max(eastOf(first.west, first.east), eastOf(begin, second.east + (begin - second.west))) -
               first.west;
    };
    const double fromA = widthFrom(a, b);
    const double fromB = widthFrom(b, a);
    AxTileBounds both{fromA <= fromB ? a.west : b.west, std::min(a.south, b.south), 0.0,
                      std::max(a.north, b.north)};
    const double width = std::min(fromA, fromB);
    both.east = both.west + width;
    if (both.east > 180.0)
        both.east -= wholeTurn;
    if (width >= wholeTurn) {
        both.west = -180.0;
        both.east = 180.0;
    }
    return both;
}

QString WhyOther(const QString& service, const QString& levels, const AxTileJob& job)
{
    if (service.isEmpty())
        return AxTileText::tr("it was not fetched by this program");
    if (service != QString::fromLatin1(AxTileAddressMark(job.service.address)))
        return AxTileText::tr("it has tiles of another service");
    if (levels != LevelsText(job))
        return AxTileText::tr("it was fetched for the levels %1").arg(levels);
    return {};
}
} // namespace

AxTileFile::AxTileFile() = default;

AxTileFile::~AxTileFile()
{
    // Before their database.
    put.reset();
    miss.reset();
    look.reset();
    file.reset();
    // A service that gave nothing leaves nothing behind.
    if (isNew && !hasContents)
        QFile::remove(path);
}

bool AxTileFile::Refuse(const QString& reason, QString& why)
{
    // The database only says that it may no more be written.
    const bool isGone = put && !QFileInfo::exists(path);
    why = AxTileText::tr("\"%1\" cannot be written: %2.")
              .arg(shownPath, isGone ? AxTileText::tr("it was deleted or moved away meanwhile") : reason);
    return false;
}

bool AxTileFile::Open(const AxTileJob& job, QString& why)
{
    path = job.file;
    shownPath = QDir::toNativeSeparators(path);
    const QFileInfo info(path);
    if (!QFileInfo(info.absolutePath()).isDir())
        return Refuse(AxTileText::tr("there is no such folder"), why);
    if (info.exists() && !info.isFile())
        return Refuse(AxTileText::tr("it is not a file"), why);
    if (info.exists() && !info.isWritable())
        return Refuse(AxTileText::tr("it may only be read"), why);
    lock = std::make_unique<QLockFile>(path + QStringLiteral(".lock"));
    lock->setStaleLockTime(0);
    if (!lock->tryLock(0))
        return Refuse(lock->error() == QLockFile::LockFailedError
                          ? AxTileText::tr("it is being fetched already")
                          : AxTileText::tr("nothing can be written into its folder"),
                      why);
    isNew = !info.exists() || info.size() == 0;
    file = std::make_unique<AxSqlFile>(path, AxSqlFile::Mode::Write);
    // A transaction that outgrows the cache would keep readers out, the map among them, until it ends.
    if (!file->IsOpen() || !file->Run(QStringLiteral("PRAGMA cache_spill = OFF")))
        return Refuse(file->Fault(), why);
    if (!Prepare(job, why))
        return !why.isEmpty() ? false : Refuse(file->Fault(), why);
    put = std::make_unique<QSqlQuery>(file->database);
    miss = std::make_unique<QSqlQuery>(file->database);
    look = std::make_unique<QSqlQuery>(file->database);
    look->setForwardOnly(true);
    put->prepare(QStringLiteral("INSERT OR REPLACE INTO tiles VALUES (?, ?, ?, ?)"));
    miss->prepare(QStringLiteral("INSERT OR REPLACE INTO ax_missing VALUES (?, ?, ?)"));
    look->prepare(QStringLiteral(
        "SELECT tile_row FROM tiles WHERE zoom_level = ? AND tile_column = ? AND tile_row BETWEEN ? AND ? "
        "UNION ALL SELECT tile_row FROM ax_missing WHERE zoom_level = ? AND tile_column = ? AND tile_row "
        "BETWEEN ? AND ?"));
    return true;
}

// One transaction, so that a power cut leaves a file that can be gone on with, or an empty one.
bool AxTileFile::Prepare(const AxTileJob& job, QString& why)
{
    return file->Run(QStringLiteral("BEGIN IMMEDIATE")) && (isNew ? Make() : CheckKept(job, why)) &&
           (!job.isMissingAskedAgain || file->Run(QStringLiteral("DELETE FROM ax_missing"))) &&
           WriteFacts(job) && file->Run(QStringLiteral("COMMIT"));
}

bool AxTileFile::Make()
{
    for (const QString& statement :
         {QStringLiteral("PRAGMA application_id = %1").arg(applicationId),
          QStringLiteral("CREATE TABLE metadata (name TEXT, value TEXT)"),
          QStringLiteral("CREATE UNIQUE INDEX metadata_index ON metadata (name)"),
          QStringLiteral("CREATE TABLE tiles (zoom_level INTEGER, tile_column INTEGER, tile_row INTEGER, "
                         "tile_data BLOB)"),
          QStringLiteral("CREATE UNIQUE INDEX tile_index ON tiles (zoom_level, tile_column, tile_row)"),
          QStringLiteral(
              "CREATE TABLE ax_missing (zoom_level INTEGER, tile_column INTEGER, tile_row INTEGER, "
              "PRIMARY KEY (zoom_level, tile_column, tile_row)) WITHOUT ROWID")})
        if (!file->Run(statement))
            return false;
    return true;
}

bool AxTileFile::CheckKept(const AxTileJob& job, QString& why)
{
    if (!file->Run(QStringLiteral("SELECT count(*) FROM sqlite_master")))
        return Refuse(file->Fault(), why);
    const QString service = Fact(serviceFact);
    QSqlQuery one(file->database);
    const bool isRead = one.exec(QStringLiteral("SELECT tile_data FROM tiles LIMIT 1"));
    const bool hasPicture = isRead && one.next();
    if (hasPicture)
        pixels = AxReadTilePicture(one.value(0).toByteArray()).pixels;
    one.finish();
    if (!service.isEmpty() && isRead && !hasPicture) {
        isNew = true;
        return file->Run(QStringLiteral("DELETE FROM ax_missing")) &&
               file->Run(QStringLiteral("DELETE FROM metadata"));
    }
    const QString other = WhyOther(service, Fact(levelsFact), job);
    return other.isEmpty() || Refuse(other, why);
}

QString AxTileFile::Fact(const QString& name)
{
    QSqlQuery query(file->database);
    query.prepare(QStringLiteral("SELECT value FROM metadata WHERE name = ?"));
    query.addBindValue(name);
    return query.exec() && query.next() ? query.value(0).toString() : QString();
}

bool AxTileFile::SetFact(const QString& name, const QString& value)
{
    QSqlQuery query(file->database);
    query.prepare(QStringLiteral("INSERT OR REPLACE INTO metadata VALUES (?, ?)"));
    query.addBindValue(name);
    query.addBindValue(value);
    return query.exec();
}

bool AxTileFile::WriteFacts(const AxTileJob& job)
{
    const QString own = Fact(boundsFact);
    const auto former = BoundsOf(own.isEmpty() ? Fact(QStringLiteral("bounds")) : own);
    const AxTileBounds added = job.area.Bounds();
    const AxTileBounds bounds = former ? BoundsOfBoth(*former, added) : added;
    const QString format = Fact(QStringLiteral("format"));
    const QString finest = Fact(QStringLiteral("maxzoom"));
    const QString nameFact = QStringLiteral("name");
    const QString ofFile = Fact(nameFact);
    const QString name = !job.name.isEmpty() ? job.name
                         : !ofFile.isEmpty() ? ofFile
                                             : QFileInfo(path).completeBaseName();
    const QString attributionFact = QStringLiteral("attribution");
    const QString attribution =
        job.service.attribution.trimmed().isEmpty() ? Fact(attributionFact) : job.service.attribution;
    return SetFact(nameFact, name) &&
           SetFact(QStringLiteral("format"), format.isEmpty() ? QStringLiteral("png") : format) &&
           SetFact(QStringLiteral("bounds"), BoundsText(WithoutCrossing(bounds))) &&
           SetFact(boundsFact, BoundsText(bounds)) &&
           SetFact(QStringLiteral("minzoom"), QString::number(job.firstLevel)) &&
           SetFact(QStringLiteral("maxzoom"), finest.isEmpty() ? QString::number(job.firstLevel) : finest) &&
           SetFact(QStringLiteral("type"), QStringLiteral("baselayer")) &&
           SetFact(attributionFact, attribution) &&
           SetFact(serviceFact, QString::fromLatin1(AxTileAddressMark(job.service.address))) &&
           SetFact(levelsFact, LevelsText(job));
}

std::unique_ptr<std::vector<bool>> AxTileFile::Settled(int level, const AxTileRun& run, QString& why)
{
    const int southmost = (1 << level) - 1;
    int place = 0;
    for (int table = 0; table < 2; ++table)
        for (const int value : {level, run.column, southmost - run.lastRow, southmost - run.firstRow})
            look->bindValue(place++, value);
    if (!look->exec()) {
        why = AxTileText::tr("\"%1\" cannot be read: %2.").arg(shownPath, look->lastError().databaseText());
        return nullptr;
    }
    auto settled =
        std::make_unique<std::vector<bool>>(static_cast<std::size_t>(run.lastRow - run.firstRow + 1));
    while (look->next())
        (*settled)[static_cast<std::size_t>(southmost - look->value(0).toInt() - run.firstRow)] = true;
    look->finish();
    return settled;
}

bool AxTileFile::Begin(QString& why)
{
    if (isInTransaction)
        return true;
    isInTransaction = file->Run(QStringLiteral("BEGIN IMMEDIATE"));
    return isInTransaction || Refuse(file->Fault(), why);
}

bool AxTileFile::Put(const AxTile& tile, const QByteArray& bytes, const AxTilePicture& picture, QString& why)
{
    if (!Begin(why))
        return false;
    if (pixels == 0 && !SetFact(QStringLiteral("format"), picture.format))
        return Refuse(file->database.lastError().databaseText(), why);
    pixels = picture.pixels;
    put->bindValue(0, tile.level);
    put->bindValue(1, tile.column);
    put->bindValue(2, (1 << tile.level) - 1 - tile.row);
    put->bindValue(3, bytes);
    return put->exec() || Refuse(put->lastError().databaseText(), why);
}

bool AxTileFile::PutMissing(const AxTile& tile, QString& why)
{
    if (!Begin(why))
        return false;
    miss->bindValue(0, tile.level);
    miss->bindValue(1, tile.column);
    miss->bindValue(2, (1 << tile.level) - 1 - tile.row);
    return miss->exec() || Refuse(miss->lastError().databaseText(), why);
}

std::optional<AxTile> AxTileFile::AnyPicture()
{
    QSqlQuery any(file->database);
    if (!any.exec(QStringLiteral("SELECT zoom_level, tile_column, tile_row FROM tiles LIMIT 1")) ||
        !any.next())
        return {};
    const int level = any.value(0).toInt();
    return AxTile{level, any.value(1).toInt(), (1 << level) - 1 - any.value(2).toInt()};
}

bool AxTileFile::Commit(QString& why)
{
    if (!isInTransaction)
        return true;
    if (!file->Run(QStringLiteral("COMMIT")))
        return Refuse(file->Fault(), why);
    isInTransaction = false;
    hasContents = hasContents || pixels != 0;
    return true;
}

bool AxTileFile::SetFinestLevel(int level, QString& why)
{
    if (Fact(QStringLiteral("maxzoom")).toInt() >= level)
        return true;
    return Begin(why) && (SetFact(QStringLiteral("maxzoom"), QString::number(level)) ||
                          Refuse(file->database.lastError().databaseText(), why));
}

std::optional<AxTileBounds> AxTileFileBounds(const QString& path)
{
    const QFileInfo info(path);
    if (info.suffix().compare(QLatin1String("mbtiles"), Qt::CaseInsensitive) != 0 || !info.isFile())
        return {};
    AxSqlFile file(path, AxSqlFile::Mode::Look);
    QSqlQuery query(file.database);
    query.prepare(QStringLiteral("SELECT value FROM metadata WHERE name = ?"));
    query.addBindValue(boundsFact);
    return file.IsOpen() && query.exec() && query.next() ? BoundsOf(query.value(0).toString()) : std::nullopt;
}

AxTileFileState AxLookAtTileFile(const AxTileJob& job)
{
    const QString& path = job.file;
    AxTileFileState state;
    const QFileInfo info(path);
    state.isThere = info.exists();
    state.bytes = info.size();
    if (!state.isThere || info.size() == 0)
        return state;
    // It is being written, or was until the power went: nothing of it can be told before that is played back.
    if (QFileInfo::exists(path + QStringLiteral("-journal")))
        return state;
    AxSqlFile file(path, AxSqlFile::Mode::Look);
    QSqlQuery query(file.database);
    QString service;
    QString levels;
    if (!info.isFile() || !file.IsOpen() || !query.exec(QStringLiteral("SELECT name, value FROM metadata"))) {
        state.fault = AxTileText::tr("\"%1\" is there already, and no file of tiles.")
                          .arg(QDir::toNativeSeparators(path));
        return state;
    }
    while (query.next()) {
        if (query.value(0).toString() == serviceFact)
            service = query.value(1).toString();
        else if (query.value(0).toString() == levelsFact)
            levels = query.value(1).toString();
    }
    state.tiles = file.Number(QStringLiteral("SELECT count(*) FROM tiles"));
    state.missing = file.Number(QStringLiteral("SELECT count(*) FROM ax_missing"));
    const QString other = WhyOther(service, levels, job);
    if (!other.isEmpty() && (service.isEmpty() || state.tiles > 0))
        state.fault = AxTileText::tr("\"%1\" is there already, and cannot be gone on with: %2.")
                          .arg(QDir::toNativeSeparators(path), other);
    return state;
}
