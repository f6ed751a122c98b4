#pragma once
#include "viewer/AxEarthViewerExport.h"

#include <osg/ref_ptr>
#include <osg/Switch>
#include <osgEarth/Viewpoint>
#include <osgEarthSymbology/Geometry>

#include <QObject>
#include <QStringList>

class CAxEarthViewer;

/**
 * Front of the work that runs beside the map: owns the scene root under which
 * the no-fly zones hang. The viewer creates one during start-up and deletes it
 * in ReleaseAll. GUI thread only.
 */
class AXEARTHVIEWER_EXPORT CAxAncillaryProcess : public QObject
{
    Q_OBJECT
public:
    /// The viewer's draw group must exist; the zone root is added to it.
    CAxAncillaryProcess(CAxEarthViewer* viewer, QObject* parent);

    /// Shows or hides all no-fly zones at once.
    void SetNoFlyZoneMask(bool visible);
    bool NoFlyZoneMask() const;

    /// Fills ids with the zones whose outline an area (degrees) meets; whether there are
    /// any. The last argument is kept for callers and has no effect.
    bool Intersection(osgEarth::Symbology::Geometry* area, QStringList& ids, bool);

    /// Where the camera is; zones near its focal point are the ones shown.
    void SetCurrViewPort(const osgEarth::Viewpoint& viewpoint) { currViewPort = viewpoint; }
    const osgEarth::Viewpoint& GetCurrViewPort() const { return currViewPort; }

private:
    void CreateNoFlyZone();

    CAxEarthViewer* viewer;
    osg::ref_ptr<osg::Switch> zoneRoot;
    osgEarth::Viewpoint currViewPort;
};
