#include "host/project/EditWatch.h"

#include <AxData/CAxBlockManager.h>
#include <AxData/CAxControl.h>

#include <QCoreApplication>
#include <QEvent>
#include <QUndoStack>

EditWatch::EditWatch(const QUndoStack* history, QObject* parent) : QObject(parent)
{
    const CAxBlockManager& records = CAxBlockManager::instance();
    connect(&records, &CAxBlockManager::blockAdded, this, &EditWatch::Edited);
    connect(&records, &CAxBlockManager::blockDeleted, this, &EditWatch::Edited);
    connect(&records, &CAxBlockManager::blockChanged, this, &EditWatch::Edited);
    connect(CAxControl::GetInstance(), &CAxControl::projectEdited, this, &EditWatch::Edited);
    connect(history, &QUndoStack::indexChanged, this, &EditWatch::Edited);
    QCoreApplication::instance()->installEventFilter(this);
}

// Parameters, locks and further fields of records tell nobody; but whoever changes them pressed something.
bool EditWatch::eventFilter(QObject* /*watched*/, QEvent* event)
{
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::Wheel:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::InputMethod:
    case QEvent::Drop:
    case QEvent::TouchEnd:
        emit Edited();
        break;
    default:
        break;
    }
    return false;
}
