#pragma once
#include <QTableView>

class BlockListModel;
class CAxEarthViewer;
class QMenu;
class QSortFilterProxyModel;

/**
 * The list of blocks. A click on a row flies to its block, Enter to all chosen
 * ones, a double click or F2 renames, Delete deletes after a question. The
 * highlighted rows are what the viewer has selected: mouse and keys in the list,
 * with Ctrl and Shift for several rows, select on the map, and a choice on the
 * map moves the highlight. Escape chooses nothing. What is done to one of
 * several chosen rows, or by the menu, is done to them all. Tab leaves the list.
 */
class BlockPanel : public QTableView
{
    Q_OBJECT
public:
    /// The viewer outlives the panel.
    explicit BlockPanel(CAxEarthViewer* viewer, QWidget* parent = nullptr);

    /// Wide enough for all columns.
    QSize sizeHint() const override;
    /// Why drawing would refuse a block that is drawn, in words; empty when it would not.
    QString FaultOf(const QString& id) const;
    /// Blocks of the highlighted rows, drawn or not: first those that the viewer has selected, in its order.
    QStringList Chosen() const;

signals:
    /// Something that the status bar shows.
    void Told(const QString& text);
    /// The menu of the current row's block is about to be shown, for further actions.
    void MenuAsked(QMenu* menu);

protected:
    void selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) override;
    QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& index,
                                                         const QEvent* event) const override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    QString BlockOf(const QModelIndex& shown) const;
    void OnClicked(const QModelIndex& shown);
    void FollowViewer();
    void TellViewer();
    void OnSwitched(const QString& id, int column, bool on);
    void Switch(const QStringList& ids, int column, bool on);
    void AddSwitches(QMenu& menu, const QStringList& ids);
    void Fly();
    void Rename(const QModelIndex& shown);
    void Delete();

    CAxEarthViewer* viewer;
    BlockListModel* blockRows;
    QSortFilterProxyModel* sorted;
    bool isByHand = false;    ///< mouse or keys are at work in the list
    bool isChoosing = false;  ///< the viewer is being told
    bool isSwitching = false; ///< what one row was switched to is done to the others
};

/// Deletes blocks, their objects and their tasks, after a question, as one step that can be undone. A locked
/// block stays, and the operator is told when there is no other; nothing happens without a block.
void AskAndDeleteBlocks(CAxEarthViewer* viewer, const QStringList& ids, QWidget* parent);
