#pragma once
#include <AxData/project/AxProject.h>

#include <QPointer>
#include <QUndoCommand>
#include <QVector>

#include <optional>

class AxViewerParts;

/// What becomes of one mark point.
struct AxMarkChange
{
    int index = 0;                       ///< in the set's order
    std::optional<AxProjectMark> before; ///< nothing: it is new
    std::optional<AxProjectMark> after;  ///< nothing: it goes
};

/**
 * An edit of mark points on the viewer's undo stack. The set is changed when the command is pushed. Once the
 * set is gone the command is of no use, and the stack drops it at the next step.
 */
class AxMarkCommand : public QUndoCommand
{
public:
    AxMarkCommand(AxViewerParts* viewer, const QString& setID, QVector<AxMarkChange> changes,
                  const QString& text);

    void undo() override { step(true); }
    void redo() override { step(false); }

private:
    void step(bool back);

    const QPointer<AxViewerParts> parts;
    const QString set;
    const QVector<AxMarkChange> changes;
};
