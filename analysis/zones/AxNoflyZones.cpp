#include "analysis/zones/AxNoflyZones.h"
#include "analysis/zones/AxZoneArea.h"
#include "analysis/zones/AxZoneClipping.h"
#include "scene/base/AxViewerLog.h"

#include <AxData/CAxNoflyZoneMgr.h>

#include <QCoreApplication>
#include <QSet>

#include <algorithm>
#include <future>
#include <iterator>
#include <queue>
#include <thread>

namespace {
constexpr int grantedStatus = 2;
const QChar fieldSeparator(';');

namespace zoneColumn {
constexpr int id = 2;
constexpr int enable = 3;
constexpr int area = 4;
constexpr int count = 5;
} // namespace zoneColumn

namespace liftColumn {
constexpr int begin = 0;
constexpr int expiry = 1;
constexpr int area = 2;
constexpr int ids = 3;
constexpr int status = 5;
constexpr int count = 6;
} // namespace liftColumn

// Where the system gives no more threads, the work is done by who waits for it.
constexpr std::launch anyThread = std::launch::async | std::launch::deferred;

std::size_t Processors()
{
    return std::max(1u, std::thread::hardware_concurrency());
}

/// Calls work(i) for each i below count, on all processors.
template <typename Work> void ForAll(int count, const Work& work)
{
    const int threads = std::min(count, static_cast<int>(Processors()));
    std::vector<std::future<void>> shares;
    shares.reserve(static_cast<std::size_t>(std::max(threads, 0)));
    for (int share = 0; share < threads; ++share)
        shares.push_back(std::async(anyThread, [=, &work] {
            for (int i = share; i < count; i += threads)
                work(i);
        }));
    for (std::future<void>& share : shares)
        share.get();
}

struct ReadZone
{
    QString id;
    AxZoneShape shape;
    int parts = 0;
    int unusable = 0;
    bool isRow = false;
    bool isEnabled = false;
};

ReadZone Read(const QVariantList& columns)
{
    ReadZone zone;
    zone.isRow = columns.size() >= zoneColumn::count && !columns[zoneColumn::id].toString().isEmpty();
    if (!zone.isRow)
        return zone;
    zone.id = columns[zoneColumn::id].toString();
    zone.isEnabled = columns[zoneColumn::enable].toBool();
    if (!zone.isEnabled)
        return zone;
    AxZoneArea area = AxReadArea(columns[zoneColumn::area].toString());
    zone.parts = area.parts;
    zone.unusable = area.unusable;
    zone.shape = AxZoneShapeOf(std::move(area));
    return zone;
}

/// Reads rows of the zone table as they come, on other threads, and keeps none of them.
class ZoneReader
{
public:
    ZoneReader() { batch.reserve(batchRows); }

    void Take(const QVariantList& row)
    {
        batch.push_back(row);
        if (batch.size() < batchRows)
            return;
        handOver();
        if (pending.size() >= Processors())
            fetch();
    }

    /// All rows so far, in their order.
    std::vector<ReadZone> Finish()
    {
        handOver();
        while (!pending.empty())
            fetch();
        return std::move(read);
    }

private:
    static constexpr std::size_t batchRows = 500;

    void handOver()
    {
        std::vector<QVariantList> rows;
        rows.reserve(batchRows);
        rows.swap(batch);
        pending.push(std::async(anyThread, [rows = std::move(rows)] {
            std::vector<ReadZone> zones;
            zones.reserve(rows.size());
            for (const QVariantList& row : rows)
                zones.push_back(Read(row));
            return zones;
        }));
    }

    void fetch()
    {
        std::vector<ReadZone> zones = pending.front().get();
        pending.pop();
        std::move(zones.begin(), zones.end(), std::back_inserter(read));
    }

