#include "host/BlockPanel.h"
#include "host/BlockListModel.h"
#include "host/tasks/CarriedMissions.h"
#include "interaction/CAxHandleAdapter.h"
#include "viewer/CAxEarthViewer.h"

#include <AxBaseUI/CAxMessageBox.h>
#include <AxData/CAxBlockManager.h>

#include <QApplication>
#include <QCollator>
#include <QContextMenuEvent>
#include <QFontMetrics>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMenu>
#include <QScopedValueRollback>
#include <QSet>
#include <QSortFilterProxyModel>

#include <algorithm>

namespace {
// "Block 9" before "Block 10".
class NaturalOrder : public QSortFilterProxyModel
{
public:
    explicit NaturalOrder(QObject* parent) : QSortFilterProxyModel(parent)
    {
        // The locale "C" compares bytes and knows no numbers.
        if (collator.locale().language() == QLocale::C)
            collator.setLocale(QLocale(QLocale::English));
        collator.setNumericMode(true);
        collator.setCaseSensitivity(Qt::CaseInsensitive);
        setSortRole(BlockListModel::SortRole);
    }

protected:
    bool lessThan(const QModelIndex& left, const QModelIndex& right) const override
    {
        const QVariant leftValue = left.data(BlockListModel::SortRole);
        const QVariant rightValue = right.data(BlockListModel::SortRole);
        if (leftValue.type() == QVariant::String && rightValue.type() == QVariant::String)
            return collator.compare(leftValue.toString(), rightValue.toString()) < 0;
        return QSortFilterProxyModel::lessThan(left, right);
    }

private:
    QCollator collator;
};

// What is selected on the map: several objects, or else the current one.
QStringList SelectedOn(const CAxEarthViewer& viewer)
{
    QStringList ids;
    for (const CAxHandleAdapter* object : viewer.GetMultiSelectAdapter())
        ids += object->GetHandleID();
    if (const CAxHandleAdapter* current = viewer.GetCurHandleAdapter(); current && ids.isEmpty())
        ids += current->GetHandleID();
    return ids;
}
} // namespace

BlockPanel::BlockPanel(CAxEarthViewer* earthViewer, QWidget* parent)
    : QTableView(parent), viewer(earthViewer), blockRows(new BlockListModel(viewer, this)),
      sorted(new NaturalOrder(this))
{
    setObjectName(QStringLiteral("BlockList"));
    sorted->setSourceModel(blockRows);
    setModel(sorted);
    setSelectionBehavior(SelectRows);
    setSelectionMode(ExtendedSelection);
    setEditTriggers(DoubleClicked);
    setTabKeyNavigation(false);
    setSortingEnabled(true);
    sortByColumn(BlockListModel::NameColumn, Qt::AscendingOrder);
    setShowGrid(false);
    setAlternatingRowColors(true);
    setWordWrap(false);
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);

    QHeaderView* columns = horizontalHeader();
    columns->setHighlightSections(false);
    // The arrow is in the way of the narrow columns' titles.
    columns->setSortIndicatorShown(false);
    columns->setSectionResizeMode(QHeaderView::Interactive);
    columns->setSectionResizeMode(BlockListModel::NameColumn, QHeaderView::Stretch);
    columns->setMinimumSectionSize(fontMetrics().horizontalAdvance(QLatin1Char('0')) * 4);
    const int padding = 2 * style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, this) + 6;
    // The widest text of a column besides its title; the current block's row is bold.
    QFont bold = font();
    bold.setBold(true);
    const QFontMetrics boldMetrics(bold);
    const auto widen = [&](int column, const QStringList& texts) {
        int width = columns->sectionSizeHint(column) + 4;
        for (const QString& text : texts)
            width = qMax(width, boldMetrics.horizontalAdvance(text) + padding);
        columns->resizeSection(column, width);
    };
    widen(BlockListModel::KindColumn, {BlockListModel::tr("Polygon"), BlockListModel::tr("Rectangle"),
                                       BlockListModel::tr("Application")});
    widen(BlockListModel::AreaColumn, {QStringLiteral("0000.000 km\302\262")});
    widen(BlockListModel::LockColumn, {});
    widen(BlockListModel::VisibleColumn, {});

    connect(this, &QTableView::clicked, this, &BlockPanel::OnClicked);
    connect(blockRows, &BlockListModel::Refused, this, &BlockPanel::Told);
    connect(blockRows, &BlockListModel::Switched, this, &BlockPanel::OnSwitched);
    connect(viewer, &CAxEarthViewer::signalCurrentBlock, this, &BlockPanel::FollowViewer);
    connect(viewer, &CAxEarthViewer::signalMultiSelectBlock, this, &BlockPanel::FollowViewer);
    // A block that is being drawn is current before it has a row, and a removed row's place is taken by
    // another one.
    connect(blockRows, &BlockListModel::rowsInserted, this, &BlockPanel::FollowViewer);
    connect(blockRows, &BlockListModel::rowsRemoved, this, &BlockPanel::FollowViewer);
}

