// The part of the viewer that keeps the map objects and the selection.
#include "interaction/CAxHandleAdapter.h"
#include "viewer/CAxEarthViewer.h"

#include <AxData/CAxBlockManager.h>

void CAxEarthViewer::_SetCurHandleAdapter(CAxHandleAdapter* adapter)
{
    curHandleAdapter = adapter;
}

void CAxEarthViewer::forget(CAxHandleAdapter* adapter)
{
    for (auto entry = adapterRegistry.begin(); entry != adapterRegistry.end();)
        entry = entry->second == adapter ? adapterRegistry.erase(entry) : std::next(entry);
    multiSelectAdapters.removeAll(adapter);
    if (curHandleAdapter == adapter)
        _SetCurHandleAdapter(nullptr);
}

void CAxEarthViewer::SetShapeFactory(EToolType tool, ShapeFactory factory)
{
    if (factory)
        shapeFactories[tool] = std::move(factory);
    else
        shapeFactories.erase(tool);
}

CAxHandleAdapter* CAxEarthViewer::createShapeNode()
{
    const auto factory = shapeFactories.find(toolType);
    CAxHandleAdapter* adapter = nullptr;
    if (toolType == ToolContinueBlock)
        adapter = curHandleAdapter && curHandleAdapter->GetBlockType() == CAxBlock::VideoBlock
                      ? curHandleAdapter
                      : nullptr;
    else if (factory != shapeFactories.end())
        adapter = factory->second(this, parent());
    if (!adapter)
        return nullptr;
    _SetCurHandleAdapter(adapter);
    adapter->BenginHandle();
    return adapter;
}

bool CAxEarthViewer::AddHandleAdapter(CAxHandleAdapter* adapter)
{
    if (!adapter)
        return false;
    const QString id = adapter->GetHandleID();
    if (!adapterRegistry.emplace(id, adapter).second)
        return false;
    CAxBlockManager& blocks = CAxBlockManager::instance();
    if (blocks.GetBlock(id) || adapter->GetBlockType() == CAxBlock::MarkPointBlock)
        return true;
    if (CAxBlock* block = blocks.AddBlock(id, adapter->GetBlockType())) {
        QList<QPointF> ring;
        for (const osg::Vec3d& point : adapter->GetAnchor())
            ring += QPointF(point.x(), point.y());
        block->SetAnchor(ring);
    }
    return true;
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
    if (!node)
        return nullptr;
    for (const auto& [id, adapter] : adapterRegistry)
        if (adapter->GetFeatureNode() == node)
            return adapter;
    return nullptr;
}

void CAxEarthViewer::SetNodeSelected(osg::Node* node, bool multi, bool report)
{
    CAxHandleAdapter* adapter = FindExistNode(node);
    if (!multi) {
        const bool drawing = curHandleAdapter && curHandleAdapter->GetHandleOperation() == OperationDrawing;
        if (adapter || !drawing)
            _SetCurHandleAdapter(adapter);
        return;
    }
    if (!adapter)
        return;
    if (!multiSelectAdapters.removeOne(adapter))
        multiSelectAdapters += adapter;
    if (!report)
        return;
    QStringList ids;
    for (const CAxHandleAdapter* selected : qAsConst(multiSelectAdapters))
        ids += selected->GetHandleID();
    emit signalMultiSelectBlock(ids);
}

void CAxEarthViewer::ClearMultiSelectAdapter()
{
    if (multiSelectAdapters.isEmpty())
        return;
    multiSelectAdapters.clear();
    emit signalMultiSelectBlock({});
}
