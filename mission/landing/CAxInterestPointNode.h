#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <AxAlgorthm/CAxVector3D.h>

#include <osg/ref_ptr>
#include <osg/Vec3d>
#include <osgEarthAnnotation/CircleNode>
#include <osgEarthAnnotation/LabelNode>

#include <QObject>
#include <QPointer>

class AxViewerParts;
class CAxEarthViewer;

/**
 * A point of interest on the ground: a disc ("InterestPoint-Circle") with the text "Elevation Marker" and the
 * height of the ground ("InterestPoint-Label"). The mouse drags it by the disc.
 *
 * Owned by its Qt parent; the viewer owns the one that it shows. GUI thread only.
 */
class AXEARTHVIEWER_EXPORT CAxInterestPointNode : public QObject
{
    Q_OBJECT
public:
    /// Shows nothing yet; nothing ever without a map.
    CAxInterestPointNode(CAxEarthViewer* viewer, QObject* parent);
    /// What it has drawn leaves the scene.
    ~CAxInterestPointNode() override;

    /// Shows it at a place: latitude, longitude, altitude; degrees, degrees, metres. The altitude is told,
    /// the disc lies on the ground. False for what is no place.
    bool SetPosition(const CAxVector3D& latLngAlt);
    const CAxVector3D& GetPosition() const { return position; } ///< as it was set, or a default value
    void SetVisible(bool visible);
    /// Goes back to where it was before the mouse took it; nothing while it is not dragged.
    void GiveUpDrag();

signals:
    /// The mouse has dragged it and let go; degrees, degrees, metres. The place is not taken yet.
    void dropped(double longitude, double latitude, double altitude);

private slots:
    void slotDrag(osg::Vec3d lngLatPos);
    void slotRelease();

private:
    void show(const CAxVector3D& latLngAlt);

    QPointer<AxViewerParts> parts;
    CAxVector3D position;
    CAxVector3D dragged;
    bool isDragged = false;
    osg::ref_ptr<osgEarth::Annotation::CircleNode> circle;
    osg::ref_ptr<osgEarth::Annotation::LabelNode> label;
};