QSize BlockPanel::sizeHint() const
{
    const int nameWidth = fontMetrics().horizontalAdvance(QLatin1Char('0')) * 16;
    int width = nameWidth + 2 * frameWidth() + fontMetrics().height();
    for (int column = BlockListModel::KindColumn; column < BlockListModel::ColumnCount; ++column)
        width += columnWidth(column);
    return {width, QTableView::sizeHint().height()};
}

QString BlockPanel::FaultOf(const QString& id) const
{
    return blockRows->FaultOf(id);
}

QString BlockPanel::BlockOf(const QModelIndex& shown) const
{
    return shown.isValid() ? blockRows->BlockAt(sorted->mapToSource(shown).row()) : QString();
}

QStringList BlockPanel::Chosen() const
{
    QStringList inRows;
    for (const QModelIndex& shown : selectionModel()->selectedRows())
        inRows += BlockOf(shown);
    const QSet<QString> wanted(inRows.cbegin(), inRows.cend());
    QStringList ids;
    QSet<QString> taken;
    for (const QString& id : SelectedOn(*viewer) + inRows)
        if (wanted.contains(id) && !taken.contains(id)) {
            ids += id;
            taken.insert(id);
        }
    return ids;
}

void BlockPanel::OnClicked(const QModelIndex& shown)
{
    const bool isSwitch =
        shown.column() == BlockListModel::LockColumn || shown.column() == BlockListModel::VisibleColumn;
    if (!isSwitch && QApplication::keyboardModifiers() == Qt::NoModifier)
        Fly();
}

void BlockPanel::FollowViewer()
{
    if (isChoosing)
        return;
    QItemSelection wanted;
    QModelIndex latest;
    for (const QString& id : SelectedOn(*viewer))
        if (const int row = blockRows->RowOf(id); row >= 0) {
            latest = sorted->mapFromSource(blockRows->index(row, BlockListModel::NameColumn));
            wanted.select(latest, latest.siblingAtColumn(BlockListModel::ColumnCount - 1));
        }
    if (!latest.isValid()) {
        // The keys of the list act on its current row, seen or not.
        const QScopedValueRollback<bool> quiet(isByHand, false);
        selectionModel()->clear();
        return;
    }
    const bool isSame = selectionModel()->selectedRows().size() == wanted.size() &&
                        std::all_of(wanted.begin(), wanted.end(), [this](const QItemSelectionRange& range) {
                            return selectionModel()->isRowSelected(range.top(), QModelIndex());
                        });
    if (isSame)
        return;
    const QScopedValueRollback<bool> quiet(isByHand, false);
    selectionModel()->setCurrentIndex(latest, QItemSelectionModel::NoUpdate);
    selectionModel()->select(wanted, QItemSelectionModel::ClearAndSelect);
}

