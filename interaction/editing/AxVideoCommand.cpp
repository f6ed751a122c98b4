#include "interaction/editing/AxVideoCommand.h"
#include "interaction/editing/AxEditedShape.h"
#include "scene/AxObjectBook.h"

#include <AxData/CAxBlockManager.h>

AxVideoCommand::AxVideoCommand(AxViewerParts* parts, const QString& id, const State& before,
                               const State& after, const QString& text)
    : AxBlockCommand(parts, id, text), stateBefore(before), stateAfter(after)
{
}

void AxVideoCommand::Write(CAxBlock* block, const State& state)
{
    if (!block)
        return;
    const QString id = block->GetBlockID();
    block->SetVideoRadius(state.radius);
    // Who hears of the first change may delete the record.
    if (CAxBlock* still = CAxBlockManager::instance().GetBlock(id))
        still->SetAnchor(state.centre);
}

void AxVideoCommand::Apply(bool before)
{
    Write(CAxBlockManager::instance().GetBlock(blockID), before ? stateBefore : stateAfter);
    if (const AxEditedShapeRef shape(viewer ? viewer->Objects().Find(blockID) : nullptr); shape)
        shape->ReturnLastOperate();
}
