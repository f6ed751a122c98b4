#include "interaction/tools/AxToolBox.h"
#include "interaction/editing/CAxHandleAdapterEditor.h"
#include "interaction/marks/CAxOsgDrawPointSet.h"
#include "interaction/objects/AxObjects.h"
#include "interaction/objects/CAxHandleAdapter.h"
#include "interaction/tools/AxDrawTool.h"
#include "interaction/tools/AxMarkTool.h"
#include "interaction/tools/AxPlaceTool.h"
#include "interaction/tools/AxSelectTool.h"
#include "scene/AxViewerParts.h"

#include <osgGA/GUIEventAdapter>

#include <QCoreApplication>
#include <QGraphicsView>
#include <QPointer>
#include <QStatusTipEvent>

namespace {
constexpr int appTypeOne = 1;
} // namespace

AxToolBox::AxToolBox(AxViewerParts& viewer, AxObjects& book) : parts(viewer), objects(book)
{
    for (std::size_t i = 0; i < tools.size(); ++i)
        tools[i] = make(AxTools[i]);
    objects.Factories().SetOwn(ToolMarkPoint, [](CAxEarthViewer* map, QObject* parent) -> CAxHandleAdapter* {
        auto* marks = new CAxOsgDrawPointSet(map, parent);
        // The first one is the viewer's.
        if (!CAxOsgDrawPointSet::FindOfViewer(map))
            marks->SetHandleID(CAxOsgDrawPointSet::IDOfViewer());
        return marks;
    });
}

AxToolBox::~AxToolBox() = default;

// The tools that do something of their own; the rows tell the rest.
std::unique_ptr<AxTool> AxToolBox::make(const AxToolRow& row)
{
    switch (row.tool) {
    case ToolVideoArea:
        return std::make_unique<AxVideoTool>(parts, row);
    case ToolMarkPoint:
        return std::make_unique<AxMarkTool>(parts, row);
    case ToolAddPoint:
        return std::make_unique<AxAddPointTool>(parts);
    case ToolLandingPosition:
    case ToolInterestPoint:
        return std::make_unique<AxPlaceTool>(parts,
                                             [this, tool = row.tool](double lon, double lat, double alt) {
                                                 emit placePicked(tool, lon, lat, alt);
                                             });
    default:
        break;
    }
    if (row.over == AxToolOver::Objects)
        return std::make_unique<AxSelectTool>(parts);
    if (row.kind == ToolKindDraw)
        return std::make_unique<AxDrawTool>(parts, row);
    if (row.over == AxToolOver::Ground)
        return std::make_unique<AxGroundTool>(parts);
    return std::make_unique<AxTool>(parts);
}

void AxToolBox::TakeUp(EToolType wanted)
{
    if (asideTool && wanted != ToolNavigate && wanted != ToolMagnifier) {
        const QPointer<AxToolBox> self(this);
        ContinueDrawing();
        if (!self)
            return;
    }
    if (wanted == tool)
        return;
    const AxToolRow& from = AxToolRowOf(tool);
    const AxToolRow& to = AxToolRowOf(wanted);
    const bool leavesObject = !from.isOnBar && to.isOnBar && appType == appTypeOne;
    // Nobody would hear of the end of a drag any more.
    if (leavesObject || to.startsAnew || tools[static_cast<std::size_t>(to.tool)]->LeavesCurrent())
        objects.GiveUpEdit();
    InHand().Deactivate();
    if (leavesObject)
        objects.SetCurrent(nullptr);
    if (from.kind != ToolKindDraw && to.startsAnew)
        objects.LeaveSelection();
    if (from.isOnBar && !to.isOnBar)
        emit barLeft();
    if (tool == ToolLandingPosition)
        emit landingLeft();
    tool = wanted;
    isMagnifierOfKey = false;
    if (to.isOnBar)
        emit barTaken(wanted);
    InHand().Activate();
    emit taken(tool);
}

void AxToolBox::HoldMagnifier()
{
    // A held key repeats, which ends no rectangle that is being drawn.
    if (tool == ToolMagnifier && IsBusy())
        return;
    const QPointer<AxToolBox> self(this);
    if (putAside())
        tell(tr("The drawing goes on when Shift is let go."));
    if (self)
        TakeUp(ToolNavigate);
    if (self)
        TakeUp(ToolMagnifier);
    if (self)
        isMagnifierOfKey = tool == ToolMagnifier;
}

void AxToolBox::LetGoOfMagnifier()
{
    const QPointer<AxToolBox> self(this);
    // The key may have been pressed elsewhere, or another tool taken up while it was held.
    putAside();
    if (self)
        TakeUp(ToolNavigate);
}

bool AxToolBox::putAside()
{
    const QPointer<AxToolBox> self(this);
    const EToolType drawnWith = tool;
    if (drawnWith == ToolMagnifier || !objects.PutAside() || !self)
        return false;
    asideTool = drawnWith;
    return true;
}

void AxToolBox::ContinueDrawing()
{
    if (!asideTool) {
        if (isMagnifierOfKey && !IsBusy())
            TakeUp(ToolNavigate);
        return;
    }
    const EToolType drawnWith = *asideTool;
    asideTool.reset();
    const QPointer<AxToolBox> self(this);
    tell({});
    if (self)
        TakeUp(ToolNavigate);
    if (self && objects.Aside())
        TakeUp(drawnWith);
    if (self)
        objects.TakeAgain();
}

void AxToolBox::tell(const QString& text)
{
    QStatusTipEvent told(text);
    QCoreApplication::sendEvent(parts.Widget(), &told);
}

CAxHandleAdapter* AxToolBox::CreateShape()
{
    return objects.BeginDrawing(tool);
}

void AxToolBox::BeginDrawShape()
{
    const CAxHandleAdapter* current = objects.Current();
    const bool isDrawing = current && current->GetHandleOperation() == OperationDrawing;
    if (mayPick && !isDrawing && !IsHandleHeld())
        CreateShape();
}

bool AxToolBox::IsMultiSelect() const
{
    // The keys are heard only while the map has the keyboard, the mouse always brings them along.
    return multiSelect || (appType == appTypeOne && (mouseModifiers & osgGA::GUIEventAdapter::MODKEY_CTRL));
}

bool AxToolBox::IsHandleHeld() const
{
    const CAxHandleAdapter* current = objects.Current();
    return current && current->GetAnchorEditor() && current->GetAnchorEditor()->GetDrag();
}

bool AxToolBox::IsNearCurrent(const osg::Vec3d& lngLatPos) const
{
    return AxPlaceTool::CheckPickPositionValid(parts, lngLatPos);
}

bool AxToolBox::IsBusy() const
{
    const CAxHandleAdapter* current = objects.Current();
    return objects.Aside() || (current && current->GetHandleOperation() != OperationIdle) || IsHandleHeld();
}
