#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <QGraphicsObject>
#include <QImage>
#include <QPointer>

class AxViewerParts;
class CAxEarthViewer;

/**
 * The north-arrow dial over the map. Its needle follows the camera's heading;
 * a click turns the camera back to north and looks straight down.
 *
 * Owned by the graphics scene it is added to. GUI thread only.
 */
class AXEARTHVIEWER_EXPORT CAxGraphicsCompassItem : public QGraphicsObject
{
    Q_OBJECT
public:
    explicit CAxGraphicsCompassItem(QGraphicsItem* parent);

    /// Connects the dial both ways with the viewer's manipulator.
    void ConnectEvent(CAxEarthViewer* earthViewer);

    QRectF boundingRect() const override;
    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override;

    /// The last accepted heading, degrees clockwise from north.
    double Heading() const { return heading; }

signals:
    /// Asks the camera for this heading, degrees.
    void signalHeading(double heading);

protected:
    void hoverEnterEvent(QGraphicsSceneHoverEvent* event) override;
    void hoverLeaveEvent(QGraphicsSceneHoverEvent* event) override;
    /// A press on the dial is none on the globe.
    void mousePressEvent(QGraphicsSceneMouseEvent* event) override;
    void mouseReleaseEvent(QGraphicsSceneMouseEvent* event) override;

    /// Angle of a point of the dial seen from its centre, degrees from 0 to
    /// 360, clockwise from the downward axis of the picture for points on the
    /// left, counted back from 360 for points on the right.
    double ComputerAngle(QPoint point);
    /// Offset of the needle from the dial's centre at an angle in degrees.
    QPoint ComputerPos(double angle);
    /// Draws the needle for an angle in degrees; its picture points north-east.
    void RotateN(QPainter& painter, double angle);

private slots:
    /// Changes below one degree are ignored, so that the dial does not repaint with each frame.
    void slotHeading(double newHeading);

private:
    QImage stateImage;
    QImage backgroundImage;
    QImage needleImage;
    double heading = 0.0;
    QPoint needlePos;
    QPointer<AxViewerParts> viewer; ///< of another owner: an item may outlive it
};
