#include <osgEarth/ElevationLayer>
#include <osgEarth/ImageLayer>
#include <osgEarth/MapOptions>
#include <osgEarth/ModelLayer>

#include <algorithm>

namespace osgEarth {
TerrainLayerOptions::TerrainLayerOptions(const ConfigOptions& options) : ConfigOptions(options)
{
    fromConfig(_conf);
}

TerrainLayerOptions::TerrainLayerOptions(const std::string& name, const TileSourceOptions& driverOptions)
    : _name(name)
{
    _driver = driverOptions;
}

Config TerrainLayerOptions::getConfig() const
{
    Config conf = ConfigOptions::getConfig();
    if (_driver.isSet())
        conf.merge(_driver.value().getConfig());
    if (!_name.empty())
        conf.set("name", _name);
    conf.updateIfSet("min_level", _minLevel);
    conf.updateIfSet("max_level", _maxLevel);
    conf.updateIfSet("enabled", _enabled);
    conf.updateIfSet("visible", _visible);
    return conf;
}

void TerrainLayerOptions::mergeConfig(const Config& conf)
{
    ConfigOptions::mergeConfig(conf);
    fromConfig(conf);
}

void TerrainLayerOptions::fromConfig(const Config& conf)
{
    if (conf.hasValue("name"))
        _name = conf.value("name");
    conf.getIfSet("min_level", _minLevel);
    conf.getIfSet("max_level", _maxLevel);
    conf.getIfSet("enabled", _enabled);
    conf.getIfSet("visible", _visible);
    if (conf.hasValue("driver") || conf.hasValue("type"))
        _driver = TileSourceOptions(ConfigOptions(conf));
}

ImageLayerOptions::ImageLayerOptions(const ConfigOptions& options) : TerrainLayerOptions(options)
{
    fromConfig(_conf);
}

ImageLayerOptions::ImageLayerOptions(const std::string& name, const TileSourceOptions& driverOptions)
    : TerrainLayerOptions(name, driverOptions)
{
}

Config ImageLayerOptions::getConfig() const
{
    Config conf = TerrainLayerOptions::getConfig();
    conf.key() = "image";
    conf.updateIfSet("opacity", _opacity);
    return conf;
}

void ImageLayerOptions::mergeConfig(const Config& conf)
{
    TerrainLayerOptions::mergeConfig(conf);
    fromConfig(conf);
}

void ImageLayerOptions::fromConfig(const Config& conf)
{
    conf.getIfSet("opacity", _opacity);
}

ElevationLayerOptions::ElevationLayerOptions(const ConfigOptions& options) : TerrainLayerOptions(options) {}

ElevationLayerOptions::ElevationLayerOptions(const std::string& name, const TileSourceOptions& driverOptions)
    : TerrainLayerOptions(name, driverOptions)
{
}

ModelSourceOptions::ModelSourceOptions(const ConfigOptions& options) : DriverConfigOptions(options)
{
    fromConfig(_conf);
}

Config ModelSourceOptions::getConfig() const
{
    Config conf = DriverConfigOptions::getConfig();
    conf.updateIfSet("min_range", _minRange);
    conf.updateIfSet("max_range", _maxRange);
    conf.updateIfSet("render_order", _renderOrder);
    conf.updateIfSet("render_bin", _renderBin);
    return conf;
}

void ModelSourceOptions::mergeConfig(const Config& conf)
{
    DriverConfigOptions::mergeConfig(conf);
    fromConfig(conf);
}

void ModelSourceOptions::fromConfig(const Config& conf)
{
    conf.getIfSet("min_range", _minRange);
    conf.getIfSet("max_range", _maxRange);
    conf.getIfSet("render_order", _renderOrder);
    conf.getIfSet("render_bin", _renderBin);
}

ModelLayerOptions::ModelLayerOptions(const ConfigOptions& options) : ConfigOptions(options)
{
    fromConfig(_conf);
}

ModelLayerOptions::ModelLayerOptions(const std::string& name, const ModelSourceOptions& driverOptions)
{
    _name = name;
    _driver = driverOptions;
}

Config ModelLayerOptions::getConfig() const
{
    Config conf = ConfigOptions::getConfig();
    if (_driver.isSet())
        conf.merge(_driver.value().getConfig());
    conf.key() = "model";
    conf.updateIfSet("name", _name);
    conf.updateIfSet("enabled", _enabled);
    conf.updateIfSet("visible", _visible);
    conf.updateIfSet("opacity", _opacity);
    conf.updateIfSet("lighting", _lighting);
    return conf;
}

void ModelLayerOptions::mergeConfig(const Config& conf)
{
    ConfigOptions::mergeConfig(conf);
    fromConfig(conf);
}

void ModelLayerOptions::fromConfig(const Config& conf)
{
    conf.getIfSet("name", _name);
    conf.getIfSet("enabled", _enabled);
    conf.getIfSet("visible", _visible);
    conf.getIfSet("opacity", _opacity);
    conf.getIfSet("lighting", _lighting);
    if (conf.hasValue("driver") || conf.hasValue("type"))
        _driver = ModelSourceOptions(ConfigOptions(conf));
}

MapOptions::MapOptions(const ConfigOptions& options) : ConfigOptions(options)
{
    fromConfig(_conf);
}

Config MapOptions::getConfig() const
{
    Config conf = ConfigOptions::getConfig();
    conf.key() = "options";
    conf.updateIfSet("name", _name);
    if (_type.isSet())
        conf.set("type", std::string(_type == CSTYPE_PROJECTED ? "projected" : "geocentric"));
    conf.updateObjIfSet("profile", _profile);
    if (_interpolation.isSet())
        conf.set("elevation_interpolation", std::string(_interpolation == INTERP_NEAREST       ? "nearest"
                                                        : _interpolation == INTERP_AVERAGE     ? "average"
                                                        : _interpolation == INTERP_TRIANGULATE ? "triangulate"
                                                                                               : "bilinear"));
    if (_cachePath.isSet()) {
        Config cache("cache");
        cache.add("type", "filesystem");
        cache.add("path", _cachePath.value());
        conf.remove("cache");
        conf.add(cache);
    }
    return conf;
}

void MapOptions::mergeConfig(const Config& conf)
{
    ConfigOptions::mergeConfig(conf);
    fromConfig(conf);
}

void MapOptions::fromConfig(const Config& conf)
{
    conf.getIfSet("name", _name);
    conf.getIfSet("type", "projected", _type, CSTYPE_PROJECTED);
    conf.getIfSet("type", "geocentric", _type, CSTYPE_GEOCENTRIC);
    conf.getObjIfSet("profile", _profile);
    conf.getIfSet("elevation_interpolation", "nearest", _interpolation, INTERP_NEAREST);
    conf.getIfSet("elevation_interpolation", "average", _interpolation, INTERP_AVERAGE);
    conf.getIfSet("elevation_interpolation", "bilinear", _interpolation, INTERP_BILINEAR);
    conf.getIfSet("elevation_interpolation", "triangulate", _interpolation, INTERP_TRIANGULATE);
    if (const Config* cache = conf.child_ptr("cache")) {
        optional<URI> path;
        if (cache->getIfSet("path", path))
            _cachePath = path.value().full();
    }
    if (!conf.referrer().empty())
        _referenceURI = conf.referrer();
}
} // namespace osgEarth
