#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <osg/ref_ptr>

#include <memory>
#include <optional>

namespace osgEarth {
class ElevationQuery;
class Map;
class SpatialReference;
} // namespace osgEarth

/**
 * Heights of a map at the finest level of its files and services, whatever is drawn; can be given to a
 * planner as its AxPlanGround. Keeps the map, and what it has read of it; copies share that.
 *
 * Any thread, one at a time for all copies, which waits where a file is read: each thread makes its own.
 */
class AXEARTHVIEWER_EXPORT AxMapHeights
{
public:
    /// As the map is at each question, with layers that come and go. Null: no height is known anywhere.
    explicit AxMapHeights(const osgEarth::Map* map);

    /// Metres above the ellipsoid at a longitude and latitude in degrees, of any turn of the globe; nothing
    /// where none is known.
    std::optional<double> operator()(double longitude, double latitude) const;

private:
    std::shared_ptr<osgEarth::ElevationQuery> query;
    osg::ref_ptr<const osgEarth::SpatialReference> wgs84;
};
