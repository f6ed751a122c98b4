// The viewer's landing area, approach, point of interest and control points.
#include "interaction/input/CAxEarthManipulator.h"
#include "interaction/objects/AxLandingReach.h"
#include "mission/landing/CAxDownhillAnglenode.h"
#include "mission/landing/CAxInterestPointNode.h"
#include "mission/landing/CAxLandingAreaNode.h"
#include "viewer/AxControlPoints.h"
#include "viewer/AxViewerPrivate.h"

void CAxEarthViewer::SetLandingAreaVisible(bool visible)
{
    CAxHandleAdapter* current = d->objects.Current();
    if (!AxHasLanding(current) || !d->mapNode)
        return;
    if (d->landingArea) {
        d->landingArea->UpDateMarkerPos(current->GetGravityLatLng());
    } else {
        d->landingArea = new CAxLandingAreaNode(this, this);
        d->landingArea->CreateMarker(current->GetGravityLatLng());
    }
    d->landingArea->SetVisible(visible);
    slotAngleLableChange();
    RequestRedraw();
}

void CAxEarthViewer::SetLandingAreaPosition(const CAxVector3D& position)
{
    if (d->landingArea)
        d->landingArea->UpDateMarkerPos(position);
}

void CAxEarthViewer::SetLandingAreaRadius(double kilometres)
{
    if (d->landingArea)
        d->landingArea->SetRadius(kilometres);
}

void AxViewerPrivate::followLandingArea()
{
    if (!landingArea || !landingArea->IsVisible())
        return;
    CAxHandleAdapter* current = objects.Current();
    if (AxHasLanding(current))
        landingArea->UpDateMarkerPos(current->GetGravityLatLng());
    else
        landingArea->SetVisible(false);
}

CAxDownhillAnglenode* CAxEarthViewer::GetDownhillAngleNode() const
{
    return d->downhillAngleNode;
}

void CAxEarthViewer::SetDownhillAngleNode(CAxDownhillAnglenode* node)
{
    if (d->downhillAngleNode)
        d->downhillAngleNode->disconnect(this);
    d->downhillAngleNode = node;
    if (node)
        connect(node, &CAxDownhillAnglenode::signalDownhillAngle, this, &CAxEarthViewer::signalDownhillAngle);
}

void CAxEarthViewer::slotAngleLableChange()
{
    if (d->downhillAngleNode)
        d->downhillAngleNode->slotAngleLableChange();
}

CAxInterestPointNode* CAxEarthViewer::GetInterestPointNode() const
{
    return d->interestPointNode;
}

bool CAxEarthViewer::SetInterestPoint(const CAxVector3D& latLngAlt)
{
    const bool isNew = !d->interestPointNode;
    if (isNew) {
        auto* node = new CAxInterestPointNode(this, this);
        connect(node, &CAxInterestPointNode::dropped, this,
                [this](double longitude, double latitude, double altitude) {
                    d->pickInterestPoint(longitude, latitude, altitude);
                });
        d->interestPointNode = node;
    }
    const bool isPlaced = d->interestPointNode->SetPosition(latLngAlt);
    if (isNew && !isPlaced)
        RemoveInterestPoint();
    return isPlaced;
}

void CAxEarthViewer::RemoveInterestPoint()
{
    delete d->interestPointNode;
}

void AxViewerPrivate::pickInterestPoint(double longitude, double latitude, double altitude)
{
    const QPointer<CAxEarthViewer> self(q);
    if (AxHasLanding(objects.Current()) && !tools.IsNearCurrent({longitude, latitude, altitude}))
        return;
    if (self && q->SetInterestPoint(CAxVector3D(latitude, longitude, altitude)))
        emit q->InterestPointPicked(longitude, latitude, altitude);
}

bool AxViewerPrivate::giveUpHandleDrag()
{
    if (!manipulator->GiveUpHandleDrag())
        return false;
    if (interestPointNode)
        interestPointNode->GiveUpDrag();
    if (downhillAngleNode)
        downhillAngleNode->GiveUpDrag();
    return true;
}

bool CAxEarthViewer::AddControlPoint(const QString& name, const osg::Vec3d& lngLatAlt)
{
    return d->controlPoints->Add(name, lngLatAlt);
}

bool CAxEarthViewer::RemoveControlPoint(const QString& name)
{
    return d->controlPoints->Remove(name);
}

QMap<QString, osg::Vec3d> CAxEarthViewer::GetControlPoints() const
{
    return d->controlPoints->All();
}
