#include "host/tasks/EscapeKey.h"

#include <QApplication>
#include <QKeyEvent>

#include <utility>

EscapeKey::EscapeKey(std::function<bool()> isMeant, std::function<void()> ends, QObject* parent)
    : QObject(parent), meant(std::move(isMeant)), end(std::move(ends))
{
}

void EscapeKey::Watch(bool on)
{
    qApp->removeEventFilter(this);
    if (on)
        qApp->installEventFilter(this);
}

bool EscapeKey::eventFilter(QObject* object, QEvent* event)
{
    const bool isKey = event->type() == QEvent::ShortcutOverride || event->type() == QEvent::KeyPress;
    if (!isKey || static_cast<QKeyEvent*>(event)->key() != Qt::Key_Escape ||
        QApplication::activeModalWidget() || QApplication::activePopupWidget() || !meant())
        return QObject::eventFilter(object, event);
    // No shortcut takes the key, which comes next.
    if (event->type() == QEvent::ShortcutOverride)
        event->accept();
    else
        end();
    return true;
}
