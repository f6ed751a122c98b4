#include "host/BlockPanel.h"
#include "host/BlockListModel.h"
#include "interaction/CAxHandleAdapter.h"
#include "viewer/CAxEarthViewer.h"

#include <AxBaseUI/CAxMessageBox.h>
#include <AxData/CAxBlockManager.h>

#include <QCollator>
#include <QContextMenuEvent>
#include <QFontMetrics>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMenu>
#include <QScopedValueRollback>
#include <QSortFilterProxyModel>

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
} // namespace

BlockPanel::BlockPanel(CAxEarthViewer* earthViewer, QWidget* parent)
    : QTableView(parent), viewer(earthViewer), blockRows(new BlockListModel(viewer, this)),
      sorted(new NaturalOrder(this))
{
    setObjectName(QStringLiteral("BlockList"));
    sorted->setSourceModel(blockRows);
    setModel(sorted);
    setSelectionBehavior(SelectRows);
    setSelectionMode(SingleSelection);
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
    connect(viewer, &CAxEarthViewer::signalCurrentBlock, this, &BlockPanel::MarkCurrent);
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

void BlockPanel::OnClicked(const QModelIndex& shown)
{
    if (shown.column() != BlockListModel::LockColumn && shown.column() != BlockListModel::VisibleColumn)
        Fly(shown);
}

void BlockPanel::MarkCurrent(const QString& id)
{
    if (isChoosing)
        return;
    const int row = blockRows->RowOf(id);
    if (row < 0) {
        // The keys of the list act on its current row, seen or not.
        selectionModel()->clear();
        return;
    }
    const QModelIndex shown = sorted->mapFromSource(blockRows->index(row, BlockListModel::NameColumn));
    if (!selectionModel()->isRowSelected(shown.row(), QModelIndex()))
        setCurrentIndex(shown);
}

void BlockPanel::FollowViewer()
{
    const CAxHandleAdapter* current = viewer->GetCurHandleAdapter();
    MarkCurrent(current ? current->GetHandleID() : QString());
}

void BlockPanel::MakeCurrent(const QString& id)
{
    const CAxHandleAdapter* object = viewer->FindExistNode(id);
    {
        const QScopedValueRollback<bool> guard(isChoosing, true);
        viewer->SetNodeSelected(object ? object->GetFeatureNode() : nullptr, false, false);
    }
    // A drawing is not left for a row. Queued, because the list selects the row after it made it current.
    if (viewer->GetCurHandleAdapter() && viewer->GetCurHandleAdapter() != object)
        QMetaObject::invokeMethod(this, &BlockPanel::FollowViewer, Qt::QueuedConnection);
}

void BlockPanel::currentChanged(const QModelIndex& now, const QModelIndex& before)
{
    QTableView::currentChanged(now, before);
    // A row that takes the place of a removed one was not chosen by anybody.
    if (isByHand && now.row() != before.row())
        MakeCurrent(BlockOf(now));
}

void BlockPanel::mousePressEvent(QMouseEvent* event)
{
    const QScopedValueRollback<bool> guard(isByHand, true);
    QTableView::mousePressEvent(event);
}

void BlockPanel::mouseMoveEvent(QMouseEvent* event)
{
    const QScopedValueRollback<bool> guard(isByHand, true);
    QTableView::mouseMoveEvent(event);
}

void BlockPanel::Fly(const QModelIndex& shown)
{
    const QString id = BlockOf(shown);
    if (viewer->FindExistNode(id))
        viewer->slotFocusBlock(id);
    else if (!id.isEmpty())
        emit Told(tr("This block is not on the map."));
}

void BlockPanel::Rename(const QModelIndex& shown)
{
    const QModelIndex name = shown.siblingAtColumn(BlockListModel::NameColumn);
    setCurrentIndex(name);
    edit(name);
}

void BlockPanel::Delete(const QModelIndex& shown)
{
    AskAndDeleteBlocks(viewer, {BlockOf(shown)}, window());
}

void BlockPanel::keyPressEvent(QKeyEvent* event)
{
    const QModelIndex shown = currentIndex();
    if (state() != EditingState && shown.isValid() && event->modifiers() == Qt::NoModifier) {
        switch (event->key()) {
        case Qt::Key_Delete:
            Delete(shown);
            return;
        case Qt::Key_F2:
            Rename(shown);
            return;
        case Qt::Key_Return:
        case Qt::Key_Enter:
            Fly(shown);
            return;
        default:
            break;
        }
    }
    const QScopedValueRollback<bool> guard(isByHand, true);
    QTableView::keyPressEvent(event);
}

void BlockPanel::contextMenuEvent(QContextMenuEvent* event)
{
    const QPersistentModelIndex shown(indexAt(viewport()->mapFromGlobal(event->globalPos())));
    if (!shown.isValid())
        return;
    QMenu menu;
    menu.addAction(tr("&Fly there"), this, [this, shown] { Fly(shown); });
    menu.addAction(tr("&Rename"), this, [this, shown] { Rename(shown); });
    menu.addSeparator();
    menu.addAction(tr("&Delete..."), this, [this, shown] { Delete(shown); });
    emit MenuAsked(&menu);
    menu.exec(event->globalPos());
}

void AskAndDeleteBlocks(CAxEarthViewer* viewer, const QStringList& ids, QWidget* parent)
{
    QStringList wanted;
    QString name;
    bool hasTasks = false;
    bool anyLocked = false;
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
    }
    if (wanted.isEmpty() && !anyLocked)
        return;
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
