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

/// Deletes a block, its object and its tasks, after a question; nothing
/// happens when no block has that ID.
void AskAndDeleteBlock(CAxEarthViewer* viewer, const QString& id, QWidget* parent);
