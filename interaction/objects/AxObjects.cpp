// Which objects there are.
#include "interaction/objects/AxObjects.h"
#include "interaction/editing/AxEditHistory.h"
#include "interaction/editing/AxEditTitle.h"
#include "interaction/objects/AxBlockOperations.h"
#include "interaction/objects/AxBlockRing.h"
#include "interaction/objects/AxBlockTasks.h"
#include "interaction/objects/AxRefusedDrawing.h"
#include "interaction/objects/AxReplaceCommand.h"
#include "interaction/objects/CAxHandleAdapter.h"
#include "scene/AxScene.h"
#include "scene/AxToolInHand.h"
#include "scene/AxViewerParts.h"
#include "scene/base/AxViewerLog.h"

#include <AxData/CAxBlockManager.h>

#include <osgEarthAnnotation/LabelNode>

#include <QCoreApplication>
#include <QGraphicsView>
#include <QUndoStack>

#include <algorithm>
#include <cmath>
#include <utility>

AxObjects::AxObjects(AxViewerParts& viewer, CAxEarthViewer* map) : parts(viewer), earthViewer(map) {}

AxObjects::~AxObjects() = default;

void AxObjects::Forget(CAxHandleAdapter* object)
{
    // Its ID may have changed since it was registered.
    if (registered.erase(object) > 0)
        for (auto entry = registry.begin(); entry != registry.end();)
            entry = entry->second == object ? registry.erase(entry) : std::next(entry);
    selected.removeAll(object);
    if (current == object) {
        current = nullptr;
        const bool hadTask = !std::exchange(selectedTask, QString()).isEmpty();
        const QPointer<AxObjects> self(this);
        emit currentChanged(QString());
        if (self && hadTask && selectedTask.isEmpty())
            emit taskChanged({}, {});
    }
}

bool AxObjects::Add(CAxHandleAdapter* object)
{
    // Only an object of this viewer tells it of its end.
    if (!object || object->Parts() != &parts || object->IsLeaving())
        return false;
    const QString id = object->GetHandleID();
    if (!registry.emplace(id, object).second)
        return false;
    registered.insert(object);
    unregistered.removeAll(object);
    CAxBlockManager& blocks = CAxBlockManager::instance();
    if (blocks.GetBlock(id) || object->GetBlockType() == CAxBlock::MarkPointBlock)
        return true;
    const QList<QPointF> ring = AxRingOf(object->GetAnchor());
    // Who hears of the record may have removed object and record by the time it is here.
    if (CAxBlock* block = blocks.AddBlock(id, object->GetBlockType()))
        block->SetAnchor(ring);
    return true;
}

CAxHandleAdapter* AxObjects::Import(const QString& blockID, bool visible)
{
    const CAxBlock* block = CAxBlockManager::instance().GetBlock(blockID);
    if (!block || Find(blockID))
        return nullptr;
    QList<osg::Vec3d> points;
    for (const QPointF& point : block->GetAnchor())
        points += osg::Vec3d(point.x(), point.y(), 0.0);
    const bool isUsable = std::all_of(points.begin(), points.end(), [](const osg::Vec3d& point) {
        return point.valid() && std::abs(point.y()) <= 90.0;
    });
    const AxShapeFactories::Factory* factory = factories.Of(block->GetBlockType());
    if (!isUsable || !factory ||
        !AxShapeKindOf(block->GetBlockType()).Allows(static_cast<int>(points.size()))) {
        qCWarning(axViewerLog)
            << "block" << block->GetBlockName()
            << "is not drawn: too few, too many or unusable vertices, or a kind that nothing draws";
        return nullptr;
    }
    CAxHandleAdapter* object = (*factory)(earthViewer, parts.Widget()->parent());
    if (!object)
        return nullptr;
    object->SetHandleID(blockID);
    parts.Scene().GetElevations(points);
    object->ImportGeometry(std::vector<osg::Vec3d>(points.begin(), points.end()), false);
    if (!visible)
        object->SetAdapterVisible(false, QString());
    Add(object);
    emit imported(blockID);
    return Find(blockID);
}

CAxHandleAdapter* AxObjects::BeginDrawing(EToolType tool)
{
    // Others draw nothing, whatever is set up for them.
    if (tool == ToolNone || GetToolKind(tool) == ToolKindNavigate)
        return nullptr;
    CAxHandleAdapter* object = nullptr;
    if (tool == ToolContinueBlock) {
        const bool mayGoOn = current && current->GetBlockType() == CAxBlock::VideoBlock &&
                             !current->IsLock() && !AxHasTasks(*current);
        object = mayGoOn ? current : nullptr;
    } else if (const AxShapeFactories::Factory* factory = factories.Of(tool))
        object = (*factory)(earthViewer, parts.Widget()->parent());
    return object ? BeginDrawing(object) : nullptr;
}

CAxHandleAdapter* AxObjects::BeginDrawing(CAxHandleAdapter* object)
{
    if (object != current)
        unregistered += object;
    const QPointer<CAxHandleAdapter> alive(object);
    SetCurrent(object);
    if (alive) // who heard of it may have removed it
        object->BenginHandle();
    return alive;
}

