#pragma once
#include "mission/aircraft/AutoScaleContainer.h"
#include "mission/aircraft/AxMotionSmoother.h"
#include "mission/aircraft/AxPhotoPoints.h"
#include "mission/aircraft/AxReplayLine.h"
#include "mission/aircraft/AxTrail.h"
#include "mission/aircraft/AxUavPanel.h"
#include "mission/aircraft/AxVideoFootprint.h"
#include "mission/aircraft/CAxUavNode.h"
#include "scene/AxViewerParts.h"
#include "scene/base/AxGlobePoint.h"

#include <osg/PositionAttitudeTransform>
#include <osgEarth/GeoTransform>
#include <osgEarth/MapNode>
#include <osgEarthAnnotation/FeatureNode>
#include <osgEarthSymbology/Style>

#include <QPointer>
#include <QTimer>

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <string>
#include <vector>

// What the sources of CAxUavNode share.

inline bool AxIsUavPlace(double longitude, double latitude, double altitude)
{
    return std::abs(longitude) <= 360.0 && std::abs(latitude) <= 90.0 && std::isfinite(altitude);
}

inline osg::Vec3d AxUavWorldOf(const CAxVector3D& place)
{
    return AxGlobe::WorldOf({place.x(), place.y(), place.z()});
}

inline void AxTakeFromParents(osg::Node* node)
{
    const osg::ref_ptr<osg::Node> kept = node;
    while (kept && kept->getNumParents() > 0)
        kept->getParent(0)->removeChild(kept);
}

/// Moves the aircraft with each update traversal, until it is destroyed.
class CAxUavNode::Motion : public osg::NodeCallback
{
public:
    explicit Motion(CAxUavNode* node) : aircraft(node) {}
    void operator()(osg::Node* node, osg::NodeVisitor* visitor) override;
    CAxUavNode* aircraft;
};

struct CAxUavNode::State
{
    explicit State(const osgEarth::Symbology::Style& replayStyle) : style(replayStyle) {}

    QPointer<AxViewerParts> viewer;
    QPointer<QObject> signalObject;
    const osgEarth::Symbology::Style style; // of replayed lines
    EPlaneType type = PlaneFixedWing;
    int blockType = -1;
    bool flying = false;
    bool interpolated = true;
    bool landed = false;
    bool planeVisible = true;
    bool panelVisible = true;
    bool trailVisible = true;
    bool lost = false;
    double lostSeconds = 0.0;
    bool positionLost = false;
    double positionLostSeconds = 0.0;
    bool lostLabel = false;
    QString title;

    // The model; null before CreatePlane().
    osg::ref_ptr<osgEarth::MapNode> map;
    osg::ref_ptr<AutoScaleContainer> root;
    osg::ref_ptr<osgEarth::GeoTransform> geo;
    osg::ref_ptr<osg::PositionAttitudeTransform> attitude;
    osg::ref_ptr<osg::Node> followed;
    osg::ref_ptr<osg::Uniform> grey;
    osg::ref_ptr<Motion> motion;
    AxUavPanel panel;
    double bottom = 0.0; // of the model below its middle, metres
    std::string name;

    std::optional<CAxVector3D> position; // as received
    double yaw = 0.0;                    // radians, as received
    std::array<double, 3> angles{};
    AxMotionSmoother smoother;
    bool isMoving = false;
    double nextLook = 0.0;        // at the ground below
    std::optional<double> ground; // as seen last, metres; no value where it is not known
    /// From the place that was received up to where the model is drawn, metres.
    double Lift() const
    {
        if (!position || !ground)
            return 0.0;
        return landed ? *ground + bottom - position->z() : std::max(0.0, *ground - position->z());
    }

    AxTrail trail;
    AxPhotoPoints photos;
    osg::Matrixd hoverView; // of the camera when the mouse was over a photo point
    // Of a replayed flight: how many points its first photos are, from none of them to all; empty without
    // one.
    std::vector<std::size_t> pointsOfPhotos;
    osg::ref_ptr<osgEarth::Annotation::FeatureNode> replay;
    osg::ref_ptr<CAxTrailLingCallBack> replayCallback;
    int pathIndex = 0;
    osg::ref_ptr<AxVideoFootprint> footprint;
    QTimer footprintClock; // runs while a further outline has to wait
    bool isFootprintDue = false;
    double cameraAngle = 0.0;
    std::optional<double> cameraHeading; // degrees; none: that of the aircraft
    qint8 zoom = 0;
    bool videoFlag = false;
};
