#pragma once
#include "analysis/AxMapHeights.h"

#include <osg/observer_ptr>
#include <osgEarth/Map>

#include <QObject>
#include <QString>
#include <QThreadPool>
#include <QVector>

#include <atomic>
#include <optional>

/// The ground at a mark point, at the finest level of the map's data.
struct AxMarkHeight
{
    QString id;
    double longitude = 0.0; ///< degrees
    double latitude = 0.0;  ///< degrees
    double altitude = 0.0;  ///< metres, as the map has heights
};

/**
 * Finds the height of the ground below mark points on a thread of its own, because a source may keep it
 * waiting; what is loaded on the map may be far too coarse. GUI thread.
 */
class AxMarkHeights : public QObject
{
    Q_OBJECT
public:
    AxMarkHeights();
    /// Calls the work off and waits for the thread.
    ~AxMarkHeights() override;

    /// `places` are answered together, without those whose height is not known.
    void Ask(const osgEarth::Map* map, const QVector<AxMarkHeight>& places);

signals:
    void Answered(const QVector<AxMarkHeight>& found);

private:
    osg::observer_ptr<const osgEarth::Map> asked;
    std::optional<AxMapHeights> known; // of that map; copies of it are for the thread
    QThreadPool thread;
    std::atomic<bool> isOff = false;
};
