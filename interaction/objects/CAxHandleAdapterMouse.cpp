// The part of the map object that listens to the mouse: drawing and editing.
#include "interaction/editing/CAxHandleAdapterEditor.h"
#include "interaction/objects/AxBlockTasks.h"
#include "interaction/objects/AxHandleAdapterState.h"
#include "interaction/objects/AxVerdict.h"
#include "scene/AxObjectBook.h"
#include "scene/AxToolInHand.h"

#include <algorithm>
#include <array>

namespace {
using Pair = std::array<const char*, 2>;
// The manipulator's signals and the slots that hear them.
const std::array<Pair, 11> mousePairs{{
    {SIGNAL(mouseLeftBtnPress(osg::Vec3d, osg::Vec3d)), SLOT(slotMousePressed(osg::Vec3d, osg::Vec3d))},
    {SIGNAL(mouseLeftBtnMove(osg::Vec3d, osg::Vec3d)), SLOT(slotMoving(osg::Vec3d, osg::Vec3d))},
    {SIGNAL(mouseLeftBtnRelease(osg::Vec3d, osg::Vec3d)), SLOT(slotMouseRelease(osg::Vec3d, osg::Vec3d))},
    {SIGNAL(mouseLeftBtnClick(osg::Vec3d, osg::Vec3d)), SLOT(slotPicked(osg::Vec3d, osg::Vec3d))},
    {SIGNAL(mouseLeftBtnDoubleClick(osg::Vec3d, osg::Vec3d)),
     SLOT(slotDoubleClicked(osg::Vec3d, osg::Vec3d))},
    {SIGNAL(mouseLeftBtnDrag(osg::Vec3d, osg::Vec3d)), SLOT(slotDragging(osg::Vec3d, osg::Vec3d))},
    {SIGNAL(signalRightBtnPicked(osg::Vec3d)), SLOT(slotRightBtnClicked(osg::Vec3d))},
    {SIGNAL(ObjectMoved(double, double, double)), SLOT(slotHandleMoved(double, double, double))},
    {SIGNAL(mouseLeftBtnPress(float, float)), SLOT(slotMousePressed(float, float))},
    {SIGNAL(mouseLeftBtnDrag(float, float)), SLOT(slotDragging(float, float))},
    {SIGNAL(mouseLeftBtnRelease(float, float)), SLOT(slotMouseRelease(float, float))},
}};

constexpr int released = 0;
constexpr int pressed = 1;
constexpr int doubleClicked = 2;
// What ResponseDoubleClickWhenDraw() answers when the object is not wanted after all.
constexpr int discard = 2;
} // namespace

void CAxHandleAdapter::ConnectMouseEvent()
{
    if (d->mouseConnected || !d->viewer)
        return;
    d->mouse = d->viewer->Mouse();
    for (const Pair& pair : mousePairs)
        connect(d->mouse, pair[0], this, pair[1]);
    d->mouseConnected = true;
}

void CAxHandleAdapter::DisconnectMouseEvent()
{
    if (!d->mouseConnected)
        return;
    for (const Pair& pair : mousePairs)
        if (d->mouse)
            disconnect(d->mouse, pair[0], this, pair[1]);
    d->mouseConnected = false;
    // What follows the mouse would stand still from here on.
    d->cursorLabel.Hide();
    DropRubberBand();
}

// Drawing

void CAxHandleAdapter::BenginHandle()
{
    d->operation = OperationDrawing;
}

void CAxHandleAdapter::EndHandle()
{
    if (d->operation != OperationDrawing)
        return;
    const Running self(this);
    d->operation = OperationIdle;
    d->cursorLabel.Hide();
    const bool isAccepted = AxOutcomeOf(CheckGeometry()) == AxOutcome::Accepted;
    if (!self.IsWanted() || !d->viewer)
        return;
    if (!isAccepted)
        keepRefused(d->viewer->Tools().Tool());
    const bool isNew = !isRegistered();
    if (!isAccepted || !keepDrawing()) {
        dropDrawing(true);
        return;
    }
    if (self.IsWanted())
        HandleEnd();
    if (isNew && self.IsWanted() && d->viewer)
        d->viewer->Objects().KeepDrawn(d->handleID);
}

bool CAxHandleAdapter::isRegistered() const
{
    return d->viewer && d->viewer->Objects().Find(d->handleID) == this;
}

// A drawing that went on with an object that was there before is an edit of it.
bool CAxHandleAdapter::keepDrawing()
{
    if (!isRegistered())
        return d->viewer->Objects().Add(this);
    // It may have been locked, or have got a task, since the drawing began.
    if (d->lock || AxHasTasks(*this))
        ReturnLastOperate();
    else
        UpdateCurrentOperate();
    return true;
}

