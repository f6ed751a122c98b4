#pragma once
#include <QStringList>

namespace osgEarth::Symbology {
class Geometry;
}

/// Who is asked about no-fly zones; CAxAncillaryProcess answers and says more. GUI thread.
class AxZoneAnswers
{
public:
    virtual ~AxZoneAnswers() = default;

    virtual void SetNoFlyZoneMask(bool visible) = 0;
    virtual bool NoFlyZoneMask() const = 0;
    virtual bool Intersection(osgEarth::Symbology::Geometry* area, QStringList& ids, bool) = 0;
    virtual QStringList ShownZonesAt(double longitude, double latitude) const = 0;
    virtual void FlashZones(const QStringList& ids) = 0;
};
