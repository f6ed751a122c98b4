#include <osgEarth/TileSource>

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
} // namespace osgEarth
