#pragma once
#include <QPointer>
#include <QUndoView>

class CAxEarthViewer;

/**
 * The list of undo steps. A click or a key in it goes to that row step by step, as Undo and Redo do: it stops
 * where they refuse, and the operator is told why. GUI thread.
 */
class HistoryView : public QUndoView
{
    Q_OBJECT
public:
    explicit HistoryView(CAxEarthViewer* earthViewer);

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent*) override {}
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
    void keyboardSearch(const QString&) override {}

private:
    void GoTo(const QModelIndex& row);

    const QPointer<CAxEarthViewer> viewer;
};
