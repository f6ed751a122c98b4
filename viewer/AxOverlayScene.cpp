#include "viewer/AxOverlayScene.h"

#include <QEvent>
#include <QMetaMethod>

#include <utility>

bool AxOverlayScene::TakeChange()
{
    return std::exchange(isChanged, false);
}

bool AxOverlayScene::IsHeard() const
{
    return isSignalConnected(QMetaMethod::fromSignal(&QGraphicsScene::changed));
}

bool AxOverlayScene::event(QEvent* event)
{
    // An item that changes has the scene call itself, to tell its views.
    if (event->type() == QEvent::MetaCall)
        isChanged = true;
    return QGraphicsScene::event(event);
}
