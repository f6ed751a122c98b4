#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <AxAlgorthm/CAxVector3D.h>

#include <osg/ref_ptr>
#include <osgEarthAnnotation/CircleNode>
#include <osgEarthAnnotation/LabelNode>

#include <QObject>
#include <QPointer>

class AxViewerParts;
class CAxEarthViewer;

/**
 * The disc on the ground in which a landing point may be set, with its prompt. Places are latitude,
 * longitude, altitude: degrees, degrees, metres.
 *
 * Owned by its Qt parent; the viewer owns the one that it shows. GUI thread only.
 */
class AXEARTHVIEWER_EXPORT CAxLandingAreaNode : public QObject
{
    Q_OBJECT
public:
    /// Makes the disc, of the radius within which a landing point is accepted; shows nothing yet.
    CAxLandingAreaNode(CAxEarthViewer* viewer, QObject* parent);
    /// What it has drawn leaves the scene.
    ~CAxLandingAreaNode() override;

    /// Puts the disc and its prompt into the scene, around a place. Nothing before the map is loaded.
    void CreateMarker(const CAxVector3D& pos);
    /// Moves both; passed over for what is no place.
    void UpDateMarkerPos(const CAxVector3D& pos);
    /// Kilometres; passed over unless above 0.
    void SetRadius(double r);
    void SetVisible(bool visible); ///< of both
    bool IsVisible() const;        ///< false before CreateMarker()

private:
    QPointer<AxViewerParts> parts;
    osg::ref_ptr<osgEarth::Annotation::CircleNode> circle; ///< null without a map
    osg::ref_ptr<osgEarth::Annotation::LabelNode> label;   ///< null before CreateMarker()
};
