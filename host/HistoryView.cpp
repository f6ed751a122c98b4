#include "host/HistoryView.h"
#include "viewer/CAxEarthViewer.h"

#include <QAction>
#include <QMouseEvent>
#include <QUndoStack>

HistoryView::HistoryView(CAxEarthViewer* earthViewer)
    : QUndoView(earthViewer->GetUndoStack()), viewer(earthViewer)
{
}

void HistoryView::GoTo(const QModelIndex& row)
{
    const QPointer<HistoryView> self(this);
    const int wanted = row.row();
    int before = -1;
    // A step that is refused leaves the index where it is.
    while (wanted >= 0 && self && viewer && stack() && stack()->index() != wanted &&
           stack()->index() != before) {
        before = stack()->index();
        (wanted < before ? viewer->GetUndoAction() : viewer->GetRedoAction())->trigger();
    }
}

void HistoryView::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton)
        GoTo(indexAt(event->pos()));
}

QModelIndex HistoryView::moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers)
{
    if (currentIndex().isValid())
        GoTo(QUndoView::moveCursor(action, modifiers));
    return currentIndex();
}
