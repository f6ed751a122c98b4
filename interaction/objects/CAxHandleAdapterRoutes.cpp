// The part of the map object that keeps its routes.
#include "interaction/objects/AxHandleAdapterState.h"
#include "scene/AxTaskRoute.h"

#include <algorithm>

const QList<CAxTaskPolygon*>& CAxHandleAdapter::GetTaskList() const
{
    return d->tasks;
}

CAxTaskPolygon* CAxHandleAdapter::GetTask(const QString& taskID) const
{
    const auto found = std::find_if(d->tasks.begin(), d->tasks.end(), [&taskID](CAxTaskPolygon* task) {
        const AxTaskRoute* route = AxRouteOf(task);
        return route && route->GetTaskID() == taskID;
    });
    return found == d->tasks.end() ? nullptr : *found;
}

void CAxHandleAdapter::AddTask(CAxTaskPolygon* task)
{
    if (!task || d->tasks.contains(task))
        return;
    d->tasks += task;
    SetAnchorEditorEnabled(false);
    UpdateColor();
}

void CAxHandleAdapter::RemoveTask(const QString& taskID)
{
    if (d->tasks.removeOne(GetTask(taskID)))
        UpdateColor();
}

void CAxHandleAdapter::RemoveAllTask()
{
    if (d->tasks.isEmpty())
        return;
    d->tasks.clear();
    UpdateColor();
}

CAxVector3D CAxHandleAdapter::GetTaskLingPosition(const QString& taskID) const
{
    const AxTaskRoute* route = AxRouteOf(GetTask(taskID));
    return route ? route->GetHomePoint() : CAxVector3D();
}

void CAxHandleAdapter::SetTaskEntryPoint(int index, const QString& taskID)
{
    if (AxTaskRoute* route = AxRouteOf(GetTask(taskID)))
        route->SetEntryPoint(index);
}

void CAxHandleAdapter::SetTaskLandingPosition(const CAxVector3D& position, const QString& taskID)
{
    if (AxTaskRoute* route = AxRouteOf(GetTask(taskID)))
        route->SetHomePoint(position);
}

void CAxHandleAdapter::SetTaskLandingMethod(bool downhill, const QString& taskID)
{
    if (AxTaskRoute* route = AxRouteOf(GetTask(taskID)))
        route->SetLandingMethod(downhill);
}
