#include <osgEarth/Registry>

#include "base/Gdal.h"
#include "base/MachineFont.h"

namespace osgEarth {
Registry::Registry() : osg::Referenced(true)
{
    gdal::initialize();
    const SpatialReference* wgs84 = SpatialReference::get("wgs84");
    const SpatialReference* mercator = SpatialReference::get("spherical-mercator");
    _geodetic = Profile::create(wgs84, -180.0, -90.0, 180.0, 90.0, 2, 1);
    _mercator = Profile::create(mercator, MERC_MINX, MERC_MINY, MERC_MAXX, MERC_MAXY, 1, 1);
}

Registry::~Registry() = default;

Registry* Registry::instance()
{
    static const osg::ref_ptr<Registry> registry = new Registry;
    return registry.get();
}

const Profile* Registry::getGlobalGeodeticProfile() const
{
    return _geodetic.get();
}

const Profile* Registry::getSphericalMercatorProfile() const
{
    return _mercator.get();
}

const Capabilities& Registry::getCapabilities() const
{
    std::lock_guard<std::mutex> lock(_mutex);
    if (!_capabilities.valid()) {
        _capabilities = new Capabilities;
        _capabilities->probe();
    }
    return *_capabilities;
}

bool Registry::hasCapabilities() const
{
    std::lock_guard<std::mutex> lock(_mutex);
    return _capabilities.valid();
}

void Registry::setCapabilities(Capabilities* caps)
{
    std::lock_guard<std::mutex> lock(_mutex);
    _capabilities = caps;
}

void Registry::setDefaultFont(osgText::Font* font)
{
    std::lock_guard<std::mutex> lock(_mutex);
    _defaultFont = font;
}

osgText::Font* Registry::getDefaultFont()
{
    {
        std::lock_guard<std::mutex> lock(_mutex);
        if (_defaultFont)
            return _defaultFont.get();
    }
    return machineFont();
}
} // namespace osgEarth
