#include "base/ConfigKeys.h"
#include <osgEarth/TileSource>
#include <osgEarthDrivers/gdal/GDALOptions>
#include <osgEarthDrivers/tms/TMSOptions>
#include <osgEarthDrivers/xyz/XYZOptions>

namespace osgEarth {
namespace {
template <typename Options, typename Keys> void visitTileSourceKeys(Options& options, Keys& keys)
{
    keys.value("url", options.url());
    keys.value("tile_size", options.tileSize());
    keys.value("nodata_value", options.noDataValue());
    keys.value("min_valid_value", options.minValidValue());
    keys.value("max_valid_value", options.maxValidValue());
    keys.alias("nodata_min", options.minValidValue());
    keys.alias("nodata_max", options.maxValidValue());
    keys.object("profile", options.profile());
    keys.value("max_data_level", options.maxDataLevel());
    keys.value("cache_path", options.cachePath());
}
} // namespace

TileSourceOptions::TileSourceOptions(const ConfigOptions& options) : DriverConfigOptions(options)
{
    fromConfig(_conf);
}

Config TileSourceOptions::getConfig() const
{
    Config conf = DriverConfigOptions::getConfig();
    KeyWriter keys(conf);
    visitTileSourceKeys(*this, keys);
    return conf;
}

void TileSourceOptions::mergeConfig(const Config& conf)
{
    DriverConfigOptions::mergeConfig(conf);
    fromConfig(conf);
}

void TileSourceOptions::fromConfig(const Config& conf)
{
    KeyReader keys(conf);
    visitTileSourceKeys(*this, keys);
}

namespace Drivers {
namespace {
template <typename Options, typename Keys> void visitGDALKeys(Options& options, Keys& keys)
{
    keys.value("connection", options.connection());
    keys.value("subdataset", options.subDataSet());
    keys.choice("interpolation", options.interpolation(),
                {{"nearest", INTERP_NEAREST}, {"bilinear", INTERP_BILINEAR}, {"average", INTERP_AVERAGE}});
}
} // namespace

GDALOptions::GDALOptions(const TileSourceOptions& options) : TileSourceOptions(options)
{
    setDriver("gdal");
    KeyReader keys(_conf);
    visitGDALKeys(*this, keys);
}

Config GDALOptions::getConfig() const
{
    Config conf = TileSourceOptions::getConfig();
    KeyWriter keys(conf);
    visitGDALKeys(*this, keys);
    return conf;
}

namespace {
template <typename Options, typename Keys> void visitTMSKeys(Options& options, Keys& keys)
{
    keys.value("tms_type", options.tmsType());
    keys.value("format", options.format());
}
} // namespace

TMSOptions::TMSOptions(const TileSourceOptions& options) : TileSourceOptions(options)
{
    setDriver("tms");
    KeyReader keys(_conf);
    visitTMSKeys(*this, keys);
}

Config TMSOptions::getConfig() const
{
    Config conf = TileSourceOptions::getConfig();
    KeyWriter keys(conf);
    visitTMSKeys(*this, keys);
    return conf;
}

namespace {
template <typename Options, typename Keys> void visitXYZKeys(Options& options, Keys& keys)
{
    keys.value("invert_y", options.invertY());
    keys.value("format", options.format());
}
} // namespace

XYZOptions::XYZOptions(const TileSourceOptions& options) : TileSourceOptions(options)
{
    setDriver("xyz");
    KeyReader keys(_conf);
    visitXYZKeys(*this, keys);
}

Config XYZOptions::getConfig() const
{
    Config conf = TileSourceOptions::getConfig();
    KeyWriter keys(conf);
    visitXYZKeys(*this, keys);
    return conf;
}
} // namespace Drivers
} // namespace osgEarth
