// The part of the viewer that hands Qt's input on to the scene.
#include "interaction/input/CAxEarthManipulator.h"
#include "interaction/magnifier/AxMagnifier.h"
#include "interaction/marks/CAxOsgDrawPointSet.h"
#include "interaction/objects/CAxHandleAdapter.h"
#include "viewer/AxInputRouter.h"
#include "viewer/AxViewerPrivate.h"
#include "viewer/CAxEarthViewer.h"

#include <QCursor>
#include <QFocusEvent>
#include <QGraphicsProxyWidget>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPointer>
#include <QWheelEvent>

namespace {
// Kinds of host application that follow the modifier keys.
constexpr int appTypeOne = 1;
constexpr int appTypeThree = 3;

Qt::KeyboardModifiers OwnModifier(int key)
{
    switch (key) {
    case Qt::Key_Shift:
        return Qt::ShiftModifier;
    case Qt::Key_Control:
        return Qt::ControlModifier;
    case Qt::Key_Alt:
        return Qt::AltModifier;
    default:
        return Qt::NoModifier;
    }
}

bool IsOverlayUnderCursor(const QGraphicsView& view)
{
    const QPoint cursor = view.mapFromGlobal(QCursor::pos());
    // Overlays may reach beyond the map, where the cursor is over something else.
    return view.viewport()->rect().contains(cursor) && view.itemAt(cursor);
}

// A button that was clicked has the focus of the overlays, but no use for these keys.
bool IsTyping(const QGraphicsScene& overlays)
{
    const auto* proxy = qgraphicsitem_cast<QGraphicsProxyWidget*>(overlays.focusItem());
    const QWidget* field = proxy && proxy->widget() ? proxy->widget()->focusWidget() : nullptr;
    return field && field->testAttribute(Qt::WA_InputMethodEnabled);
}
} // namespace

void CAxEarthViewer::setKeyboardModifiers(Qt::KeyboardModifiers modifiers)
{
    d->input->SetModifiers(modifiers);
    update();
}

void CAxEarthViewer::mousePressEvent(QMouseEvent* event)
{
    const QPointer<CAxEarthViewer> self(this);
    d->tools.SetPressTaken(false);
    QGraphicsView::mousePressEvent(event);
    if (!self)
        return;
    if (event->isAccepted())
        d->tools.TakePress();
    setKeyboardModifiers(event->modifiers());
    d->input->Press(*event, d->tools.IsPressTaken());
}

void CAxEarthViewer::mouseReleaseEvent(QMouseEvent* event)
{
    const QPointer<CAxEarthViewer> self(this);
    QGraphicsView::mouseReleaseEvent(event);
    if (!self)
        return;
    if (d->tools.IsPressTaken()) {
        d->input->ReleaseNowhere(*event);
        return;
    }
    setKeyboardModifiers(event->modifiers());
    d->input->Release(*event);
}

void CAxEarthViewer::mouseMoveEvent(QMouseEvent* event)
{
    setKeyboardModifiers(event->modifiers());
    d->input->Move(*event, event->buttons() && d->tools.IsPressTaken());
    QGraphicsView::mouseMoveEvent(event);
}

void CAxEarthViewer::mouseDoubleClickEvent(QMouseEvent* event)
{
    if (IsOverlayUnderCursor(*this))
        return;
    setKeyboardModifiers(event->modifiers());
    d->input->DoubleClick(*event);
    QGraphicsView::mouseDoubleClickEvent(event);
}

void CAxEarthViewer::wheelEvent(QWheelEvent* event)
{
    setKeyboardModifiers(event->modifiers());
    if (d->graphicsWindow)
        d->input->Wheel(*event);
    QGraphicsView::wheelEvent(event);
}

void CAxEarthViewer::keyPressEvent(QKeyEvent* event)
{
    const QPointer<CAxEarthViewer> self(this);
    const bool reachesScene = !IsOverlayUnderCursor(*this);
    if (reachesScene)
        setKeyboardModifiers(event->modifiers());
    d->input->KeyPress(*event, reachesScene);
    if (!event->isAutoRepeat() || event->key() == Qt::Key_Backspace)
        takeEditingKey(event->key(), reachesScene, IsTyping(*scene()));
    if (!self)
        return;
    if (event->key() == Qt::Key_Control && GetAppType() == appTypeOne)
        d->tools.SetMultiSelect(true);
    if (event->key() == Qt::Key_Alt && (GetAppType() == appTypeOne || GetAppType() == appTypeThree))
        emit signalAltKey(true);
    if (self)
        QGraphicsView::keyPressEvent(event);
}

