#include "analysis/CAxAncillaryProcess.h"
#include "interaction/input/CAxEarthManipulator.h"
#include "viewer/AxFrame.h"
#include "viewer/AxFrameCapture.h"
#include "viewer/AxGlViewport.h"
#include "viewer/AxOverlayScene.h"
#include "viewer/AxPlaceNames.h"
#include "viewer/AxViewerPrivate.h"
#include "viewer/overlay/AxReadOut.h"
#include "viewer/overlay/CAxCoordinateWidget.h"
#include "viewer/overlay/CAxMapToolsWidget.h"

#include <QEvent>
#include <QGraphicsProxyWidget>
#include <QPointer>
#include <QWindow>

#include <algorithm>
#include <typeinfo>
#include <utility>

void AxViewerPrivate::tick()
{
    if (isHeld)
        return;
    if (!nextReadOut.isEmpty())
        setCoordinate(std::exchange(nextReadOut, {}));
    if (ancillaryProcess && ancillaryProcess->NoFlyZoneMask())
        manipulator->TellView();
    manipulator->TellPointed();
    aircraft.TellView();
    blockFlight.Look();
    // Posted, because a box that an event opens lets the timer go on.
    if (!inputPosted && frame->HasInput()) {
        inputPosted = true;
        QMetaObject::invokeMethod(this, &AxViewerPrivate::takeInput, Qt::QueuedConnection);
    }
    // Of the scene's own update nobody could tell whether an item has asked for one, too.
    askedByTimer = frame->MayPassBy() && areOverlaysStill();
    if (askedByTimer)
        q->viewport()->update();
    else
        q->scene()->update();
}

bool AxViewerPrivate::areOverlaysStill() const
{
    // One that paints by itself, or items of a host's, may rely on the timer.
    if (q->scene() != overlayScene || overlayScene->IsHeard() || typeid(*q) != typeid(CAxEarthViewer))
        return false;
    const QList<QGraphicsItem*> items = overlayScene->items();
    return std::all_of(items.begin(), items.end(), [this](const QGraphicsItem* item) {
        return !item->isVisible() || ownOverlays.contains(item->topLevelItem());
    });
}

bool AxViewerPrivate::passBy()
{
    const bool mayPass = std::exchange(askedByTimer, false) && isShown && frame->MayPassBy();
    const bool isChanged = overlayScene && overlayScene->TakeChange();
    QWindow* window = glWidget->windowHandle();
    if (!mayPass || isChanged || !window || viewer->done())
        return false;
    window->installEventFilter(this); // a second time is the same as once
    glWidget->makeCurrent();
    painting = true;
    const bool passed = frame->PassBy(pixels());
    painting = false;
    return passed;
}

// After any of these the window may hold something else than what was painted.
bool AxViewerPrivate::eventFilter(QObject* watched, QEvent* event)
{
    if ((watched == q || watched == glWidget) && swallow(*event))
        return true;
    switch (event->type()) {
    case QEvent::Expose:
    case QEvent::Hide:
    case QEvent::ParentChange:
    case QEvent::PlatformSurface:
    case QEvent::Resize:
    case QEvent::Show:
    case QEvent::WinIdChange:
        isShown = false;
        break;
    default:
        break;
    }
    return AxViewerParts::eventFilter(watched, event);
}

QSize AxViewerPrivate::pixels() const
{
    return glWidget->size() * glWidget->devicePixelRatioF();
}

void AxViewerPrivate::takeInput()
{
    const QPointer<AxViewerPrivate> self(this);
    frame->TakeInput();
    if (self)
        inputPosted = false;
}

void AxViewerPrivate::followView(const osgEarth::Viewpoint& viewpoint, bool byEvent)
{
    if (byEvent && map)
        AxPlaceNames::At(viewpoint.getRange()).Show(*map);
    if (ancillaryProcess)
        ancillaryProcess->FollowView(viewpoint, byEvent);
}

void AxViewerPrivate::showReadOut(double longitude, double latitude, double altitude, double range)
{
    pointed = {longitude, latitude, altitude, range};
    showReadOutAgain();
}

void AxViewerPrivate::showReadOutAgain()
{
    if (!pointed)
        return;
    const auto [longitude, latitude, altitude, range] = *pointed;
    const AxReadOut texts = AxReadOut::Of(longitude, latitude, altitude, range, coordSystem);
    setCoordinate({texts.longitude, texts.latitude, texts.altitude, texts.range, texts.system});
}

void AxViewerPrivate::setCoordinate(const QStringList& texts)
{
    // A change while the frame is painted would ask for a second one at once;
    // the next tick paints anyway.
    nextReadOut = painting ? texts : QStringList();
    if (painting)
        return;
    coordinateWidget->SetCoordinate(texts[0], texts[1], texts[2], texts[3]);
    const int before = coordinateWidget->height();
    coordinateWidget->SetSystem(texts.value(4));
    if (coordinateWidget->height() != before)
        keepBarWithin();
}

QImage AxViewerPrivate::paintedPicture()
{
    glWidget->setAutoBufferSwap(false);
    askedByTimer = false;
    glWidget->repaint();
    glWidget->makeCurrent();
    const QImage painted = AxCaptureBuffer(*graphicsWindow, GL_BACK);
    glWidget->setAutoBufferSwap(true);
    return painted;
}

QImage AxViewerPrivate::Picture()
{
    if (!graphicsWindow || !earthLoaded || !q->isVisible())
        return q->GetCurrViewerImg();
    // Transparent rather than hidden, because a hidden overlay loses the keyboard's focus.
    QGraphicsItem* const toolsBar = mapToolsWidget->graphicsProxyWidget();
    QGraphicsItem* const readOut = coordinateWidget->graphicsProxyWidget();
    const qreal ofToolsBar = toolsBar->opacity();
    const qreal ofReadOut = readOut->opacity();
    toolsBar->setOpacity(0.0);
    readOut->setOpacity(0.0);
    const QImage picture = paintedPicture();
    toolsBar->setOpacity(ofToolsBar);
    readOut->setOpacity(ofReadOut);
    return picture;
}
