#include "interaction/tools/AxToolBox.h"
#include "interaction/editing/CAxHandleAdapterEditor.h"
#include "interaction/objects/AxObjects.h"
#include "interaction/objects/CAxHandleAdapter.h"
#include "interaction/tools/AxDrawTool.h"
#include "interaction/tools/AxPlaceTool.h"
#include "interaction/tools/AxSelectTool.h"

namespace {
constexpr int appTypeOne = 1;
} // namespace

AxToolBox::AxToolBox(AxViewerParts& viewer, AxObjects& book) : parts(viewer), objects(book)
{
    for (std::size_t i = 0; i < tools.size(); ++i)
        tools[i] = make(AxTools[i]);
}

AxToolBox::~AxToolBox() = default;

// Which class a tool is: a new one is one more line.
std::unique_ptr<AxTool> AxToolBox::make(const AxToolRow& row)
{
    switch (row.tool) {
    case ToolSelect:
        return std::make_unique<AxSelectTool>(parts);
    case ToolVideoArea:
        return std::make_unique<AxVideoTool>(parts, row);
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
    if (row.kind == ToolKindDraw)
        return std::make_unique<AxDrawTool>(parts, row);
    return std::make_unique<AxTool>(parts);
}

void AxToolBox::TakeUp(EToolType wanted)
{
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
    tool = wanted;
    InHand().Activate();
}

CAxHandleAdapter* AxToolBox::CreateShape()
{
    return objects.BeginDrawing(tool);
}

void AxToolBox::BeginDrawShape()
{
    if (!mayPick)
        return;
    const CAxHandleAdapter* current = objects.Current();
    const CAxHandleAdapterEditor* editor = current ? current->GetAnchorEditor() : nullptr;
    if (current && (current->GetHandleOperation() == OperationDrawing || (editor && editor->GetDrag())))
        return;
    CreateShape();
}

bool AxToolBox::IsBusy() const
{
    const CAxHandleAdapter* current = objects.Current();
    const CAxHandleAdapterEditor* editor = current ? current->GetAnchorEditor() : nullptr;
    return current && (current->GetHandleOperation() != OperationIdle || (editor && editor->GetDrag()));
}
