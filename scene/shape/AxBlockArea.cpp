#include "scene/shape/AxBlockArea.h"

#include <AxAlgorthm/AxCoordinate.h>

#include <osg/Vec3f>
#include <osgEarth/GeoMath>
#include <osgEarth/SpatialReference>

#include <cmath>
#include <cstdint>

namespace {
constexpr double metresPerKilometre = 1000.0;

osg::Vec3f Direction(const CAxPoint2D& from, const CAxPoint2D& to)
{
    osg::Vec3f direction(static_cast<float>(to.x() - from.x()), static_cast<float>(to.y() - from.y()), 0.0f);
    direction.normalize();
    return direction;
}

// Toward zero, as a conversion to an integer cuts.
double CutToSixDecimals(double value)
{
    constexpr double scale = 1e6;
    return static_cast<double>(static_cast<std::int32_t>(value * scale)) / scale;
}
} // namespace

double AxBlockArea(const std::vector<osg::Vec3d>& ring, const osgEarth::SpatialReference& srs)
{
    if (ring.size() < 3)
        return 0.0;
    std::vector<CAxPoint2D> lngLat;
    lngLat.reserve(ring.size());
    for (const osg::Vec3d& vertex : ring)
        lngLat.emplace_back(vertex.x(), vertex.y());
    std::vector<CAxPoint2D> plane;
    if (!LatLng2UTM(lngLat, plane))
        return GeodesicRingArea(lngLat) / (metresPerKilometre * metresPerKilometre);

    const auto toFirst = [&](std::size_t i) {
        return osgEarth::GeoMath::distance(osg::Vec3d(ring[0].x(), ring[0].y(), 0.0),
                                           osg::Vec3d(ring[i].x(), ring[i].y(), 0.0), &srs) /
               metresPerKilometre;
    };
    double sum = 0.0;
    double a = toFirst(1);
    for (std::size_t i = 1; i + 1 < ring.size(); ++i) {
        const double b = toFirst(i + 1);
        const osg::Vec3f u = Direction(plane[i], plane[0]);
        const osg::Vec3f w = Direction(plane[0], plane[i + 1]);
        const double angle = std::acos(CutToSixDecimals(static_cast<double>(u * w)));
        const double triangle = 0.5 * a * b * std::sin(angle);
        sum += (u ^ w).z() > 0.0f ? -triangle : triangle;
        a = b;
    }
    return std::abs(sum);
}
