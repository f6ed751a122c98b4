#include "interaction/objects/AxDeleteCommand.h"
#include "interaction/editing/AxEditTitle.h"
#include "interaction/objects/AxObjects.h"
#include "interaction/objects/CAxHandleAdapter.h"
#include "scene/AxTaskRoute.h"
#include "scene/base/AxViewerLog.h"

#include <AxData/CAxBlockManager.h>
#include <AxData/CAxControl.h>

#include <QCoreApplication>

#include <utility>

AxDeleteCommand::AxDeleteCommand(AxObjects& book) : objects(&book) {}

AxDeleteCommand::~AxDeleteCommand() = default;

QStringList AxDeleteCommand::Delete(const QStringList& ids)
{
    QStringList gone;
    QStringList names;
    for (const QString& id : ids)
        if (objects && deleteBlock(id)) {
            gone += id;
            names += deleted.back().record->GetBlockName();
        }
    if (!gone.isEmpty())
        CAxControl::GetInstance()->SetProjectModified(true);
    const QString edit = gone.size() == 1 ? QCoreApplication::translate("CAxEarthViewer", "Delete block")
                                          : QCoreApplication::translate("CAxEarthViewer", "Delete blocks");
    setText(AxEditTitle(edit, names));
    return gone;
}

bool AxDeleteCommand::deleteBlock(const QString& id)
{
    CAxBlockManager& records = CAxBlockManager::instance();
    const QPointer<CAxHandleAdapter> object = objects->Find(id);
    if (!records.GetBlock(id) || (object && object->IsLock()))
        return false;
    Deleted block;
    if (object) {
        block.isDrawn = true;
        block.isVisible = object->IsVisible();
        block.isCurrent = object == objects->Current();
        for (CAxTaskPolygon* route : object->GetTaskList())
            if (route)
                block.routes += Route{route, &AxRouteOf(route)->AsObject()};
        // What is in the middle of an edit goes as its record has it.
        if (object->GetHandleOperation() != OperationIdle)
            object->CancelHandle();
        if (objects && block.isCurrent)
            objects->SetCurrent(nullptr);
    }
    block.record = records.TakeBlock(id);
    // Who heard of it may have removed the object, or the viewer.
    if (objects && object && objects->Find(id) == object)
        objects->Remove(object, false);
    if (!block.record)
        return false;
    deleted.push_back(std::move(block));
    return true;
}

void AxDeleteCommand::Hold(std::unique_ptr<CAxBlock> record)
{
    Deleted block;
    block.record = std::move(record);
    block.isDrawn = true;
    if (block.record)
        deleted.push_back(std::move(block));
}

void AxDeleteCommand::Brought(const QString& id)
{
    restored = QStringList{id};
    isApplied = false;
}

void AxDeleteCommand::undo()
{
    BringBack({});
}

bool AxDeleteCommand::BringBack(const std::function<bool(int done)>& goOn)
{
    isApplied = false;
    restored.clear();
    bool isWanted = true;
    int done = 0;
    for (Deleted& block : std::exchange(deleted, {})) {
        restore(block);
        isWanted = !goOn || goOn(++done);
        if (!isWanted)
            break;
    }
    if (restored.isEmpty())
        setObsolete(true);
    else
        CAxControl::GetInstance()->SetProjectModified(true);
    return isWanted;
}

void AxDeleteCommand::restore(Deleted& block)
{
    const QString id = block.record->GetBlockID();
    if (!objects || (!CAxBlockManager::instance().PutBack(block.record) && block.record)) {
        qCWarning(axViewerLog) << "block" << id << "stays deleted: its ID is taken";
        return;
    }
    restored += id;
    // A host may draw each record as soon as it hears of it.
    if (objects && block.isDrawn)
        objects->Import(id, block.isVisible);
    const QPointer<CAxHandleAdapter> object = objects ? objects->Find(id) : nullptr;
    for (const Route& one : qAsConst(block.routes))
        if (object && one.alive && !object->GetTask(AxRouteOf(one.route)->GetTaskID()))
            object->AddTask(one.route);
    if (objects && object && block.isCurrent)
        objects->SetCurrent(object);
}

void AxDeleteCommand::redo()
{
    // The stack's first call comes with the push, and the blocks are deleted by then.
    if (std::exchange(isApplied, true))
        return;
    if (Delete(restored).isEmpty())
        setObsolete(true);
}
