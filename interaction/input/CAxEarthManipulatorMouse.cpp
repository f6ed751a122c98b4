// Pushes, clicks, releases, double clicks and drags, by the tool in hand.
#include "interaction/input/AxMouseRules.h"
#include "interaction/input/CAxEarthManipulator.h"
#include "interaction/objects/CAxHandleAdapter.h"
#include "interaction/tools/AxBlockMover.h"
#include "interaction/tools/AxTool.h"
#include "scene/AxObjectBook.h"
#include "scene/AxToolInHand.h"
#include "scene/AxViewerParts.h"

#include <osgViewer/View>

#include <QMetaMethod>

#include <string>
#include <utility>

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
        : AxMouseStep(lngLatPos, worldCoordPos), manipulator(mouse), ea(event), aa(action), pick(found),
          parts(mouse.viewer), modifiersBefore(parts->Tools().SetMouseModifiers(event.getModKeyMask()))
    {
    }
    ~Step() override
    {
        if (parts)
            parts->Tools().SetMouseModifiers(modifiersBefore);
    }

    osg::Vec2d InPicture() const override { return {ea.getXnormalized(), ea.getYnormalized()}; }
    int Modifiers() const override { return ea.getModKeyMask(); }
    osg::Node* Object() override { return manipulator.pickNode(aa, lngLat, world); }
    // Who hears of a drawable may take it out of the scene.
    void HoverDrawable() override
    {
        if (const osg::ref_ptr<osg::Drawable> drawable = manipulator.pickDrawable(ea, aa))
            emit manipulator.mouseMoveSignal(drawable.get());
    }
    void PressDrawable() override
    {
        if (const osg::ref_ptr<osg::Drawable> drawable = manipulator.pickDrawable(ea, aa))
            emit manipulator.mouseLeftBtnPress(drawable.get());
    }
    bool ClickDrawable() override
    {
        const osg::ref_ptr<osg::Drawable> drawable = manipulator.pickDrawable(ea, aa);
        if (drawable)
            emit manipulator.mouseLeftBtnClickSignal(drawable.get());
        return drawable.valid();
    }
    void ClickModel() override
    {
        if (pick && pick->modelHit && !pick->currNode.isEmpty() && !pick->parentNode.isEmpty())
            emit manipulator.signalMouseLeftBtnClickModelLayer(pick->currNode, pick->parentNode);
    }
    AxBlockMover& Mover() override { return *manipulator.mover; }
    bool HasViewer() const override { return !manipulator.viewer.isNull(); }

private:
    CAxEarthManipulator& manipulator;
    const GUIEventAdapter& ea;
    osgGA::GUIActionAdapter& aa;
    const Pick* const pick;
    const QPointer<AxViewerParts> parts;
    const int modifiersBefore;
};

void CAxEarthManipulator::handleMove(const GUIEventAdapter& ea, osgGA::GUIActionAdapter& aa, const Pick& pick)
{
    // No button is held: the release went elsewhere, and with it the end of the move.
    if (mover->IsMoving())
        endMove(pick);
    emit mouseLeftBtnMove(osg::Vec3d(pick.lngLat[0], pick.lngLat[1], pick.Altitude()), pick.world);
    if (!viewer)
        return;
    Step step(*this, ea, aa, pick.LngLatPos(), pick.world, &pick);
    viewer->Tools().InHand().Move(step);
}

bool CAxEarthManipulator::handleMousePush(const GUIEventAdapter& ea, osgGA::GUIActionAdapter& aa,
                                          const Pick& pick)
{
    if (ea.getButton() == GUIEventAdapter::LEFT_MOUSE_BUTTON) {
        pushX = ea.getX();
        pushY = ea.getY();
        doubleClickPending = false; // its release went elsewhere
        handleGivenUp = false;
        mover->Begin();
        Step step(*this, ea, aa, pick.LngLatPos(), pick.world, &pick);
        viewer->Tools().InHand().Press(step);
        if (viewer)
            emit mouseLeftBtnPress(pick.LngLatPos(), pick.world);
        if (viewer)
            emit mouseLeftBtnPress(ea.getX(), ea.getY());
        static const QMetaMethod dragged =
            QMetaMethod::fromSignal(&CAxEarthManipulator::mouseLeftBtnDragInterestPoint);
        const bool mayHold = viewer && (isSignalConnected(dragged) || viewer->AngleHandlesShown());
        const osg::Node* pushed = mayHold ? pickNode(aa, pick.LngLatPos(), pick.world) : nullptr;
        interestPushed = HasPrefix(pushed, "InterestPoint-");
        anglePushed = HasPrefix(pushed, "AngleComputer-");
    } else {
        otherPush.set(ea.getX(), ea.getY());
    }
    if (operateMode != OperateModel || !viewer)
        return false;
    resetMouse(aa);
    addMouseEvent(ea);
    aa.requestRedraw();
    return true;
}

