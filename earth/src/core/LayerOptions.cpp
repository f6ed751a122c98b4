#include <osgEarth/ElevationLayer>
#include <osgEarth/ImageLayer>
#include <osgEarth/MapNodeOptions>
#include <osgEarth/MapOptions>
#include <osgEarth/ModelLayer>

#include <algorithm>

namespace osgEarth {
TileSourceOptions::TileSourceOptions(const ConfigOptions& options) : DriverConfigOptions(options)
{
    fromConfig(_conf);
}

Config TileSourceOptions::getConfig() const
{
    Config conf = DriverConfigOptions::getConfig();
    conf.updateIfSet("url", _url);
    conf.updateIfSet("tile_size", _tileSize);
    conf.updateIfSet("nodata_value", _noDataValue);
    conf.updateIfSet("min_valid_value", _minValidValue);
    conf.updateIfSet("max_valid_value", _maxValidValue);
    conf.updateObjIfSet("profile", _profile);
    conf.updateIfSet("max_data_level", _maxDataLevel);
    conf.updateIfSet("cache_path", _cachePath);
    return conf;
}

void TileSourceOptions::mergeConfig(const Config& conf)
{
    DriverConfigOptions::mergeConfig(conf);
    fromConfig(conf);
}

void TileSourceOptions::fromConfig(const Config& conf)
{
    conf.getIfSet("url", _url);
    conf.getIfSet("tile_size", _tileSize);
    conf.getIfSet("nodata_value", _noDataValue);
    conf.getIfSet("min_valid_value", _minValidValue);
    conf.getIfSet("max_valid_value", _maxValidValue);
    conf.getIfSet("nodata_min", _minValidValue);
    conf.getIfSet("nodata_max", _maxValidValue);
    conf.getObjIfSet("profile", _profile);
    conf.getIfSet("max_data_level", _maxDataLevel);
    conf.getIfSet("cache_path", _cachePath);
}

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

TerrainOptions::TerrainOptions(const ConfigOptions& options) : DriverConfigOptions(options)
{
    fromConfig(_conf);
}

Config TerrainOptions::getConfig() const
{
    Config conf = DriverConfigOptions::getConfig();
    conf.key() = "terrain";
    conf.updateIfSet("vertical_scale", _verticalScale);
    conf.updateIfSet("tile_size", _tileSize);
    conf.updateIfSet("min_tile_range_factor", _minTileRangeFactor);
    conf.updateIfSet("min_lod", _minLOD);
    conf.updateIfSet("max_lod", _maxLOD);
    conf.updateIfSet("first_lod", _firstLOD);
    conf.updateIfSet("lighting", _enableLighting);
    return conf;
}

void TerrainOptions::mergeConfig(const Config& conf)
{
    DriverConfigOptions::mergeConfig(conf);
    fromConfig(conf);
}

void TerrainOptions::fromConfig(const Config& conf)
{
    conf.getIfSet("vertical_scale", _verticalScale);
    conf.getIfSet("tile_size", _tileSize);
    conf.getIfSet("min_tile_range_factor", _minTileRangeFactor);
    conf.getIfSet("min_lod", _minLOD);
    conf.getIfSet("min_level", _minLOD);
    conf.getIfSet("max_lod", _maxLOD);
    conf.getIfSet("max_level", _maxLOD);
    conf.getIfSet("first_lod", _firstLOD);
    conf.getIfSet("first_level", _firstLOD);
    conf.getIfSet("lighting", _enableLighting);
}

MapNodeOptions::MapNodeOptions(const Config& conf) : ConfigOptions(conf)
{
    fromConfig(_conf);
}

MapNodeOptions::MapNodeOptions(const TerrainOptions& terrainOptions) : _terrain(terrainOptions) {}

Config MapNodeOptions::getConfig() const
{
    Config conf = ConfigOptions::getConfig();
    conf.key() = "options";
    conf.updateIfSet("lighting", _enableLighting);
    conf.updateIfSet("cache_only", _cacheOnly);
    const Config terrain = _terrain.getConfig();
    conf.remove("terrain");
    if (!terrain.children().empty())
        conf.add(terrain);
    return conf;
}

void MapNodeOptions::mergeConfig(const Config& conf)
{
    ConfigOptions::mergeConfig(conf);
    fromConfig(conf);
}

void MapNodeOptions::fromConfig(const Config& conf)
{
    conf.getIfSet("lighting", _enableLighting);
    conf.getIfSet("cache_only", _cacheOnly);
    conf.child("cache_policy").getIfSet("usage", "cache_only", _cacheOnly, true);
    if (const Config* terrain = conf.child_ptr("terrain"))
        _terrain = TerrainOptions(ConfigOptions(*terrain));
}
} // namespace osgEarth
