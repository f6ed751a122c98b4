#pragma once
#include "scene/base/AxGlobePoint.h"

#include <AxAlgorthm/CAxVector3D.h>

#include <vector>

/// Places of measurements, degrees, degrees, metres.
namespace AxMeasurePlaces {

/// The same as the companion's arithmetic takes them.
inline std::vector<CAxVector3D> Of(const std::vector<osg::Vec3d>& points)
{
    std::vector<CAxVector3D> places;
    places.reserve(points.size());
    for (const osg::Vec3d& point : points)
        places.emplace_back(point.x(), point.y(), point.z());
    return places;
}

/// In the middle of some points, at least one: across the antimeridian and around a pole, too. Altitude 0.
inline osg::Vec3d Middle(const std::vector<osg::Vec3d>& points)
{
    osg::Vec3d sum;
    for (const osg::Vec3d& point : points)
        sum += AxGlobe::NormalAt(point);
    return sum.length2() > 0.0 ? AxGlobe::LngLatOf(sum) : points.front();
}

} // namespace AxMeasurePlaces
