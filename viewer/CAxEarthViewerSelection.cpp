// The part of the viewer that selects objects and tasks, and shows them.
#include "interaction/objects/CAxHandleAdapter.h"
#include "mission/routes/CAxTaskPolygon.h"
#include "scene/base/AxNotice.h"
#include "viewer/AxViewerPrivate.h"
#include "viewer/CAxEarthViewer.h"

#include <AxData/CAxBlockManager.h>

#include <QPointer>

#include <algorithm>

namespace {
constexpr double blockFlightSeconds = 1.5;

struct RouteHit
{
    CAxHandleAdapter* object = nullptr;
    QString task;
};

// The route to whose line a node path leads; no object for another path.
RouteHit RouteAt(const QList<CAxHandleAdapter*>& objects, const osg::NodePath& path)
{
    for (CAxHandleAdapter* object : objects)
        for (const CAxTaskPolygon* route : object->GetTaskList())
            if (route && std::any_of(path.begin(), path.end(),
                                     [route](const osg::Node* node) { return route->IsLine(node); }))
                return {object, route->GetTaskID()};
    return {};
}
} // namespace

void CAxEarthViewer::SetNodeSelected(osg::Node* node, bool multi, bool report)
{
    d->objects.SelectNode(node, multi, report);
}

const QList<CAxHandleAdapter*>& CAxEarthViewer::GetMultiSelectAdapter() const
{
    return d->objects.Selected();
}

void CAxEarthViewer::ClearMultiSelectAdapter()
{
    d->objects.ClearSelected();
}

bool CAxEarthViewer::SelectBlocks(const QStringList& ids)
{
    QList<CAxHandleAdapter*> wanted;
    for (const QString& id : ids)
        if (CAxHandleAdapter* object = d->objects.Find(id))
            wanted += object;
    return d->objects.SelectSeveral(wanted);
}

bool CAxEarthViewer::SelectHandle(CAxHandleAdapter* adapter, bool view)
{
    const QString id = adapter ? adapter->GetHandleID() : QString();
    if (!adapter || d->objects.Find(id) != adapter)
        return false;
    const QPointer<CAxEarthViewer> self(this);
    if (!d->objects.SelectSeveral({adapter}))
        return false;
    if (self && view)
        SetBlockView({id});
    return true;
}

bool CAxEarthViewer::SelectBlockID(const QString& id, bool view)
{
    return SelectHandle(d->objects.Find(id), view);
}

bool CAxEarthViewer::SelectTaskID(const QString& taskID, bool view)
{
    if (taskID.isEmpty())
        return SelectTask({}, {}, view);
    const auto hasTask = [&taskID](const CAxBlock* one) { return one && one->GetTask(taskID); };
    const CAxHandleAdapter* current = d->objects.Current();
    const CAxBlock* ofCurrent = current ? current->GetContainedBlock() : nullptr;
    if (hasTask(ofCurrent))
        return SelectTask(ofCurrent->GetBlockID(), taskID, view);
    const QList<CAxBlock*> blocks = CAxBlockManager::instance().GetBlockList();
    const auto block = std::find_if(blocks.begin(), blocks.end(), hasTask);
    return block != blocks.end() && SelectTask((*block)->GetBlockID(), taskID, view);
}

bool CAxEarthViewer::SelectTask(const QString& blockID, const QString& taskID, bool view)
{
    if (taskID.isEmpty()) {
        d->objects.SelectTask(d->objects.Current(), {});
        return true;
    }
    // By value: who hears of the block may delete what the texts belong to.
    const QString id = blockID;
    const QString task = taskID;
    const CAxBlock* block = CAxBlockManager::instance().GetBlock(id);
    if (!block || !block->GetTask(task))
        return false;
    const QPointer<CAxEarthViewer> self(this);
    if (const CAxHandleAdapter* former = d->objects.Current(); !former || former->GetHandleID() != id) {
        if (!SelectBlockID(id, view))
            return false;
    } else if (view) {
        SetBlockView({id});
    }
    // Who heard of the block may have chosen something else.
    CAxHandleAdapter* const current = self ? d->objects.Current() : nullptr;
    if (current && current->GetHandleID() == id)
        d->objects.SelectTask(current, task);
    return true;
}

const QString& CAxEarthViewer::GetSelectedTask() const
{
    return d->objects.SelectedTask();
}

void CAxEarthViewer::slotDrawableClicked(osg::Drawable* drawable)
{
    if (GetToolKind(d->tools.Tool()) != ToolKindNavigate)
        return;
    const bool multi = d->tools.IsMultiSelect();
    for (const osg::NodePath& path : drawable->getParentalNodePaths()) {
        // The name of an object stands for the object.
        if (const CAxHandleAdapter* object = d->objects.FindByName(path))
            return d->objects.SelectNode(object->GetFeatureNode(), multi, multi);
        const RouteHit hit = d->tools.MayPick() ? RouteAt(d->objects.All(), path) : RouteHit();
        if (!hit.object)
            continue;
        // Several are blocks.
        if (multi)
            return d->objects.SelectNode(hit.object->GetFeatureNode(), true, true);
        const CAxBlock* block = hit.object->GetContainedBlock();
        if (!block || !SelectTask(block->GetBlockID(), hit.task))
            SelectTaskID(hit.task);
        return;
    }
}

bool CAxEarthViewer::SetAllBlockView(double margin)
{
    QStringList ids;
    for (const CAxHandleAdapter* object : d->objects.All())
        if (object->IsVisible() && object->GetContainedBlock())
            ids += object->GetHandleID();
    if (SetBlockView(ids, margin))
        return true;
    AxShowNotice(this, tr("Display all blocks"), tr("There is no block to be seen on the map."));
    return false;
}

bool CAxEarthViewer::SetBlockView(const QStringList& ids, double margin)
{
    return d->earthLoaded && d->blockFlight.To(ids, margin, blockFlightSeconds);
}

void CAxEarthViewer::slotFocusBlock(QString strHanleID)
{
    const QPointer<CAxEarthViewer> self(this);
    SetBlockView({strHanleID});
    if (self)
        SelectBlockID(strHanleID);
}
