#include "host/BlockListModel.h"
#include "interaction/AxBlockAdapter.h"
#include "viewer/CAxEarthViewer.h"

#include <AxAlgorthm/AxUnits.h>
#include <AxData/CAxBlockManager.h>

#include <QApplication>
#include <QFont>
#include <QStyle>

#include <algorithm>
#include <utility>

namespace {
QString KindText(CAxBlock::EBlockType type)
{
    switch (type) {
    case CAxBlock::PolygonBlock:
        return BlockListModel::tr("Polygon");
    case CAxBlock::RectangleBlock:
        return BlockListModel::tr("Rectangle");
    case CAxBlock::StripBlock:
        return BlockListModel::tr("Strip");
    case CAxBlock::VideoBlock:
        return BlockListModel::tr("Video");
    case CAxBlock::ProhibitedAreaBlock:
        return BlockListModel::tr("Application");
    case CAxBlock::MarkPointBlock:
        return BlockListModel::tr("Mark points");
    }
    return QString();
}
} // namespace

BlockListModel::BlockListModel(CAxEarthViewer* earthViewer, QObject* parent)
    : TitledTable({tr("Name"), tr("Kind"), tr("Area"), tr("Lock"), tr("Visible")}, parent),
      viewer(earthViewer), records(CAxBlockManager::instance()),
      warningSign(QApplication::style()->standardIcon(QStyle::SP_MessageBoxWarning))
{
    for (const CAxBlock* block : records.GetBlockList())
        rows.push_back({block->GetBlockID()});
    connect(&records, &CAxBlockManager::blockAdded, this, &BlockListModel::OnAdded);
    connect(&records, &CAxBlockManager::blockDeleted, this, &BlockListModel::OnDeleted);
    connect(&records, &CAxBlockManager::blockChanged, this, &BlockListModel::OnChanged);
    connect(viewer, &CAxEarthViewer::signalBlockState, this, &BlockListModel::OnChanged);
    connect(viewer, &CAxEarthViewer::signalCurrentBlock, this, &BlockListModel::OnCurrent);
    if (const CAxHandleAdapter* current = viewer->GetCurHandleAdapter())
        currentID = current->GetHandleID();
}

std::vector<BlockListModel::Row>::const_iterator BlockListModel::Find(const QString& id) const
{
    return std::lower_bound(rows.begin(), rows.end(), id,
                            [](const Row& row, const QString& wanted) { return row.id < wanted; });
}

QString BlockListModel::BlockAt(int row) const
{
    return row >= 0 && row < rowCount() ? rows[static_cast<std::size_t>(row)].id : QString();
}

int BlockListModel::RowOf(const QString& id) const
{
    const auto found = Find(id);
    return found != rows.end() && found->id == id ? static_cast<int>(found - rows.begin()) : -1;
}

void BlockListModel::OnAdded(const QString& id)
{
    const auto place = Find(id);
    const int row = static_cast<int>(place - rows.begin());
    beginInsertRows(QModelIndex(), row, row);
    rows.emplace(place)->id = id;
    endInsertRows();
    OnChanged(id);
}

void BlockListModel::OnDeleted(const QString& id)
{
    const int row = RowOf(id);
    if (row < 0)
        return;
    beginRemoveRows(QModelIndex(), row, row);
    rows.erase(rows.begin() + row);
    endRemoveRows();
}

void BlockListModel::OnChanged(const QString& id)
{
    if (changed.isEmpty())
        // Queued, as the object follows its record only after the record told of the change.
        QMetaObject::invokeMethod(this, &BlockListModel::TellChanges, Qt::QueuedConnection);
    changed += id;
}

// A view that sorts takes the other rows for sorted: all that changed is told in one go.
void BlockListModel::TellChanges()
{
    int first = rowCount();
    int last = -1;
    for (const QString& id : std::exchange(changed, {})) {
        const int row = RowOf(id);
        if (row < 0)
            continue;
        rows[static_cast<std::size_t>(row)] = {id};
        first = std::min(first, row);
        last = std::max(last, row);
    }
    if (last >= 0)
        emit dataChanged(index(first, 0), index(last, ColumnCount - 1));
}

void BlockListModel::OnCurrent(const QString& id)
{
    const QString former = std::exchange(currentID, id);
    for (const QString& block : {former, id})
        if (const int row = RowOf(block); row >= 0)
            emit dataChanged(index(row, 0), index(row, ColumnCount - 1), {Qt::FontRole});
}

int BlockListModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(rows.size());
}

std::optional<double> BlockListModel::Area(const Row& row) const
{
    auto* block = qobject_cast<AxBlockAdapter*>(viewer->FindExistNode(row.id));
    if (!block)
        return {};
    if (!row.area)
        row.area = block->GetArea();
    return row.area;
}

