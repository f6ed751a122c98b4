#include "interaction/CAxHandleAdapter.h"
#include "interaction/CAxEarthManipulator.h"
#include "viewer/CAxEarthViewer.h"

#include <AxAlgorthm/AxUniqueID.h>
#include <AxData/CAxBlockManager.h>

CAxHandleAdapter::CAxHandleAdapter(CAxEarthViewer* earthViewer, QObject* parent)
    : QObject(parent), viewer(earthViewer), featureNode(new osg::Geode), handleID(CreateUniqueID())
{
}

CAxHandleAdapter::~CAxHandleAdapter()
{
    if (viewer)
        viewer->forget(this);
}

void CAxHandleAdapter::ResponseDoubleClickOnPoint(int, osg::Vec3d) {}

void CAxHandleAdapter::HandleMoved(double dLng, double dLat, double dAlt)
{
    slotHandleMoved(dLng, dLat, dAlt);
}

void CAxHandleAdapter::slotHandleMoved(double, double, double)
{
    operation = OperationMoveHandle;
}

void CAxHandleAdapter::EndMoved(int code)
{
    if (operation != OperationMoveHandle)
        return;
    if (code > 0)
        UpdateCurrentOperate();
    else
        ReturnLastOperate();
    operation = OperationIdle;
}

void CAxHandleAdapter::UpdateCurrentOperate()
{
    CAxBlock* block = CAxBlockManager::instance().GetBlock(handleID);
    if (!block)
        return;
    QList<QPointF> ring;
    for (const osg::Vec3d& point : GetAnchor())
        ring += QPointF(point.x(), point.y());
    block->SetAnchor(ring);
}

void CAxHandleAdapter::ReturnLastOperate()
{
    const CAxBlock* block = CAxBlockManager::instance().GetBlock(handleID);
    if (!block || !viewer)
        return;
    QList<osg::Vec3d> points;
    for (const QPointF& point : block->GetAnchor())
        points += osg::Vec3d(point.x(), point.y(), 0.0);
    viewer->getManipulator()->GetElevations(points, false);
    GetAnchor().assign(points.begin(), points.end());
}
