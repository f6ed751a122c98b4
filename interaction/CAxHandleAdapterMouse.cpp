// The part of the map object that listens to the mouse: drawing and editing.
#include "interaction/CAxEarthManipulator.h"
#include "interaction/CAxHandleAdapter.h"
#include "interaction/CAxHandleAdapterEditor.h"
#include "viewer/CAxEarthViewer.h"

#include <AxAlgorthm/AxCoordinate.h>

#include <osgEarth/MapNode>
#include <osgEarthAnnotation/LabelNode>

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
// What CheckGeometry() answers after the operator was told why.
constexpr int rejectedAloud = -2;
// What ResponseDoubleClickWhenDraw() answers when the object is not wanted after all.
constexpr int discard = 2;
} // namespace

void CAxHandleAdapter::ConnectMouseEvent()
{
    if (mouseConnected || !manipulator)
        return;
    for (const Pair& pair : mousePairs)
        connect(manipulator.get(), pair[0], this, pair[1]);
    mouseConnected = true;
}

void CAxHandleAdapter::DisconnectMouseEvent()
{
    if (!mouseConnected || !manipulator)
        return;
    for (const Pair& pair : mousePairs)
        disconnect(manipulator.get(), pair[0], this, pair[1]);
    mouseConnected = false;
    // What follows the mouse would stand still from here on.
    HideRunningLength();
    DropRubberBand();
}

// Drawing

void CAxHandleAdapter::EndHandle()
{
    if (operation != OperationDrawing)
        return;
    const Running self(this);
    operation = OperationIdle;
    HideRunningLength();
    const bool isAccepted = CheckGeometry() >= 1;
    if (!self.IsWanted() || !viewer)
        return;
    if (isAccepted && viewer->AddHandleAdapter(this))
        HandleEnd();
    else
        viewer->RemoveHanderAdapter(this, true);
}

void CAxHandleAdapter::slotDoubleClicked(osg::Vec3d, osg::Vec3d)
{
    const Running self(this);
    mouseState = doubleClicked;
    if (!viewer)
        return;
    const EToolType tool = viewer->GetToolType();
    if (tool == ToolNavigate) {
        int index = -1;
        const osg::Vec3d point = anchorEditor ? anchorEditor->GetHoveredPoint(index) : osg::Vec3d();
        if (index != -1)
            ResponseDoubleClickOnPoint(index, point);
        else
            ResponseDoubleClickOnBlock();
        if (self.IsWanted())
            emit signalHandleEnd(handleID, true);
        return;
    }
    if (GetToolKind(tool) == ToolKindDraw && operation == OperationDrawing)
        FinishDrawing();
}

void CAxHandleAdapter::FinishDrawing()
{
    if (!viewer)
        return;
    const Running self(this);
    const EToolType tool = viewer->GetToolType();
    operation = OperationIdle;
    HideRunningLength();
    const int verdict = CheckGeometry();
    if (!self.IsWanted() || !viewer)
        return;
    if (verdict < 1 || !viewer->AddHandleAdapter(this)) {
        emit signalHandleEnd(QString(), verdict == rejectedAloud);
        emit signalHandlePickEnded(tool);
        if (self.IsWanted() && viewer)
            viewer->RemoveHanderAdapter(this, verdict < 1);
        return;
    }
    HandleEnd();
    const int response = ResponseDoubleClickWhenDraw();
    if (!self.IsWanted())
        return;
    emit signalHandleEnd(handleID, response >= 0);
    emit signalHandlePickEnded(tool);
    if (response == discard && self.IsWanted() && viewer)
        viewer->RemoveHanderAdapter(this, true);
}

bool CAxHandleAdapter::CancelHandle()
{
    const Running self(this);
    if (operation == OperationIdle || !viewer)
        return false;
    HideRunningLength();
    const bool isDrawing = operation == OperationDrawing;
    operation = OperationIdle;
    editIndex = -1;
    mouseState = released;
    if (isDrawing && viewer->FindExistNode(handleID) != this) {
        const EToolType tool = viewer->GetToolType();
        viewer->RemoveHanderAdapter(this, true);
        emit signalHandleEnd(QString(), false);
        emit signalHandlePickEnded(tool);
        return true;
    }
    if (anchorEditor) {
        anchorEditor->CancelDrag();
        anchorEditor->SetMoveAdapter(false);
    }
    operation = OperationIdle;
    ReturnLastOperate();
    return true;
}

bool CAxHandleAdapter::RemoveLastPoint()
{
    std::vector<osg::Vec3d>& points = GetAnchor();
    if (operation != OperationDrawing || points.empty())
        return false;
    points.pop_back();
    DropRubberBand();
    HideRunningLength();
    if (points.empty())
        SetAnchorEditorEnabled(false);
    else if (anchorEditor)
        anchorEditor->Update();
    updateAdapter();
    return true;
}