void BlockPanel::TellViewer()
{
    const QStringList ids = Chosen();
    bool isTaken = false;
    {
        const QScopedValueRollback<bool> guard(isChoosing, true);
        isTaken = viewer->SelectBlocks(ids);
    }
    // A drawing is not left for a row. Queued, because the list is in the middle of its own change.
    if (!isTaken)
        QMetaObject::invokeMethod(this, &BlockPanel::FollowViewer, Qt::QueuedConnection);
}

void BlockPanel::selectionChanged(const QItemSelection& selected, const QItemSelection& deselected)
{
    QTableView::selectionChanged(selected, deselected);
    // A row that takes the place of a removed one was not chosen by anybody.
    if (isByHand)
        TellViewer();
}

QItemSelectionModel::SelectionFlags BlockPanel::selectionCommand(const QModelIndex& index,
                                                                 const QEvent* event) const
{
    // A box in one of several chosen rows is for them all, which a plain press would take for a choice.
    const bool isSwitch =
        index.column() == BlockListModel::LockColumn || index.column() == BlockListModel::VisibleColumn;
    const bool isMouse =
        event && (event->type() == QEvent::MouseButtonPress || event->type() == QEvent::MouseButtonRelease ||
                  event->type() == QEvent::MouseButtonDblClick);
    if (isSwitch && isMouse && selectionModel()->isRowSelected(index.row(), QModelIndex()))
        return QItemSelectionModel::NoUpdate;
    return QTableView::selectionCommand(index, event);
}

void BlockPanel::OnSwitched(const QString& id, int column, bool on)
{
    const QStringList chosen = Chosen();
    if (!isSwitching && chosen.contains(id))
        Switch(chosen, column, on);
}

void BlockPanel::Switch(const QStringList& ids, int column, bool on)
{
    const QScopedValueRollback<bool> guard(isSwitching, true);
    for (const QString& id : ids)
        if (const int row = blockRows->RowOf(id); row >= 0)
            blockRows->setData(blockRows->index(row, column), on ? Qt::Checked : Qt::Unchecked,
                               Qt::CheckStateRole);
}

void BlockPanel::mousePressEvent(QMouseEvent* event)
{
    const QScopedValueRollback<bool> guard(isByHand, true);
    QTableView::mousePressEvent(event);
}

void BlockPanel::mouseReleaseEvent(QMouseEvent* event)
{
    const QScopedValueRollback<bool> guard(isByHand, true);
    QTableView::mouseReleaseEvent(event);
}

void BlockPanel::mouseMoveEvent(QMouseEvent* event)
{
    const QScopedValueRollback<bool> guard(isByHand, true);
    QTableView::mouseMoveEvent(event);
}

void BlockPanel::Fly()
{
    const QStringList ids = Chosen();
    if (ids.size() == 1 && viewer->FindExistNode(ids.constFirst()))
        viewer->slotFocusBlock(ids.constFirst());
    else if (!ids.isEmpty() && !viewer->SetBlockView(ids))
        emit Told(tr("This block is not on the map."));
}

void BlockPanel::Rename(const QModelIndex& shown)
{
    const QModelIndex name = shown.siblingAtColumn(BlockListModel::NameColumn);
    // Of several chosen rows the others stay chosen.
    selectionModel()->setCurrentIndex(name, QItemSelectionModel::NoUpdate);
    edit(name);
}

void BlockPanel::Delete()
{
    AskAndDeleteBlocks(viewer, Chosen(), window());
}

void BlockPanel::keyPressEvent(QKeyEvent* event)
{
    const QModelIndex shown = currentIndex();
    const bool isForRows = state() != EditingState && event->modifiers() == Qt::NoModifier;
    if (isForRows && event->key() == Qt::Key_Escape && !Chosen().isEmpty()) {
        const QScopedValueRollback<bool> guard(isByHand, true);
        clearSelection();
        return;
    }
    if (isForRows && shown.isValid()) {
        switch (event->key()) {
        case Qt::Key_Delete:
            Delete();
            return;
        case Qt::Key_F2:
            Rename(shown);
            return;
        case Qt::Key_Return:
        case Qt::Key_Enter:
            Fly();
            return;
        default:
            break;
        }
    }
    const QScopedValueRollback<bool> guard(isByHand, true);
    QTableView::keyPressEvent(event);
}

