#include "mission/aircraft/CAxUavNode.h"
#include "scene/AxScene.h"
#include "scene/AxViewerParts.h"

#include <osg/PositionAttitudeTransform>
#include <osgEarth/GeoTransform>
#include <osgEarth/MapNode>

#include <QPointer>

struct CAxUavNode::State
{
    QPointer<AxViewerParts> viewer;
    QPointer<QObject> signalObject;
    osg::ref_ptr<osg::Group> root;
    osg::ref_ptr<osgEarth::GeoTransform> place;
    osg::ref_ptr<osg::PositionAttitudeTransform> attitude;
    EPlaneType type = PlaneFixedWing;
    CAxVector3D position;
    bool flying = false;
    int blockType = -1;
    bool hasPosition = false;
    bool trailVisible = true;
    bool interpolated = true;
};

CAxUavNode::CAxUavNode(CAxEarthViewer* viewer, QObject* signalObject, bool) : d(std::make_unique<State>())
{
    d->viewer = AxPartsOf(viewer);
    d->signalObject = signalObject;
}
CAxUavNode::~CAxUavNode() = default;
osg::Node* CAxUavNode::CreatePlane(EPlaneType type, const osgEarth::GeoPoint& point,
                                   osgEarth::MapNode* mapNode)
{
    if (!mapNode)
        return nullptr;
    d->type = type;
    d->root = new osg::Group;
    d->place = new osgEarth::GeoTransform;
    d->attitude = new osg::PositionAttitudeTransform;
    d->place->setTerrain(mapNode->getTerrain());
    d->place->setPosition(point);
    d->root->addChild(d->place);
    d->place->addChild(d->attitude);
    return d->root;
}
EPlaneType CAxUavNode::GetPlaneType() const
{
    return d->type;
}
osg::Node* CAxUavNode::GetNode() const
{
    return d->root;
}
osg::Node* CAxUavNode::GetFollowedNode() const
{
    return d->attitude;
}
void CAxUavNode::SetPosition(double longitude, double latitude, double altitude)
{
    d->position = {longitude, latitude, altitude};
    d->hasPosition = true;
}
CAxVector3D CAxUavNode::GetPosition() const
{
    return d->position;
}
bool CAxUavNode::HasPosition() const
{
    return d->hasPosition;
}
CAxVector3D CAxUavNode::GetDrawnPosition() const
{
    return d->position;
}
double CAxUavNode::GetDrawnHeading() const
{
    return 0.0;
}
void CAxUavNode::SetPlaneVisbled(bool) {}
void CAxUavNode::SetPanelVisible(bool) {}
void CAxUavNode::SetTrailVisible(bool visible)
{
    d->trailVisible = visible;
}
bool CAxUavNode::IsTrailVisible() const
{
    return d->trailVisible;
}
void CAxUavNode::ResetRenderSort() {}
void CAxUavNode::SetFlightMode(bool flying)
{
    d->flying = flying;
}
bool CAxUavNode::GetFlightMode() const
{
    return d->flying;
}
void CAxUavNode::SetBlockType(int type)
{
    d->blockType = type;
}
int CAxUavNode::GetBlockType() const
{
    return d->blockType;
}
void CAxUavNode::SetSignalObject(QObject* object)
{
    d->signalObject = object;
}
QObject* CAxUavNode::GetSignalObject() const
{
    return d->signalObject;
}
void CAxUavNode::SetLanded(bool) {}
void CAxUavNode::SetLinkLost(bool, double) {}
void CAxUavNode::SetInterpolation(bool interpolated)
{
    d->interpolated = interpolated;
}
bool CAxUavNode::IsInterpolation() const
{
    return d->interpolated;
}
void CAxUavNode::SetTitle(const QString&) {}
void CAxUavNode::CreateReplayFlightLine(const std::vector<CAxVector3D>&) {}
void CAxUavNode::CreateReplayPicPoint(const QStringList&) {}
void CAxUavNode::SetPathIndexMask(int) {}
int CAxUavNode::GetPathIndexMask() const
{
    return 0;
}
void CAxUavNode::RemovePicPoint() {}
void CAxUavNode::VisibleAllPicPoint() {}
void CAxUavNode::SetShootPointVisible(bool) {}
int CAxUavNode::GetPicPointCount() const
{
    return 0;
}
void CAxUavNode::ClearAllTrailLine() {}
void CAxUavNode::RemoveAllTrailLine() {}
int CAxUavNode::GetTrailVertexCount() const
{
    return 0;
}
void CAxUavNode::slotPositionChanged(double, double, double, quint64) {}
void CAxUavNode::slotAttitudeChanged(double, double, double, quint64) {}
void CAxUavNode::slotAddPicPoint(int, double, double) {}
void CAxUavNode::slotVideoData(quint16, qint8, quint8, quint8) {}
void CAxUavNode::slotMouseMoved(osg::Vec3d, osg::Vec3d) {}
