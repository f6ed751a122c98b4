#include "interaction/tools/AxSelectTool.h"
#include "interaction/tools/AxBlockMover.h"
#include "scene/AxObjectBook.h"
#include "scene/AxToolInHand.h"
#include "scene/AxViewerParts.h"
#include "scene/base/AxExactPlace.h"

void AxSelectTool::Press(AxMouseStep& step)
{
    if (parts.Objects().Selected().isEmpty() && !parts.Tools().IsMultiSelect())
        parts.Objects().SelectNode(step.Object(), false, true);
}

bool AxSelectTool::Drag(AxMouseStep& step)
{
    // Over space a block that is being moved waits where it is.
    return step.IsOverGround() ? step.Mover().ProcessMoveGeom(AxExactPlace(step.lngLat, step.world))
                               : step.Mover().OwnsDrag();
}

bool AxSelectTool::Click(AxMouseStep& step)
{
    if (parts.Tools().IsMultiSelect()) {
        parts.Objects().SelectNode(step.Object(), true, true);
    } else {
        parts.Objects().ClearSelected();
        if (step.HasViewer())
            parts.Objects().SelectNode(nullptr, false, true);
    }
    return true;
}
