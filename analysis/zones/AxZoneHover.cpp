#include "analysis/zones/AxZoneHover.h"
#include "scene/AxScene.h"
#include "scene/AxToolInHand.h"
#include "scene/AxViewerParts.h"
#include "scene/AxZoneAnswers.h"
#include "scene/base/AxFonts.h"

#include <osg/Camera>
#include <osgViewer/Viewer>

#include <QEvent>
#include <QFontMetricsF>
#include <QGraphicsItem>
#include <QGraphicsView>
#include <QGuiApplication>
#include <QPainter>

#include <algorithm>

namespace {
constexpr int mostNames = 4;
constexpr int longestName = 40; // characters
// How soon the label goes when it is the camera that moves, or the zones that are hidden.
constexpr int checkMs = 100;
constexpr int fontPixels = 14;
constexpr qreal margin = 6.0;
// From the mouse's tip to the label's corner, clear of the arrow.
constexpr qreal aside = 14.0;
constexpr qreal onTop = 1000.0;
} // namespace

/// A text in a box. The mouse does not notice it.
class AxHoverLabel : public QGraphicsItem
{
public:
    AxHoverLabel()
    {
        font.setFamily(AxOverlayFontFamily());
        font.setPixelSize(fontPixels);
        setAcceptedMouseButtons(Qt::NoButton);
        setCacheMode(QGraphicsItem::DeviceCoordinateCache);
        setZValue(onTop);
        setVisible(false);
    }

    void SetText(const QString& wanted)
    {
        if (text == wanted)
            return;
        prepareGeometryChange();
        text = wanted;
        const QSizeF size = QFontMetricsF(font).size(0, text);
        box = QRectF(QPointF(), size + QSizeF(2.0 * margin, 2.0 * margin));
        update();
    }
    const QString& Text() const { return text; }

    QRectF boundingRect() const override { return box; }
    QPainterPath shape() const override { return {}; }
    void paint(QPainter* painter, const QStyleOptionGraphicsItem*, QWidget*) override
    {
        painter->setRenderHint(QPainter::Antialiasing);
        painter->setPen(Qt::NoPen);
        painter->setBrush(QColor(20, 20, 20, 200));
        painter->drawRoundedRect(box, 4.0, 4.0);
        painter->setPen(QColor(255, 240, 120));
        painter->setFont(font);
        painter->drawText(box, Qt::AlignCenter, text);
    }

private:
    QFont font;
    QString text;
    QRectF box;
};

AxZoneHover::AxZoneHover(AxViewerParts& parts, const AxZoneAnswers& answers)
    : viewer(parts), zones(answers), scene(parts.Widget()->scene()), label(new AxHoverLabel)
{
    scene->addItem(label);
    check.setInterval(checkMs);
    connect(&check, &QTimer::timeout, this, &AxZoneHover::CheckShown);
    const QObject* mouse = viewer.Mouse();
    connect(mouse, SIGNAL(mouseLeftBtnMove(osg::Vec3d, osg::Vec3d)), this,
            SLOT(slotMouseMove(osg::Vec3d, osg::Vec3d)));
    connect(mouse, SIGNAL(mouseLeftBtnPress(osg::Vec3d, osg::Vec3d)), this, SLOT(slotHide()));
    viewer.Widget()->viewport()->installEventFilter(this);
}

AxZoneHover::~AxZoneHover()
{
    // With the scene its items are gone as well.
    if (scene)
        delete label;
}

QString AxZoneHover::Text() const
{
    return scene && label->isVisible() ? label->Text() : QString();
}

bool AxZoneHover::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Leave || event->type() == QEvent::MouseButtonPress)
        slotHide();
    return QObject::eventFilter(watched, event);
}

bool AxZoneHover::MayShow() const
{
    if (!scene || !zones.NoFlyZoneMask())
        return false;
    return !viewer.Tools().IsBusy();
}

QString AxZoneHover::TextOf(const QStringList& ids) const
{
    QStringList lines;
    for (const QString& id : ids.mid(0, ids.size() > mostNames ? mostNames - 1 : mostNames)) {
        QString name = id.simplified();
        if (name.size() > longestName)
            name = name.left(longestName - 1) + QChar(0x2026);
        lines += name;
    }
    if (ids.size() > lines.size())
        lines += tr("and %1 more").arg(ids.size() - lines.size());
    return lines.join(QLatin1Char('\n'));
}

void AxZoneHover::slotMouseMove(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos)
{
    if (worldCoordPos == osg::Vec3d() || !MayShow())
        return slotHide();
    const QStringList ids = zones.ShownZonesAt(lngLatPos.x(), lngLatPos.y());
    const osg::Camera* camera = viewer.Scene().View()->getCamera();
    const osg::Viewport* frame = camera->getViewport();
    if (ids.isEmpty() || !frame || !(frame->width() > 0.0) || !(frame->height() > 0.0))
        return slotHide();

    shownView = camera->getViewMatrix();
    const osg::Vec3d clip = worldCoordPos * shownView * camera->getProjectionMatrix();
    const QSizeF size = viewer.Widget()->viewport()->size();
    const QPointF mouse(0.5 * (1.0 + clip.x()) * size.width(), 0.5 * (1.0 - clip.y()) * size.height());
    label->SetText(TextOf(ids));
    // On the other side of the mouse where the window ends.
    const QRectF box = label->boundingRect();
    QPointF corner = mouse + QPointF(aside, aside);
    if (corner.x() + box.width() > size.width())
        corner.setX(std::max(0.0, mouse.x() - aside - box.width()));
    if (corner.y() + box.height() > size.height())
        corner.setY(std::max(0.0, mouse.y() - aside - box.height()));
    label->setPos(viewer.Widget()->mapToScene(corner.toPoint()));
    label->setVisible(true);
    check.start();
}

void AxZoneHover::slotHide()
{
    check.stop();
    if (scene)
        label->setVisible(false);
}

void AxZoneHover::CheckShown()
{
    // What is under the mouse has changed with the camera.
    if (!MayShow() || QGuiApplication::mouseButtons() != Qt::NoButton ||
        viewer.Scene().View()->getCamera()->getViewMatrix() != shownView)
        slotHide();
}
