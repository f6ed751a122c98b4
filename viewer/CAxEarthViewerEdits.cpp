// The part of the viewer that serves the editing of map objects: undo, keys, aids.
#include "interaction/CAxEarthManipulator.h"
#include "interaction/CAxHandleAdapter.h"
#include "interaction/CAxHandleAdapterEditor.h"
#include "viewer/CAxEarthViewer.h"

#include <QAction>
#include <QUndoStack>

#include <algorithm>

void CAxEarthViewer::initUndo()
{
    undoStack = new QUndoStack(this);
    const auto makeAction = [this](const QKeySequence& keys, bool back) {
        auto* action = new QAction(this);
        action->setShortcut(keys);
        action->setEnabled(false);
        connect(action, &QAction::triggered, this, [this, back] { stepThroughEdits(back); });
        addAction(action);
        return action;
    };
    undoAction = makeAction(QKeySequence(Qt::CTRL + Qt::Key_Z), true);
    redoAction = makeAction(QKeySequence(Qt::CTRL + Qt::SHIFT + Qt::Key_Z), false);
    undoAction->setText(tr("Undo"));
    redoAction->setText(tr("Redo"));
    connect(undoStack, &QUndoStack::undoTextChanged, this, [this](const QString& edit) {
        undoAction->setText(edit.isEmpty() ? tr("Undo") : tr("Undo %1").arg(edit));
    });
    connect(undoStack, &QUndoStack::redoTextChanged, this, [this](const QString& edit) {
        redoAction->setText(edit.isEmpty() ? tr("Redo") : tr("Redo %1").arg(edit));
    });
    connect(undoStack, &QUndoStack::canUndoChanged, undoAction, &QAction::setEnabled);
    connect(undoStack, &QUndoStack::canRedoChanged, redoAction, &QAction::setEnabled);
}

void CAxEarthViewer::stepThroughEdits(bool back)
{
    // In the middle of a gesture there is nothing committed to step over.
    if (curHandleAdapter && curHandleAdapter->GetHandleOperation() != OperationIdle)
        return;
    back ? undoStack->undo() : undoStack->redo();
}

void CAxEarthViewer::SetEditAids(const AxEditAids& aids)
{
    editAids = aids;
    if (CAxHandleAdapterEditor* editor = curHandleAdapter ? curHandleAdapter->GetAnchorEditor() : nullptr)
        editor->Update();
    emit signalEditAids();
}

int CAxEarthViewer::hoveredVertex() const
{
    int index = -1;
    if (CAxHandleAdapterEditor* editor = curHandleAdapter ? curHandleAdapter->GetAnchorEditor() : nullptr)
        editor->GetHoveredPoint(index);
    return index;
}

bool CAxEarthViewer::DeleteHoveredVertex()
{
    const int index = hoveredVertex();
    return index != -1 && curHandleAdapter->DeleteVertex(index);
}

bool CAxEarthViewer::giveUpOperation()
{
    bool isGivenUp = false;
    for (CAxHandleAdapter* adapter : QList<CAxHandleAdapter*>(multiSelectAdapters))
        if (adapter->GetHandleOperation() == OperationMoveHandle)
            isGivenUp = adapter->CancelHandle() || isGivenUp;
    if (curHandleAdapter)
        isGivenUp = curHandleAdapter->CancelHandle() || isGivenUp;
    if (isGivenUp)
        manipulator->CancelBlockMove();
    return isGivenUp;
}

void CAxEarthViewer::giveUpEdit()
{
    const auto isEdited = [](const CAxHandleAdapter* adapter) {
        return adapter->GetHandleOperation() == OperationMovePoint ||
               adapter->GetHandleOperation() == OperationMoveHandle;
    };
    if ((curHandleAdapter && isEdited(curHandleAdapter)) ||
        std::any_of(multiSelectAdapters.begin(), multiSelectAdapters.end(), isEdited))
        giveUpOperation();
}

void CAxEarthViewer::takeEditingKey(int key)
{
    if (key == Qt::Key_Escape) {
        giveUpOperation();
    } else if (key == Qt::Key_Backspace && curHandleAdapter) {
        curHandleAdapter->RemoveLastPoint();
    } else if (key == Qt::Key_Delete) {
        // A deletion that is refused was meant for the vertex all the same.
        deleteKeyTaken = editAids.deleteKey && hoveredVertex() != -1;
        if (deleteKeyTaken)
            DeleteHoveredVertex();
    }
}
