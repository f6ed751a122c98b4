#pragma once
#include <QObject>

class QUndoStack;

/// Tells when the project may have become another one: with the input of the pilot, with the registry of
/// blocks, the undo history and whoever says that he has edited. GUI thread; owned by its parent.
class EditWatch : public QObject
{
    Q_OBJECT
public:
    EditWatch(const QUndoStack* history, QObject* parent);

signals:
    void Edited(); ///< may come often, and for nothing

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
};