    std::vector<QVariantList> batch;
    std::queue<std::future<std::vector<ReadZone>>> pending;
    std::vector<ReadZone> read;
};

void TakePolygons(const std::vector<ReadZone>& read, AxNoflyZones& zones)
{
    for (std::size_t i = 0; i < read.size(); ++i) {
        const ReadZone& zone = read[i];
        if (!zone.isRow) {
            qCWarning(axViewerLog).nospace() << "no-fly zones: row " << i + 1 << " has no id, left out";
            continue;
        }
        if (!zone.isEnabled)
            continue;
        if (zone.shape.IsEmpty())
            qCWarning(axViewerLog) << "no-fly zone" << zone.id << "has no readable area";
        else if (zone.unusable > 0)
            qCWarning(axViewerLog) << "no-fly zone" << zone.id << "is drawn without" << zone.unusable
                                   << "of its" << zone.parts << "points, which are no places on the globe";
        zones.zonePolygons.insert(zone.id, zone.shape);
    }
}

/// Fills the lift entries; returns the ids of the lifted zones in the order in which they are first met.
QStringList ReadLifts(const QList<QVariant>& rows, AxNoflyZones& zones)
{
    QStringList lifted;
    QSet<QString> known;
    for (int i = 0; i < rows.size(); ++i) {
        const QVariantList columns = rows[i].toList();
        if (columns.size() < liftColumn::count) {
            qCWarning(axViewerLog).nospace() << "lifts of no-fly zones: row " << i + 1 << " is incomplete";
            continue;
        }
        if (columns[liftColumn::status].toInt() != grantedStatus)
            continue;
        const QString ids = columns[liftColumn::ids].toString();
        // An id list of a single character names no zone.
        if (ids.size() <= 1)
            continue;
        const QString entry = columns[liftColumn::begin].toString() + fieldSeparator +
                              columns[liftColumn::expiry].toString() + fieldSeparator +
                              columns[liftColumn::area].toString();
        for (const QString& id : ids.split(',', Qt::SkipEmptyParts)) {
            zones.liftEntries.insert(id, entry);
            if (!known.contains(id)) {
                known.insert(id);
                lifted += id;
            }
        }
    }
    return lifted;
}

AxZoneArea LiftArea(const QString& entry)
{
    constexpr int areaField = 2;
    return AxReadArea(entry.section(fieldSeparator, areaField, areaField));
}

void Clip(const QStringList& lifted, AxNoflyZones& zones)
{
    std::vector<AxClippedZone> clipped(static_cast<std::size_t>(lifted.size()));
    std::vector<int> misread(clipped.size());
    ForAll(lifted.size(), [&](int i) {
        const auto place = static_cast<std::size_t>(i);
        std::vector<AxRing> lifts;
        for (const QString& entry : zones.liftEntries.values(lifted[i])) {
            AxZoneArea area = LiftArea(entry);
            // Without one of its corners it might be wider than what was granted.
            if (area.misread > 0)
                ++misread[place];
            else
                lifts.push_back(std::move(area.points));
        }
        clipped[place] = AxClipZone(zones.zonePolygons.value(lifted[i]).Ring(), lifts);
    });
    for (int i = 0; i < lifted.size(); ++i) {
        const AxClippedZone& zone = clipped[static_cast<std::size_t>(i)];
        if (!zones.zonePolygons.contains(lifted[i]))
            qCWarning(axViewerLog) << "a lift names the no-fly zone" << lifted[i] << "which is not in force";
        if (misread[static_cast<std::size_t>(i)] > 0)
            qCWarning(axViewerLog) << "no-fly zone" << lifted[i] << "stays without"
                                   << misread[static_cast<std::size_t>(i)]
                                   << "of its lifts: they have points that are no places on the globe";
        if (zone.unusable > 0)
            qCWarning(axViewerLog) << "no-fly zone" << lifted[i] << "stays without" << zone.unusable
                                   << "of its lifts: rings cross in too many places";
        zones.zoneDisplayGeometry.insert(lifted[i], zone.display);
        zones.zoneOutlines.insert(lifted[i], zone.outline);
    }
}

AxNoflyZones Zones(const std::vector<ReadZone>& read, const QList<QVariant>& liftRows)
{
    AxNoflyZones zones;
    TakePolygons(read, zones);
    Clip(ReadLifts(liftRows, zones), zones);
    return zones;
}
} // namespace

AxNoflyZones AxReadZones(const QList<QVariant>& zoneRows, const QList<QVariant>& liftRows)
{
    ZoneReader reader;
    for (const QVariant& row : zoneRows)
        reader.Take(row.toList());
    return Zones(reader.Finish(), liftRows);
}

// What goes wrong on the way is logged by the manager, and shows in there being no rows.
bool AxLoadZones(CAxNoflyZoneMgr& zoneFile, const QString& file, AxNoflyZones& zones, QString* reason)
{
    // What fails first makes the rest fail.
    QString firstFailure;
    const auto noted = [&zoneFile, &firstFailure](bool isDone) {
        if (!isDone && firstFailure.isEmpty())
            firstFailure = zoneFile.GetLastError();
        return isDone;
    };
    ZoneReader reader;
    QList<QVariant> liftRows;
    noted(zoneFile.DecryptionNoflyFile(file, file));
    noted(zoneFile.ConnectDataBase(file));
    const bool isRead =
        noted(zoneFile.SelectRecord("lng, lat, local_id, enable, area", "no_fly_zone", QString(), QString(),
                                    [&reader](const QVariantList& row) { reader.Take(row); }));
    zoneFile.SelectRecord("begin_at, expired_at, area, local_ids, user_id, status", "lift_no_fly_zone",
                          QString(), QString(), liftRows);
    zoneFile.CloseDataBase();
    zoneFile.EncryptionNoflyFile(file, file);
    const std::vector<ReadZone> read = reader.Finish();
    if (!isRead || read.empty()) {
        if (reason)
            *reason = isRead ? QCoreApplication::translate("CAxAncillaryThread", "It holds no zone.")
                             : firstFailure;
        return false;
    }
    zones = Zones(read, liftRows);
    return true;
}

QList<AxNoflyLift> AxLiftsOf(const AxNoflyZones& zones, const QString& id, const QDateTime& now)
{
    QList<AxNoflyLift> lifts;
    for (const QString& entry : zones.liftEntries.values(id)) {
        AxNoflyLift lift;
        lift.begin = entry.section(fieldSeparator, 0, 0);
        lift.expiry = entry.section(fieldSeparator, 1, 1);
        lift.isOutOfDate = AxIsPast(lift.expiry, now);
        lifts.prepend(lift);
    }
    return lifts;
}

bool AxIsPast(const QString& time, const QDateTime& now)
{
    bool isNumber = false;
    const qint64 seconds = time.toLongLong(&isNumber);
    QDateTime moment = isNumber ? QDateTime::fromSecsSinceEpoch(seconds, Qt::UTC)
                                : QDateTime::fromString(QString(time).replace(' ', 'T'), Qt::ISODate);
    if (!moment.isValid())
        return false;
    // A day without an hour lasts until its end.
    constexpr int dateLength = 10;
    if (!isNumber && time.trimmed().size() <= dateLength)
        moment = moment.addDays(1);
    return moment < now;
}