void CAxHandleAdapter::dropDrawing(bool deleteBlock)
{
    if (isRegistered())
        ReturnLastOperate();
    else if (d->viewer)
        d->viewer->Objects().Remove(this, deleteBlock);
}

void CAxHandleAdapter::keepRefused(EToolType tool)
{
    // An object that was there before the drawing is still there.
    if (GetToolKind(tool) == ToolKindDraw && !isRegistered())
        d->viewer->Objects().KeepRefused(tool, GetAnchor());
}

void CAxHandleAdapter::ResumeDrawing(std::vector<osg::Vec3d> vertices)
{
    const AxShapeKind kind = ShapeKind();
    if (!kind.countMayChange && static_cast<int>(vertices.size()) >= kind.leastVertices)
        vertices.resize(static_cast<std::size_t>(std::max(0, kind.leastVertices - 1)));
    if (d->operation != OperationDrawing || vertices.empty())
        return;
    GetAnchor() = std::move(vertices);
    GetBlockElevation();
    if (d->anchorEditor)
        d->anchorEditor->Update();
    else
        CreateEditor();
    updateAdapter();
}

void CAxHandleAdapter::slotDoubleClicked(osg::Vec3d, osg::Vec3d)
{
    const Running self(this);
    d->mouseState = doubleClicked;
    if (!d->viewer)
        return;
    const EToolType tool = d->viewer->Tools().Tool();
    if (tool == ToolNavigate) {
        int index = -1;
        const osg::Vec3d point = d->anchorEditor ? d->anchorEditor->GetHoveredPoint(index) : osg::Vec3d();
        if (index != -1)
            ResponseDoubleClickOnPoint(index, point);
        else
            ResponseDoubleClickOnBlock();
        if (self.IsWanted())
            emit signalHandleEnd(d->handleID, true);
        return;
    }
    if (GetToolKind(tool) == ToolKindDraw && d->operation == OperationDrawing)
        FinishDrawing();
}

void CAxHandleAdapter::FinishDrawing()
{
    if (!d->viewer)
        return;
    const Running self(this);
    const EToolType tool = d->viewer->Tools().Tool();
    d->operation = OperationIdle;
    d->cursorLabel.Hide();
    // Whoever hears of a step on the way may remove the object, and its end is told all the same.
    const AxOutcome outcome = AxOutcomeOf(CheckGeometry());
    const bool isAccepted = outcome == AxOutcome::Accepted;
    if (!isAccepted && self.IsWanted() && d->viewer)
        keepRefused(tool);
    const bool isNew = self.IsWanted() && !isRegistered();
    const bool isKept = isAccepted && self.IsWanted() && d->viewer && keepDrawing();
    if (isKept && self.IsWanted())
        HandleEnd();
    const int response = isKept && self.IsWanted() ? ResponseDoubleClickWhenDraw() : 0;
    // Before the host hears of it, whose own edits of the new block come on top.
    if (isNew && isKept && self.IsWanted() && response != discard && d->viewer)
        d->viewer->Objects().KeepDrawn(d->handleID);
    if (self.IsGone())
        return;
    if (isKept && self.IsWanted())
        emit signalHandleEnd(d->handleID, response >= 0);
    else
        emit signalHandleEnd(QString(), outcome == AxOutcome::RefusedWithReset);
    if (!self.IsGone())
        emit signalHandlePickEnded(tool);
    if (!self.IsWanted() || !d->viewer)
        return;
    if (!isKept)
        dropDrawing(!isAccepted);
    else if (response == discard) {
        // Undo brings the drawing back, as it does a refused one.
        const QPointer<AxViewerParts> parts = d->viewer;
        const std::vector<osg::Vec3d> vertices = GetAnchor();
        parts->Objects().Remove(this, true);
        if (parts && GetToolKind(tool) == ToolKindDraw)
            parts->Objects().KeepRefused(tool, vertices);
    }
}

bool CAxHandleAdapter::CancelHandle()
{
    const Running self(this);
    if (d->operation == OperationIdle || !d->viewer)
        return false;
    d->cursorLabel.Hide();
    const bool isDrawing = d->operation == OperationDrawing;
    d->operation = OperationIdle;
    d->editIndex = -1;
    d->mouseState = released;
    if (isDrawing && !isRegistered()) {
        const EToolType tool = d->viewer->Tools().Tool();
        d->viewer->Objects().Remove(this, true);
        emit signalHandleEnd(QString(), false);
        emit signalHandlePickEnded(tool);
        return true;
    }
    if (d->anchorEditor) {
        d->anchorEditor->CancelDrag();
        d->anchorEditor->SetMoveAdapter(false);
    }
    d->operation = OperationIdle;
    ReturnLastOperate();
    return true;
}

