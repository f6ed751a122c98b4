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
bool IsSame(const CAxPoint2D& a, const CAxPoint2D& b)
{
    return a.x() == b.x() && a.y() == b.y();
}

// False where no zone takes them.
bool Project(const std::vector<CAxPoint2D>& lngLat, AxKeptPlane& kept)
{
    const bool isOfZone = kept.plane.size() == lngLat.size() && IsSame(kept.lngLat.front(), lngLat.front());
    if (!isOfZone) {
        kept.plane.clear();
        kept.lngLat = lngLat;
        return LatLng2UTM(lngLat, kept.plane);
    }
    std::vector<CAxPoint2D> moved = {lngLat.front()}; // which names the zone
    std::vector<std::size_t> at = {0};
    for (std::size_t i = 1; i < lngLat.size(); ++i)
        if (!IsSame(kept.lngLat[i], lngLat[i])) {
            moved.push_back(lngLat[i]);
            at.push_back(i);
        }
    std::vector<CAxPoint2D> plane;
    if (!LatLng2UTM(moved, plane))
        return false;
    for (std::size_t i = 0; i < at.size(); ++i)
        kept.plane[at[i]] = plane[i];
    kept.lngLat = lngLat;
    return true;
}
} // namespace

double AxBlockArea(const std::vector<osg::Vec3d>& ring, const osgEarth::SpatialReference& srs,
                   AxKeptPlane* kept)
{
    if (ring.size() < 3)
        return 0.0;
    std::vector<CAxPoint2D> lngLat;
    lngLat.reserve(ring.size());
    for (const osg::Vec3d& vertex : ring)
        lngLat.emplace_back(vertex.x(), vertex.y());
    AxKeptPlane own;
    AxKeptPlane& projected = kept ? *kept : own;
    if (!Project(lngLat, projected)) {
        projected = {};
        return GeodesicRingArea(lngLat) / (metresPerKilometre * metresPerKilometre);
    }
    const std::vector<CAxPoint2D>& plane = projected.plane;

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
