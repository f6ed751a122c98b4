#pragma once
#include <osgEarth/Viewpoint>

#include <QObject>
#include <QTimer>

class CAxEarthViewer;

/**
 * Tells when the camera of a viewer has come to rest somewhere else. GUI
 * thread.
 */
class CameraRest : public QObject
{
    Q_OBJECT
public:
    /// The viewer outlives it.
    CameraRest(const CAxEarthViewer* viewer, QObject* parent);

    /// Begins to look; the viewer has its map.
    void Start();

signals:
    void Rested(const osgEarth::Viewpoint& view);

private:
    void Look();

    const CAxEarthViewer* viewer;
    QTimer clock;
    osgEarth::Viewpoint seen;
    osgEarth::Viewpoint told;
};
