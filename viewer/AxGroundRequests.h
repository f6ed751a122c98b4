#pragma once
#include "analysis/AxMapHeights.h"

#include <osg/observer_ptr>
#include <osgEarth/Map>

#include <QObject>
#include <QThreadPool>

#include <atomic>

/**
 * Answers what the height of the ground is at the finest level of the map's data, whatever is loaded. A
 * thread of its own reads them, because a source may keep it waiting; answers come in the order of the
 * questions.
 *
 * Owned by the viewer. GUI thread.
 */
class AxGroundRequests : public QObject
{
    Q_OBJECT
public:
    AxGroundRequests();
    /// Calls the work off and waits for the thread.
    ~AxGroundRequests() override;

    /// Degrees. Without a map, and for what is no place, the answer is that nothing is known.
    void Ask(osgEarth::Map* map, double longitude, double latitude);

signals:
    /// Degrees, degrees, metres above the ellipsoid, and whether it is known; 0 metres when not.
    void answered(double longitude, double latitude, double altitude, bool isKnown);

private:
    osg::observer_ptr<const osgEarth::Map> asked;
    std::optional<AxMapHeights> heights; ///< of that map; copies of it are for the thread
    QThreadPool thread;
    std::atomic<bool> isOff = false;
};
