// The part of the viewer that hands Qt's input on to the scene.
#include "viewer/AxInputRouter.h"
#include "viewer/CAxEarthViewer.h"

#include <QCursor>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QWheelEvent>

namespace {
// Kinds of host application that follow the modifier keys.
constexpr int appTypeOne = 1;
constexpr int appTypeThree = 3;
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
    if (!isOverlayUnderCursor()) {
        setKeyboardModifiers(event->modifiers());
        input->KeyPress(*event);
    }
    if (event->key() == Qt::Key_Control && appType == appTypeOne)
        multiSelect = true;
    if (event->key() == Qt::Key_Alt && (appType == appTypeOne || appType == appTypeThree))
        emit signalAltKey(true);
    QGraphicsView::keyPressEvent(event);
}

void CAxEarthViewer::keyReleaseEvent(QKeyEvent* event)
{
    setKeyboardModifiers(event->modifiers());
    input->KeyRelease(*event);
    QGraphicsView::keyReleaseEvent(event);
    if (event->key() == Qt::Key_Delete)
        emit signalHandleKeyDelete();
    if (event->key() == Qt::Key_Control && appType == appTypeOne)
        multiSelect = false;
    if (event->key() == Qt::Key_Alt && (appType == appTypeOne || appType == appTypeThree))
        emit signalAltKey(false);
}
