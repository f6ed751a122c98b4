#include "base/ConfigKeys.h"
#include <osgEarth/MapNodeOptions>

namespace osgEarth {
namespace {
template <typename Options, typename Keys> void visitTerrainKeys(Options& options, Keys& keys)
{
    keys.value("vertical_scale", options.verticalScale());
    keys.value("tile_size", options.tileSize());
    keys.value("min_tile_range_factor", options.minTileRangeFactor());
    keys.value("min_lod", options.minLOD());
    keys.alias("min_level", options.minLOD());
    keys.value("max_lod", options.maxLOD());
    keys.alias("max_level", options.maxLOD());
    keys.value("first_lod", options.firstLOD());
    keys.alias("first_level", options.firstLOD());
    keys.value("lighting", options.enableLighting());
}

template <typename Options, typename Keys> void visitMapNodeKeys(Options& options, Keys& keys)
{
    keys.value("lighting", options.enableLighting());
    keys.value("cache_only", options.cacheOnly());
}
} // namespace

TerrainOptions::TerrainOptions(const ConfigOptions& options) : DriverConfigOptions(options)
{
    fromConfig(_conf);
}

Config TerrainOptions::getConfig() const
{
    Config conf = DriverConfigOptions::getConfig();
    conf.key() = "terrain";
    KeyWriter keys(conf);
    visitTerrainKeys(*this, keys);
    return conf;
}

void TerrainOptions::mergeConfig(const Config& conf)
{
    DriverConfigOptions::mergeConfig(conf);
    fromConfig(conf);
}

void TerrainOptions::fromConfig(const Config& conf)
{
    KeyReader keys(conf);
    visitTerrainKeys(*this, keys);
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
    KeyWriter keys(conf);
    visitMapNodeKeys(*this, keys);
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
    KeyReader keys(conf);
    visitMapNodeKeys(*this, keys);
    conf.child("cache_policy").getIfSet("usage", "cache_only", _cacheOnly, true);
    if (const Config* terrain = conf.child_ptr("terrain"))
        _terrain = TerrainOptions(ConfigOptions(*terrain));
}
} // namespace osgEarth
