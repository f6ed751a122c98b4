#pragma once
#include <AxData/CAxBlock.h>

#include <QPointer>
#include <QStringList>
#include <QUndoCommand>

#include <functional>
#include <memory>
#include <vector>

class AxObjects;
class CAxTaskPolygon;

/**
 * A deletion of blocks, on the viewer's undo stack. While they are deleted it keeps their records, with all
 * tasks, and how they were shown; the routes of the tasks stay with whoever made them, and those that are
 * still there join the block again.
 */
class AxDeleteCommand : public QUndoCommand
{
public:
    explicit AxDeleteCommand(AxObjects& book);
    ~AxDeleteCommand() override;

    /// Deletes those of the blocks that may be deleted, and returns their IDs. For whoever makes the command,
    /// before it is pushed.
    QStringList Delete(const QStringList& ids);

    /// Takes the record of a block that is to come with undo(), as if it had been deleted.
    void Hold(std::unique_ptr<CAxBlock> record);
    /// The same of a block that has come already: redo() deletes it.
    void Brought(const QString& id);
    /// As undo(), asked after each block, with how many are there, whether to go on. False when it was not
    /// to: redo() then deletes what has come, and the others are gone.
    bool BringBack(const std::function<bool(int done)>& goOn);
    /// What the last undo() has brought back.
    const QStringList& Restored() const { return restored; }

    void undo() override;
    void redo() override;

private:
    struct Route
    {
        CAxTaskPolygon* route;
        QPointer<QObject> alive;
    };
    struct Deleted
    {
        std::unique_ptr<CAxBlock> record;
        QList<Route> routes;
        bool isDrawn = false;
        bool isVisible = true;
        bool isCurrent = false;
    };
    bool deleteBlock(const QString& id);
    void restore(Deleted& block);

    const QPointer<AxObjects> objects;
    std::vector<Deleted> deleted;
    QStringList restored; ///< what a redo deletes
    bool isApplied = true;
};
