#include "symbology/OgrGeometry.h"
#include <osgEarthDrivers/feature_ogr/OGRFeatureOptions>
#include <osgEarthDrivers/model_feature_geom/FeatureGeomModelOptions>

namespace osgEarth {
namespace {
void readInterpolation(const Config& conf, optional<GeoInterpolation>& target)
{
    conf.getIfSet("geo_interpolation", "great_circle", target, GEOINTERP_GREAT_CIRCLE);
    conf.getIfSet("geo_interpolation", "rhumb_line", target, GEOINTERP_RHUMB_LINE);
}

void writeInterpolation(Config& conf, const optional<GeoInterpolation>& source)
{
    if (source.isSet())
        conf.set("geo_interpolation",
                 std::string(source.value() == GEOINTERP_RHUMB_LINE ? "rhumb_line" : "great_circle"));
}
} // namespace

namespace Features {
FeatureSourceOptions::FeatureSourceOptions(const ConfigOptions& options) : DriverConfigOptions(options)
{
    fromConfig(_conf);
}

void FeatureSourceOptions::fromConfig(const Config& conf)
{
    conf.getIfSet("name", _name);
    conf.getIfSet("fid_attribute", _fidAttribute);
    readInterpolation(conf, _geoInterp);
}

void FeatureSourceOptions::mergeConfig(const Config& conf)
{
    DriverConfigOptions::mergeConfig(conf);
    fromConfig(conf);
}

Config FeatureSourceOptions::getConfig() const
{
    Config conf = DriverConfigOptions::getConfig();
    conf.updateIfSet("name", _name);
    conf.updateIfSet("fid_attribute", _fidAttribute);
    writeInterpolation(conf, _geoInterp);
    return conf;
}

GeometryCompilerOptions::GeometryCompilerOptions(const ConfigOptions& conf)
    : ConfigOptions(conf), _maxGranularity(1.0)
{
    fromConfig(_conf);
}

void GeometryCompilerOptions::fromConfig(const Config& conf)
{
    conf.getIfSet("max_granularity", _maxGranularity);
    readInterpolation(conf, _geoInterp);
}

void GeometryCompilerOptions::mergeConfig(const Config& conf)
{
    ConfigOptions::mergeConfig(conf);
    fromConfig(conf);
}

Config GeometryCompilerOptions::getConfig() const
{
    Config conf = ConfigOptions::getConfig();
    conf.updateIfSet("max_granularity", _maxGranularity);
    writeInterpolation(conf, _geoInterp);
    return conf;
}

FeatureModelSourceOptions::FeatureModelSourceOptions(const ConfigOptions& rhs)
    : ModelSourceOptions(rhs), _lit(false), _maxGranularity(1.0)
{
    fromConfig(_conf);
}

void FeatureModelSourceOptions::fromConfig(const Config& conf)
{
    const Config* features = conf.child_ptr("features");
    if (features)
        _featureOptions = FeatureSourceOptions(ConfigOptions(*features));
    if (const Config* styles = conf.child_ptr("styles"))
        _styles = new StyleSheet(*styles);
    conf.getObjIfSet("query", _query);
    // A condition written inside the feature source means the same.
    if (const Config* nested = features && !_query.isSet() ? features->child_ptr("query") : nullptr)
        _query = Query(*nested);
    conf.getIfSet("lighting", _lit);
    conf.getIfSet("max_granularity", _maxGranularity);
}

void FeatureModelSourceOptions::mergeConfig(const Config& conf)
{
    ModelSourceOptions::mergeConfig(conf);
    fromConfig(conf);
}

Config FeatureModelSourceOptions::getConfig() const
{
    Config conf = ModelSourceOptions::getConfig();
    conf.updateObjIfSet("features", _featureOptions);
    if (_styles.valid()) {
        conf.remove("styles");
        conf.add("styles", _styles->getConfig());
    }
    conf.updateObjIfSet("query", _query);
    conf.updateIfSet("lighting", _lit);
    conf.updateIfSet("max_granularity", _maxGranularity);
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
    conf.getIfSet("url", _url);
    conf.getIfSet("connection", _connection);
    conf.getIfSet("ogr_driver", _ogrDriver);
    conf.getIfSet("layer", _layer);
    conf.getIfSet("srs", _srs);
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
    conf.updateIfSet("url", _url);
    // The relative location keeps the place that it is relative to.
    if (_url.isSet())
        conf.mutable_child("url")->setReferrer(_url->context().referrer());
    conf.updateIfSet("connection", _connection);
    conf.updateIfSet("ogr_driver", _ogrDriver);
    conf.updateIfSet("layer", _layer);
    conf.updateIfSet("srs", _srs);
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
    if (_compilerOptions.maxGranularity().isSet())
        conf.set("max_granularity", _compilerOptions.maxGranularity().value());
    writeInterpolation(conf, _compilerOptions.geoInterp());
    return conf;
}
} // namespace Drivers
} // namespace osgEarth
