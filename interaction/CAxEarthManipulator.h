#pragma once
#include "viewer/AxEarthViewerExport.h"

#include <osg/Drawable>
#include <osg/Vec2f>
#include <osg/Vec3d>
#include <osgEarthUtil/EarthManipulator>

#include <QObject>

class CAxEarthViewer;

namespace osgViewer {
class View;
}

/**
 * The camera manipulator of the globe view and the source of its
 * geo-referenced mouse events. Picks are `lngLatPos` (longitude and latitude in
 * degrees, altitude in metres above the ellipsoid) and `worldCoordPos`
 * (geocentric, metres); over empty space both are zero.
 *
 * Reference-counted, held by the viewer, which is also its Qt parent. Events
 * reach it on the viewer's event traversal, on the GUI thread; its signals are
 * emitted there.
 */
class AXEARTHVIEWER_EXPORT CAxEarthManipulator : public QObject, public osgEarth::Util::EarthManipulator
{
    Q_OBJECT
public:
    /// parent is the viewer.
    explicit CAxEarthManipulator(QObject* parent);

    bool handle(const osgGA::GUIEventAdapter& ea, osgGA::GUIActionAdapter& aa) override;

signals:
    /// Where north is on the dial: the negated heading of the camera, degrees.
    void signalHeading(double heading);
    void mouseLeftBtnPress(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos);
    void mouseLeftBtnPress(float windowX, float windowY);
    void mouseLeftBtnPress(osg::Drawable* drawable);
    void mouseLeftBtnMove(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos);
    void mouseMoveSignal(osg::Drawable* drawable);
    void mouseLeftBtnRelease(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos);
    void mouseLeftBtnRelease(float windowX, float windowY);
    void mouseLeftBtnClick(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos);
    void mouseLeftBtnClickSignal(osg::Drawable* drawable);
    void mouseLeftBtnDoubleClick(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos);
    void mouseLeftBtnDrag(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos);
    void mouseLeftBtnDrag(float windowX, float windowY);
    void mouseLeftBtnDragAngleComputer(osg::Vec3d lngLatPos);
    void mouseLeftBtnDragGrid(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos);
    void signalRightBtnPicked(osg::Vec3d lngLatPos);
    void signalMouseLeftBtnClickModelLayer(QString currNode, QString parentNode);
    /// A step of a block move, degrees, degrees and metres (always 0).
    void ObjectMoved(double dLng, double dLat, double dAlt);
    void signalHandleKeyDelete();
    void signalPicked(osg::Vec3d lngLatPos);
    void signalMoving(osg::Vec3d lngLatPos);
    void signalPickedXYZ(osg::Vec3d worldCoordPos);
    void signalMovingXYZ(osg::Vec3d worldCoordPos);

public slots:
    /// Positive values bring the camera closer.
    void slotZoom(double value);
    /// Moves the focal point; x and y are weighted differently on purpose.
    void slotTraval(osg::Vec2f direction);
    /// Turns the camera to a heading in degrees at once.
    void slotHeading(double heading);
    /// Looks straight down with north up at once.
    void slotResetPitch();
    /// Forgets the mouse buttons that are held and stops any running movement.
    void slotResetMouse();

protected:
    ~CAxEarthManipulator() override = default;

private:
    void ShowCoordinates(const osgGA::GUIEventAdapter& ea, osgViewer::View& view, double range);
    void VisibleShape(double range);

    CAxEarthViewer* viewer = nullptr;
};
