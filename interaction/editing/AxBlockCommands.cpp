#include "interaction/editing/AxBlockCommands.h"
#include "interaction/editing/AxEditedShape.h"
#include "interaction/editing/AxEditTitle.h"
#include "scene/AxObjectBook.h"

#include <AxData/CAxBlockManager.h>
#include <AxData/CAxControl.h>

#include <QCoreApplication>

AxBlockCommand::AxBlockCommand(AxViewerParts* parts, const QString& id, const QString& text)
    : QUndoCommand(text), viewer(parts), blockID(id)
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
    // Who steps over the stack without asking first changes nothing, and the way back does not either.
    if (!isApplied || !Refusal(true).isEmpty())
        return;
    isApplied = false;
    step(true);
}

void AxBlockCommand::redo()
{
    // The stack's first call comes with the push, and the edit is done by then.
    if (isApplied || !Refusal(false).isEmpty())
        return;
    isApplied = true;
    step(false);
}

QString AxBlockCommand::Refusal(bool) const
{
    const CAxBlock* block = CAxBlockManager::instance().GetBlock(blockID);
    const AxEditedShapeRef shape(viewer ? viewer->Objects().Find(blockID) : nullptr);
    if (!block || !shape || (!shape->IsLock() && !shape->HasRoutes()))
        return {};
    return (shape->IsLock()
                ? QCoreApplication::translate("AxBlockOperations", "%1 is locked.")
                : QCoreApplication::translate("AxBlockOperations",
                                              "%1 has routes on the map, which would not fit any more."))
        .arg(AxNameInTitle(block->GetBlockName()));
}

AxAnchorCommand::AxAnchorCommand(AxViewerParts* parts, const QString& id, const QList<QPointF>& before,
                                 const QList<QPointF>& after, const QString& text)
    : AxBlockCommand(parts, id, text), ringBefore(before), ringAfter(after)
{
}

void AxAnchorCommand::Apply(bool before)
{
    CAxBlockManager::instance().GetBlock(blockID)->SetAnchor(before ? ringBefore : ringAfter);
    if (const AxEditedShapeRef shape(viewer->Objects().Find(blockID)); shape)
        shape->ReturnLastOperate();
}

AxWidthCommand::AxWidthCommand(AxViewerParts* parts, const QString& id, const Widths& before,
                               const Widths& after, const QString& text)
    : AxBlockCommand(parts, id, text), widthsBefore(before), widthsAfter(after)
{
}

void AxWidthCommand::Apply(bool before)
{
    const Widths& widths = before ? widthsBefore : widthsAfter;
    CAxBlockManager::instance().GetBlock(blockID)->GetTaskPara()->SetBandingOffset(widths.left, widths.right);
    if (const AxEditedShapeRef shape(viewer->Objects().Find(blockID)); shape)
        shape->ReturnLastOperate();
}

AxNameCommand::AxNameCommand(AxViewerParts* parts, const QString& id, const QString& before,
                             const QString& after, const QString& text)
    : AxBlockCommand(parts, id, text), nameBefore(before), nameAfter(after)
{
}

QString AxNameCommand::Refusal(bool) const
{
    return {};
}

void AxNameCommand::Apply(bool before)
{
    const QString& name = before ? nameBefore : nameAfter;
    if (CAxBlockManager::instance()._exist(name)) {
        setObsolete(true); // another block has it by now
        return;
    }
    CAxBlockManager::instance().GetBlock(blockID)->SetBlockName(name);
    if (const AxEditedShapeRef shape(viewer->Objects().Find(blockID)); shape)
        shape->DrawNameLabel();
}
