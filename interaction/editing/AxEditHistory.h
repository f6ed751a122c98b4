#pragma once
#include "scene/AxEditAids.h"

class AxObjectBook;
class QAction;
class QUndoStack;
class QWidget;

/**
 * The committed edits of map objects, with the actions that step through them, and what helps while an
 * object is edited. Owned by the viewer; stack and actions are children of its widget. GUI thread.
 */
class AxEditHistory
{
public:
    AxEditHistory(QWidget* widget, const AxObjectBook& objects);
    /// With its commands; to be called while the widget is still whole.
    void Delete();

    QUndoStack* Stack() const { return stack; } ///< null once it was deleted
    QAction* UndoAction() const { return undo; }
    QAction* RedoAction() const { return redo; }

    const AxEditAids& Aids() const { return aids; }
    void SetAids(const AxEditAids& wanted) { aids = wanted; }

    /// Says in the window's status bar that a drawing or a drag has to end first.
    void TellBusy() const;

private:
    QAction* makeAction(QWidget* widget, const char* keys, bool back);
    void step(bool back);

    const AxObjectBook& objects;
    QUndoStack* stack;
    QAction* undo;
    QAction* redo;
    AxEditAids aids;
};
