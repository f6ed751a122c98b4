#include <osgEarth/GeoData>
#include <osgEarth/GeoMath>

namespace osgEarth {
const GeoPoint GeoPoint::INVALID;

GeoPoint::GeoPoint(const SpatialReference* srs, double x, double y, double z, const AltitudeMode& mode)
    : _srs(srs), _p(x, y, z), _altMode(mode)
{
}

GeoPoint::GeoPoint(const SpatialReference* srs, double x, double y, double z)
    : GeoPoint(srs, x, y, z, ALTMODE_ABSOLUTE)
{
}

GeoPoint::GeoPoint(const SpatialReference* srs, double x, double y)
    : GeoPoint(srs, x, y, 0.0, ALTMODE_RELATIVE)
{
}

GeoPoint::GeoPoint(const SpatialReference* srs, const osg::Vec3d& xyz, const AltitudeMode& mode)
    : _srs(srs), _p(xyz), _altMode(mode)
{
}

GeoPoint::GeoPoint(const SpatialReference* srs, const osg::Vec3d& xyz) : GeoPoint(srs, xyz, ALTMODE_ABSOLUTE)
{
}

GeoPoint::GeoPoint(const SpatialReference* srs, const GeoPoint& rhs)
{
    rhs.transform(srs, *this);
}

void GeoPoint::set(const SpatialReference* srs, const osg::Vec3d& xyz, const AltitudeMode& mode)
{
    *this = GeoPoint(srs, xyz, mode);
}

void GeoPoint::set(const SpatialReference* srs, double x, double y, double z, const AltitudeMode& mode)
{
    *this = GeoPoint(srs, x, y, z, mode);
}

GeoPoint GeoPoint::transform(const SpatialReference* outSRS) const
{
    GeoPoint out;
    return transform(outSRS, out) ? out : GeoPoint();
}

bool GeoPoint::transform(const SpatialReference* outSRS, GeoPoint& output) const
{
    osg::Vec3d p;
    if (!isValid() || !outSRS || !_srs->transform(_p, outSRS, p))
        return false;
    output = GeoPoint(outSRS, p, _altMode);
    return true;
}

bool GeoPoint::makeGeographic()
{
    if (!isValid())
        return false;
    return _srs->isGeographic() || transform(_srs->getGeographicSRS(), *this);
}

bool GeoPoint::toWorld(osg::Vec3d& out_world) const
{
    return isValid() && isAbsolute() && _srs->transformToWorld(_p, out_world);
}

bool GeoPoint::fromWorld(const SpatialReference* srs, const osg::Vec3d& world)
{
    osg::Vec3d p;
    if (!srs || !srs->transformFromWorld(world, p))
        return false;
    *this = GeoPoint(srs, p, ALTMODE_ABSOLUTE);
    return true;
}

bool GeoPoint::createLocalToWorld(osg::Matrixd& out_local2world) const
{
    return isValid() && _srs->createLocalToWorld(_p, out_local2world);
}

bool GeoPoint::createWorldToLocal(osg::Matrixd& out_world2local) const
{
    return isValid() && _srs->createWorldToLocal(_p, out_world2local);
}

bool GeoPoint::createWorldUpVector(osg::Vec3d& out_up) const
{
    osg::Matrixd local2world;
    if (!createLocalToWorld(local2world))
        return false;
    out_up.set(local2world(2, 0), local2world(2, 1), local2world(2, 2));
    return true;
}

double GeoPoint::distanceTo(const GeoPoint& rhs) const
{
    GeoPoint other;
    if (!isValid() || !rhs.transform(_srs.get(), other))
        return 0.0;
    return GeoMath::distance(_p, other._p, _srs.get());
}

bool GeoPoint::operator==(const GeoPoint& rhs) const
{
    if (!isValid() || !rhs.isValid())
        return isValid() == rhs.isValid();
    return _p == rhs._p && _altMode == rhs._altMode && _srs->isEquivalentTo(rhs._srs.get());
}
} // namespace osgEarth
