#include <osgEarth/GeoData>
#include <osgEarth/Terrain>

// The operations of GeoPoint that need terrain heights stand here, because points
// themselves belong to a room that does not know the terrain.
namespace osgEarth {
bool GeoPoint::transformZ(const AltitudeMode& altMode, const TerrainResolver* terrain)
{
    double z;
    if (!transformZ(altMode, terrain, z))
        return false;
    _p.z() = z;
    _altMode = altMode;
    return true;
}

bool GeoPoint::transformZ(const AltitudeMode& altMode, const TerrainResolver* terrain, double& out_z) const
{
    if (!isValid())
        return false;
    if (_altMode == altMode) {
        out_z = z();
        return true;
    }
    double ground;
    if (!terrain || !terrain->getHeight(_srs.get(), x(), y(), &ground))
        return false;
    out_z = altMode == ALTMODE_ABSOLUTE ? z() + ground : z() - ground;
    return true;
}

bool GeoPoint::toWorld(osg::Vec3d& out_world, const TerrainResolver* terrain) const
{
    if (!isValid())
        return false;
    if (isAbsolute())
        return _srs->transformToWorld(_p, out_world);
    double height;
    return transformZ(ALTMODE_ABSOLUTE, terrain, height) &&
           _srs->transformToWorld(osg::Vec3d(x(), y(), height), out_world);
}
} // namespace osgEarth
