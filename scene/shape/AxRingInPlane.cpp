#include "scene/shape/AxRingInPlane.h"

#include "scene/base/AxGlobePoint.h"

#include <support/GeosContext.h>

#include <algorithm>
#include <cmath>

namespace {
bool IsUsable(const osg::Vec3d& lngLat)
{
    return std::isfinite(lngLat.x()) && std::isfinite(lngLat.y());
}

// The way from one longitude to another, the shorter way round. Half round
// keeps the direction in which it was given.
double Step(double from, double to)
{
    const double step = to - from;
    return std::abs(step) <= 180.0 ? step : std::remainder(step, 360.0);
}

// 1 around the north pole, -1 around the south pole, 0 around none.
int PoleWithin(const std::vector<osg::Vec3d>& ring)
{
    const osg::Vec3d* before = nullptr;
    for (const osg::Vec3d& vertex : ring)
        if (IsUsable(vertex))
            before = &vertex;
    double turn = 0.0;
    double latitudes = 0.0;
    for (const osg::Vec3d& vertex : ring) {
        if (!IsUsable(vertex))
            continue;
        turn += Step(before->x(), vertex.x());
        latitudes += vertex.y();
        before = &vertex;
    }
    if (std::abs(turn) < 180.0)
        return 0;
    return latitudes < 0.0 ? -1 : 1;
}

osg::Vec3d ToLngLat(const QPointF& point, int pole)
{
    if (pole == 0)
        return {std::remainder(point.x(), 360.0), point.y(), 0.0};
    return {std::atan2(point.y(), point.x()) * 180.0 / AxGlobe::pi,
            pole * (90.0 - std::hypot(point.x(), point.y())), 0.0};
}

// Within the ring: `middle` if it is, else any place. Nothing for a ring that crosses itself.
std::optional<QPointF> PlaceWithin(const std::vector<QPointF>& ring, const QPointF& middle)
{
    const GeosContext geos;
    const GeosContext::Geometry polygon = geos.polygon(ring);
    if (!polygon || GEOSisValid_r(geos.handle(), polygon.get()) != 1)
        return std::nullopt;
    const GeosContext::Geometry center =
        geos.own(GEOSGeom_createPointFromXY_r(geos.handle(), middle.x(), middle.y()));
    if (center && GEOSContains_r(geos.handle(), polygon.get(), center.get()) == 1)
        return middle;
    const GeosContext::Geometry inside = geos.own(GEOSPointOnSurface_r(geos.handle(), polygon.get()));
    double x = 0.0;
    double y = 0.0;
    if (!inside || GEOSGeomGetX_r(geos.handle(), inside.get(), &x) != 1 ||
        GEOSGeomGetY_r(geos.handle(), inside.get(), &y) != 1)
        return std::nullopt;
    return QPointF(x, y);
}
} // namespace

std::vector<QPointF> AxRingInPlane(const std::vector<osg::Vec3d>& lngLat)
{
    std::vector<QPointF> plane;
    plane.reserve(lngLat.size());
    const int pole = PoleWithin(lngLat);
    const osg::Vec3d* before = nullptr;
    double longitude = 0.0;
    for (const osg::Vec3d& vertex : lngLat) {
        if (!IsUsable(vertex)) {
            plane.emplace_back(vertex.x(), vertex.y());
            continue;
        }
        longitude = before ? longitude + Step(before->x(), vertex.x()) : vertex.x();
        before = &vertex;
        if (pole == 0) {
            // Where nothing was crossed the numbers stay exactly as they are.
            const bool isSame = std::abs(longitude - vertex.x()) < 180.0;
            plane.emplace_back(isSame ? vertex.x() : longitude, vertex.y());
        } else {
            const double colatitude = 90.0 - pole * vertex.y();
            plane.emplace_back(colatitude * std::cos(vertex.x() * AxGlobe::pi / 180.0),
                               colatitude * std::sin(vertex.x() * AxGlobe::pi / 180.0));
        }
    }
    return plane;
}

std::optional<osg::Vec3d> AxLabelPlace(const std::vector<osg::Vec3d>& lngLat)
{
    std::vector<osg::Vec3d> ring;
    std::copy_if(lngLat.begin(), lngLat.end(), std::back_inserter(ring), IsUsable);
    if (ring.empty())
        return std::nullopt;
    const int pole = PoleWithin(ring);
    const std::vector<QPointF> plane = AxRingInPlane(ring);
    QPointF least = plane.front();
    QPointF most = least;
    for (const QPointF& point : plane) {
        least = {std::min(least.x(), point.x()), std::min(least.y(), point.y())};
        most = {std::max(most.x(), point.x()), std::max(most.y(), point.y())};
    }
    const QPointF middle = 0.5 * (least + most);
    if (plane.size() < 3)
        return ToLngLat(middle, pole);
    return ToLngLat(PlaceWithin(plane, middle).value_or(middle), pole);
}

std::optional<osg::Vec3d> AxMiddleOfLine(const std::vector<osg::Vec3d>& lngLat)
{
    std::vector<osg::Vec3d> normals;
    for (const osg::Vec3d& vertex : lngLat)
        if (IsUsable(vertex))
            normals.push_back(AxGlobe::NormalAt(vertex));
    if (normals.empty())
        return std::nullopt;
    double left = 0.0;
    for (std::size_t i = 1; i < normals.size(); ++i)
        left += 0.5 * AxGlobe::LengthBetween(normals[i - 1], normals[i]);
    for (std::size_t i = 1; i < normals.size(); ++i) {
        const double leg = AxGlobe::LengthBetween(normals[i - 1], normals[i]);
        if (leg > 0.0 && left <= leg) {
            // Straight through the globe instead of along it: of legs as long as an aircraft flies, metres.
            osg::Vec3d middle = normals[i - 1] * (1.0 - left / leg) + normals[i] * (left / leg);
            middle.normalize();
            return AxGlobe::LngLatOf(middle);
        }
        left -= leg;
    }
    return AxGlobe::LngLatOf(normals.back());
}
