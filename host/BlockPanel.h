#pragma once
#include <QTableView>

class BlockListModel;
class CAxEarthViewer;
class QSortFilterProxyModel;

/**
 * The list of blocks. A click on a row flies to its block, a double click or
 * F2 renames it, Delete deletes it after a question. The row of the viewer's
 * current block is marked.
 */
class BlockPanel : public QTableView
{
    Q_OBJECT
public:
    /// The viewer outlives the panel.
    explicit BlockPanel(CAxEarthViewer* viewer, QWidget* parent = nullptr);

    /// Wide enough for all columns.
    QSize sizeHint() const override;

signals:
    /// Something that the status bar shows.
    void Told(const QString& text);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    QString BlockOf(const QModelIndex& shown) const;
    void OnClicked(const QModelIndex& shown);
    void MarkCurrent(const QString& id);
    void Fly(const QModelIndex& shown);
    void Rename(const QModelIndex& shown);
    void Delete(const QModelIndex& shown);

    CAxEarthViewer* viewer;
    BlockListModel* model;
    QSortFilterProxyModel* sorted;
};

/// Deletes blocks, their objects and their tasks, after a question, as one step that can be undone. A locked
/// block stays, and the operator is told when there is no other; nothing happens without a block.
void AskAndDeleteBlocks(CAxEarthViewer* viewer, const QStringList& ids, QWidget* parent);
