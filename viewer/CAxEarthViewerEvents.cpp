// Qt's events but for the input: ticks, painting, sizes.
#include "viewer/AxFrame.h"
#include "viewer/AxFrameCapture.h"
#include "viewer/AxGlViewport.h"
#include "viewer/AxInputRouter.h"
#include "viewer/AxViewerPrivate.h"
#include "viewer/CAxEarthViewer.h"
#include "viewer/overlay/AxHeadUpText.h"
#include "viewer/overlay/CAxCoordinateWidget.h"
#include "viewer/overlay/CAxGraphicsCompassItem.h"
#include "viewer/overlay/CAxMapToolsWidget.h"

#include <QKeyEvent>
#include <QMoveEvent>
#include <QPaintEngine>
#include <QPaintEvent>
#include <QPointer>
#include <QResizeEvent>

#include <utility>

namespace {
constexpr int overlayTop = 60;
constexpr int compassRightMargin = 9;
constexpr int overlayGap = 4;
// The tools bar stands partly beyond the right edge.
constexpr int toolsBeyondEdge = 20;
} // namespace

void CAxEarthViewer::timerEvent(QTimerEvent* event)
{
    QObject::timerEvent(event);
    d->tick();
}

void CAxEarthViewer::paintEvent(QPaintEvent* event)
{
    if (!d->isHeld && d->passBy())
        return;
    d->isShown = true;
    QGraphicsView::paintEvent(event);
}

void CAxEarthViewer::drawBackground(QPainter* painter, const QRectF&)
{
    if (!d->earthLoaded || painter->paintEngine()->type() != QPaintEngine::OpenGL2)
        return;
    if (d->isHeld && !d->heldPicture.isNull()) {
        painter->drawImage(sceneRect(), d->heldPicture);
        return;
    }
    const bool isWindow = painter->device() == d->glWidget;
    painter->save();
    painter->setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    painter->beginNativePainting();
    d->painting = true;
    if (!d->viewer->done())
        d->frame->Render(d->pixels(), isWindow ? AxFrame::Target::Window : AxFrame::Target::Elsewhere);
    d->painting = false;
    if (d->isHeld && isWindow)
        d->heldPicture = AxCaptureBuffer(*d->graphicsWindow, GL_BACK);
    painter->endNativePainting();
    painter->restore();
}

bool CAxEarthViewer::event(QEvent* event)
{
    const bool isKey = event->type() == QEvent::KeyPress || event->type() == QEvent::KeyRelease;
    if (isKey && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Tab) {
        event->accept();
        // Qt offers a key that is refused to the parent, which would move the focus.
        return !isWindow();
    }
    if (!isKey && event->type() != QEvent::ShortcutOverride)
        return QGraphicsView::event(event);
    // An overlay that has the focus and no use for a key hands it to its Qt
    // parent, which is this widget, which would hand it to the overlay again.
    if (d->passedKey == event)
        return false;
    // A box that the key opens lets further keys come, and may see the end of this widget.
    const QPointer<CAxEarthViewer> self(this);
    const QEvent* const before = std::exchange(d->passedKey, event);
    const bool recognised = QGraphicsView::event(event);
    if (self)
        d->passedKey = before;
    return recognised;
}

void CAxEarthViewer::resizeEvent(QResizeEvent* event)
{
    const QSize size = event->size();
    scene()->setSceneRect(rect());
    const QRectF area = scene()->sceneRect();
    d->compassItem->setPos(area.right() - d->compassItem->boundingRect().width() - compassRightMargin,
                           area.top() + overlayTop);
    if (d->graphicsWindow) {
        // A size of nothing would leave the camera with a degenerate projection for good.
        d->input->Resize(x(), y(), qMax(1, size.width()), qMax(1, size.height()));
        AxHeadUpText::Instance().SetSize(size.width(), size.height());
    }
    d->mapToolsWidget->setGeometry(rect().right() + toolsBeyondEdge - d->mapToolsWidget->width(),
                                   rect().top() + overlayTop, d->mapToolsWidget->width(), rect().height());
    const QSize readOut = d->coordinateWidget->size();
    d->coordinateWidget->setGeometry(rect().right() + 1 - readOut.width(), rect().height() - readOut.height(),
                                     readOut.width(), readOut.height());
    d->keepBarWithin();
    QGraphicsView::resizeEvent(event);
}

void AxViewerPrivate::keepBarWithin()
{
    const int height = q->rect().height();
    mapToolsWidget->KeepButtonsWithin(static_cast<int>(compassItem->boundingRect().height()) + overlayGap,
                                      height - coordinateWidget->height() - overlayTop - overlayGap,
                                      height - overlayTop);
}

void CAxEarthViewer::moveEvent(QMoveEvent* event)
{
    if (d->graphicsWindow)
        d->input->Resize(event->pos().x(), event->pos().y(), qMax(1, width()), qMax(1, height()));
    QWidget::moveEvent(event);
}
