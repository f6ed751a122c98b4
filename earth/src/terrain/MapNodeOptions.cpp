#include <osgEarth/MapNodeOptions>

namespace osgEarth {
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
