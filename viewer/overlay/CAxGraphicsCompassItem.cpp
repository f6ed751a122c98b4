#include "viewer/overlay/CAxGraphicsCompassItem.h"
#include "scene/AxToolInHand.h"
#include "scene/AxViewerParts.h"

#include <QGraphicsSceneMouseEvent>
#include <QPainter>
#include <QtMath>

#include <cmath>

namespace {
constexpr double pi = 3.141592653589793;
// The needle's picture is drawn pointing north-east.
constexpr double needleOffsetDegrees = 45.0;
constexpr double smallestTurnDegrees = 1.0;

QImage DialImage(const char* name)
{
    return QImage(QStringLiteral(":/images/Normal/NorthArrow/") + QLatin1String(name));
}

void DrawCentred(QPainter& painter, const QImage& image)
{
    painter.drawImage(QPointF(-image.width() / 2.0, -image.height() / 2.0), image);
}
} // namespace

CAxGraphicsCompassItem::CAxGraphicsCompassItem(QGraphicsItem* parent)
    : QGraphicsObject(parent), stateImage(DialImage("looknorm.png")),
      backgroundImage(DialImage("lookbackground.png")), needleImage(DialImage("n.png"))
{
    setFlag(QGraphicsItem::ItemIsSelectable);
    setAcceptHoverEvents(true);
}

void CAxGraphicsCompassItem::ConnectEvent(CAxEarthViewer* earthViewer)
{
    viewer = AxPartsOf(earthViewer);
    if (!viewer)
        return;
    const QObject* manipulator = viewer->Mouse();
    connect(this, SIGNAL(signalHeading(double)), manipulator, SLOT(slotHeading(double)));
    connect(this, SIGNAL(signalHeading(double)), manipulator, SLOT(slotResetPitch()));
    connect(manipulator, SIGNAL(signalHeading(double)), this, SLOT(slotHeading(double)));
}

QRectF CAxGraphicsCompassItem::boundingRect() const
{
    return backgroundImage.rect();
}

void CAxGraphicsCompassItem::paint(QPainter* painter, const QStyleOptionGraphicsItem*, QWidget*)
{
    for (const QImage& image : {backgroundImage, stateImage}) {
        painter->save();
        painter->setRenderHints(QPainter::SmoothPixmapTransform | QPainter::Antialiasing);
        painter->translate(boundingRect().center());
        DrawCentred(*painter, image);
        painter->restore();
    }
    RotateN(*painter, heading);
}

void CAxGraphicsCompassItem::RotateN(QPainter& painter, double angle)
{
    painter.save();
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    painter.translate(boundingRect().center());
    painter.rotate(angle - needleOffsetDegrees);
    DrawCentred(painter, needleImage);
    painter.restore();
}

void CAxGraphicsCompassItem::slotHeading(double newHeading)
{
    if (std::abs(newHeading - heading) < smallestTurnDegrees)
        return;
    heading = newHeading;
    needlePos = ComputerPos(newHeading);
    update();
}

QPoint CAxGraphicsCompassItem::ComputerPos(double angle)
{
    const double radians = angle * pi / 180.0;
    const int radius = backgroundImage.height() / 2 - needleImage.height() / 2;
    return {static_cast<int>(std::sin(radians) * radius), static_cast<int>(std::cos(radians) * radius)};
}

double CAxGraphicsCompassItem::ComputerAngle(QPoint point)
{
    const double dx = point.x() - backgroundImage.width() / 2;
    const double dy = point.y() - backgroundImage.height() / 2;
    const double length = std::hypot(dx, dy);
    if (length <= 0.0)
        return 0.0;
    const double angle = std::acos(dy / length) * 180.0 / pi;
    return dx > 0.0 ? 360.0 - angle : angle;
}

void CAxGraphicsCompassItem::hoverEnterEvent(QGraphicsSceneHoverEvent*)
{
    stateImage = DialImage("lookhover.png");
    update();
}

void CAxGraphicsCompassItem::hoverLeaveEvent(QGraphicsSceneHoverEvent*)
{
    stateImage = DialImage("looknorm.png");
    update();
}

void CAxGraphicsCompassItem::mousePressEvent(QGraphicsSceneMouseEvent* event)
{
    QGraphicsObject::mousePressEvent(event);
    // The viewer then ends the press away from the map, as it does for the tools bar.
    if (event->isAccepted() && viewer)
        viewer->Tools().TakePress();
}

void CAxGraphicsCompassItem::mouseReleaseEvent(QGraphicsSceneMouseEvent*)
{
    stateImage = DialImage("lookpress.png");
    update();
    emit signalHeading(0.0);
}
