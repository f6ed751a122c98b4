#pragma once
#include "host/TourStops.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>
#include <QVector>

#include <functional>

class CAxEarthViewer;

/**
 * Visits places one after the other, waits at each until the viewer's picture
 * is complete, and hands it over to be kept. GUI thread.
 */
class Tour : public QObject
{
    Q_OBJECT
public:
    struct Stop
    {
        osgEarth::Viewpoint viewpoint; ///< an invalid one keeps the present camera
        QString file;                  ///< where the picture is to go
    };

    /// `keep` writes the picture of the present frame and returns whether that worked.
    Tour(CAxEarthViewer* viewer, QVector<Stop> stops, std::function<bool(const QString&)> keep,
         QObject* parent);

    void Start();

signals:
    /// All stops were visited; false when a picture could not be written or was
    /// still incomplete after a minute.
    void Finished(bool allWell);

private:
    void GoToNext();
    void Look();

    CAxEarthViewer* viewer;
    QVector<Stop> stops;
    std::function<bool(const QString&)> keep;
    QTimer clock;
    QElapsedTimer waiting;
    int current = -1;
    bool allWell = true;
};
