#include "base/ConfigKeys.h"
#include <osgEarth/ElevationLayer>
#include <osgEarth/ImageLayer>
#include <osgEarth/MapOptions>
#include <osgEarth/ModelLayer>

#include <algorithm>

namespace osgEarth {
namespace {
template <typename Options, typename Keys> void visitTerrainLayerKeys(Options& options, Keys& keys)
{
    keys.value("name", options.name());
    keys.value("min_level", options.minLevel());
    keys.value("max_level", options.maxLevel());
    keys.value("enabled", options.enabled());
    keys.value("visible", options.visible());
}

template <typename Options, typename Keys> void visitImageLayerKeys(Options& options, Keys& keys)
{
    keys.value("opacity", options.opacity());
}

template <typename Options, typename Keys> void visitModelSourceKeys(Options& options, Keys& keys)
{
    keys.value("min_range", options.minRange());
    keys.value("max_range", options.maxRange());
    keys.value("render_order", options.renderOrder());
    keys.value("render_bin", options.renderBin());
}

template <typename Options, typename Keys> void visitModelLayerKeys(Options& options, Keys& keys)
{
    keys.value("name", options.name());
    keys.value("enabled", options.enabled());
    keys.value("visible", options.visible());
    keys.value("opacity", options.opacity());
    keys.value("lighting", options.lightingEnabled());
}

template <typename Options, typename Keys> void visitMapKeys(Options& options, Keys& keys)
{
    keys.value("name", options.name());
    keys.choice("type", options.coordSysType(),
                {{"projected", MapOptions::CSTYPE_PROJECTED}, {"geocentric", MapOptions::CSTYPE_GEOCENTRIC}});
    keys.object("profile", options.profile());
    keys.choice("elevation_interpolation", options.elevationInterpolation(),
                {{"nearest", INTERP_NEAREST},
                 {"average", INTERP_AVERAGE},
                 {"triangulate", INTERP_TRIANGULATE},
                 {"bilinear", INTERP_BILINEAR}});
}
} // namespace

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
    KeyWriter keys(conf);
    visitTerrainLayerKeys(*this, keys);
    return conf;
}

void TerrainLayerOptions::mergeConfig(const Config& conf)
{
    ConfigOptions::mergeConfig(conf);
    fromConfig(conf);
}

void TerrainLayerOptions::fromConfig(const Config& conf)
{
    KeyReader keys(conf);
    visitTerrainLayerKeys(*this, keys);
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
    KeyWriter keys(conf);
    visitImageLayerKeys(*this, keys);
    return conf;
}

void ImageLayerOptions::mergeConfig(const Config& conf)
{
    TerrainLayerOptions::mergeConfig(conf);
    fromConfig(conf);
}

void ImageLayerOptions::fromConfig(const Config& conf)
{
    KeyReader keys(conf);
    visitImageLayerKeys(*this, keys);
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
    KeyWriter keys(conf);
    visitModelSourceKeys(*this, keys);
    return conf;
}

void ModelSourceOptions::mergeConfig(const Config& conf)
{
    DriverConfigOptions::mergeConfig(conf);
    fromConfig(conf);
}

void ModelSourceOptions::fromConfig(const Config& conf)
{
    KeyReader keys(conf);
    visitModelSourceKeys(*this, keys);
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
    KeyWriter keys(conf);
    visitModelLayerKeys(*this, keys);
    return conf;
}

void ModelLayerOptions::mergeConfig(const Config& conf)
{
    ConfigOptions::mergeConfig(conf);
    fromConfig(conf);
}

void ModelLayerOptions::fromConfig(const Config& conf)
{
    KeyReader keys(conf);
    visitModelLayerKeys(*this, keys);
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
    KeyWriter keys(conf);
    visitMapKeys(*this, keys);
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
    KeyReader keys(conf);
    visitMapKeys(*this, keys);
    if (const Config* cache = conf.child_ptr("cache")) {
        optional<URI> path;
        if (cache->getIfSet("path", path))
            _cachePath = path.value().full();
    }
    if (!conf.referrer().empty())
        _referenceURI = conf.referrer();
}
} // namespace osgEarth
