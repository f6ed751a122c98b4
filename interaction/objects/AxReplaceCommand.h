#pragma once
#include "interaction/editing/AxRefusableStep.h"
#include "interaction/objects/AxDeleteCommand.h"

/// Blocks that take the place of others, on the viewer's undo stack; either may be none, as where a block has
/// been drawn. It keeps the records of those that are away. Where one that would go is locked, or would take
/// tasks along, nothing changes.
class AxReplaceCommand : public QUndoCommand, public AxRefusableStep
{
public:
    explicit AxReplaceCommand(AxObjects& book);

    /// For whoever makes the command, before it is pushed: does it, and returns the IDs of the new blocks.
    /// When `goOn` says no to how many of them are there, all is as it was before, and the command is of no
    /// use any more.
    QStringList Replace(const QStringList& ids, std::vector<std::unique_ptr<CAxBlock>> records,
                        const std::function<bool(int done)>& goOn);
    /// For the same: a block that is there already is the one that has come.
    void Brought(const QString& id);

    void undo() override;
    void redo() override;
    QString Refusal(bool back) const override;

private:
    void dropIfVain();

    const QPointer<AxObjects> objects;
    AxDeleteCommand former;
    AxDeleteCommand latter;
    bool isDone = true;
};
