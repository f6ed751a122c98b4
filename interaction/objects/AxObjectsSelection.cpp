// Which objects are selected, and what is done to those.
#include "interaction/editing/AxBlockCommands.h"
#include "interaction/editing/AxEditHistory.h"
#include "interaction/editing/AxEditTitle.h"
#include "interaction/editing/CAxHandleAdapterEditor.h"
#include "interaction/objects/AxDeleteCommand.h"
#include "interaction/objects/AxObjects.h"
#include "interaction/objects/CAxHandleAdapter.h"
#include "scene/AxTaskRoute.h"
#include "scene/AxToolInHand.h"
#include "scene/AxViewerParts.h"

#include <AxBaseUI/AxToolTable.h>
#include <AxData/CAxBlockManager.h>
#include <AxData/CAxControl.h>

#include <QCoreApplication>
#include <QUndoStack>

#include <algorithm>
#include <set>
#include <utility>

void AxObjects::SetCurrent(CAxHandleAdapter* object)
{
    if (current == object)
        return;
    CAxHandleAdapter* const former = current;
    if (former) {
        // It would not hear of the release any more; a move of several ends them all by itself.
        if (!selected.contains(former))
            former->GiveUpEdit();
        former->DisconnectMouseEvent();
        // A handle that nobody listens to would take an edit that is never committed.
        former->SetAnchorEditorEnabled(false);
    }
    const QString formerTask = std::exchange(selectedTask, QString());
    if (AxTaskRoute* route = former ? AxRouteOf(former->GetTask(formerTask)) : nullptr)
        route->SetHighlighted(false);
    current = object;
    if (object) {
        object->ConnectMouseEvent();
        if (Find(object->GetHandleID()) == object)
            object->SetAnchorEditorEnabled(true);
    }
    const QPointer<AxObjects> self(this);
    emit currentChanged(object ? object->GetHandleID() : QString());
    if (self && !formerTask.isEmpty() && selectedTask.isEmpty())
        emit taskChanged({}, {});
}

CAxHandleAdapter* AxObjects::Aside() const
{
    const bool isWaiting = aside && !aside->IsLeaving() && aside->GetHandleOperation() == OperationDrawing;
    return isWaiting ? aside.data() : nullptr;
}

bool AxObjects::PutAside()
{
    if (Aside() || !isDrawing() || current->GetAnchor().empty())
        return false;
    aside = current;
    asideHasHandles = current->GetAnchorEditor() != nullptr;
    // What of it follows the mouse would stand still.
    current->slotMoving({}, {});
    const QPointer<AxObjects> self(this);
    SetCurrent(nullptr);
    return self && Aside();
}

void AxObjects::TakeAgain()
{
    const QPointer<CAxHandleAdapter> object = Aside();
    aside = nullptr;
    if (!object)
        return;
    SetCurrent(object);
    // Who heard of it may have removed it.
    if (object && asideHasHandles && !object->GetAnchorEditor())
        object->ResumeDrawing(std::vector<osg::Vec3d>(object->GetAnchor()));
}

void AxObjects::SelectNode(const osg::Node* featureNode, bool multi, bool report)
{
    CAxHandleAdapter* object = Find(featureNode);
    if (!multi) {
        // A drawing is not left for an object that one of its clicks comes upon.
        // A place beside the object is picked for the object, so it stays the current one.
        const bool picking = GetToolKind(parts.Tools().Tool()) == ToolKindPick;
        if (isDrawing() || (!object && picking))
            return;
        const QPointer<AxObjects> self(this);
        SetCurrent(object);
        // One object alone: it is no longer one of several.
        if (self && object)
            ClearSelected();
        return;
    }
    if (!object)
        return;
    const bool isLeft = selected.contains(object);
    // The object that was selected first, alone, is the first of the several.
    if (selected.isEmpty() && current && current != object && isAtRest(current) &&
        current->GetBlockType() != CAxBlock::MarkPointBlock)
        join(current);
    if (isLeft) {
        selected.removeOne(object);
        object->SetSelectedAmongSeveral(false);
    } else {
        join(object);
    }
    const QPointer<AxObjects> self(this);
    if (isLeft && object == current && isAtRest(object))
        SetCurrent(nullptr);
    if (self && report)
        tellSelected();
}

bool AxObjects::SelectSeveral(const QList<CAxHandleAdapter*>& wanted)
{
    if (isDrawing() && !isMeasuringNothing()) {
        history->TellBusy();
        return false;
    }
    const QPointer<AxObjects> self(this);
    std::set<const CAxHandleAdapter*> members;
    QList<CAxHandleAdapter*> several;
    for (CAxHandleAdapter* object : wanted)
        if (registered.count(object) > 0 && !object->IsLeaving() && members.insert(object).second)
            several += object;
    if (members.count(current) == 0)
        SetCurrent(several.value(0));
    if (!self)
        return true;
    // Who heard of it may have removed objects.
    several.erase(
        std::remove_if(several.begin(), several.end(),
                       [this](const CAxHandleAdapter* object) { return registered.count(object) == 0; }),
        several.end());
    if (several.size() < 2) {
        ClearSelected();
        return true;
    }
    if (several == selected)
        return true;
    for (CAxHandleAdapter* object : std::exchange(selected, several))
        object->SetSelectedAmongSeveral(members.count(object) > 0);
    for (CAxHandleAdapter* object : qAsConst(several))
        object->SetSelectedAmongSeveral(true);
    tellSelected();
    return true;
}