void BlockPanel::AddSwitches(QMenu& menu, const QStringList& ids)
{
    const struct
    {
        int column;
        bool (CAxHandleAdapter::*state)() const;
        QString on;
        QString off;
    } rows[] = {{BlockListModel::VisibleColumn, &CAxHandleAdapter::IsVisible, tr("&Show"), tr("&Hide")},
                {BlockListModel::LockColumn, &CAxHandleAdapter::IsLock, tr("&Lock"), tr("&Unlock")}};
    for (const auto& row : rows)
        for (const bool on : {true, false}) {
            const bool isWanted = std::any_of(ids.begin(), ids.end(), [&](const QString& id) {
                const CAxHandleAdapter* object = viewer->FindExistNode(id);
                return object && (object->*row.state)() != on;
            });
            if (isWanted)
                menu.addAction(on ? row.on : row.off, this,
                               [this, ids, column = row.column, on] { Switch(ids, column, on); });
        }
}

void BlockPanel::contextMenuEvent(QContextMenuEvent* event)
{
    const QPersistentModelIndex shown(indexAt(viewport()->mapFromGlobal(event->globalPos())));
    if (!shown.isValid())
        return;
    QMenu menu;
    menu.addAction(tr("&Fly there"), this, &BlockPanel::Fly);
    menu.addAction(tr("&Rename"), this, [this, shown] { Rename(shown); });
    AddSwitches(menu, Chosen());
    menu.addSeparator();
    menu.addAction(tr("&Delete..."), this, &BlockPanel::Delete);
    emit MenuAsked(&menu);
    menu.exec(event->globalPos());
}

void AskAndDeleteBlocks(CAxEarthViewer* viewer, const QStringList& ids, QWidget* parent)
{
    QStringList wanted;
    QString name;
    bool hasTasks = false;
    bool anyLocked = false;
    QStringList flown;
    for (const QString& id : ids) {
        const CAxBlock* block = CAxBlockManager::instance().GetBlock(id);
        const CAxHandleAdapter* object = viewer->FindExistNode(id);
        if (!block)
            continue;
        if (object && object->IsLock()) {
            anyLocked = true;
            continue;
        }
        wanted += id;
        name = block->GetBlockName();
        hasTasks = hasTasks || !block->GetMissionList().isEmpty();
        flown += CarriedMissions::Of(viewer).Warning(id);
    }
    if (wanted.isEmpty() && !anyLocked)
        return;
    flown.removeAll({});
    QStringList lines;
    if (wanted.size() == 1)
        lines += BlockPanel::tr("Do you want to delete the block \"%1\"?").arg(name);
    else if (!wanted.isEmpty())
        lines += BlockPanel::tr("Do you want to delete %1 blocks?").arg(wanted.size());
    if (hasTasks)
        lines += wanted.size() == 1 ? BlockPanel::tr("Its tasks are deleted with it.")
                                    : BlockPanel::tr("Their tasks are deleted with them.");
    if (anyLocked)
        lines += BlockPanel::tr("What is locked is not deleted.");
    lines += flown;
    CAxMessageBox box(parent);
    box.SetIcon(QStringLiteral(":/images/Normal/Exclamation_mark.png"));
    box.SetWindowTitle(BlockPanel::tr("Delete block"));
    box.SetMsgText(lines.join(QLatin1Char('\n')));
    box.SetBtnHidden(wanted.isEmpty(), false, false);
    box.SetBtnOKText(BlockPanel::tr("Delete"));
    box.SetCancelDefault(true);
    if (box.exec() == QDialog::Accepted)
        viewer->DeleteBlocks(wanted);
}
