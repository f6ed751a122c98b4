#include "interaction/tools/AxTool.h"
#include "interaction/marks/CAxOsgDrawPointSet.h"
#include "scene/AxObjectBook.h"
#include "scene/AxToolInHand.h"
#include "scene/AxViewerParts.h"

#include <osgGA/GUIEventAdapter>

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
    // A mark joins the selected objects, or leaves them, by itself.
    if ((multi || (step.Modifiers() & osgGA::GUIEventAdapter::MODKEY_CTRL)) &&
        CAxOsgDrawPointSet::UnderMouse(parts))
        return false;
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