void AxObjects::SelectTask(CAxHandleAdapter* object, const QString& taskID)
{
    const QString former = std::exchange(selectedTask, taskID);
    if (former == taskID)
        return;
    if (object)
        for (const QString& id : {former, taskID})
            if (AxTaskRoute* route = AxRouteOf(object->GetTask(id)))
                route->SetHighlighted(id == taskID);
    emit taskChanged(taskID.isEmpty() || !object ? QString() : object->GetHandleID(), taskID);
}

bool AxObjects::isDrawing() const
{
    return Aside() || (current && current->GetHandleOperation() == OperationDrawing);
}

// Such a measurement ends by itself when another object is current.
bool AxObjects::isMeasuringNothing() const
{
    return !Aside() && isDrawing() && AxToolRowOf(parts.Tools().Tool()).measures &&
           current->GetAnchor().empty();
}

bool AxObjects::isAtRest(const CAxHandleAdapter* object) const
{
    return Find(object->GetHandleID()) == object && object->GetHandleOperation() == OperationIdle;
}

void AxObjects::join(CAxHandleAdapter* object)
{
    selected += object;
    object->SetSelectedAmongSeveral(true);
}

void AxObjects::tellSelected()
{
    QStringList ids;
    for (const CAxHandleAdapter* one : qAsConst(selected))
        ids += one->GetHandleID();
    emit selectedChanged(ids);
}

void AxObjects::EmptySelected()
{
    for (CAxHandleAdapter* object : std::exchange(selected, {}))
        object->SetSelectedAmongSeveral(false);
}

void AxObjects::ClearSelected()
{
    if (selected.isEmpty())
        return;
    EmptySelected();
    emit selectedChanged({});
}

void AxObjects::LeaveSelection()
{
    SetCurrent(nullptr);
    for (CAxHandleAdapter* object : qAsConst(selected))
        object->SetAnchorEditorEnabled(false);
    ClearSelected();
}

bool AxObjects::GiveUpOperation()
{
    bool isGivenUp = false;
    for (CAxHandleAdapter* object : QList<CAxHandleAdapter*>(selected))
        if (object->GetHandleOperation() == OperationMoveHandle)
            isGivenUp = object->CancelHandle() || isGivenUp;
    if (current)
        isGivenUp = current->CancelHandle() || isGivenUp;
    if (isGivenUp)
        emit moveGivenUp();
    return isGivenUp;
}

void AxObjects::GiveUpEdit()
{
    const auto isEdited = [](const CAxHandleAdapter* object) {
        return object->GetHandleOperation() == OperationMovePoint ||
               object->GetHandleOperation() == OperationMoveHandle;
    };
    if ((current && isEdited(current)) || std::any_of(selected.begin(), selected.end(), isEdited))
        GiveUpOperation();
}

int AxObjects::HoveredVertex() const
{
    const CAxHandleAdapterEditor* editor = current ? current->GetAnchorEditor() : nullptr;
    return editor ? editor->HoveredVertex() : -1;
}

bool AxObjects::DeleteHoveredVertex()
{
    const int index = HoveredVertex();
    return index != -1 && current->DeleteVertex(index);
}

QUndoStack& AxObjects::Edits() const
{
    return *history->Stack();
}

const AxEditAids& AxObjects::Aids() const
{
    return history->Aids();
}

bool AxObjects::Rename(const QString& id, const QString& wanted)
{
    CAxBlock* block = CAxBlockManager::instance().GetBlock(id);
    const QString name = wanted.trimmed();
    if (!block || name.isEmpty())
        return false;
    const QString before = block->GetBlockName();
    if (name == before)
        return true;
    if (CAxBlockManager::instance()._exist(name))
        return false;
    block->SetBlockName(name);
    CAxControl::GetInstance()->SetProjectModified(true);
    if (CAxHandleAdapter* object = Find(id))
        object->DrawNameLabel();
    const QString text = QCoreApplication::translate("CAxEarthViewer", "Rename %1 to %2")
                             .arg(AxNameInTitle(before), AxNameInTitle(name));
    Edits().push(new AxNameCommand(&parts, id, before, name, text));
    return true;
}

QStringList AxObjects::Delete(const QStringList& ids)
{
    const QPointer<AxObjects> self(this);
    const int selectedBefore = selected.size();
    auto command = std::make_unique<AxDeleteCommand>(*this);
    const QStringList deleted = command->Delete(ids);
    if (!self || deleted.isEmpty())
        return deleted;
    if (history->Stack())
        history->Stack()->push(command.release());
    if (selected.size() != selectedBefore)
        tellSelected();
    return deleted;
}

void AxObjects::IntersectModelLayers(CAxHandleAdapter* object)
{
    testModelLayers(object, false);
}

void AxObjects::TestModelLayersAgain(CAxHandleAdapter* object)
{
    testModelLayers(object, true);
}

void AxObjects::testModelLayers(CAxHandleAdapter* object, bool isNewsOnly)
{
    if (!object || !layersMet)
        return;
    const QString id = object->GetHandleID();
    const QStringList names = layersMet(object->Outline());
    QStringList& told = metByObject[id];
    const QStringList before = std::exchange(told, names);
    CAxBlock* const block = object->GetContainedBlock();
    if (block) {
        // The zones below an area of an application stand in the same list.
        QStringList all;
        if (block->GetBlockType() == CAxBlock::ProhibitedAreaBlock)
            for (const QString& met : block->GetIntersections())
                if (!before.contains(met) && !names.contains(met))
                    all += met;
        block->SetIntersections(all + names);
    }
    if (before != names || (!isNewsOnly && !names.isEmpty()))
        emit object->signalIntersection(id, names);
}
