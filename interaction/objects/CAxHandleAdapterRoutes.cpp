// The part of the map object that keeps its routes.
#include "interaction/objects/AxHandleAdapterState.h"
#include "scene/AxBlockObject.h"
#include "scene/AxObjectBook.h"
#include "scene/AxTaskRoute.h"

#include <algorithm>

const QList<CAxTaskPolygon*>& CAxHandleAdapter::GetTaskList() const
{
    return d->tasks;
}

bool CAxHandleAdapter::HasRoutes() const
{
    return !d->tasks.isEmpty();
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
    const Running self(this);
    GiveUpEdit();
    if (!self.IsWanted())
        return;
    // Its maker may destroy it without a word.
    connect(&AxRouteOf(task)->AsObject(), &QObject::destroyed, this, [this, task] { letGoOf({task}); });
    d->tasks += task;
    AxRouteOf(task)->SetMapObject(this);
    AxRouteOf(task)->SetHighlighted(d->viewer && d->viewer->Objects().Current() == this &&
                                    d->viewer->Objects().SelectedTask() == AxRouteOf(task)->GetTaskID());
    SetAnchorEditorEnabled(false);
    UpdateColor();
}

void CAxHandleAdapter::RemoveTask(const QString& taskID)
{
    if (CAxTaskPolygon* task = GetTask(taskID)) {
        AxRouteOf(task)->AsObject().disconnect(this);
        letGoOf({task});
    }
}

void CAxHandleAdapter::RemoveAllTask()
{
    for (CAxTaskPolygon* task : qAsConst(d->tasks))
        if (AxTaskRoute* route = AxRouteOf(task))
            route->AsObject().disconnect(this);
    letGoOf(QList<CAxTaskPolygon*>(d->tasks));
}

// Of a route that is being destroyed only the address is left.
void CAxHandleAdapter::letGoOf(const QList<CAxTaskPolygon*>& tasks)
{
    if (tasks.isEmpty())
        return;
    for (CAxTaskPolygon* task : tasks)
        d->tasks.removeOne(task);
    UpdateColor();
    if (d->tasks.isEmpty() && isRegistered() && d->viewer->Objects().Current() == this)
        SetAnchorEditorEnabled(true);
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

CAxBlock* AxBlockOf(CAxHandleAdapter* object)
{
    return object ? object->GetContainedBlock() : nullptr;
}

QObject* AxObjectOf(CAxHandleAdapter* object)
{
    return object;
}
