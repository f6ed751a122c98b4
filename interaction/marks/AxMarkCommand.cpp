#include "interaction/marks/AxMarkCommand.h"
#include "interaction/marks/CAxOsgDrawPointSet.h"
#include "scene/AxObjectBook.h"
#include "scene/AxViewerParts.h"

#include <utility>

AxMarkCommand::AxMarkCommand(AxViewerParts* viewer, const QString& setID, QVector<AxMarkChange> changed,
                             const QString& text)
    : QUndoCommand(text), parts(viewer), set(setID), changes(std::move(changed))
{
}

void AxMarkCommand::step(bool back)
{
    auto* marks = parts ? qobject_cast<CAxOsgDrawPointSet*>(parts->Objects().Find(set)) : nullptr;
    if (marks)
        marks->Apply(changes, back);
    else
        setObsolete(true);
}
