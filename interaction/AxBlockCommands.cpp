#include "interaction/AxBlockCommands.h"
#include "interaction/CAxHandleAdapter.h"
#include "viewer/CAxEarthViewer.h"

#include <AxData/CAxBlockManager.h>
#include <AxData/CAxControl.h>

AxBlockCommand::AxBlockCommand(CAxEarthViewer* earthViewer, const QString& id, const QString& text)
    : QUndoCommand(text), viewer(earthViewer), blockID(id)
{
}

void AxBlockCommand::step(bool before)
{
    if (!viewer || !CAxBlockManager::instance().GetBlock(blockID)) {
        setObsolete(true);
        return;
    }
    Apply(before);
    if (!isObsolete())
        CAxControl::GetInstance()->SetProjectModified(true);
}

void AxBlockCommand::undo()
{
    isApplied = false;
    step(true);
}

void AxBlockCommand::redo()
{
    // The stack's first call comes with the push, and the edit is done by then.
    if (!std::exchange(isApplied, true))
        step(false);
}

AxAnchorCommand::AxAnchorCommand(CAxEarthViewer* earthViewer, const QString& id, const QList<QPointF>& before,
                                 const QList<QPointF>& after, const QString& text)
    : AxBlockCommand(earthViewer, id, text), ringBefore(before), ringAfter(after)
{
}

void AxAnchorCommand::Apply(bool before)
{
    CAxBlockManager::instance().GetBlock(blockID)->SetAnchor(before ? ringBefore : ringAfter);
    if (CAxHandleAdapter* adapter = viewer->FindExistNode(blockID))
        adapter->ReturnLastOperate();
}

AxNameCommand::AxNameCommand(CAxEarthViewer* earthViewer, const QString& id, const QString& before,
                             const QString& after, const QString& text)
    : AxBlockCommand(earthViewer, id, text), nameBefore(before), nameAfter(after)
{
}

void AxNameCommand::Apply(bool before)
{
    const QString& name = before ? nameBefore : nameAfter;
    if (CAxBlockManager::instance()._exist(name)) {
        setObsolete(true); // another block has it by now
        return;
    }
    CAxBlockManager::instance().GetBlock(blockID)->SetBlockName(name);
    if (CAxHandleAdapter* adapter = viewer->FindExistNode(blockID))
        adapter->DrawNameLabel();
}
