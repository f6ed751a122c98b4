#include "analysis/AxMapHeights.h"
#include "scene/base/AxLongitudes.h"

#include <osgEarth/ElevationQuery>
#include <osgEarth/SpatialReference>

AxMapHeights::AxMapHeights(const osgEarth::Map* map)
    : query(std::make_shared<osgEarth::ElevationQuery>(map)), wgs84(osgEarth::SpatialReference::get("wgs84"))
{
}

std::optional<double> AxMapHeights::operator()(double longitude, double latitude) const
{
    double height = 0.0;
    // Routes over the antimeridian may count on beyond 180 degrees.
    const osgEarth::GeoPoint place(wgs84, AxLongitudes::Normalized(longitude), latitude);
    return query->getElevation(place, height) ? std::make_optional(height) : std::nullopt;
}