void CAxEarthViewer::keyReleaseEvent(QKeyEvent* event)
{
    // A held key repeats as pairs of release and press, and is not let go by
    // them: nothing may be deleted again with each, or moving stop and go.
    if (event->isAutoRepeat()) {
        QGraphicsView::keyReleaseEvent(event);
        return;
    }
    // Qt counts a modifier as gone in its own release; the scene hears of the
    // release under the modifiers that were held, or Shift would never end a
    // tool that it took up.
    const Qt::KeyboardModifiers own = OwnModifier(event->key());
    setKeyboardModifiers(event->modifiers() | own);
    d->input->KeyRelease(*event);
    d->input->SetModifiers(event->modifiers() & ~own);
    const QPointer<CAxEarthViewer> self(this);
    QGraphicsView::keyReleaseEvent(event);
    if (self && event->key() == Qt::Key_Delete) {
        emit signalHandleKeyDelete();
        if (self)
            d->deleteKeyTaken = false;
    }
    if (!self)
        return;
    if (event->key() == Qt::Key_Control && GetAppType() == appTypeOne)
        d->tools.SetMultiSelect(false);
    if (event->key() == Qt::Key_Alt && (GetAppType() == appTypeOne || GetAppType() == appTypeThree))
        emit signalAltKey(false);
}

void CAxEarthViewer::leaveEvent(QEvent* event)
{
    d->manipulator->ForgetPointer();
    d->aircraft.ForgetPointer();
    if (d->graphicsWindow)
        CAxOsgDrawPointSet::ForgetPointer(*d, d->graphicsWindow->getEventQueue()->getTime());
    QGraphicsView::leaveEvent(event);
}

void CAxEarthViewer::focusOutEvent(QFocusEvent* event)
{
    // What is let go of from here on is told to somebody else.
    d->letGoOfInput();
    update();
    QGraphicsView::focusOutEvent(event);
}

void AxViewerPrivate::letGoOfInput()
{
    const bool altHeld = input->IsHeld(Qt::Key_Alt);
    input->ReleaseAll();
    if (q->GetAppType() == appTypeOne)
        tools.SetMultiSelect(false);
    if (altHeld && (q->GetAppType() == appTypeOne || q->GetAppType() == appTypeThree))
        emit q->signalAltKey(false);
}

void CAxEarthViewer::takeEditingKey(int key, bool reachesScene, bool isTyped)
{
    if (key == Qt::Key_Delete) {
        // A deletion that is refused, or that an overlay hides, was meant for the vertex all the same.
        const bool isOnVertex = d->history.Aids().deleteKey && d->objects.HoveredVertex() != -1;
        QStringList ids;
        CAxOsgDrawPointSet* marks = isOnVertex ? nullptr : CAxOsgDrawPointSet::ForDelete(*d, ids);
        d->deleteKeyTaken = isOnVertex || marks;
        if (isOnVertex && reachesScene)
            d->objects.DeleteHoveredVertex();
        else if (marks && reachesScene)
            marks->RemoveMarks(ids);
    } else if (isTyped || (key == Qt::Key_Escape && d->giveUpHandleDrag())) {
        return;
    } else if (key == Qt::Key_Escape && !d->tools.IsBusy() &&
               (AxToolRowOf(d->tools.Tool()).measures || GetToolKind(d->tools.Tool()) == ToolKindPick)) {
        const EToolType left = d->tools.Tool();
        const QPointer<CAxEarthViewer> self(this);
        d->tools.TakeUp(ToolNavigate);
        if (self)
            emit signalHandlePickEnded(left);
    } else if (key == Qt::Key_Escape) {
        // What nobody is in the middle of is left: the several, or the one.
        // While Shift is held it is about the lens, and no drawing that waits is given up.
        if (!d->tools.InHand().GiveUp() && !d->objects.GiveUpOperation() &&
            (d->objects.Aside() || !d->tools.IsBusy()) && !d->magnifier->Close() &&
            GetToolKind(d->tools.Tool()) == ToolKindNavigate)
            d->objects.LeaveSelection();
    } else if (key == Qt::Key_Backspace && d->objects.Current()) {
        d->objects.Current()->RemoveLastPoint();
    }
}