bool CAxEarthManipulator::handleMouseRelease(const GUIEventAdapter& ea, osgGA::GUIActionAdapter& aa,
                                             const Pick& pick)
{
    const bool isOfDoubleClick = std::exchange(doubleClickPending, false);
    const osg::Vec2f release(ea.getX(), ea.getY());
    const bool isLeft = ea.getButton() == GUIEventAdapter::LEFT_MOUSE_BUTTON;
    // What a push began ends with its release, also where that would be a click or be passed over.
    const bool wasTurning =
        isLeft && (std::exchange(angleDragActive, false) | std::exchange(interestDragActive, false) |
                   std::exchange(handleGivenUp, false));
    if (isLeft && mover->IsMoving()) {
        endMove(pick);
        return true;
    }
    if (isOfDoubleClick)
        return false;
    if (!isLeft) {
        if (ea.getButton() == GUIEventAdapter::RIGHT_MOUSE_BUTTON &&
            AxMouseRules::IsClick(otherPush, release))
            emit signalRightBtnPicked(pick.LngLatPos());
        return false;
    }
    if (!wasTurning && AxMouseRules::IsClick(osg::Vec2f(pushX, pushY), release))
        return handleLeftClick(ea, aa, pick);
    {
        Step step(*this, ea, aa, pick.LngLatPos(), pick.world, &pick);
        if (viewer->Tools().InHand().Release(step) || !viewer)
            return true;
    }
    emit mouseLeftBtnRelease(pick.LngLatPos(), pick.world);
    if (viewer)
        emit mouseLeftBtnRelease(ea.getX(), ea.getY());
    return false;
}

void CAxEarthManipulator::endMove(const Pick& pick)
{
    mover->End([this, &pick] { emit mouseLeftBtnRelease(pick.LngLatPos(), pick.world); });
}

bool CAxEarthManipulator::handleLeftClick(const GUIEventAdapter& ea, osgGA::GUIActionAdapter& aa,
                                          const Pick& pick)
{
    Step step(*this, ea, aa, pick.LngLatPos(), pick.world, &pick);
    if (viewer->Tools().InHand().Click(step))
        return true;
    if (viewer)
        emit mouseLeftBtnRelease(pick.LngLatPos(), pick.world);
    if (viewer)
        emit mouseLeftBtnClick(pick.LngLatPos(), pick.world);
    return false;
}

bool CAxEarthManipulator::handleDoubleClick(const GUIEventAdapter& ea, osgGA::GUIActionAdapter& aa,
                                            const Pick& pick)
{
    doubleClickPending = true;
    mover->Begin();
    // Asked before the signal: a listener may end its drawing and be gone.
    const CAxHandleAdapter* current = viewer->Objects().Current();
    const bool isOfMarks = current && current->GetBlockType() == CAxBlock::MarkPointBlock;
    const bool isOwned = AxToolRowOf(viewer->Tools().Tool()).ownsDoubleClick || (current && !isOfMarks);
    emit mouseLeftBtnDoubleClick(pick.LngLatPos(), pick.world);
    // The click before has selected the mark and made its set the current object.
    if (!viewer || isOwned || IntersectMarkPoint(ea, aa) || isOfMarks)
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
        if (handleGivenUp)
            return true;
        Step step(*this, ea, aa, lngLatPos, worldCoordPos);
        if (viewer->Tools().InHand().Drag(step) || !viewer || dragDownhillAngle(aa, lngLatPos, worldCoordPos))
            return true;
        if (interestPushed) {
            interestDragActive = true;
            emit mouseLeftBtnDragInterestPoint(lngLatPos);
            return true;
        }
        if (HasPrefix(pickNode(aa, lngLatPos, worldCoordPos), "TaskGrid")) {
            emit mouseLeftBtnDragGrid(lngLatPos, worldCoordPos);
            return true;
        }
    }
    return operateMode == OperateModel && !doubleClickPending && dragAroundModel(ea, aa);
}

bool CAxEarthManipulator::GiveUpHandleDrag()
{
    if (!angleDragActive && !interestDragActive)
        return false;
    angleDragActive = interestDragActive = anglePushed = interestPushed = false;
    handleGivenUp = true;
    return true;
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
        // A quick hand has left it with its first step.
        angleDragActive = anglePushed || HasPrefix(pickNode(aa, lngLatPos, worldCoordPos), "AngleComputer-");
    }
    if (angleDragActive)
        emit mouseLeftBtnDragAngleComputer(lngLatPos);
    return angleDragActive;
}
