#pragma once
#include <QGraphicsScene>

/// What is painted over the map. Knows whether some of it has to be painted
/// again, and whether somebody listens to that. GUI thread.
class AxOverlayScene : public QGraphicsScene
{
public:
    /// Whether anything has changed since the last call.
    bool TakeChange();
    /// Whether anybody is told of changes.
    bool IsHeard() const;

    bool event(QEvent* event) override;

private:
    bool isChanged = true;
};
