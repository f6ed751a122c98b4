#include "BenchZones.h"

#include <AxData/CAxNoflyZoneMgr.h>

#include <QFile>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <vector>

namespace bench {
namespace {
constexpr double pi = 3.14159265358979323846;
constexpr int kPolygonEvery = 5;
constexpr int kCorners = 100;
constexpr double kTourLongitude = -105.0;
constexpr double kTourLatitude = 37.4;
constexpr double kFreeDegrees = 4.5;

struct Place
{
    double longitude, latitude;
};

std::vector<Place> places()
{
    std::mt19937 random(50000);
    std::uniform_real_distribution<double> longitude(-180.0, 180.0);
    std::uniform_real_distribution<double> latitude(-60.0, 75.0);
    std::vector<Place> all;
    while (all.size() < kZoneCount) {
        const Place place{longitude(random), latitude(random)};
        if (std::abs(place.longitude - kTourLongitude) > kFreeDegrees ||
            std::abs(place.latitude - kTourLatitude) > kFreeDegrees)
            all.push_back(place);
    }
    return all;
}

QString ring(const Place& middle, double degrees, int corners)
{
    QString text;
    for (int i = 0; i < corners; ++i) {
        const double angle = 2.0 * pi * i / corners;
        if (i > 0)
            text += '|';
        text += QString::number(middle.longitude + degrees * std::cos(angle), 'f', 6) + ',' +
                QString::number(middle.latitude + 0.4 * degrees * std::sin(angle), 'f', 6);
    }
    return text;
}

void insert(QSqlDatabase& database, const QString& statement, const QList<QVariant>& rows)
{
    QSqlQuery query(database);
    query.prepare(statement);
    for (const QVariant& row : rows) {
        const QVariantList values = row.toList();
        for (int i = 0; i < values.size(); ++i)
            query.bindValue(i, values[i]);
        if (!query.exec()) {
            std::fprintf(stderr, "the zone file for the figures cannot be written\n");
            std::exit(1);
        }
    }
}
} // namespace

QList<QVariant> zoneRows()
{
    QList<QVariant> rows;
    int number = 0;
    for (const Place& place : places()) {
        const QString area = number % kPolygonEvery == 0 ? ring(place, 0.1, kCorners)
                                                         : QString::number(place.longitude, 'f', 6) + ',' +
                                                               QString::number(place.latitude, 'f', 6);
        rows += QVariant(
            QVariantList{place.longitude, place.latitude, QStringLiteral("Z%1").arg(number), 1, area});
        ++number;
    }
    return rows;
}

QList<QVariant> liftRows()
{
    const std::vector<Place> zones = places();
    QList<QVariant> rows;
    constexpr int step = kZoneCount / kLiftCount;
    for (int i = 0; i < kLiftCount; ++i) {
        const int zone = i * step;
        const Place& place = zones[static_cast<std::size_t>(zone)];
        const QString ids =
            i % 10 == 0 ? QStringLiteral("Z%1,Z%2").arg(zone).arg(zone + 1) : QStringLiteral("Z%1").arg(zone);
        rows += QVariant(QVariantList{"2026-01-01", "2026-12-31",
                                      ring({place.longitude + 0.03, place.latitude}, 0.05, 4 + i % 13), ids,
                                      "pilot", 2});
    }
    return rows;
}

QString zoneFile()
{
    static QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("zones.db"));
    if (QFile::exists(file))
        return file;
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("bench"));
        database.setDatabaseName(file);
        database.open();
        database.transaction();
        database.exec(
            QStringLiteral("CREATE TABLE no_fly_zone (lng REAL, lat REAL, local_id TEXT, enable INTEGER, "
                           "area TEXT)"));
        database.exec(
            QStringLiteral("CREATE TABLE lift_no_fly_zone (begin_at TEXT, expired_at TEXT, area TEXT, "
                           "local_ids TEXT, user_id TEXT, status INTEGER)"));
        insert(database, QStringLiteral("INSERT INTO no_fly_zone VALUES (?, ?, ?, ?, ?)"), zoneRows());
        insert(database, QStringLiteral("INSERT INTO lift_no_fly_zone VALUES (?, ?, ?, ?, ?, ?)"),
               liftRows());
        database.commit();
        database.close();
    }
    QSqlDatabase::removeDatabase(QStringLiteral("bench"));
    CAxNoflyZoneMgr().EncryptionNoflyFile(file, file);
    return file;
}

} // namespace bench
