#pragma once
#include "analysis/zones/AxBoxTree.h"
#include "analysis/zones/CAxAreaIntersectOperate.h"
#include "scene/base/AxEarthViewerExport.h"

#include <QStringList>

#include <cstdint>
#include <vector>

/// The outlines of all zones, and where on the globe they lie, so that nobody who asks for a place walks
/// through all of them. Nothing changes it, so any thread may ask. Degrees.
class AXEARTHVIEWER_EXPORT AxZoneIndex
{
public:
    explicit AxZoneIndex(const AxNoflyZones& zones);
    AxZoneIndex(const AxZoneIndex&) = delete;
    AxZoneIndex& operator=(const AxZoneIndex&) = delete;

    /// By ascending id.
    const std::vector<AxZoneOutline>& Outlines() const { return outlines; }

    /// The places in Outlines(), ascending, of the zones of which the outline's box or the middle comes
    /// within so many degrees of a place, on either side of the antimeridian; and perhaps of some others.
    std::vector<std::uint32_t> Near(double longitude, double latitude, double degreesEast,
                                    double degreesNorth) const;
    /// The same by metres on a sphere of the equator's radius.
    std::vector<std::uint32_t> Near(double longitude, double latitude, double metres) const;

    /// The ids of the zones that enclose a place, ascending; see AxZoneOutline::Contains().
    QStringList At(double longitude, double latitude) const;

private:
    std::vector<AxZoneOutline> outlines;
    AxBoxTree tree; ///< of the boxes, moved by whole turns so that each middle lies in [-180, 180]
};
