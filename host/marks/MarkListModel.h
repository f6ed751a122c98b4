#pragma once
#include "host/tables/TitledTable.h"

#include <AxData/project/AxProject.h>

#include <QPointer>
#include <QVector>

class CAxEarthViewer;
class CAxOsgDrawPointSet;

/**
 * The mark points of the viewer's set as a table, a row each, in their order. It follows the set when control
 * returns to the event loop; a set that is made anew, as with another project, is followed as well.
 */
class MarkListModel : public TitledTable
{
    Q_OBJECT
public:
    enum Column
    {
        NameColumn, ///< editable
        LatitudeColumn,
        LongitudeColumn,
        HeightColumn,
        NoteColumn, ///< editable
        ColumnCount,
    };
    static constexpr int SortRole = Qt::UserRole;

    /// The viewer outlives the model.
    MarkListModel(CAxEarthViewer* viewer, QObject* parent);

    /// Null until a mark was made.
    CAxOsgDrawPointSet* Set() const;
    QString MarkAt(int row) const;
    int RowOf(const QString& id) const; ///< -1 for an unknown ID

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

signals:
    /// What was written was not taken; why, for a person.
    void Refused(const QString& reason);
    /// Another mark is selected on the map, or none.
    void Selected(const QString& id);

private:
    void Soon();
    void Follow();

    CAxEarthViewer* viewer;
    QPointer<CAxOsgDrawPointSet> set;
    QVector<AxProjectMark> rows;
    bool isDue = false;
};
