#pragma once
#include "analysis/CAxAncillaryProcess.h"

#include <QAbstractItemModel>
#include <QList>
#include <QString>

/**
 * No-fly zones as seen from a place: a row each, with their lifts as rows below
 * them. A lift that is out of date says so and is coloured.
 */
class ZoneListModel : public QAbstractItemModel
{
    Q_OBJECT
public:
    enum Column
    {
        ZoneColumn, ///< in a lift's row its times, over all columns
        DistanceColumn,
        BearingColumn,
        ColumnCount,
    };

    explicit ZoneListModel(QObject* parent = nullptr);

    /// Takes other zones or other distances of the same ones; only the former resets the model.
    void SetZones(const QList<AxNoflyZoneNear>& zones);
    /// Takes what is still true of the rows that there are and leaves them where they stand. A zone that is
    /// no longer among `zones` has neither distance nor bearing.
    void UpdateRows(const QList<AxNoflyZoneNear>& zones);
    const QList<AxNoflyZoneNear>& Zones() const { return zones; }
    /// The zone of a row, also of a lift's; null for an invalid index.
    const AxNoflyZoneNear* ZoneOf(const QModelIndex& index) const;
    /// -1 for a zone that is not listed.
    int RowOf(const QString& id) const;

    QModelIndex index(int row, int column, const QModelIndex& parent = QModelIndex()) const override;
    QModelIndex parent(const QModelIndex& index) const override;
    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    QVariant data(const QModelIndex& index, int role) const override;

private:
    QVariant ZoneData(const AxNoflyZoneNear& zone, int column, int role) const;
    QVariant LiftData(const AxNoflyLift& lift, int role) const;

    void TellDistances();

    QList<AxNoflyZoneNear> zones;
};
