#include "host/ZoneListModel.h"

#include <QBrush>
#include <QGuiApplication>
#include <QHash>
#include <QLocale>
#include <QPalette>

#include <algorithm>
#include <cmath>

namespace {
// Nearer than this nothing has a bearing worth telling.
constexpr double hereMetres = 5.0;

bool IsSameLift(const AxNoflyLift& a, const AxNoflyLift& b)
{
    return a.begin == b.begin && a.expiry == b.expiry && a.isOutOfDate == b.isOutOfDate;
}

bool IsSameZone(const AxNoflyZoneNear& a, const AxNoflyZoneNear& b)
{
    return a.id == b.id &&
           std::equal(a.lifts.begin(), a.lifts.end(), b.lifts.begin(), b.lifts.end(), IsSameLift);
}

QString DistanceText(double metres)
{
    const QLocale locale;
    constexpr double metresInKm = 1000.0;
    // What rounds to a kilometre is one.
    if (metres < metresInKm - 5.0)
        return ZoneListModel::tr("%1 m").arg(locale.toString(std::round(metres / 10.0) * 10.0, 'f', 0));
    const double km = metres / metresInKm;
    constexpr double wholeFromKm = 99.95;
    return ZoneListModel::tr("%1 km").arg(locale.toString(km, 'f', km < wholeFromKm ? 1 : 0));
}

QString BearingText(double degrees)
{
    static const char* const points[] = {
        QT_TRANSLATE_NOOP("ZoneListModel", "N"), QT_TRANSLATE_NOOP("ZoneListModel", "NE"),
        QT_TRANSLATE_NOOP("ZoneListModel", "E"), QT_TRANSLATE_NOOP("ZoneListModel", "SE"),
        QT_TRANSLATE_NOOP("ZoneListModel", "S"), QT_TRANSLATE_NOOP("ZoneListModel", "SW"),
        QT_TRANSLATE_NOOP("ZoneListModel", "W"), QT_TRANSLATE_NOOP("ZoneListModel", "NW"),
    };
    const int whole = static_cast<int>(std::lround(degrees)) % 360;
    const int point = static_cast<int>(std::lround(degrees / 45.0)) % 8;
    return QStringLiteral("%1\u00b0 %2")
        .arg(whole, 3, 10, QLatin1Char('0'))
        .arg(ZoneListModel::tr(points[point]));
}

QString TimesText(const AxNoflyLift& lift)
{
    if (lift.begin.isEmpty() && lift.expiry.isEmpty())
        return ZoneListModel::tr("Lift without dates");
    if (lift.expiry.isEmpty())
        return ZoneListModel::tr("Lift from %1").arg(lift.begin);
    if (lift.begin.isEmpty())
        return ZoneListModel::tr("Lift until %1").arg(lift.expiry);
    return ZoneListModel::tr("Lift from %1 until %2").arg(lift.begin, lift.expiry);
}

// Readable on the list's paper, be that light or dark.
QColor WarningColour()
{
    const bool isDark = QGuiApplication::palette().color(QPalette::Base).lightness() < 128;
    return isDark ? QColor(0xff, 0x9a, 0x8a) : QColor(0xb0, 0x20, 0x20);
}
} // namespace

ZoneListModel::ZoneListModel(QObject* parent) : QAbstractItemModel(parent) {}

void ZoneListModel::SetZones(const QList<AxNoflyZoneNear>& newZones)
{
    if (std::equal(zones.begin(), zones.end(), newZones.begin(), newZones.end(), IsSameZone)) {
        zones = newZones;
        TellDistances();
        return;
    }
    beginResetModel();
    zones = newZones;
    endResetModel();
}

void ZoneListModel::UpdateRows(const QList<AxNoflyZoneNear>& newZones)
{
    QHash<QString, const AxNoflyZoneNear*> byID;
    for (const AxNoflyZoneNear& zone : newZones)
        byID[zone.id] = &zone;
    for (AxNoflyZoneNear& zone : zones) {
        const AxNoflyZoneNear* now = byID.value(zone.id);
        zone.distance = now ? now->distance : qQNaN();
        zone.bearing = now ? now->bearing : qQNaN();
    }
    TellDistances();
}

