// Moving the current object, or all selected ones, with the mouse.
#include "interaction/AxBlockMove.h"
#include "interaction/CAxEarthManipulator.h"
#include "interaction/CAxHandleAdapter.h"
#include "viewer/CAxEarthViewer.h"

#include <QPointer>
#include <QUndoStack>

#include <algorithm>

namespace {
// What the end of a move is told when no object was asked.
constexpr int notAsked = -10;
} // namespace

void CAxEarthManipulator::CancelBlockMove()
{
    moveCancelled = !moveIdle;
    moveIdle = true;
}

bool CAxEarthManipulator::ProcessMoveGeom(const osg::Vec3d& lngLatPos)
{
    if (moveCancelled)
        return true;
    const QList<CAxHandleAdapter*> selected = viewer->GetMultiSelectAdapter();
    return selected.isEmpty() ? MoveSingleBlock(lngLatPos) : MoveMultiBlock(lngLatPos, selected);
}

osg::Vec3d CAxEarthManipulator::moveAdapter(CAxHandleAdapter& adapter, const osg::Vec3d& lngLatPos,
                                            bool isFirstStep)
{
    std::vector<osg::Vec3d>& anchors = adapter.GetAnchor();
    if (isFirstStep)
        adapter.SetMoveCenterPt(AxBlockMove::Offset(anchors.front(), lngLatPos));
    const osg::Vec3d delta = AxBlockMove::Delta(anchors.front(), lngLatPos, adapter.GetMoveCenterPt());
    QList<osg::Vec3d> points;
    for (const osg::Vec3d& anchor : anchors)
        points += anchor + delta;
    GetElevations(points, false);
    std::copy(points.begin(), points.end(), anchors.begin());
    return delta;
}

bool CAxEarthManipulator::MoveSingleBlock(const osg::Vec3d& lngLatPos)
{
    CAxHandleAdapter* adapter = viewer->GetCurHandleAdapter();
    if (!AxBlockMove::IsMovable(adapter))
        return false;
    const bool isFirstStep = moveIdle;
    moveIdle = false;
    const osg::Vec3d delta = moveAdapter(*adapter, lngLatPos, isFirstStep);
    emit ObjectMoved(delta.x(), delta.y(), delta.z());
    return true;
}

bool CAxEarthManipulator::MoveMultiBlock(const osg::Vec3d& lngLatPos,
                                         const QList<CAxHandleAdapter*>& adapters)
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

void CAxEarthManipulator::endBlockMove(const Pick& pick)
{
    // A box that an object shows lets the host remove objects meanwhile.
    QList<QPointer<CAxHandleAdapter>> selected;
    for (CAxHandleAdapter* adapter : viewer->GetMultiSelectAdapter())
        selected += adapter;
    if (selected.isEmpty()) {
        emit mouseLeftBtnRelease(pick.LngLatPos(), pick.world);
    } else {
        // One object that does not fit where it is takes all of them back.
        int code = notAsked;
        for (const auto& adapter : qAsConst(selected)) {
            code = adapter ? adapter->CheckGeometry() : code;
            if (code < 1)
                break;
        }
        // One move is one step of the undo stack.
        QUndoStack* edits = viewer->GetUndoStack();
        if (code > 0)
            edits->beginMacro(tr("Move blocks"));
        for (const auto& adapter : qAsConst(selected))
            if (adapter)
                adapter->EndMoved(code);
        if (code > 0)
            edits->endMacro();
        viewer->ClearMultiSelectAdapter();
    }
    viewer->SetNodeSelected(nullptr, false, false);
    moveIdle = true;
}
