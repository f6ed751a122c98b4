#pragma once
#include <QObject>

class CAxEarthViewer;

/**
 * Says aloud what happens in the viewer: that the map has loaded, that a
 * position was picked; and what aircraft warn of. The tools bar's voice button switches it. Owned by its
 * parent; GUI thread.
 */
class Voice : public QObject
{
    Q_OBJECT
public:
    /// The viewer must outlive it; create it before the map loads.
    Voice(CAxEarthViewer* viewer, QObject* parent);

public slots:
    /// Says it before anything else.
    void Warn(const QString& text);

signals:
    /// Speak this; while one text is spoken only a lower level is heard.
    void Said(const QString& text, int level);
};
