#include "interaction/objects/AxReplaceCommand.h"

#include <utility>

AxReplaceCommand::AxReplaceCommand(AxObjects& book) : former(book), latter(book) {}

QStringList AxReplaceCommand::Replace(const QStringList& ids, std::vector<std::unique_ptr<CAxBlock>> records)
{
    former.Delete(ids);
    for (std::unique_ptr<CAxBlock>& record : records)
        latter.Hold(std::move(record));
    latter.undo();
    return latter.Restored();
}

void AxReplaceCommand::undo()
{
    isApplied = false;
    latter.redo();
    former.undo();
}

void AxReplaceCommand::redo()
{
    // The stack's first call comes with the push.
    if (std::exchange(isApplied, true))
        return;
    former.redo();
    latter.undo();
}
