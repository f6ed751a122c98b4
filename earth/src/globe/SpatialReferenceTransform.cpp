#include "globe/Projector.h"
#include "globe/SpatialReferenceImpl.h"
#include "globe/Wgs84.h"

#include <algorithm>
#include <cmath>

namespace osgEarth {
namespace {
constexpr double kRad = 3.14159265358979323846 / 180.0;
constexpr double kDeg = 1.0 / kRad;
// Where spherical Mercator's square ends.
constexpr double kMercatorLatitude = 85.05112877980659;
// Radius of the sphere of spherical Mercator, metres.
constexpr double kRadius = wgs84::kEquatorialRadius;
constexpr double kPlateCarreMetres = kRadius * kRad;

double wrapLongitude(double lon, double centre)
{
    return lon + 360.0 * std::round((centre - lon) / 360.0);
}

void mercatorToGeographic(osg::Vec3d& p)
{
    p.x() = p.x() / kRadius * kDeg;
    p.y() = std::atan(std::sinh(p.y() / kRadius)) * kDeg;
}

bool geographicToMercator(osg::Vec3d& p)
{
    // At the poles themselves the projection is infinite.
    if (std::abs(p.y()) >= 90.0 - 1e-9)
        return false;
    p.x() = p.x() * kRad * kRadius;
    p.y() = std::asinh(std::tan(p.y() * kRad)) * kRadius;
    return true;
}

void geocentricToGeographic(const Ellipsoid& ellipsoid, osg::Vec3d& p)
{
    double lat, lon, height;
    ellipsoid.toGeodetic(p, lat, lon, height);
    p.set(lon * kDeg, lat * kDeg, height);
}

void geographicToGeocentric(const Ellipsoid& ellipsoid, osg::Vec3d& p)
{
    p = ellipsoid.toGeocentric(p.y() * kRad, p.x() * kRad, p.z());
}

bool finite(const osg::Vec3d& p)
{
    return std::isfinite(p.x()) && std::isfinite(p.y()) && std::isfinite(p.z());
}
} // namespace

bool SpatialReference::transform(std::vector<osg::Vec3d>& points, const SpatialReference* out) const
{
    if (!out)
        return false;
    if (this == out || points.empty())
        return true;

    const Impl& a = *_impl;
    const Impl& b = *out->_impl;
    const SpatialReference* fromGeo = getGeographicSRS();
    const SpatialReference* toGeo = out->getGeographicSRS();
    const bool sameDatum = fromGeo == toGeo || fromGeo->isEquivalentTo(toGeo);

    // Closed formulas lead from and to the geographic system; PROJ does what is left between.
    const bool firstClosed = a.kind == Impl::Kind::Geocentric || (sameDatum && a.kind != Impl::Kind::Other);
    const bool lastClosed = b.kind == Impl::Kind::Geocentric || (sameDatum && b.kind != Impl::Kind::Other);
    const SpatialReference* midFrom = firstClosed ? fromGeo : this;
    const SpatialReference* midTo = lastClosed ? toGeo : out;
    const bool needsProj = midFrom != midTo && !(firstClosed && lastClosed && sameDatum);

    const std::vector<osg::Vec3d> original = points;
    std::vector<char> good(points.size(), 1);
    for (size_t i = 0; i < points.size(); ++i) {
        if (!finite(points[i]))
            good[i] = 0;
        else if (a.kind == Impl::Kind::Geocentric)
            geocentricToGeographic(a.ellipsoid, points[i]);
        else if (a.kind == Impl::Kind::SphericalMercator && firstClosed)
            mercatorToGeographic(points[i]);
    }
    if (needsProj) {
        const size_t n = points.size();
        std::vector<double> x(n), y(n), z(n);
        std::vector<int> ok(n, 0);
        for (size_t i = 0; i < n; ++i) {
            x[i] = points[i].x();
            y[i] = points[i].y();
            z[i] = points[i].z();
        }
        if (!projector::transform(midFrom, midTo, n, x.data(), y.data(), z.data(), ok.data())) {
            points = original;
            return false;
        }
        for (size_t i = 0; i < n; ++i) {
            points[i].set(x[i], y[i], z[i]);
            if (!ok[i] || !finite(points[i]))
                good[i] = 0;
        }
    }
    bool all = true;
    for (size_t i = 0; i < points.size(); ++i) {
        if (good[i] && b.kind == Impl::Kind::Geocentric)
            geographicToGeocentric(b.ellipsoid, points[i]);
        else if (good[i] && b.kind == Impl::Kind::SphericalMercator && lastClosed)
            good[i] = geographicToMercator(points[i]);
        if (!good[i]) {
            points[i] = original[i];
            all = false;
        }
    }
    return all;
}

bool SpatialReference::transform(const osg::Vec3d& input, const SpatialReference* out,
                                 osg::Vec3d& output) const
{
    if (!out)
        return false;
    if (this == out) {
        output = input;
        return true;
    }
    // Called for single points in every frame, so it does without a vector.
    if (getGeographicSRS() == out->getGeographicSRS() && _impl->kind != Impl::Kind::Other &&
        out->_impl->kind != Impl::Kind::Other && finite(input)) {
        osg::Vec3d p = input;
        if (_impl->kind == Impl::Kind::Geocentric)
            geocentricToGeographic(_impl->ellipsoid, p);
        else if (_impl->kind == Impl::Kind::SphericalMercator)
            mercatorToGeographic(p);
        if (out->_impl->kind == Impl::Kind::Geocentric)
            geographicToGeocentric(out->_impl->ellipsoid, p);
        else if (out->_impl->kind == Impl::Kind::SphericalMercator && !geographicToMercator(p))
            return false;
        output = p;
        return true;
    }
    std::vector<osg::Vec3d> one(1, input);
    if (!transform(one, out))
        return false;
    output = one[0];
    return true;
}

bool SpatialReference::transform2D(double x, double y, const SpatialReference* out, double& out_x,
                                   double& out_y) const
{
    osg::Vec3d p;
    if (!transform(osg::Vec3d(x, y, 0.0), out, p))
        return false;
    out_x = p.x();
    out_y = p.y();
    return true;
}

double SpatialReference::transformUnits(double distance, const SpatialReference* out, double latitude) const
{
    if (!out)
        return distance;
    if (isGeographic() == out->isGeographic())
        return getUnits().convertTo(out->getUnits(), distance);
    const double metresPerDegree = kRad * _impl->ellipsoid.semiMajor() * std::cos(latitude * kRad);
    if (isGeographic())
        return Units::METERS.convertTo(out->getUnits(), distance * metresPerDegree);
    return getUnits().convertTo(Units::METERS, distance) / metresPerDegree;
}

double SpatialReference::transformUnits(const Distance& distance, const SpatialReference* out,
                                        double latitude)
{
    if (!out)
        return distance.getValue();
    if (!out->isGeographic())
        return distance.as(out->getUnits());
    return distance.as(Units::METERS) /
           (kRad * out->_impl->ellipsoid.semiMajor() * std::cos(latitude * kRad));
}

bool SpatialReference::transformToWorld(const osg::Vec3d& input, osg::Vec3d& out_world) const
{
    if (isPlateCarre()) {
        out_world.set(input.x() * kPlateCarreMetres, input.y() * kPlateCarreMetres, input.z());
        return true;
    }
    if (isGeographic()) {
        osg::Vec3d p = input;
        if (!finite(p))
            return false;
        geographicToGeocentric(_impl->ellipsoid, p);
        out_world = p;
        return true;
    }
    out_world = input;
    return true;
}

bool SpatialReference::transformFromWorld(const osg::Vec3d& world, osg::Vec3d& out_local,
                                          double* out_geodeticZ) const
{
    if (!finite(world))
        return false;
    if (isPlateCarre())
        out_local.set(world.x() / kPlateCarreMetres, world.y() / kPlateCarreMetres, world.z());
    else if (isGeographic()) {
        osg::Vec3d p = world;
        geocentricToGeographic(_impl->ellipsoid, p);
        out_local = p;
    } else
        out_local = world;
    if (out_geodeticZ)
        *out_geodeticZ = out_local.z();
    return true;
}

bool SpatialReference::transformExtentToMBR(const SpatialReference* to, double& xmin, double& ymin,
                                            double& xmax, double& ymax) const
{
    if (!to)
        return false;
    if (this == to)
        return true;
    double south = ymin, north = ymax;
    if (isGeographic() && to->isSphericalMercator()) {
        south = std::clamp(south, -kMercatorLatitude, kMercatorLatitude);
        north = std::clamp(north, -kMercatorLatitude, kMercatorLatitude);
    }
    // Edges bulge between their corners, and a pole may lie inside.
    constexpr int n = 20;
    std::vector<osg::Vec3d> points;
    for (int row = 0; row <= n; ++row)
        for (int col = 0; col <= n; ++col)
            if (row % 5 == 0 || col % 5 == 0)
                points.emplace_back(xmin + (xmax - xmin) * col / n, south + (north - south) * row / n, 0.0);
    std::vector<osg::Vec3d> moved = points;
    transform(moved, to);
    // Failed points came back unchanged; try each alone to know which.
    double out[4] = {0, 0, 0, 0};
    bool any = false;
    double centre = 0.0;
    for (size_t i = 0; i < points.size(); ++i) {
        if (moved[i] == points[i]) {
            osg::Vec3d again;
            if (!transform(points[i], to, again))
                continue;
        }
        osg::Vec3d p = moved[i];
        if (!any)
            centre = p.x();
        // Neighbours across the antimeridian stay neighbours.
        if (to->isGeographic() && !isGeographic() && !isSphericalMercator())
            p.x() = wrapLongitude(p.x(), centre);
        if (!any) {
            out[0] = out[2] = p.x();
            out[1] = out[3] = p.y();
            any = true;
            continue;
        }
        out[0] = std::min(out[0], p.x());
        out[1] = std::min(out[1], p.y());
        out[2] = std::max(out[2], p.x());
        out[3] = std::max(out[3], p.y());
    }
    if (!any)
        return false;
    xmin = out[0];
    ymin = out[1];
    xmax = out[2];
    ymax = out[3];
    return true;
}

bool SpatialReference::createLocalToWorld(const osg::Vec3d& point, osg::Matrixd& out) const
{
    if (!finite(point))
        return false;
    if (!isECEF() && (!isGeographic() || isPlateCarre())) {
        osg::Vec3d world;
        transformToWorld(point, world);
        out.makeTranslate(world);
        return true;
    }
    osg::Vec3d world = point, geodetic = point;
    if (isECEF())
        geocentricToGeographic(_impl->ellipsoid, geodetic);
    else
        geographicToGeocentric(_impl->ellipsoid, world);
    const double lon = geodetic.x() * kRad, lat = geodetic.y() * kRad;
    const double sl = std::sin(lon), cl = std::cos(lon), sp = std::sin(lat), cp = std::cos(lat);
    // Rows: east, north, up, origin.
    out.set(-sl, cl, 0.0, 0.0, -sp * cl, -sp * sl, cp, 0.0, cp * cl, cp * sl, sp, 0.0, world.x(), world.y(),
            world.z(), 1.0);
    return true;
}

bool SpatialReference::createWorldToLocal(const osg::Vec3d& point, osg::Matrixd& out) const
{
    osg::Matrixd local2world;
    if (!createLocalToWorld(point, local2world))
        return false;
    out.invert(local2world);
    return true;
}
} // namespace osgEarth