void ZoneListModel::TellDistances()
{
    if (!zones.isEmpty())
        emit dataChanged(index(0, DistanceColumn), index(zones.size() - 1, BearingColumn), {Qt::DisplayRole});
}

const AxNoflyZoneNear* ZoneListModel::ZoneOf(const QModelIndex& index) const
{
    const QModelIndex zone = index.parent().isValid() ? index.parent() : index;
    return zone.isValid() ? &zones.at(zone.row()) : nullptr;
}

int ZoneListModel::RowOf(const QString& id) const
{
    const auto found = std::find_if(zones.begin(), zones.end(),
                                    [&id](const AxNoflyZoneNear& zone) { return zone.id == id; });
    return found == zones.end() ? -1 : static_cast<int>(found - zones.begin());
}

// A zone's index has the id 0, a lift's the row of its zone plus 1.
QModelIndex ZoneListModel::index(int row, int column, const QModelIndex& parent) const
{
    if (!hasIndex(row, column, parent))
        return QModelIndex();
    return createIndex(row, column, parent.isValid() ? static_cast<quintptr>(parent.row()) + 1 : 0);
}

QModelIndex ZoneListModel::parent(const QModelIndex& index) const
{
    if (!index.isValid() || index.internalId() == 0)
        return QModelIndex();
    return createIndex(static_cast<int>(index.internalId()) - 1, 0, quintptr(0));
}

int ZoneListModel::rowCount(const QModelIndex& parent) const
{
    if (!parent.isValid())
        return zones.size();
    return parent.internalId() == 0 && parent.column() == 0 ? zones.at(parent.row()).lifts.size() : 0;
}

int ZoneListModel::columnCount(const QModelIndex& /*parent*/) const
{
    return ColumnCount;
}

QVariant ZoneListModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal)
        return QVariant();
    if (role == Qt::TextAlignmentRole)
        return QVariant((section == ZoneColumn ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignVCenter);
    if (role != Qt::DisplayRole)
        return QVariant();
    switch (section) {
    case ZoneColumn:
        return tr("Zone");
    case DistanceColumn:
        return tr("Distance");
    case BearingColumn:
        return tr("Bearing");
    default:
        return QVariant();
    }
}

QVariant ZoneListModel::data(const QModelIndex& index, int role) const
{
    const AxNoflyZoneNear* zone = ZoneOf(index);
    if (!zone)
        return QVariant();
    if (!index.parent().isValid())
        return ZoneData(*zone, index.column(), role);
    return index.column() == ZoneColumn ? LiftData(zone->lifts.at(index.row()), role) : QVariant();
}

QVariant ZoneListModel::ZoneData(const AxNoflyZoneNear& zone, int column, int role) const
{
    if (role == Qt::TextAlignmentRole && column != ZoneColumn)
        return QVariant(Qt::AlignRight | Qt::AlignVCenter);
    if (role == Qt::ToolTipRole) {
        const QLocale locale;
        return tr("Zone %1, middle at longitude %2\302\260, latitude %3\302\260. A click flies there.")
            .arg(zone.id, locale.toString(zone.longitude, 'f', 5), locale.toString(zone.latitude, 'f', 5));
    }
    if (role != Qt::DisplayRole)
        return QVariant();
    switch (column) {
    case ZoneColumn:
        return zone.id;
    case DistanceColumn:
        return qIsNaN(zone.distance) ? QString() : DistanceText(zone.distance);
    case BearingColumn:
        return zone.distance >= hereMetres ? BearingText(zone.bearing) : QString();
    default:
        return QVariant();
    }
}

QVariant ZoneListModel::LiftData(const AxNoflyLift& lift, int role) const
{
    switch (role) {
    case Qt::DisplayRole:
        return lift.isOutOfDate ? tr("%1: out of date").arg(TimesText(lift)) : TimesText(lift);
    case Qt::ForegroundRole:
        return lift.isOutOfDate ? QVariant(QBrush(WarningColour())) : QVariant();
    case Qt::ToolTipRole:
        return lift.isOutOfDate
                   ? tr("This lift has expired, but the map still leaves its area out of the zone. Ask the "
                        "authority before you fly there.")
                   : tr("The map leaves the lifted area out of the zone.");
    default:
        return QVariant();
    }
}
