#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <AxAlgorthm/CAxVector3D.h>

#include <osg/ref_ptr>
#include <osg/Vec3d>
#include <osgEarthAnnotation/LabelNode>
#include <osgEarthAnnotation/LocalGeometryNode>
#include <osgEarthAnnotation/PlaceNode>

#include <QObject>
#include <QPointer>

#include <optional>

class AxViewerParts;
class CAxEarthViewer;

/**
 * The tool with which the operator turns the approach to a landing point: a line on the ground along which
 * the aircraft comes down, with a handle at the far end of it and the direction as a text. Its scene nodes
 * have names that begin with "AngleComputer-".
 *
 * Owned by its Qt parent. A viewer that knows it (SetDownhillAngleNode) lets the mouse drag it and tells the
 * angle by signalDownhillAngle(). GUI thread only.
 */
class AXEARTHVIEWER_EXPORT CAxDownhillAnglenode : public QObject
{
    Q_OBJECT
public:
    /// Shows nothing before it has a landing point, and never anything without a viewer.
    CAxDownhillAnglenode(CAxEarthViewer* viewer, QObject* parent);
    /// What it has drawn leaves the scene.
    ~CAxDownhillAnglenode() override;

    /// Where the approach ends: latitude, longitude, altitude; degrees, degrees, metres. An altitude that is
    /// no number becomes that of the ground as it is loaded now, 0 beside all heights. False, with the former
    /// place standing, for what is no place.
    bool SetLandingPoint(const CAxVector3D& latLngAlt);
    const CAxVector3D& GetLandingPoint() const { return landing; }
    /// The direction of flight of the approach, degrees clockwise from north, taken into [0, 360); passed
    /// over when it is not finite. Nobody is told.
    void SetAngle(double degrees);
    double GetAngle() const { return angle; }

    void SetVisible(bool visible); ///< all of it; it is from the start
    /// Whether its handle is shown and can be grabbed; not at first.
    bool IsHandlesVisible() const { return handlesVisible; }
    void SetHandlesVisible(bool visible);
    /// Turns back to where it was before the mouse took it, and tells of it; nothing while it is not dragged.
    void GiveUpDrag();

public slots:
    /// Writes the angle anew, beside the handle.
    void slotAngleLableChange();

signals:
    /// The mouse has turned it: degrees as GetAngle().
    void signalDownhillAngle(double degrees);

private slots:
    void slotDrag(osg::Vec3d lngLatPos);

private:
    void show();
    void showNodes();

    QPointer<AxViewerParts> parts;
    CAxVector3D landing;
    bool hasLanding = false;
    double angle = 0.0;
    std::optional<double> angleBefore; ///< of the drag that goes on
    bool visible = true;
    bool handlesVisible = false;
    osg::ref_ptr<osgEarth::Annotation::LocalGeometryNode> line; ///< null until it is shown, as all three
    osg::ref_ptr<osgEarth::Annotation::PlaceNode> handle;
    osg::ref_ptr<osgEarth::Annotation::LabelNode> label;
};