void CAxHandleAdapter::GiveUpEdit()
{
    if (d->operation == OperationMovePoint || d->operation == OperationMoveHandle)
        CancelHandle();
}

bool CAxHandleAdapter::RemoveLastPoint()
{
    std::vector<osg::Vec3d>& points = GetAnchor();
    if (d->operation != OperationDrawing || points.empty())
        return false;
    points.pop_back();
    DropRubberBand();
    d->cursorLabel.Hide();
    if (points.empty())
        SetAnchorEditorEnabled(false);
    else if (d->anchorEditor)
        d->anchorEditor->Update();
    updateAdapter();
    return true;
}

void CAxHandleAdapter::slotMousePressed(float, float)
{
    d->mouseState = pressed;
}

void CAxHandleAdapter::slotMousePressed(osg::Vec3d, osg::Vec3d)
{
    d->mouseState = pressed;
}

void CAxHandleAdapter::slotPicked(osg::Vec3d, osg::Vec3d) {}
void CAxHandleAdapter::slotMoving(osg::Vec3d, osg::Vec3d) {}
void CAxHandleAdapter::slotDragging(float, float) {}
void CAxHandleAdapter::slotDragging(osg::Vec3d, osg::Vec3d) {}
void CAxHandleAdapter::slotRightBtnClicked(osg::Vec3d) {}
void CAxHandleAdapter::slotMouseRelease(float, float) {}

// Editing

void CAxHandleAdapter::slotPointMoved(double, double, double, int index)
{
    if (d->operation == OperationIdle) {
        d->editIndex = index;
        d->operation = OperationMovePoint;
        // A vertex that the record does not have came out of an edge.
        const CAxBlock* block = GetContainedBlock();
        const bool isNew = block && static_cast<int>(GetAnchor().size()) > block->GetAnchor().size();
        d->editText = isNew ? tr("Insert vertex") : tr("Move vertex");
    }
    updateAdapter();
}

void CAxHandleAdapter::slotHandleMoved(double, double, double)
{
    d->operation = OperationMoveHandle;
    d->editText = tr("Move block");
    if (d->anchorEditor) {
        d->anchorEditor->SetMoveAdapter(true);
        d->anchorEditor->Update();
    }
    updateAdapter();
}

void CAxHandleAdapter::SetMoveCenterPt(const osg::Vec3d& offset)
{
    d->moveCenter = offset;
}

const osg::Vec3d& CAxHandleAdapter::GetMoveCenterPt() const
{
    return d->moveCenter;
}

void CAxHandleAdapter::HandleMoved(double dLng, double dLat, double dAlt)
{
    slotHandleMoved(dLng, dLat, dAlt);
}

void CAxHandleAdapter::slotMouseRelease(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos)
{
    const Running self(this);
    if (d->operation == OperationMovePoint) {
        ResponseHandlePointMoved(lngLatPos, worldCoordPos);
        if (!self.IsWanted())
            return;
        d->operation = OperationIdle;
        d->editIndex = -1;
    } else if (d->operation == OperationMoveHandle) {
        ResponseHandleMoved(worldCoordPos, lngLatPos);
        if (!self.IsWanted())
            return;
        d->operation = OperationIdle;
        if (d->anchorEditor)
            d->anchorEditor->SetMoveAdapter(false);
    }
    d->mouseState = released;
}

void CAxHandleAdapter::EndDrag(const osg::Vec3d& lngLatPos, const osg::Vec3d& worldCoordPos)
{
    slotMouseRelease(lngLatPos, worldCoordPos);
}

void CAxHandleAdapter::EndMoved(int code)
{
    if (d->operation != OperationMoveHandle)
        return;
    const Running self(this);
    if (code > 0)
        UpdateCurrentOperate();
    else
        ReturnLastOperate();
    if (!self.IsWanted())
        return;
    d->operation = OperationIdle;
    if (d->anchorEditor)
        d->anchorEditor->SetMoveAdapter(false);
}

void CAxHandleAdapter::ResponseHandlePointMoved(osg::Vec3d, osg::Vec3d) {}
void CAxHandleAdapter::ResponseHandleMoved(osg::Vec3d, osg::Vec3d) {}
void CAxHandleAdapter::ResponseDoubleClickOnPoint(int, osg::Vec3d) {}
void CAxHandleAdapter::ResponseDoubleClickOnBlock() {}

int CAxHandleAdapter::ResponseDoubleClickWhenDraw()
{
    return 0;
}
