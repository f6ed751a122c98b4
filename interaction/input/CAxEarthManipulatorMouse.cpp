// Pushes, clicks, releases, double clicks and drags, by the tool in hand.
#include "interaction/input/AxMouseRules.h"
#include "interaction/input/CAxEarthManipulator.h"
#include "interaction/tools/AxBlockMover.h"
#include "interaction/tools/AxTool.h"
#include "scene/AxObjectBook.h"
#include "scene/AxToolInHand.h"
#include "scene/AxViewerParts.h"

#include <osgViewer/View>

#include <string>

using osgGA::GUIEventAdapter;

namespace {
bool HasPrefix(const osg::Node* node, const char* prefix)
{
    return node && node->getName().rfind(prefix, 0) == 0;
}
} // namespace

/// An event as the tool in hand deals with it: what is under the mouse is looked for when it is asked for.
class CAxEarthManipulator::Step : public AxMouseStep
{
public:
    Step(CAxEarthManipulator& mouse, const GUIEventAdapter& event, osgGA::GUIActionAdapter& action,
         const osg::Vec3d& lngLatPos, const osg::Vec3d& worldCoordPos, const Pick* found = nullptr)
        : AxMouseStep(lngLatPos, worldCoordPos), manipulator(mouse), ea(event), aa(action), pick(found)
    {
    }

    osg::Node* Object() override { return manipulator.pickNode(aa, lngLat, world); }
    void HoverDrawable() override
    {
        if (osg::Drawable* drawable = manipulator.pickDrawable(ea, aa))
            emit manipulator.mouseMoveSignal(drawable);
    }
    void PressDrawable() override
    {
        if (osg::Drawable* drawable = manipulator.pickDrawable(ea, aa))
            emit manipulator.mouseLeftBtnPress(drawable);
    }
    bool ClickDrawable() override
    {
        osg::Drawable* const drawable = manipulator.pickDrawable(ea, aa);
        if (drawable)
            emit manipulator.mouseLeftBtnClickSignal(drawable);
        return drawable;
    }
    void ClickModel() override
    {
        if (pick && pick->modelHit && !pick->currNode.isEmpty() && !pick->parentNode.isEmpty())
            emit manipulator.signalMouseLeftBtnClickModelLayer(pick->currNode, pick->parentNode);
    }
    AxBlockMover& Mover() override { return *manipulator.mover; }

private:
    CAxEarthManipulator& manipulator;
    const GUIEventAdapter& ea;
    osgGA::GUIActionAdapter& aa;
    const Pick* const pick;
};

void CAxEarthManipulator::handleMove(const GUIEventAdapter& ea, osgGA::GUIActionAdapter& aa, const Pick& pick)
{
    emit mouseLeftBtnMove(osg::Vec3d(pick.lngLat[0], pick.lngLat[1], pick.Altitude()), pick.world);
    Step step(*this, ea, aa, pick.LngLatPos(), pick.world, &pick);
    viewer->Tools().InHand().Move(step);
}

bool CAxEarthManipulator::handleMousePush(const GUIEventAdapter& ea, osgGA::GUIActionAdapter& aa,
                                          const Pick& pick)
{
    if (ea.getButton() == GUIEventAdapter::LEFT_MOUSE_BUTTON) {
        pushX = ea.getX();
        pushY = ea.getY();
        mover->Begin();
        Step step(*this, ea, aa, pick.LngLatPos(), pick.world, &pick);
        viewer->Tools().InHand().Press(step);
        emit mouseLeftBtnPress(pick.LngLatPos(), pick.world);
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
    if (mover->IsMoving()) {
        mover->End([this, &pick] { emit mouseLeftBtnRelease(pick.LngLatPos(), pick.world); });
        return true;
    }
    emit mouseLeftBtnRelease(pick.LngLatPos(), pick.world);
    emit mouseLeftBtnRelease(ea.getX(), ea.getY());
    if (viewer->AngleHandlesShown())
        angleDragActive = false;
    return false;
}

bool CAxEarthManipulator::handleLeftClick(const GUIEventAdapter& ea, osgGA::GUIActionAdapter& aa,
                                          const Pick& pick)
{
    Step step(*this, ea, aa, pick.LngLatPos(), pick.world, &pick);
    if (viewer->Tools().InHand().Click(step))
        return true;
    emit mouseLeftBtnRelease(pick.LngLatPos(), pick.world);
    emit mouseLeftBtnClick(pick.LngLatPos(), pick.world);
    return false;
}

bool CAxEarthManipulator::handleDoubleClick(const GUIEventAdapter& ea, osgGA::GUIActionAdapter& aa,
                                            const Pick& pick)
{
    doubleClickPending = true;
    // Asked before the signal: a listener may end its drawing and be gone.
    const bool isOwned = AxToolRowOf(viewer->Tools().Tool()).ownsDoubleClick || viewer->Objects().Current();
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
        Step step(*this, ea, aa, lngLatPos, worldCoordPos);
        if (viewer->Tools().InHand().Drag(step) || dragDownhillAngle(aa, lngLatPos, worldCoordPos))
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
    const std::optional<bool> handlesShown = viewer->AngleHandlesShown();
    if (!handlesShown)
        return false;
    if (!angleDragActive) {
        if (!*handlesShown)
            return false;
        angleDragActive = HasPrefix(pickNode(aa, lngLatPos, worldCoordPos), "AngleComputer-");
    }
    if (angleDragActive)
        emit mouseLeftBtnDragAngleComputer(lngLatPos);
    return angleDragActive;
}
