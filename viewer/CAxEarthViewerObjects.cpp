// The part of the viewer that keeps the map objects and the selection.
#include "interaction/AxBlockCommands.h"
#include "interaction/CAxEarthManipulator.h"
#include "interaction/CAxHandleAdapter.h"
#include "viewer/AxBlockView.h"
#include "viewer/AxViewerLog.h"
#include "viewer/CAxEarthViewer.h"

#include <AxData/CAxBlockManager.h>
#include <AxData/CAxControl.h>

#include <osgEarth/MapNode>
#include <osgEarthAnnotation/LabelNode>

#include <QUndoStack>

#include <algorithm>
#include <cmath>

void CAxEarthViewer::_SetCurHandleAdapter(CAxHandleAdapter* adapter)
{
    if (curHandleAdapter == adapter)
        return;
    if (CAxHandleAdapter* former = curHandleAdapter) {
        former->DisconnectMouseEvent();
        // A handle that nobody listens to would take an edit that is never committed.
        former->SetAnchorEditorEnabled(false);
    }
    curHandleAdapter = adapter;
    if (adapter) {
        adapter->ConnectMouseEvent();
        if (FindExistNode(adapter->GetHandleID()) == adapter)
            adapter->SetAnchorEditorEnabled(true);
    }
    emit signalCurrentBlock(adapter ? adapter->GetHandleID() : QString());
}

void CAxEarthViewer::forget(CAxHandleAdapter* adapter)
{
    // Its ID may have changed since it was registered.
    for (auto entry = adapterRegistry.begin(); adapter->registered && entry != adapterRegistry.end();)
        entry = entry->second == adapter ? adapterRegistry.erase(entry) : std::next(entry);
    multiSelectAdapters.removeAll(adapter);
    if (curHandleAdapter == adapter) {
        curHandleAdapter = nullptr;
        emit signalCurrentBlock(QString());
    }
}

bool CAxEarthViewer::AddHandleAdapter(CAxHandleAdapter* adapter)
{
    if (!adapter)
        return false;
    const QString id = adapter->GetHandleID();
    if (!adapterRegistry.emplace(id, adapter).second)
        return false;
    adapter->registered = true;
    unregistered.removeAll(adapter);
    CAxBlockManager& blocks = CAxBlockManager::instance();
    if (blocks.GetBlock(id) || adapter->GetBlockType() == CAxBlock::MarkPointBlock)
        return true;
    QList<QPointF> ring;
    for (const osg::Vec3d& point : adapter->GetAnchor())
        ring += QPointF(point.x(), point.y());
    // Who hears of the record may have removed object and record by the time it is here.
    if (CAxBlock* block = blocks.AddBlock(id, adapter->GetBlockType()))
        block->SetAnchor(ring);
    return true;
}

CAxHandleAdapter* CAxEarthViewer::ImportShapeNode(const QString& blockID)
{
    static const std::map<CAxBlock::EBlockType, EToolType> tools{
        {CAxBlock::PolygonBlock, ToolPolygonBlock}, {CAxBlock::RectangleBlock, ToolRectangleBlock},
        {CAxBlock::StripBlock, ToolStripBlock},     {CAxBlock::VideoBlock, ToolVideoArea},
        {CAxBlock::MarkPointBlock, ToolMarkPoint},  {CAxBlock::ProhibitedAreaBlock, ToolProhibitedArea},
    };
    const CAxBlock* block = CAxBlockManager::instance().GetBlock(blockID);
    if (!block || FindExistNode(blockID))
        return nullptr;
    QList<osg::Vec3d> points;
    for (const QPointF& point : block->GetAnchor())
        points += osg::Vec3d(point.x(), point.y(), 0.0);
    const bool isUsable = std::all_of(points.begin(), points.end(), [](const osg::Vec3d& point) {
        return point.valid() && std::abs(point.y()) <= 90.0;
    });
    constexpr int leastOfRing = 3;
    constexpr int leastOfLine = 2;
    constexpr int ofRectangle = 4;
    const bool isRectangle = block->GetBlockType() == CAxBlock::RectangleBlock ||
                             block->GetBlockType() == CAxBlock::ProhibitedAreaBlock;
    const int least =
        block->GetBlockType() == CAxBlock::VideoBlock || block->GetBlockType() == CAxBlock::MarkPointBlock ? 1
        : block->GetBlockType() == CAxBlock::StripBlock ? leastOfLine
                                                        : leastOfRing;
    const auto tool = tools.find(block->GetBlockType());
    const auto factory = tool == tools.end() ? shapeFactories.end() : shapeFactories.find(tool->second);
    if (!isUsable || points.size() < least || (isRectangle && points.size() != ofRectangle) ||
        factory == shapeFactories.end()) {
        qCWarning(axViewerLog)
            << "block" << block->GetBlockName()
            << "is not drawn: too few, too many or unusable vertices, or a kind that nothing draws";
        return nullptr;
    }
    CAxHandleAdapter* adapter = factory->second(this, parent());
    if (!adapter)
        return nullptr;
    adapter->SetHandleID(blockID);
    manipulator->GetElevations(points, false);
    adapter->ImportGeometry(std::vector<osg::Vec3d>(points.begin(), points.end()), false);
    AddHandleAdapter(adapter);
    emit signalBlockState(blockID);
    return FindExistNode(blockID);
}

