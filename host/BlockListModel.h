#pragma once
#include "host/tables/TitledTable.h"

#include <AxData/CAxBlock.h>

#include <QIcon>
#include <QSet>
#include <QString>

#include <optional>
#include <vector>

class CAxBlockManager;
class CAxEarthViewer;
class CAxHandleAdapter;

/**
 * The block records as a table, a row each, with what the viewer's object of
 * the same ID adds. Rows come and go with the records; what changes within a
 * row is told when control returns to the event loop. Rows stand in ascending
 * order of the IDs; a view sorts them by SortRole. The current block's texts
 * are bold. A block that drawing would have refused has a warning sign, whose
 * tool tip says why.
 */
class BlockListModel : public TitledTable
{
    Q_OBJECT
public:
    enum Column
    {
        NameColumn, ///< editable
        KindColumn,
        AreaColumn, ///< in the units of AxUnits; sorted by km^2; empty where there is none
        LockColumn, ///< checkable, as the next is, when the block is drawn
        VisibleColumn,
        ColumnCount,
    };
    static constexpr int SortRole = Qt::UserRole;

    /// The viewer outlives the model.
    BlockListModel(CAxEarthViewer* viewer, QObject* parent);

    QString BlockAt(int row) const;
    /// -1 for an unknown ID.
    int RowOf(const QString& id) const;
    /// Why drawing would refuse the block, in words; empty when it would not, and for one that is not drawn.
    QString FaultOf(const QString& id) const;

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

signals:
    /// A name was not taken; why, for a person.
    void Refused(const QString& reason);
    /// A box of the lock's or the visibility's column was set by setData().
    void Switched(const QString& id, int column, bool on);

private:
    struct Row
    {
        QString id;
        // Of the drawn vertices; nothing until asked for.
        mutable std::optional<double> area = {};
        mutable std::optional<QString> fault = {};
    };

    std::vector<Row>::const_iterator Find(const QString& id) const;
    void OnAdded(const QString& id);
    void OnDeleted(const QString& id);
    void OnChanged(const QString& id);
    void OnCurrent(const QString& id);
    void TellChanges();
    std::optional<double> Area(const Row& row) const;
    QString Fault(const Row& row) const;
    bool Rename(const QString& id, const QString& name);

    CAxEarthViewer* viewer;
    CAxBlockManager& records;
    const QIcon warningSign;
    std::vector<Row> rows;
    QSet<QString> changed; ///< IDs, not told yet
    QString currentID;
};
