#include "interaction/tools/AxBlockMover.h"
#include "interaction/objects/AxVerdict.h"
#include "interaction/objects/CAxHandleAdapter.h"
#include "interaction/tools/AxBlockMove.h"
#include "scene/AxObjectBook.h"
#include "scene/AxScene.h"
#include "scene/AxViewerParts.h"

#include <QCoreApplication>
#include <QPointer>
#include <QUndoStack>

#include <algorithm>

namespace {
// What the end of a move is told when no object was asked.
constexpr int notAsked = -10;
} // namespace

void AxBlockMover::Cancel()
{
    moveCancelled = !moveIdle;
    moveIdle = true;
}

bool AxBlockMover::ProcessMoveGeom(const osg::Vec3d& lngLatPos)
{
    if (moveCancelled)
        return true;
    const QList<CAxHandleAdapter*> selected = parts->Objects().Selected();
    return selected.isEmpty() ? MoveSingleBlock(lngLatPos) : MoveMultiBlock(lngLatPos, selected);
}

osg::Vec3d AxBlockMover::moveAdapter(CAxHandleAdapter& adapter, const osg::Vec3d& lngLatPos, bool isFirstStep)
{
    std::vector<osg::Vec3d>& anchors = adapter.GetAnchor();
    if (isFirstStep)
        adapter.SetMoveCenterPt(AxBlockMove::Offset(anchors.front(), lngLatPos));
    const osg::Vec3d delta = AxBlockMove::Delta(anchors.front(), lngLatPos, adapter.GetMoveCenterPt());
    QList<osg::Vec3d> points;
    for (const osg::Vec3d& anchor : anchors)
        points += anchor + delta;
    parts->Scene().GetElevations(points);
    std::copy(points.begin(), points.end(), anchors.begin());
    return delta;
}

bool AxBlockMover::MoveSingleBlock(const osg::Vec3d& lngLatPos)
{
    CAxHandleAdapter* adapter = parts->Objects().Current();
    if (!AxBlockMove::IsMovable(adapter))
        return false;
    const bool isFirstStep = moveIdle;
    moveIdle = false;
    const osg::Vec3d delta = moveAdapter(*adapter, lngLatPos, isFirstStep);
    tellMoved(delta.x(), delta.y(), delta.z());
    return true;
}

bool AxBlockMover::MoveMultiBlock(const osg::Vec3d& lngLatPos, const QList<CAxHandleAdapter*>& adapters)
{
    QList<CAxHandleAdapter*> movable;
    std::copy_if(adapters.begin(), adapters.end(), std::back_inserter(movable), AxBlockMove::IsMovable);
    if (movable.isEmpty())
        return false;
    const bool isFirstStep = moveIdle;
    moveIdle = false;
    for (CAxHandleAdapter* adapter : movable) {
        const osg::Vec3d delta = moveAdapter(*adapter, lngLatPos, isFirstStep);
        adapter->HandleMoved(delta.x(), delta.y(), delta.z());
    }
    return true;
}

void AxBlockMover::endSeveral()
{
    // A box that an object shows lets the host remove objects meanwhile.
    QList<QPointer<CAxHandleAdapter>> selected;
    for (CAxHandleAdapter* adapter : parts->Objects().Selected())
        selected += adapter;
    // One object that does not fit where it is takes all of them back.
    int code = notAsked;
    for (const auto& adapter : qAsConst(selected)) {
        code = adapter ? adapter->CheckGeometry() : code;
        if (AxOutcomeOf(code) != AxOutcome::Accepted)
            break;
    }
    if (!parts)
        return;
    // One move is one step of the undo stack.
    const bool isAccepted = AxOutcomeOf(code) == AxOutcome::Accepted;
    QUndoStack& edits = parts->Objects().Edits();
    if (isAccepted)
        edits.beginMacro(QCoreApplication::translate("CAxEarthManipulator", "Move blocks"));
    for (const auto& adapter : qAsConst(selected))
        if (adapter)
            adapter->EndMoved(code);
    if (!parts)
        return;
    if (isAccepted)
        edits.endMacro();
    parts->Objects().ClearSelected();
}

void AxBlockMover::End(const std::function<void()>& releaseSingle)
{
    if (parts->Objects().Selected().isEmpty())
        releaseSingle();
    else
        endSeveral();
    if (parts)
        parts->Objects().SelectNode(nullptr, false, false);
    moveIdle = true;
}
