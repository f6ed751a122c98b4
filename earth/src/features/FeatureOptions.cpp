#include "base/ConfigKeys.h"
#include "symbology/OgrGeometry.h"
#include <osgEarthDrivers/feature_ogr/OGRFeatureOptions>
#include <osgEarthDrivers/model_feature_geom/FeatureGeomModelOptions>

namespace osgEarth {
namespace {
template <typename Keys, typename Field> void visitInterpolation(Keys& keys, Field& field)
{
    keys.choice("geo_interpolation", field,
                {{"rhumb_line", GEOINTERP_RHUMB_LINE}, {"great_circle", GEOINTERP_GREAT_CIRCLE}});
}

template <typename Options, typename Keys> void visitFeatureSourceKeys(Options& options, Keys& keys)
{
    keys.value("name", options.name());
    keys.object("profile", options.profile());
    keys.value("fid_attribute", options.fidAttribute());
    visitInterpolation(keys, options.geoInterp());
}

template <typename Options, typename Keys> void visitGeometryCompilerKeys(Options& options, Keys& keys)
{
    keys.value("max_granularity", options.maxGranularity());
    visitInterpolation(keys, options.geoInterp());
}

template <typename Options, typename Keys> void visitFeatureModelSourceKeys(Options& options, Keys& keys)
{
    keys.object("features", options.featureOptions());
    keys.object("styles", options.styles());
    keys.object("query", options.query());
    keys.value("lighting", options.enableLighting());
    keys.value("max_granularity", options.maxGranularity());
}

template <typename Options, typename Keys> void visitOGRFeatureKeys(Options& options, Keys& keys)
{
    keys.value("url", options.url());
    keys.value("connection", options.connection());
    keys.value("ogr_driver", options.ogrDriver());
    keys.value("layer", options.layer());
}
} // namespace

namespace Features {
FeatureSourceOptions::FeatureSourceOptions(const ConfigOptions& options) : DriverConfigOptions(options)
{
    fromConfig(_conf);
}

void FeatureSourceOptions::fromConfig(const Config& conf)
{
    KeyReader keys(conf);
    visitFeatureSourceKeys(*this, keys);
}

void FeatureSourceOptions::mergeConfig(const Config& conf)
{
    DriverConfigOptions::mergeConfig(conf);
    fromConfig(conf);
}

Config FeatureSourceOptions::getConfig() const
{
    Config conf = DriverConfigOptions::getConfig();
    KeyWriter keys(conf);
    visitFeatureSourceKeys(*this, keys);
    return conf;
}

GeometryCompilerOptions::GeometryCompilerOptions(const ConfigOptions& conf)
    : ConfigOptions(conf), _maxGranularity(1.0)
{
    fromConfig(_conf);
}

void GeometryCompilerOptions::fromConfig(const Config& conf)
{
    KeyReader keys(conf);
    visitGeometryCompilerKeys(*this, keys);
}

void GeometryCompilerOptions::mergeConfig(const Config& conf)
{
    ConfigOptions::mergeConfig(conf);
    fromConfig(conf);
}

Config GeometryCompilerOptions::getConfig() const
{
    Config conf = ConfigOptions::getConfig();
    KeyWriter keys(conf);
    visitGeometryCompilerKeys(*this, keys);
    return conf;
}

FeatureModelSourceOptions::FeatureModelSourceOptions(const ConfigOptions& rhs)
    : ModelSourceOptions(rhs), _lit(false), _maxGranularity(1.0)
{
    fromConfig(_conf);
}

void FeatureModelSourceOptions::fromConfig(const Config& conf)
{
    KeyReader keys(conf);
    visitFeatureModelSourceKeys(*this, keys);
    // A <query> inside <features> stands in for one beside it.
    const Config* features = _query.isSet() ? nullptr : conf.child_ptr("features");
    if (const Config* nested = features ? features->child_ptr("query") : nullptr)
        _query = Query(*nested);
}

void FeatureModelSourceOptions::mergeConfig(const Config& conf)
{
    ModelSourceOptions::mergeConfig(conf);
    fromConfig(conf);
}

Config FeatureModelSourceOptions::getConfig() const
{
    Config conf = ModelSourceOptions::getConfig();
    KeyWriter keys(conf);
    visitFeatureModelSourceKeys(*this, keys);
    return conf;
}
} // namespace Features

namespace Drivers {
OGRFeatureOptions::OGRFeatureOptions(const ConfigOptions& opt) : FeatureSourceOptions(opt)
{
    setDriver("ogr");
    fromConfig(_conf);
}

void OGRFeatureOptions::fromConfig(const Config& conf)
{
    KeyReader keys(conf);
    visitOGRFeatureKeys(*this, keys);
    // A text in <srs> is the short form of a profile.
    const std::string srs = trim(conf.value("srs"));
    if (!srs.empty() && !profile().isSet())
        profile().mutable_value().srsString() = srs;
    const std::string wkt = conf.value("geometry");
    if (!wkt.empty())
        _geometry = fromWkt(wkt);
}

void OGRFeatureOptions::mergeConfig(const Config& conf)
{
    FeatureSourceOptions::mergeConfig(conf);
    fromConfig(conf);
}

Config OGRFeatureOptions::getConfig() const
{
    Config conf = FeatureSourceOptions::getConfig();
    KeyWriter keys(conf);
    visitOGRFeatureKeys(*this, keys);
    // A relative url must keep the file that it is relative to.
    if (_url.isSet())
        conf.mutable_child("url")->setReferrer(_url->context().referrer());
    if (_geometry.valid())
        conf.set("geometry", toWkt(*_geometry));
    return conf;
}

FeatureGeomModelOptions::FeatureGeomModelOptions(const ConfigOptions& options)
    : FeatureModelSourceOptions(options), _compilerOptions(ConfigOptions(Config()))
{
    setDriver("feature_geom");
    _compilerOptions.mergeConfig(_conf);
}

void FeatureGeomModelOptions::mergeConfig(const Config& conf)
{
    FeatureModelSourceOptions::mergeConfig(conf);
    _compilerOptions.mergeConfig(conf);
}

Config FeatureGeomModelOptions::getConfig() const
{
    Config conf = FeatureModelSourceOptions::getConfig();
    KeyWriter keys(conf);
    visitGeometryCompilerKeys(_compilerOptions, keys);
    return conf;
}
} // namespace Drivers
} // namespace osgEarth