bool AxObjects::ResumeDrawing(EToolType tool, const std::vector<osg::Vec3d>& vertices)
{
    AxToolInHand& tools = parts.Tools();
    if ((tools.IsBusy() && !isMeasuringNothing()) || !tools.MayPick())
        return false;
    const QPointer<AxObjects> self(this);
    tools.TakeUp(tool);
    // Who hears of the tool may end the viewer, or take up another one.
    if (!self)
        return true;
    if (tools.Tool() != tool)
        return false;
    if (CAxHandleAdapter* object = BeginDrawing(tool))
        object->ResumeDrawing(vertices);
    return true;
}

void AxObjects::KeepRefused(EToolType tool, const std::vector<osg::Vec3d>& vertices)
{
    if (history->Stack() && !vertices.empty())
        history->Stack()->push(new AxRefusedDrawing(*this, tool, vertices));
}

void AxObjects::KeepDrawn(const QString& id)
{
    const CAxBlock* block = CAxBlockManager::instance().GetBlock(id);
    if (!block || !history->Stack())
        return;
    auto command = std::make_unique<AxReplaceCommand>(*this);
    command->Brought(id);
    command->setText(
        AxEditTitle(QCoreApplication::translate("CAxEarthViewer", "Draw block"), {block->GetBlockName()}));
    history->Stack()->push(command.release());
}

CAxHandleAdapter* AxObjects::Find(const QString& id) const
{
    const auto found = registry.find(id);
    return found == registry.end() ? nullptr : found->second;
}

QList<CAxHandleAdapter*> AxObjects::OfKind(CAxBlock::EBlockType type) const
{
    QList<CAxHandleAdapter*> found;
    for (const auto& [id, object] : registry)
        if (object->GetBlockType() == type)
            found += object;
    return found;
}

CAxHandleAdapter* AxObjects::Find(const osg::Node* featureNode) const
{
    // Feature nodes are geodes, and most nodes that are asked about are not.
    if (!featureNode || !featureNode->asGeode())
        return nullptr;
    for (const auto& [id, object] : registry)
        if (object->GetFeatureNode() == featureNode)
            return object;
    return nullptr;
}

CAxHandleAdapter* AxObjects::FindByName(const osg::NodePath& path) const
{
    for (const auto& [id, object] : registry)
        if (object->GetNameLabel() &&
            std::find(path.begin(), path.end(), object->GetNameLabel()) != path.end())
            return object;
    return nullptr;
}

QList<CAxHandleAdapter*> AxObjects::All() const
{
    QList<CAxHandleAdapter*> all;
    for (const auto& [id, object] : registry)
        all += object;
    return all;
}

int AxObjects::removeEntry(CAxHandleAdapter* object, bool deleteBlock)
{
    const auto entry = object ? registry.find(object->GetHandleID()) : registry.end();
    if (entry == registry.end() || entry->second != object)
        return 0;
    const QString id = entry->first;
    // Who hears of the deleted record still finds the object, and may remove it.
    if (deleteBlock)
        CAxBlockManager::instance().DeleteBlock(id);
    if (Find(id) != object)
        return 0;
    registered.erase(object);
    // When it comes back everybody hears of its models again.
    metByObject.erase(id);
    return static_cast<int>(registry.erase(id));
}

void AxObjects::destroy(CAxHandleAdapter* object)
{
    unregistered.removeAll(object);
    const QPointer<CAxHandleAdapter> alive(object);
    object->Leave();
    if (alive)
        unregistered += alive;
}

bool AxObjects::Remove(CAxHandleAdapter* object, bool deleteBlock)
{
    if (!object || object->IsLeaving())
        return false;
    const QPointer<CAxHandleAdapter> alive(object);
    object->ClearFeatureNodeContained();
    if (object == current)
        SetCurrent(nullptr);
    if (!alive || object->IsLeaving())
        return true; // removed by who heard that nothing is selected any more
    if (object->GetBlockType() == CAxBlock::MarkPointBlock) {
        removeEntry(object, deleteBlock);
        if (alive)
            destroy(object);
        return true;
    }
    selected.removeAll(object);
    osg::Group* const group = parts.Scene().ObjectGroup();
    if (!group || !group->removeChild(object->GetFeatureNode())) {
        destroy(object);
        return false;
    }
    object->RemoveAllTask();
    removeEntry(object, deleteBlock);
    if (alive)
        destroy(object);
    return true;
}

void AxObjects::RemoveAll(bool deleteBlock)
{
    const auto all = registry;
    for (const auto& [id, object] : all)
        if (Find(id) == object) // a listener may have removed it meanwhile
            Remove(object, deleteBlock);
    // Nobody else sees one that waits, and it would go on among other objects.
    Remove(Aside(), deleteBlock);
}

void AxObjects::RemoveCurrentEntry()
{
    const QPointer<CAxHandleAdapter> object = current;
    if (removeEntry(object, true) > 0) {
        unregistered += object;
        // Nothing is found any more, so the object stays where it is drawn.
        Remove(Find(object->GetHandleID()), true);
    }
    SetCurrent(nullptr);
}

void AxObjects::DestroyAll()
{
    RemoveAll(false);
    for (const QPointer<CAxHandleAdapter>& object : std::exchange(unregistered, {}))
        delete object;
}
