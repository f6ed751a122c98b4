#include "interaction/editing/AxEditHistory.h"
#include "interaction/editing/AxEditedShape.h"
#include "interaction/editing/AxRefusableStep.h"
#include "scene/AxObjectBook.h"
#include "scene/base/AxNotice.h"

#include <QAction>
#include <QCoreApplication>
#include <QStatusTipEvent>
#include <QUndoStack>
#include <QWidget>

namespace {
QString Tr(const char* text)
{
    return QCoreApplication::translate("CAxEarthViewer", text);
}

// The action's own word alone, or with what it would do: "Undo", "Undo Move vertex".
void NameAfterEdit(QAction* action, QUndoStack* stack, void (QUndoStack::*changed)(const QString&),
                   const char* word, const char* wordWithEdit)
{
    action->setText(Tr(word));
    QObject::connect(stack, changed, action, [action, word, wordWithEdit](QString edit) {
        // A block's name is no place for the letter of a shortcut.
        edit.replace(QLatin1Char('&'), QLatin1String("&&"));
        action->setText(edit.isEmpty() ? Tr(word) : Tr(wordWithEdit).arg(edit));
    });
}

// A drawing without a point is none yet: some tools draw with the first move of the mouse.
bool IsMidGesture(AxEditedShape& shape)
{
    const EHandleOperation operation = shape.GetHandleOperation();
    return operation != OperationIdle && !(operation == OperationDrawing && shape.GetAnchor().empty());
}

// Of the command, or of what it is made of.
QString RefusalOf(const QUndoCommand* command, bool back)
{
    const auto* refusable = dynamic_cast<const AxRefusableStep*>(command);
    QString refusal = refusable ? refusable->Refusal(back) : QString();
    for (int i = 0; command && refusal.isEmpty() && i < command->childCount(); ++i)
        refusal = RefusalOf(command->child(i), back);
    return refusal;
}
} // namespace

AxEditHistory::AxEditHistory(QWidget* widget, const AxObjectBook& book)
    : objects(book), stack(new QUndoStack(widget)), undo(makeAction(widget, "Ctrl+Z", true)),
      redo(makeAction(widget, "Ctrl+Shift+Z", false))
{
    NameAfterEdit(undo, stack, &QUndoStack::undoTextChanged, QT_TRANSLATE_NOOP("CAxEarthViewer", "Undo"),
                  QT_TRANSLATE_NOOP("CAxEarthViewer", "Undo %1"));
    NameAfterEdit(redo, stack, &QUndoStack::redoTextChanged, QT_TRANSLATE_NOOP("CAxEarthViewer", "Redo"),
                  QT_TRANSLATE_NOOP("CAxEarthViewer", "Redo %1"));
    QObject::connect(stack, &QUndoStack::canUndoChanged, undo, &QAction::setEnabled);
    QObject::connect(stack, &QUndoStack::canRedoChanged, redo, &QAction::setEnabled);
}

QAction* AxEditHistory::makeAction(QWidget* widget, const char* keys, bool back)
{
    auto* action = new QAction(widget);
    action->setShortcut(QKeySequence(QLatin1String(keys)));
    action->setEnabled(false);
    QObject::connect(action, &QAction::triggered, action, [this, back] { step(back); });
    widget->addAction(action);
    return action;
}

void AxEditHistory::Delete()
{
    // Clearing itself it tells the actions, which belong to the widget.
    delete stack;
    stack = nullptr;
}

void AxEditHistory::TellBusy() const
{
    QStatusTipEvent told(Tr(QT_TRANSLATE_NOOP(
        "CAxEarthViewer", "Not while something is drawn or moved: finish it, or give it up with Escape.")));
    QCoreApplication::sendEvent(undo->parentWidget(), &told);
}

void AxEditHistory::step(bool back)
{
    // In the middle of a gesture there is nothing committed to step over.
    for (CAxHandleAdapter* object :
         objects.Selected() + QList<CAxHandleAdapter*>{objects.Current(), objects.Aside()})
        if (const AxEditedShapeRef shape(object); shape && IsMidGesture(*shape.operator->()))
            return TellBusy();
    const QUndoCommand* command = stack->command(back ? stack->index() - 1 : stack->index());
    const QString refusal = RefusalOf(command, back);
    if (!refusal.isEmpty()) {
        AxShowNotice(undo->parentWidget(),
                     QCoreApplication::translate("AxBlockOperations", "Block Information"), refusal);
        return;
    }
    back ? stack->undo() : stack->redo();
}