QString BlockListModel::Fault(const Row& row) const
{
    auto* block = qobject_cast<AxBlockAdapter*>(viewer->FindExistNode(row.id));
    if (!block)
        return {};
    if (!row.fault)
        row.fault = block->Fault();
    return *row.fault;
}

QString BlockListModel::FaultOf(const QString& id) const
{
    const int row = RowOf(id);
    return row < 0 ? QString() : Fault(rows[static_cast<std::size_t>(row)]);
}

QVariant BlockListModel::data(const QModelIndex& index, int role) const
{
    const QString id = index.isValid() ? BlockAt(index.row()) : QString();
    CAxBlock* const block = records.GetBlock(id);
    if (!block)
        return QVariant();
    const int column = index.column();
    if (role == Qt::DecorationRole || role == Qt::ToolTipRole || role == Qt::AccessibleDescriptionRole) {
        const QString fault = column == NameColumn || role == Qt::ToolTipRole
                                  ? Fault(rows[static_cast<std::size_t>(index.row())])
                                  : QString();
        if (!fault.isEmpty())
            return role == Qt::DecorationRole ? QVariant(warningSign) : QVariant(fault);
    }
    if (role == Qt::TextAlignmentRole && column == AreaColumn)
        return QVariant(Qt::AlignRight | Qt::AlignVCenter);
    if (role == Qt::FontRole && id == currentID) {
        QFont bold;
        bold.setBold(true);
        return bold;
    }
    if (column == LockColumn || column == VisibleColumn) {
        const CAxHandleAdapter* object = viewer->FindExistNode(id);
        if (!object || (role != Qt::CheckStateRole && role != SortRole))
            return QVariant();
        const bool on = column == LockColumn ? object->IsLock() : object->IsVisible();
        return role == SortRole ? static_cast<int>(on) : (on ? Qt::Checked : Qt::Unchecked);
    }
    if (column == AreaColumn && (role == Qt::DisplayRole || role == Qt::ToolTipRole || role == SortRole)) {
        const std::optional<double> area = Area(rows[static_cast<std::size_t>(index.row())]);
        if (!area)
            return QVariant();
        constexpr double squareMetres = 1e6; // of a square kilometre
        return role == SortRole ? QVariant(*area) : QVariant(AxUnits::Area(*area * squareMetres));
    }
    if (role == Qt::DisplayRole || role == Qt::EditRole || role == SortRole || role == Qt::ToolTipRole) {
        const QStringList met = block->GetIntersections();
        if (column == NameColumn && role == Qt::ToolTipRole && !met.isEmpty())
            return QString(block->GetBlockName() + QLatin1Char('\n') +
                           tr("Meets %1").arg(met.join(QStringLiteral(", "))));
        if (column == NameColumn)
            return block->GetBlockName();
        if (column == KindColumn)
            return KindText(block->GetBlockType());
    }
    return QVariant();
}

bool BlockListModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    const QString id = index.isValid() ? BlockAt(index.row()) : QString();
    if (id.isEmpty())
        return false;
    if (index.column() == NameColumn && role == Qt::EditRole)
        return Rename(id, value.toString());
    if (role != Qt::CheckStateRole || !viewer->FindExistNode(id))
        return false;
    const bool on = value.toInt() == Qt::Checked;
    if (index.column() == LockColumn)
        viewer->slotBlockLock(id, on);
    else if (index.column() == VisibleColumn)
        viewer->slotBlockVisible(id, on);
    else
        return false;
    emit Switched(id, index.column(), on);
    return true;
}

bool BlockListModel::Rename(const QString& id, const QString& wanted)
{
    const QString name = wanted.trimmed();
    if (records.GetBlock(id)->GetBlockName() == name)
        return true;
    if (name.isEmpty())
        emit Refused(tr("A block needs a name."));
    else if (records._exist(name))
        emit Refused(tr("The name already exists !"));
    else if (viewer->RenameBlock(id, name))
        return true;
    else
        emit Refused(tr("The block cannot be renamed."));
    return false;
}

Qt::ItemFlags BlockListModel::flags(const QModelIndex& index) const
{
    const Qt::ItemFlags common = TitledTable::flags(index);
    if (!index.isValid())
        return common;
    if (index.column() == NameColumn)
        return common | Qt::ItemIsEditable;
    const bool checkable = index.column() == LockColumn || index.column() == VisibleColumn;
    return checkable && viewer->FindExistNode(BlockAt(index.row())) ? common | Qt::ItemIsUserCheckable
                                                                    : common;
}
