// The part of the viewer that holds the tool in hand.
#include "analysis/CAxApplyForProhibitedArea.h"
#include "interaction/AxNotice.h"
#include "interaction/CAx3DGeometry.h"
#include "viewer/CAxEarthViewer.h"
#include "viewer/CAxMapToolsWidget.h"

#include <osg/Math>
#include <osgEarth/GeoMath>

namespace {
constexpr int appTypeOne = 1;
// Tools outside of these draw nothing, whatever is set up for them.
constexpr int firstDrawingTool = 3;
constexpr int lastDrawingTool = 31;

bool IsBarTool(EToolType tool)
{
    return tool == ToolMeasureDistance || tool == ToolMarkPoint;
}

// Tools that begin a shape from nothing.
bool StartsNewShape(EToolType tool)
{
    return tool == ToolPolygonBlock || tool == ToolRectangleBlock || tool == ToolStripBlock ||
           tool == ToolProhibitedArea || tool == ToolMagnifier;
}

template <typename Shape> CAxHandleAdapter* Make(CAxEarthViewer* viewer, QObject* parent)
{
    return new Shape(viewer, parent);
}

// Which object a tool draws: a new kind of object is one more line.
const std::map<EToolType, CAxEarthViewer::ShapeFactory> ownShapes{
    {ToolPolygonBlock, &Make<CAx3DGeometry>},
    {ToolProhibitedArea, &Make<CAxApplyForProhibitedArea>},
};
} // namespace

void CAxEarthViewer::initShapes()
{
    shapeFactories = ownShapes;
}

void CAxEarthViewer::SetShapeFactory(EToolType tool, ShapeFactory factory)
{
    shapeFactories.erase(tool);
    const auto own = ownShapes.find(tool);
    if (factory)
        shapeFactories[tool] = std::move(factory);
    else if (own != ownShapes.end())
        shapeFactories.insert(*own);
}

CAxHandleAdapter* CAxEarthViewer::createShapeNode()
{
    if (toolType < firstDrawingTool || toolType > lastDrawingTool)
        return nullptr;
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
    if (adapter != curHandleAdapter)
        unregistered += adapter;
    const QPointer<CAxHandleAdapter> alive(adapter);
    _SetCurHandleAdapter(adapter);
    if (alive) // who heard of it may have removed it
        adapter->BenginHandle();
    return alive;
}

void CAxEarthViewer::SetToolType(EToolType eToolType)
{
    if (eToolType == toolType)
        return;
    const bool leavesObject = !IsBarTool(toolType) && IsBarTool(eToolType) && appType == appTypeOne;
    // Nobody would hear of the end of a drag any more.
    if (leavesObject || StartsNewShape(eToolType) || eToolType == ToolVideoArea)
        giveUpEdit();
    if (GetToolKind(toolType) != ToolKindDraw) {
        if (leavesObject)
            _SetCurHandleAdapter(nullptr);
        if (StartsNewShape(eToolType)) {
            _SetCurHandleAdapter(nullptr);
            for (CAxHandleAdapter* adapter : qAsConst(multiSelectAdapters))
                adapter->SetAnchorEditorEnabled(false);
            ClearMultiSelectAdapter();
        }
    } else {
        if (curHandleAdapter && curHandleAdapter->GetHandleOperation() == OperationDrawing)
            curHandleAdapter->EndHandle();
        // What was drawn last is left as well, though the drawing was accepted.
        if (leavesObject)
            _SetCurHandleAdapter(nullptr);
        if (IsBarTool(toolType) && !IsBarTool(eToolType))
            mapToolsWidget->ResetToolType();
    }
    toolType = eToolType;
    if (eToolType == ToolVideoArea)
        _SetCurHandleAdapter(nullptr);
}

void CAxEarthViewer::slotMouseLeftBtnClick(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos)
{
    // A click beside the globe picks nothing.
    if (worldCoordPos == osg::Vec3d())
        return;
    const CAxVector3D place(lngLatPos.x(), lngLatPos.y(), lngLatPos.z());
    if (toolType == ToolLandingPosition && CheckPickPositionValid(place))
        emit LandingPosPicked(place.x(), place.y(), place.z(), true);
    else if (toolType == ToolInterestPoint && CheckPickPositionValid(place))
        emit InterestPointPicked(place.x(), place.y(), place.z());
    else if (toolType == ToolAddPoint)
        _AddPointToHandle(place.x(), place.y());
}

bool CAxEarthViewer::CheckPickPositionValid(CAxVector3D pos)
{
    constexpr double farthestMetres = 7000.0;
    if (!curHandleAdapter)
        return false;
    const CAxVector3D centre = curHandleAdapter->GetGravityLatLng(); // latitude first
    const double distance =
        osgEarth::GeoMath::distance(osg::DegreesToRadians(centre.x()), osg::DegreesToRadians(centre.y()),
                                    osg::DegreesToRadians(pos.y()), osg::DegreesToRadians(pos.x()));
    if (distance <= farthestMetres)
        return true;
    AxShowClosableNotice(this, tr("Route Information"),
                         tr("Please select the appropriate landing point because the landing point is too "
                            "far from the job area."));
    return false;
}

void CAxEarthViewer::_AddPointToHandle(double lon, double lat)
{
    if (!curHandleAdapter)
        return;
    const int end = static_cast<int>(curHandleAdapter->GetAnchor().size());
    curHandleAdapter->InsertVertex(end, osg::Vec3d(lon, lat, 0.0));
}
