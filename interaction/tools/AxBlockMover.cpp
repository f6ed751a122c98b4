#include "interaction/tools/AxBlockMover.h"
#include "interaction/editing/AxEditTitle.h"
#include "interaction/objects/AxVerdict.h"
#include "interaction/objects/CAxHandleAdapter.h"
#include "interaction/tools/AxBlockMove.h"
#include "scene/AxObjectBook.h"
#include "scene/AxScene.h"
#include "scene/AxViewerParts.h"

#include <AxData/CAxBlock.h>

#include <QCoreApplication>
#include <QPointer>
#include <QUndoStack>

#include <algorithm>
#include <utility>

namespace {
// What the end of a move is told when no object was asked.
constexpr int notAsked = -10;

QStringList NamesOfMoved(const QList<QPointer<CAxHandleAdapter>>& objects)
{
    QStringList names;
    for (const auto& object : objects)
        if (const CAxBlock* block = object && object->GetHandleOperation() == OperationMoveHandle
                                        ? object->GetContainedBlock()
                                        : nullptr)
            names += block->GetBlockName();
    return names;
}
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
    if (moveIdle && !takeHold(lngLatPos))
        return false;
    // An object whose move was ended from outside stays where that has put it.
    const auto hasEnded = [](const QPointer<CAxHandleAdapter>& adapter) {
        return !adapter || adapter->IsLeaving() || adapter->GetAnchor().empty() ||
               adapter->GetHandleOperation() != OperationMoveHandle;
    };
    const bool isFirstStep = std::exchange(moveIdle, false);
    if (!isFirstStep)
        moving.erase(std::remove_if(moving.begin(), moving.end(), hasEnded), moving.end());
    if (moving.isEmpty())
        Cancel();
    const QList<QPointer<CAxHandleAdapter>> all = moving;
    for (const QPointer<CAxHandleAdapter>& adapter : all)
        if (adapter && parts)
            step(*adapter, lngLatPos);
    return true;
}

bool AxBlockMover::takeHold(const osg::Vec3d& lngLatPos)
{
    QList<CAxHandleAdapter*> wanted = parts->Objects().Selected();
    isSingle = wanted.isEmpty();
    if (isSingle)
        wanted += parts->Objects().Current();
    moving.clear();
    for (CAxHandleAdapter* adapter : qAsConst(wanted)) {
        if (!AxBlockMove::IsMovable(adapter))
            continue;
        adapter->SetMoveCenterPt(AxBlockMove::Offset(adapter->GetAnchor().front(), lngLatPos));
        moving += adapter;
    }
    return !moving.isEmpty();
}

void AxBlockMover::step(CAxHandleAdapter& adapter, const osg::Vec3d& lngLatPos)
{
    std::vector<osg::Vec3d>& anchors = adapter.GetAnchor();
    const osg::Vec3d delta = AxBlockMove::Delta(anchors.front(), lngLatPos, adapter.GetMoveCenterPt());
    QList<osg::Vec3d> points;
    for (const osg::Vec3d& anchor : anchors)
        points += anchor + delta;
    parts->Scene().GetElevations(points);
    std::copy(points.begin(), points.end(), anchors.begin());
    if (isSingle)
        tellMoved(delta.x(), delta.y(), delta.z());
    else
        adapter.HandleMoved(delta.x(), delta.y(), delta.z());
}

void AxBlockMover::endSeveral()
{
    // A box that an object shows lets the host remove objects meanwhile.
    QList<QPointer<CAxHandleAdapter>> selected;
    for (CAxHandleAdapter* adapter : parts->Objects().Selected())
        selected += adapter;
    // Nor does one stay in its move that is not selected any more.
    for (const auto& adapter : qAsConst(moving))
        if (!selected.contains(adapter))
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
        edits.beginMacro(AxEditTitle(QCoreApplication::translate("CAxEarthManipulator", "Move blocks"),
                                     NamesOfMoved(selected)));
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
    // What a box lets happen meanwhile is no part of this move.
    moveIdle = true;
    if (isSingle)
        releaseSingle();
    else
        endSeveral();
    if (parts)
        parts->Objects().SelectNode(nullptr, false, false);
}
