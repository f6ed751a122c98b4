#include "interaction/tools/AxSelectTool.h"
#include "interaction/marks/CAxOsgDrawPointSet.h"
#include "interaction/objects/CAxHandleAdapter.h"
#include "interaction/tools/AxBlockMover.h"
#include "interaction/tools/AxRubberFrame.h"
#include "scene/AxObjectBook.h"
#include "scene/AxScene.h"
#include "scene/AxToolInHand.h"
#include "scene/AxViewerParts.h"
#include "scene/base/AxExactPlace.h"
#include "scene/shape/AxOutlinesInFrame.h"

#include <osgGA/GUIEventAdapter>
#include <osgViewer/Viewer>

#include <QPointer>

#include <utility>

AxSelectTool::AxSelectTool(AxViewerParts& viewer) : AxTool(viewer) {}

AxSelectTool::~AxSelectTool() = default;

void AxSelectTool::Deactivate()
{
    endFrame(Frame::None);
}

void AxSelectTool::Move(AxMouseStep& step)
{
    // No button is held: the release went elsewhere.
    endFrame(Frame::None);
    AxTool::Move(step);
}

void AxSelectTool::Press(AxMouseStep& step)
{
    endFrame(Frame::None);
    if (mayBeginFrame(step)) {
        frame = Frame::Drawn;
        begin = step.InPicture();
        return;
    }
    if (parts.Objects().Selected().isEmpty() && !parts.Tools().IsMultiSelect())
        parts.Objects().SelectNode(step.Object(), false, true);
}

bool AxSelectTool::mayBeginFrame(AxMouseStep& step) const
{
    using Event = osgGA::GUIEventAdapter;
    const bool isWanted =
        parts.Tools().IsMultiSelect() || (step.Modifiers() & (Event::MODKEY_CTRL | Event::MODKEY_SHIFT)) != 0;
    return isWanted && parts.Tools().MayPick() && !parts.Tools().IsBusy() && !step.Object();
}

void AxSelectTool::endFrame(Frame now)
{
    frame = now;
    drawn.reset();
}

bool AxSelectTool::Drag(AxMouseStep& step)
{
    if (frame == Frame::Drawn) {
        if (!drawn)
            drawn = std::make_unique<AxRubberFrame>(parts.Widget());
        drawn->Show(begin, step.InPicture());
    }
    if (frame != Frame::None)
        return true;
    // Over space a block that is being moved waits where it is.
    return step.IsOverGround() ? step.Mover().ProcessMoveGeom(AxExactPlace(step.lngLat, step.world))
                               : step.Mover().OwnsDrag();
}

bool AxSelectTool::Release(AxMouseStep& step)
{
    const Frame was = frame;
    endFrame(Frame::None);
    if (was == Frame::Drawn)
        selectIn(step.InPicture());
    return was != Frame::None;
}

void AxSelectTool::selectIn(const osg::Vec2d& corner)
{
    std::vector<CAxHandleAdapter*> seen;
    std::vector<AxOutlineOnGlobe> outlines;
    for (CAxHandleAdapter* object : parts.Objects().All())
        if (object->IsVisible()) {
            seen.push_back(object);
            outlines.push_back({object->Outline(), object->IsOutlineClosed()});
        }
    const osg::Camera& camera = *parts.Scene().View()->getCamera();
    const osg::Matrixd toClip = camera.getViewMatrix() * camera.getProjectionMatrix();
    const osg::Vec3d eye = camera.getInverseViewMatrix().getTrans();
    const AxPictureFrame inFrame = AxPictureFrame::Between(begin, corner);
    // Those that are selected stay so when a block becomes the current object.
    std::vector<std::pair<QPointer<CAxOsgDrawPointSet>, QStringList>> marks;
    for (CAxHandleAdapter* object : qAsConst(seen))
        if (auto* set = qobject_cast<CAxOsgDrawPointSet*>(object))
            marks.emplace_back(set, set->SelectedMarks() + set->MarksIn(toClip, eye, inFrame));
    const std::vector<std::size_t> met = AxOutlinesInFrame(outlines, toClip, eye, inFrame);
    if (!met.empty()) {
        QList<CAxHandleAdapter*> wanted = parts.Objects().Selected();
        CAxHandleAdapter* current = parts.Objects().Current();
        if (wanted.isEmpty() && current && current->GetBlockType() != CAxBlock::MarkPointBlock)
            wanted += current;
        for (const std::size_t i : met)
            wanted += seen[i];
        parts.Objects().SelectSeveral(wanted);
    }
    for (const auto& [set, ids] : marks)
        if (set)
            set->SelectMarks(ids);
}

bool AxSelectTool::GiveUp()
{
    const bool isDrawn = frame == Frame::Drawn;
    if (isDrawn)
        endFrame(Frame::GivenUp);
    return isDrawn;
}

bool AxSelectTool::Click(AxMouseStep& step)
{
    endFrame(Frame::None);
    if (parts.Tools().IsMultiSelect()) {
        parts.Objects().SelectNode(step.Object(), true, true);
    } else {
        parts.Objects().ClearSelected();
        if (step.HasViewer())
            parts.Objects().SelectNode(nullptr, false, true);
    }
    return true;
}
