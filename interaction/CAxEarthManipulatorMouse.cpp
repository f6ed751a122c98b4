// Pushes, clicks, releases, double clicks and drags, by the tool in hand.
#include "interaction/AxMouseRules.h"
#include "interaction/CAxEarthManipulator.h"
#include "mission/CAxDownhillAnglenode.h"
#include "viewer/CAxEarthViewer.h"

#include "interaction/CAxHandleAdapter.h"

#include <osgViewer/View>

#include <string>

using osgGA::GUIEventAdapter;

namespace {
bool HasPrefix(const osg::Node* node, const char* prefix)
{
    return node && node->getName().rfind(prefix, 0) == 0;
}
} // namespace

void CAxEarthManipulator::handleMove(const GUIEventAdapter& ea, osgGA::GUIActionAdapter& aa, const Pick& pick)
{
    emit mouseLeftBtnMove(osg::Vec3d(pick.lngLat[0], pick.lngLat[1], pick.Altitude()), pick.world);
    if (viewer->GetToolType() == ToolProjCoords) {
        BeginDrawShape();
        return;
    }
    if (osg::Drawable* drawable = pickDrawable(ea, aa))
        emit mouseMoveSignal(drawable);
    if (viewer->GetToolType() != ToolVideoArea)
        return;
    const CAxHandleAdapter* adapter = viewer->GetCurHandleAdapter();
    if (!adapter || adapter->GetBlockType() != CAxBlock::VideoBlock)
        BeginDrawShape();
}

bool CAxEarthManipulator::handleMousePush(const GUIEventAdapter& ea, osgGA::GUIActionAdapter& aa,
                                          const osg::Vec3d& lngLatPos, const osg::Vec3d& worldCoordPos)
{
    if (ea.getButton() == GUIEventAdapter::LEFT_MOUSE_BUTTON) {
        pushX = ea.getX();
        pushY = ea.getY();
        moveCancelled = false;
        switch (AxMouseRules::PushRoleOf(viewer->GetToolType())) {
        case AxMouseRules::PushRole::BeginDrawing:
            BeginDrawShape();
            break;
        case AxMouseRules::PushRole::PressDrawable:
            if (osg::Drawable* drawable = pickDrawable(ea, aa))
                emit mouseLeftBtnPress(drawable);
            break;
        case AxMouseRules::PushRole::SelectForMove:
            if (viewer->GetMultiSelectAdapter().isEmpty() && !viewer->IsMultiSelect())
                viewer->SetNodeSelected(pickNode(aa, lngLatPos, worldCoordPos), false, true);
            break;
        }
        emit mouseLeftBtnPress(lngLatPos, worldCoordPos);
        emit mouseLeftBtnPress(ea.getX(), ea.getY());
    } else {
        otherPush.set(ea.getX(), ea.getY());
    }
    if (operateMode != OperateModel)
        return false;
    resetMouse(aa);
    addMouseEvent(ea);
    aa.requestRedraw();
    return true;
}

bool CAxEarthManipulator::handleMouseRelease(const GUIEventAdapter& ea, osgGA::GUIActionAdapter& aa,
                                             const Pick& pick)
{
    if (doubleClickPending) {
        doubleClickPending = false;
        return false;
    }
    const osg::Vec2f release(ea.getX(), ea.getY());
    if (ea.getButton() != GUIEventAdapter::LEFT_MOUSE_BUTTON) {
        if (ea.getButton() == GUIEventAdapter::RIGHT_MOUSE_BUTTON &&
            AxMouseRules::IsClick(otherPush, release))
            emit signalRightBtnPicked(pick.LngLatPos());
        return false;
    }
    if (AxMouseRules::IsClick(osg::Vec2f(pushX, pushY), release))
        return handleLeftClick(ea, aa, pick);
    if (!moveIdle) {
        endBlockMove(pick);
        return true;
    }
    emit mouseLeftBtnRelease(pick.LngLatPos(), pick.world);
    emit mouseLeftBtnRelease(ea.getX(), ea.getY());
    if (viewer->GetDownhillAngleNode())
        angleDragActive = false;
    return false;
}

