#pragma once
#include <QUndoCommand>

#include <functional>
#include <utility>

/// A step of the viewer's undo history for what the host has done already. The functions find what they
/// change by its name or ID: it may have gone and come back meanwhile. GUI thread.
class UndoStep : public QUndoCommand
{
public:
    UndoStep(const QString& text, std::function<void()> undoes, std::function<void()> does)
        : QUndoCommand(text), back(std::move(undoes)), again(std::move(does))
    {
    }

    void undo() override { back(); }
    void redo() override
    {
        // The stack calls it with the push.
        if (std::exchange(isDone, true))
            again();
    }

private:
    const std::function<void()> back;
    const std::function<void()> again;
    bool isDone = false;
};
