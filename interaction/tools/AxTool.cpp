#include "interaction/tools/AxTool.h"
#include "scene/AxObjectBook.h"
#include "scene/AxToolInHand.h"
#include "scene/AxViewerParts.h"

void AxTool::Move(AxMouseStep& step)
{
    step.HoverDrawable();
}

void AxTool::Press(AxMouseStep& step)
{
    step.PressDrawable();
}

bool AxTool::Drag(AxMouseStep&)
{
    return false;
}

bool AxTool::Release(AxMouseStep&)
{
    return false;
}

bool AxTool::Click(AxMouseStep& step)
{
    const bool multi = parts.Tools().IsMultiSelect();
    step.ClickModel();
    if (!step.HasViewer() || step.ClickDrawable())
        return false;
    const osg::Node* object = step.Object();
    const bool isBeside = !object;
    parts.Objects().SelectNode(object, multi, multi);
    if (isBeside && step.HasViewer())
        parts.Objects().ClearSelected();
    return false;
}

void AxTool::Pick(const osg::Vec3d&) {}