bool CAxEarthManipulator::handleLeftClick(const GUIEventAdapter& ea, osgGA::GUIActionAdapter& aa,
                                          const Pick& pick)
{
    const osg::Vec3d lngLatPos = pick.LngLatPos();
    const bool multi = viewer->IsMultiSelect();
    switch (AxMouseRules::ClickRoleOf(viewer->GetToolType())) {
    case AxMouseRules::ClickRole::BeginDrawing:
        BeginDrawShape();
        break;
    case AxMouseRules::ClickRole::Select:
        if (multi) {
            viewer->SetNodeSelected(pickNode(aa, lngLatPos, pick.world), true, true);
        } else {
            viewer->ClearMultiSelectAdapter();
            viewer->SetNodeSelected(nullptr, false, true);
            moveIdle = true;
        }
        return true;
    case AxMouseRules::ClickRole::Pick:
        if (pick.modelHit && !pick.currNode.isEmpty() && !pick.parentNode.isEmpty())
            emit signalMouseLeftBtnClickModelLayer(pick.currNode, pick.parentNode);
        if (osg::Drawable* drawable = pickDrawable(ea, aa)) {
            emit mouseLeftBtnClickSignal(drawable);
        } else {
            osg::Node* node = pickNode(aa, lngLatPos, pick.world);
            viewer->SetNodeSelected(node, multi, multi);
            if (!node)
                viewer->ClearMultiSelectAdapter();
        }
        break;
    }
    emit mouseLeftBtnRelease(lngLatPos, pick.world);
    emit mouseLeftBtnClick(lngLatPos, pick.world);
    return false;
}

bool CAxEarthManipulator::handleDoubleClick(const GUIEventAdapter& ea, osgGA::GUIActionAdapter& aa,
                                            const Pick& pick)
{
    doubleClickPending = true;
    // Asked before the signal: a listener may end its drawing and be gone.
    const bool isOwned =
        AxMouseRules::OwnsDoubleClick(viewer->GetToolType()) || viewer->GetCurHandleAdapter();
    emit mouseLeftBtnDoubleClick(pick.LngLatPos(), pick.world);
    if (isOwned || IntersectMarkPoint(ea, aa))
        return true;
    if (!pick.modelHit)
        return false;
    resetMouse(aa);
    addMouseEvent(ea);
    if (handleModelActionDoubleClick(pick.world))
        aa.requestRedraw();
    resetMouse(aa);
    return true;
}

bool CAxEarthManipulator::handleMouseDrag(const GUIEventAdapter& ea, osgGA::GUIActionAdapter& aa,
                                          const osg::Vec3d& lngLatPos, const osg::Vec3d& worldCoordPos)
{
    const int buttons = ea.getButtonMask();
    if (buttons & GUIEventAdapter::LEFT_MOUSE_BUTTON) {
        const EToolType tool = viewer->GetToolType();
        const bool isOverGround = worldCoordPos != osg::Vec3d();
        // Over space a block that is being moved waits where it is.
        if (tool == ToolSelect && (isOverGround ? ProcessMoveGeom(lngLatPos) : !moveIdle))
            return true;
        if (AxMouseRules::HoldsCameraWhileDragging(tool) || dragDownhillAngle(aa, lngLatPos, worldCoordPos))
            return true;
        if (HasPrefix(pickNode(aa, lngLatPos, worldCoordPos), "TaskGrid")) {
            emit mouseLeftBtnDragGrid(lngLatPos, worldCoordPos);
            return true;
        }
    }
    return operateMode == OperateModel && dragAroundModel(ea, aa);
}

bool CAxEarthManipulator::dragDownhillAngle(osgGA::GUIActionAdapter& aa, const osg::Vec3d& lngLatPos,
                                            const osg::Vec3d& worldCoordPos)
{
    const CAxDownhillAnglenode* tool = viewer->GetDownhillAngleNode();
    if (!tool)
        return false;
    if (!angleDragActive) {
        if (!tool->IsHandlesVisible())
            return false;
        angleDragActive = HasPrefix(pickNode(aa, lngLatPos, worldCoordPos), "AngleComputer-");
    }
    if (angleDragActive)
        emit mouseLeftBtnDragAngleComputer(lngLatPos);
    return angleDragActive;
}
