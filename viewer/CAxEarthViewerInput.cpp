// The part of the viewer that hands Qt's input on to the scene.
#include "viewer/AxInputRouter.h"
#include "viewer/CAxEarthViewer.h"

#include <QCursor>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QMouseEvent>
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
} // namespace

void CAxEarthViewer::setKeyboardModifiers(Qt::KeyboardModifiers modifiers)
{
    input->SetModifiers(modifiers);
    update();
}

bool CAxEarthViewer::isOverlayUnderCursor() const
{
    return itemAt(mapFromGlobal(QCursor::pos())) != nullptr;
}

void CAxEarthViewer::mousePressEvent(QMouseEvent* event)
{
    focusToMaptool = false;
    QGraphicsView::mousePressEvent(event);
    setKeyboardModifiers(event->modifiers());
    input->Press(*event);
}

void CAxEarthViewer::mouseReleaseEvent(QMouseEvent* event)
{
    QGraphicsView::mouseReleaseEvent(event);
    if (focusToMaptool) {
        input->ReleaseNowhere(*event);
        return;
    }
    setKeyboardModifiers(event->modifiers());
    input->Release(*event);
}

void CAxEarthViewer::mouseMoveEvent(QMouseEvent* event)
{
    setKeyboardModifiers(event->modifiers());
    input->Move(*event);
    QGraphicsView::mouseMoveEvent(event);
}

void CAxEarthViewer::mouseDoubleClickEvent(QMouseEvent* event)
{
    if (isOverlayUnderCursor())
        return;
    setKeyboardModifiers(event->modifiers());
    input->DoubleClick(*event);
    QGraphicsView::mouseDoubleClickEvent(event);
}

void CAxEarthViewer::wheelEvent(QWheelEvent* event)
{
    setKeyboardModifiers(event->modifiers());
    if (graphicsWindow)
        input->Wheel(*event);
    QGraphicsView::wheelEvent(event);
}

void CAxEarthViewer::keyPressEvent(QKeyEvent* event)
{
    const bool reachesScene = !isOverlayUnderCursor();
    if (reachesScene)
        setKeyboardModifiers(event->modifiers());
    input->KeyPress(*event, reachesScene);
    if (!event->isAutoRepeat() || event->key() == Qt::Key_Backspace)
        takeEditingKey(event->key());
    if (event->key() == Qt::Key_Control && appType == appTypeOne)
        multiSelect = true;
    if (event->key() == Qt::Key_Alt && (appType == appTypeOne || appType == appTypeThree))
        emit signalAltKey(true);
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
    input->KeyRelease(*event);
    input->SetModifiers(event->modifiers() & ~own);
    QGraphicsView::keyReleaseEvent(event);
    if (event->key() == Qt::Key_Delete) {
        emit signalHandleKeyDelete();
        deleteKeyTaken = false;
    }
    if (event->key() == Qt::Key_Control && appType == appTypeOne)
        multiSelect = false;
    if (event->key() == Qt::Key_Alt && (appType == appTypeOne || appType == appTypeThree))
        emit signalAltKey(false);
}

void CAxEarthViewer::focusOutEvent(QFocusEvent* event)
{
    // What is let go of from here on is told to somebody else.
    const bool altHeld = input->IsHeld(Qt::Key_Alt);
    input->ReleaseAll();
    if (appType == appTypeOne)
        multiSelect = false;
    if (altHeld && (appType == appTypeOne || appType == appTypeThree))
        emit signalAltKey(false);
    update();
    QGraphicsView::focusOutEvent(event);
}
