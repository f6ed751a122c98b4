#pragma once
#include "analysis/zones/AxZoneIndex.h"
#include "scene/base/AxEarthViewerExport.h"

#include <osg/Vec2d>
#include <osgEarth/Viewpoint>

#include <QString>

#include <cstdint>
#include <functional>
#include <vector>

/// Says which zones come near the camera, or are near no longer, as it moves. A zone is near when the middle
/// of its box lies less than 2 degrees of longitude and of latitude from the focal point and the camera is
/// less than 350 km away from that. One thread at a time.
class AXEARTHVIEWER_EXPORT AxNearZones
{
public:
    /// A camera farther from its focal point than this, metres, sees no zones.
    static constexpr double highestRange = 350000.0;

    /// The zones outlive it.
    explicit AxNearZones(const AxZoneIndex& all) : zones(all) {}

    /// A zone that has come near, or has gone; the middle of its box, degrees.
    using Tell = std::function<void(const QString& id, const osg::Vec2d& middle, bool isNear)>;
    /// Tells of each change since the last call, in the order of the ids; whether there was any.
    bool Update(const osgEarth::Viewpoint& viewpoint, const Tell& tell);

private:
    const AxZoneIndex& zones;
    std::vector<std::uint32_t> near; ///< ascending places in the outlines
};
