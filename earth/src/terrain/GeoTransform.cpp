#include <osgEarth/GeoTransform>

namespace osgEarth {
GeoTransform::GeoTransform() = default;

GeoTransform::GeoTransform(const GeoTransform& rhs, const osg::CopyOp& op)
    : osg::MatrixTransform(rhs, op), _position(rhs._position)
{
    setTerrain(rhs._terrain.get());
}

GeoTransform::~GeoTransform()
{
    setTerrain(nullptr);
}

bool GeoTransform::setPosition(const GeoPoint& position)
{
    if (!position.isValid())
        return false;
    const GeoPoint before = _position;
    _position = position;
    if (!apply()) {
        _position = before;
        return false;
    }
    return true;
}

void GeoTransform::setTerrain(Terrain* terrain)
{
    osg::ref_ptr<Terrain> old;
    if (_callback.valid() && _terrain.lock(old))
        old->removeTerrainCallback(_callback.get());
    _callback = nullptr;
    _terrain = terrain;
    if (terrain) {
        _callback = new TerrainCallbackAdapter<GeoTransform>(this);
        terrain->addTerrainCallback(_callback.get());
        if (_position.isValid())
            apply();
    }
}

osg::ref_ptr<Terrain> GeoTransform::getTerrain() const
{
    osg::ref_ptr<Terrain> terrain;
    _terrain.lock(terrain);
    return terrain;
}

void GeoTransform::onTileAdded(const TileKey& key, osg::Node*, TerrainCallbackContext&)
{
    if (_position.isValid() && _position.isRelative() && key.getExtent().contains(_position))
        apply();
}

bool GeoTransform::apply()
{
    GeoPoint absolute(_position);
    osg::ref_ptr<Terrain> terrain;
    if (absolute.isRelative() && !(_terrain.lock(terrain) && absolute.makeAbsolute(terrain.get())))
        absolute.altitudeMode() = ALTMODE_ABSOLUTE; // until the terrain knows its height
    osg::Matrixd matrix;
    if (!absolute.createLocalToWorld(matrix))
        return false;
    if (matrix != getMatrix())
        setMatrix(matrix);
    return true;
}
} // namespace osgEarth
