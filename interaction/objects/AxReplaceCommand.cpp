#include "interaction/objects/AxReplaceCommand.h"
#include "interaction/editing/AxEditTitle.h"
#include "interaction/objects/AxBlockTasks.h"
#include "interaction/objects/AxObjects.h"

#include <AxData/CAxBlockManager.h>

#include <QCoreApplication>

#include <utility>

AxReplaceCommand::AxReplaceCommand(AxObjects& book) : objects(&book), former(book), latter(book) {}

QStringList AxReplaceCommand::Replace(const QStringList& ids, std::vector<std::unique_ptr<CAxBlock>> records,
                                      const std::function<bool(int done)>& goOn)
{
    former.Delete(ids);
    for (std::unique_ptr<CAxBlock>& record : records)
        latter.Hold(std::move(record));
    if (latter.BringBack(goOn))
        return latter.Restored();
    latter.redo();
    former.undo();
    setObsolete(true);
    return {};
}

void AxReplaceCommand::Brought(const QString& id)
{
    latter.Brought(id);
}

// Where somebody else has deleted what there was, no step is left.
void AxReplaceCommand::dropIfVain()
{
    if (former.isObsolete() && latter.isObsolete())
        setObsolete(true);
}

void AxReplaceCommand::undo()
{
    // Who steps over the stack without asking first changes nothing, and the way back does not either.
    if (!isDone || !Refusal(true).isEmpty())
        return;
    isDone = false;
    latter.redo();
    former.undo();
    dropIfVain();
}

void AxReplaceCommand::redo()
{
    // The stack's first call comes with the push.
    if (isDone || !Refusal(false).isEmpty())
        return;
    isDone = true;
    former.redo();
    latter.undo();
    dropIfVain();
}

QString AxReplaceCommand::Refusal(bool back) const
{
    for (const QString& id : back ? latter.Restored() : former.Restored()) {
        const CAxHandleAdapter* object = objects ? objects->Find(id) : nullptr;
        const CAxBlock* block = CAxBlockManager::instance().GetBlock(id);
        if (!block)
            continue;
        const QString name = AxNameInTitle(block->GetBlockName());
        if (object && object->IsLock())
            return QCoreApplication::translate("AxBlockOperations", "%1 is locked.").arg(name);
        // A step forward keeps the tasks with the record.
        if (back && (object ? AxHasTasks(*object) : !block->GetMissionList().isEmpty()))
            return QCoreApplication::translate("AxBlockOperations", "%1 has tasks, which would go with it.")
                .arg(name);
    }
    return {};
}
