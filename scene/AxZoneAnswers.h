#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <QStringList>

namespace osgEarth::Symbology {
class Geometry;
}

/// Who is asked about no-fly zones; CAxAncillaryProcess answers and says more. GUI thread.
class AXEARTHVIEWER_EXPORT AxZoneAnswers
{
public:
    virtual ~AxZoneAnswers() = default;

    /// Shows or hides all zones at once.
    virtual void SetNoFlyZoneMask(bool visible) = 0;
    virtual bool NoFlyZoneMask() const = 0;
    /// Appends the ids of the zones that an area (longitude, latitude in degrees) meets; whether there are
    /// any. The last argument has no effect.
    virtual bool Intersection(osgEarth::Symbology::Geometry* area, QStringList& ids, bool) = 0;
    /// The zones in the scene that cover a place (degrees), by ascending id.
    virtual QStringList ShownZonesAt(double longitude, double latitude) const = 0;
    /// Makes zones blink for some seconds, shown or hidden.
    virtual void FlashZones(const QStringList& ids) = 0;
};
