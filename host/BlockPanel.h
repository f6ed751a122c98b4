#pragma once
#include <QTableView>

class BlockListModel;
class CAxEarthViewer;
class QMenu;
class QSortFilterProxyModel;

/**
 * The list of blocks. A click on a row flies to its block, a double click or
 * F2 renames it, Delete deletes it after a question. The highlighted row is the
 * viewer's current block: mouse and keys in the list choose it, and a choice on
 * the map moves the highlight. Tab leaves the list.
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

signals:
    /// Something that the status bar shows.
    void Told(const QString& text);
    /// The menu of the current row's block is about to be shown, for further actions.
    void MenuAsked(QMenu* menu);

protected:
    void currentChanged(const QModelIndex& now, const QModelIndex& before) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    QString BlockOf(const QModelIndex& shown) const;
    void OnClicked(const QModelIndex& shown);
    void MarkCurrent(const QString& id);
    void FollowViewer();
    void MakeCurrent(const QString& id);
    void Fly(const QModelIndex& shown);
    void Rename(const QModelIndex& shown);
    void Delete(const QModelIndex& shown);

    CAxEarthViewer* viewer;
    BlockListModel* blockRows;
    QSortFilterProxyModel* sorted;
    bool isByHand = false;   ///< mouse or keys are at work in the list
    bool isChoosing = false; ///< the viewer is being told
};

/// Deletes blocks, their objects and their tasks, after a question, as one step that can be undone. A locked
/// block stays, and the operator is told when there is no other; nothing happens without a block.
void AskAndDeleteBlocks(CAxEarthViewer* viewer, const QStringList& ids, QWidget* parent);
