#include "interaction/tools/AxDrawTool.h"
#include "interaction/objects/CAxHandleAdapter.h"
#include "scene/AxObjectBook.h"
#include "scene/AxToolInHand.h"
#include "scene/AxViewerParts.h"

void AxDrawTool::Deactivate()
{
    CAxHandleAdapter* current = parts.Objects().Current();
    if (current && current->GetHandleOperation() == OperationDrawing)
        current->EndHandle();
}

void AxDrawTool::Move(AxMouseStep& step)
{
    if (row.over != AxToolOver::Ground)
        AxTool::Move(step);
    if (!step.HasViewer() || row.start != AxDrawStart::Move || !WantsShape())
        return;
    const CAxHandleAdapter* before = parts.Objects().Current();
    parts.Tools().BeginDrawShape();
    if (!step.HasViewer())
        return;
    // The move was told before there was an object to hear it.
    CAxHandleAdapter* begun = parts.Objects().Current();
    if (begun && begun != before && begun->GetHandleOperation() == OperationDrawing)
        begun->slotMoving(step.lngLat, step.world);
}

void AxDrawTool::Press(AxMouseStep& step)
{
    if (row.start == AxDrawStart::Push)
        parts.Tools().BeginDrawShape();
    else
        AxTool::Press(step);
}

bool AxDrawTool::Drag(AxMouseStep&)
{
    return row.start == AxDrawStart::Push;
}

bool AxDrawTool::Click(AxMouseStep& step)
{
    if (row.start != AxDrawStart::Click)
        return AxTool::Click(step);
    parts.Tools().BeginDrawShape();
    return false;
}

void AxVideoTool::Activate()
{
    parts.Objects().SetCurrent(nullptr);
}

bool AxVideoTool::WantsShape() const
{
    const CAxHandleAdapter* current = parts.Objects().Current();
    return !current || current->GetBlockType() != CAxBlock::VideoBlock;
}
