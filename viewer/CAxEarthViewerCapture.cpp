// The viewer as the place of the magnifier and of pictures in any size, and what it lets happen meanwhile.
#include "interaction/magnifier/AxMagnifier.h"
#include "viewer/AxFrame.h"
#include "viewer/AxGlViewport.h"
#include "viewer/AxViewerPrivate.h"
#include "viewer/capture/AxPictureCapture.h"

#include <QGraphicsItem>
#include <QGraphicsScene>
#include <QKeyEvent>
#include <QMouseEvent>

AxMagnifier* CAxEarthViewer::GetMagnifier() const
{
    return d->magnifier.get();
}

AxPictureCapture* CAxEarthViewer::GetPictureCapture() const
{
    return d->capture.get();
}

void AxViewerPrivate::hold(bool held)
{
    if (held && !isHeld) {
        letGoOfInput();
        if (QGraphicsItem* const grabber = q->scene() ? q->scene()->mouseGrabberItem() : nullptr)
            grabber->ungrabMouse();
        // Before the filters of whatever lies over the map.
        glWidget->installEventFilter(this);
        q->installEventFilter(this);
        // The scene hears of what was let go of, and nothing goes on moving.
        QMetaObject::invokeMethod(this, &AxViewerPrivate::takeInput, Qt::QueuedConnection);
    }
    isHeld = held;
    heldPicture = QImage();
    // Painted once more, when the first frame behind the overlays is kept.
    if (held && q->isVisible())
        paintedPicture();
    frame->Request();
    if (q->scene())
        q->scene()->update();
}

bool AxViewerPrivate::swallow(QEvent& event)
{
    switch (event.type()) {
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
        return swallowKey(static_cast<QKeyEvent&>(event));
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseMove:
        return swallowMouse(static_cast<QMouseEvent&>(event));
    case QEvent::ShortcutOverride:
        // Shortcuts are the host's, which may want to cancel.
        if (isHeld)
            event.ignore();
        return isHeld;
    case QEvent::ContextMenu:
    case QEvent::InputMethod:
    case QEvent::NativeGesture:
    case QEvent::TabletMove:
    case QEvent::TabletPress:
    case QEvent::TabletRelease:
    case QEvent::TouchBegin:
    case QEvent::TouchEnd:
    case QEvent::TouchUpdate:
    case QEvent::Wheel:
        return isHeld;
    default:
        return false;
    }
}

bool AxViewerPrivate::swallowKey(QKeyEvent& event)
{
    const bool isPress = event.type() == QEvent::KeyPress;
    bool isTaken = isHeld;
    if (isPress && isHeld) {
        keysOfHold += event.key();
    } else if (event.isAutoRepeat()) {
        isTaken = isTaken || keysOfHold.contains(event.key());
    } else {
        const bool wasOfHold = keysOfHold.remove(event.key());
        isTaken = isTaken || (!isPress && wasOfHold);
    }
    // Whoever shows the progress may be around the map.
    if (isTaken && event.key() == Qt::Key_Escape)
        event.ignore();
    return isTaken;
}

bool AxViewerPrivate::swallowMouse(const QMouseEvent& event)
{
    const Qt::MouseButton button = event.button();
    if (event.type() == QEvent::MouseMove) {
        // A release may have gone elsewhere.
        buttonsOfHold &= event.buttons();
        return isHeld || buttonsOfHold != Qt::NoButton;
    }
    const bool wasOfHold = buttonsOfHold.testFlag(button);
    buttonsOfHold.setFlag(button, isHeld && event.type() != QEvent::MouseButtonRelease);
    return isHeld || (wasOfHold && event.type() == QEvent::MouseButtonRelease);
}