CAxHandleAdapter* CAxEarthViewer::FindExistNode(const QString& id) const
{
    const auto found = adapterRegistry.find(id);
    return found == adapterRegistry.end() ? nullptr : found->second;
}

QList<CAxHandleAdapter*> CAxEarthViewer::FindExistNode(CAxBlock::EBlockType type) const
{
    QList<CAxHandleAdapter*> found;
    for (const auto& [id, adapter] : adapterRegistry)
        if (adapter->GetBlockType() == type)
            found += adapter;
    return found;
}

CAxHandleAdapter* CAxEarthViewer::FindExistNode(osg::Node* node) const
{
    // Feature nodes are geodes, and most nodes that are asked about are not.
    if (!node || !node->asGeode())
        return nullptr;
    for (const auto& [id, adapter] : adapterRegistry)
        if (adapter->GetFeatureNode() == node)
            return adapter;
    return nullptr;
}

QList<CAxHandleAdapter*> CAxEarthViewer::GetHandleAdapters() const
{
    QList<CAxHandleAdapter*> all;
    for (const auto& [id, adapter] : adapterRegistry)
        all += adapter;
    return all;
}

int CAxEarthViewer::removeFromRegistry(CAxHandleAdapter* adapter, bool deleteBlock)
{
    const auto entry = adapter ? adapterRegistry.find(adapter->GetHandleID()) : adapterRegistry.end();
    if (entry == adapterRegistry.end() || entry->second != adapter)
        return 0;
    const QString id = entry->first;
    // Who hears of the deleted record still finds the object, and may remove it.
    if (deleteBlock)
        CAxBlockManager::instance().DeleteBlock(id);
    if (FindExistNode(id) != adapter)
        return 0;
    adapter->registered = false;
    return static_cast<int>(adapterRegistry.erase(id));
}

void CAxEarthViewer::destroy(CAxHandleAdapter* adapter)
{
    unregistered.removeAll(adapter);
    if (adapter->running == 0) {
        delete adapter;
        return;
    }
    // One of its slots is still running; whoever looks meanwhile finds it nowhere.
    adapter->leaving = true;
    adapter->leaveScene();
    unregistered += adapter;
}

bool CAxEarthViewer::RemoveHanderAdapter(const QString& id, bool deleteBlock)
{
    return RemoveHanderAdapter(FindExistNode(id), deleteBlock);
}

bool CAxEarthViewer::RemoveHanderAdapter(CAxHandleAdapter* adapter, bool deleteBlock)
{
    if (!adapter || adapter->leaving)
        return false;
    const QPointer<CAxHandleAdapter> alive(adapter);
    adapter->ClearFeatureNodeContained();
    if (adapter == curHandleAdapter)
        _SetCurHandleAdapter(nullptr);
    if (!alive || adapter->leaving)
        return true; // removed by who heard that nothing is selected any more
    if (adapter->GetBlockType() == CAxBlock::MarkPointBlock) {
        removeFromRegistry(adapter, deleteBlock);
        if (alive)
            destroy(adapter);
        return true;
    }
    multiSelectAdapters.removeAll(adapter);
    if (!geomAdapterGroup || !geomAdapterGroup->removeChild(adapter->GetFeatureNode())) {
        destroy(adapter);
        return false;
    }
    adapter->RemoveAllTask();
    removeFromRegistry(adapter, deleteBlock);
    if (alive)
        destroy(adapter);
    return true;
}

bool CAxEarthViewer::RemoveAllHanderAdapter(bool deleteBlock)
{
    const auto all = adapterRegistry;
    for (const auto& [id, adapter] : all)
        if (FindExistNode(id) == adapter) // a listener may have removed it meanwhile
            RemoveHanderAdapter(adapter, deleteBlock);
    return true;
}

void CAxEarthViewer::RemoveCurHandle()
{
    const QPointer<CAxHandleAdapter> adapter = curHandleAdapter;
    if (removeFromRegistry(adapter, true) > 0) {
        unregistered += adapter;
        // Nothing is found any more, so the object stays where it is drawn.
        RemoveHanderAdapter(FindExistNode(adapter->GetHandleID()), true);
    }
    _SetCurHandleAdapter(nullptr);
}