double CAxHandleAdapter::Distance(const osg::Vec3d& a, const osg::Vec3d& b)
{
    return DistanceBetweenTwoLatLng(CAxVector3D(a.x(), a.y(), 0.0), CAxVector3D(b.x(), b.y(), 0.0));
}

QString CAxHandleAdapter::LengthText(double metres)
{
    constexpr double metresPerKilometre = 1000.0;
    if (metres < metresPerKilometre)
        return tr("%1 m").arg(QString::number(metres, 'f', 1));
    return tr("%1 km").arg(QString::number(metres / metresPerKilometre, 'f', 3));
}

void CAxHandleAdapter::ShowRunningLength(const osg::Vec3d& lngLatPos)
{
    const std::vector<osg::Vec3d>& points = GetAnchor();
    if (points.empty())
        return;
    const double leg = Distance(points.back(), lngLatPos);
    double total = leg;
    for (std::size_t i = 1; i < points.size(); ++i)
        total += Distance(points[i - 1], points[i]);
    ShowBesideCursor(lngLatPos, points.size() < 2
                                    ? LengthText(leg)
                                    : tr("%1, in all %2").arg(LengthText(leg), LengthText(total)));
}

void CAxHandleAdapter::ShowBesideCursor(const osg::Vec3d& lngLatPos, const QString& text)
{
    if (!viewer || !drawGroup)
        return;
    const osgEarth::GeoPoint place(viewer->getSRS()->getGeographicSRS(), lngLatPos,
                                   osgEarth::ALTMODE_ABSOLUTE);
    if (lengthLabel) {
        lengthLabel->setPosition(place);
        lengthLabel->setText(text.toStdString());
        return;
    }
    osgEarth::Symbology::Style beside = style;
    auto* symbol = beside.getOrCreate<osgEarth::Symbology::TextSymbol>();
    symbol->alignment() = osgEarth::Symbology::TextSymbol::ALIGN_LEFT_BOTTOM;
    symbol->pixelOffset() = osg::Vec2s(14, 10);
    symbol->declutter() = false;
    lengthLabel =
        new osgEarth::Annotation::LabelNode(viewer->getMapNode(), place, text.toStdString(), beside);
    lengthLabel->setDynamic(true);
    drawGroup->addChild(lengthLabel);
}

void CAxHandleAdapter::HideRunningLength()
{
    if (lengthLabel && drawGroup)
        drawGroup->removeChild(lengthLabel);
    lengthLabel = nullptr;
}

void CAxHandleAdapter::slotMousePressed(float, float)
{
    mouseState = pressed;
}

void CAxHandleAdapter::slotMousePressed(osg::Vec3d, osg::Vec3d)
{
    mouseState = pressed;
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
    if (operation == OperationIdle) {
        editIndex = index;
        operation = OperationMovePoint;
        editText = tr("Move vertex");
    }
    updateAdapter();
}

void CAxHandleAdapter::slotHandleMoved(double, double, double)
{
    operation = OperationMoveHandle;
    editText = tr("Move block");
    if (anchorEditor) {
        anchorEditor->SetMoveAdapter(true);
        anchorEditor->Update();
    }
    updateAdapter();
}

void CAxHandleAdapter::HandleMoved(double dLng, double dLat, double dAlt)
{
    slotHandleMoved(dLng, dLat, dAlt);
}

void CAxHandleAdapter::slotMouseRelease(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos)
{
    const Running self(this);
    if (operation == OperationMovePoint) {
        ResponseHandlePointMoved(lngLatPos, worldCoordPos);
        if (!self.IsWanted())
            return;
        operation = OperationIdle;
        editIndex = -1;
    } else if (operation == OperationMoveHandle) {
        ResponseHandleMoved(worldCoordPos, lngLatPos);
        if (!self.IsWanted())
            return;
        operation = OperationIdle;
        if (anchorEditor)
            anchorEditor->SetMoveAdapter(false);
    }
    mouseState = released;
}

void CAxHandleAdapter::EndMoved(int code)
{
    if (operation != OperationMoveHandle)
        return;
    const Running self(this);
    if (code > 0)
        UpdateCurrentOperate();
    else
        ReturnLastOperate();
    if (!self.IsWanted())
        return;
    if (nameLabel)
        DrawNameLabel();
    operation = OperationIdle;
    if (anchorEditor)
        anchorEditor->SetMoveAdapter(false);
}

void CAxHandleAdapter::ResponseHandlePointMoved(osg::Vec3d, osg::Vec3d) {}
void CAxHandleAdapter::ResponseHandleMoved(osg::Vec3d, osg::Vec3d) {}
void CAxHandleAdapter::ResponseDoubleClickOnPoint(int, osg::Vec3d) {}
void CAxHandleAdapter::ResponseDoubleClickOnBlock() {}

int CAxHandleAdapter::ResponseDoubleClickWhenDraw()
{
    return 0;
}