void CAxEarthViewer::destroyAllObjects()
{
    RemoveAllHanderAdapter(false);
    for (const QPointer<CAxHandleAdapter>& adapter : std::exchange(unregistered, {}))
        delete adapter;
}

void CAxEarthViewer::SetNodeSelected(osg::Node* node, bool multi, bool report)
{
    CAxHandleAdapter* adapter = FindExistNode(node);
    if (!multi) {
        // A drawing is not left for an object that one of its clicks comes upon.
        const bool drawing = curHandleAdapter && curHandleAdapter->GetHandleOperation() == OperationDrawing;
        // A place beside the object is picked for the object, so it stays the current one.
        const bool picking = GetToolKind(toolType) == ToolKindPick;
        if (!drawing && (adapter || !picking))
            _SetCurHandleAdapter(adapter);
        return;
    }
    if (!adapter)
        return;
    const bool isLeft = multiSelectAdapters.removeOne(adapter);
    if (!isLeft)
        multiSelectAdapters += adapter;
    adapter->SetSelectedAmongSeveral(!isLeft);
    if (!report)
        return;
    QStringList ids;
    for (const CAxHandleAdapter* selected : qAsConst(multiSelectAdapters))
        ids += selected->GetHandleID();
    emit signalMultiSelectBlock(ids);
}

void CAxEarthViewer::emptyMultiSelection()
{
    for (CAxHandleAdapter* adapter : std::exchange(multiSelectAdapters, {}))
        adapter->SetSelectedAmongSeveral(false);
}

void CAxEarthViewer::ClearMultiSelectAdapter()
{
    if (multiSelectAdapters.isEmpty())
        return;
    emptyMultiSelection();
    emit signalMultiSelectBlock({});
}

void CAxEarthViewer::slotDrawableClicked(osg::Drawable* drawable)
{
    if (GetToolKind(toolType) != ToolKindNavigate)
        return;
    // The name of an object stands for the object.
    for (const osg::NodePath& path : drawable->getParentalNodePaths())
        for (const auto& [id, adapter] : adapterRegistry)
            if (adapter->GetNameLabel() &&
                std::find(path.begin(), path.end(), adapter->GetNameLabel()) != path.end())
                return SetNodeSelected(adapter->GetFeatureNode(), multiSelect, multiSelect);
}

void CAxEarthViewer::slotHandleEnd(QString strHanleID, bool bReset)
{
    emit signalHandleEnd(strHanleID, bReset);
}

void CAxEarthViewer::slotBlockVisible(QString strHanleID, bool bVisible)
{
    CAxHandleAdapter* adapter = FindExistNode(strHanleID);
    if (!adapter || adapter->IsVisible() == bVisible)
        return;
    adapter->SetAdapterVisible(bVisible, QString());
    emit signalBlockState(strHanleID);
}

void CAxEarthViewer::slotBlockLock(QString strHanleID, bool bLock)
{
    CAxHandleAdapter* adapter = FindExistNode(strHanleID);
    if (!adapter || adapter->IsLock() == bLock)
        return;
    adapter->CancelHandle();
    adapter->SetLockBlock(bLock, bLock && adapter->IsVisible());
    adapter->SetAnchorEditorEnabled(!bLock && adapter == curHandleAdapter);
    emit signalBlockState(strHanleID);
}

void CAxEarthViewer::slotFocusBlock(QString strHanleID)
{
    CAxHandleAdapter* adapter = FindExistNode(strHanleID);
    if (!adapter || adapter->GetAnchor().empty())
        return;
    constexpr double flightSeconds = 1.5;
    manipulator->setViewpoint(AxViewpointOver(adapter->GetAnchor()), flightSeconds);
    if (!curHandleAdapter || curHandleAdapter->GetHandleOperation() == OperationIdle)
        _SetCurHandleAdapter(adapter);
}

bool CAxEarthViewer::RenameBlock(const QString& id, const QString& name)
{
    CAxBlock* block = CAxBlockManager::instance().GetBlock(id);
    if (!block || name.trimmed().isEmpty())
        return false;
    const QString before = block->GetBlockName();
    if (name == before)
        return true;
    if (CAxBlockManager::instance()._exist(name))
        return false;
    block->SetBlockName(name);
    CAxControl::GetInstance()->SetProjectModified(true);
    if (CAxHandleAdapter* adapter = FindExistNode(id))
        adapter->DrawNameLabel();
    undoStack->push(new AxNameCommand(this, id, before, name, tr("Rename to %1").arg(name)));
    return true;
}

void CAxEarthViewer::IntersectionModelLayer(CAxHandleAdapter*)
{
    // No model layer can be loaded yet, so there is none to touch.
}
