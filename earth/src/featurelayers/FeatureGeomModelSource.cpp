#include "featurelayers/FeatureGeomModelSource.h"
#include "base/Gdal.h"
#include "drape/DrapeShape.h"
#include "featurelayers/LabelLayer.h"
#include "featurelayers/LazyGroup.h"
#include "featurelayers/LineLayer.h"
#include "features/OgrFeatureSource.h"
#include "globe/Wgs84.h"
#include "layers/ModelDrivers.h"
#include <osg/LOD>
#include <osgDB/FileUtils>
#include <osgEarth/Map>
#include <osgEarth/Notify>
#include <osgEarthDrivers/model_feature_geom/FeatureGeomModelOptions>
#include <osgEarthFeatures/FilterContext>

namespace osgEarth::Drivers {
namespace {
/// Whether the data seems to be there; reading it is left for later.
Status lookAt(const OGRFeatureOptions& options)
{
    if (options.geometry().valid() || options.connection().isSet())
        return Status::OK();
    if (options.url()->empty())
        return Status(Status::ConfigurationError, "the feature source names no url");
    const std::string& path = options.url()->full();
    if (options.url()->isRemote() || path.compare(0, 4, "/vsi") == 0)
        return Status::OK();
    if (osgDB::fileType(path) == osgDB::FILE_NOT_FOUND)
        return Status(Status::ResourceUnavailable, path + ": no such file");
    gdal::initialize();
    gdal::ErrorCapture errors;
    if (!GDALIdentifyDriverEx(path.c_str(), GDAL_OF_VECTOR, nullptr, nullptr))
        return Status(Status::ResourceUnavailable, path + ": not a vector format that OGR knows");
    return Status::OK();
}

class LayerBuild : public BackgroundBuild
{
public:
    LayerBuild(const FeatureGeomModelOptions& options, const osg::ref_ptr<FeatureSource>& source,
               const Map* map)
        : _options(options), _source(source), _map(map)
    {
    }

    osg::ref_ptr<osg::Node> build() override
    {
        osg::ref_ptr<osg::Group> group = new osg::Group();
        if (_source->open().isError()) {
            complain(_source->getStatus().message());
            return group;
        }
        osg::ref_ptr<StyleSheet> styles = _options.styles();
        if (!styles)
            styles = new StyleSheet();
        if (styles->selectors().empty())
            add(*group, Query(), *styles->getDefaultStyle());
        for (const StyleSelector& selector : styles->selectors())
            add(*group, selector.query().value(), *styles->getStyle(selector.getSelectedStyleName()));
        return group;
    }

private:
    void complain(const std::string& cause) const
    {
        notifyLine(osg::WARN, "Model layer \"" + _options.getConfig().value("name") + "\": " + cause);
    }

    /// The features that a query chooses, drawn in one style.
    void add(osg::Group& group, const Query& query, const Style& style) const
    {
        osg::ref_ptr<FeatureCursor> cursor = _source->createFeatureCursor(
            _options.query().isSet() ? _options.query()->combineWith(query) : query);
        if (!cursor) {
            const auto* ogr = dynamic_cast<const OgrFeatureSource*>(_source.get());
            complain(ogr ? ogr->lastError() : "its query cannot be carried out");
            return;
        }
        FeatureList features;
        cursor->fill(features);
        const SpatialReference* lonLat = SpatialReference::get("wgs84");
        bool points = false, lines = false;
        for (const auto& feature : features) {
            feature->transform(lonLat);
            const auto type = feature->getGeometry()->getComponentType();
            (type == Geometry::TYPE_POINTSET ? points : lines) = true;
        }

        const PolygonSymbol* polygon = style.get<PolygonSymbol>();
        const bool filled = lines && polygon && polygon->fill()->color().a() >= kLeastVisibleAlpha;
        const LineSymbol* line = style.get<LineSymbol>();
        if (lines && line && line->stroke()->color().a() >= kLeastVisibleAlpha)
            group.addChild(makeLineLayer(features, style, _map));
        if (points && style.has<TextSymbol>())
            group.addChild(makeLabelLayer(features, style, _map));
        else if (points || filled)
            group.addChild(compiled(features, style));
    }

    /// Fills and dots; the outlines of fills are lines of their own.
    osg::ref_ptr<osg::Node> compiled(FeatureList& features, const Style& style) const
    {
        Style without(style);
        without.remove<LineSymbol>();
        osg::ref_ptr<const Map> map;
        _map.lock(map);
        const osg::ref_ptr<Session> session = new Session(map.get());
        return GeometryCompiler(_options.compilerOptions())
            .compile(features, without, FilterContext(session.get()));
    }

    const FeatureGeomModelOptions _options;
    const osg::ref_ptr<FeatureSource> _source;
    const osg::observer_ptr<const Map> _map;
};

class FeatureGeomModelSource : public ModelSource
{
public:
    explicit FeatureGeomModelSource(const ModelSourceOptions& options)
        : ModelSource(options), _options(options)
    {
    }

protected:
    Status initialize(const osgDB::Options*) override
    {
        const FeatureSourceOptions& features = _options.featureOptions().value();
        if (!_options.featureOptions().isSet())
            return Status(Status::ConfigurationError, "it names no features");
        if (!makeSource())
            return Status(Status::ConfigurationError,
                          "there is no feature driver \"" + features.getDriver() + "\"");
        return lookAt(OGRFeatureOptions(features));
    }

    osg::Node* createNodeImplementation(const Map* map, ProgressCallback*) override
    {
        osg::ref_ptr<LazyGroup> layer = new LazyGroup(new LayerBuild(_options, makeSource(), map));
        const bool limited = _options.maxRange().isSet() || _options.minRange().isSet();
        if (!limited)
            return layer.release();
        osg::ref_ptr<osg::LOD> lod = new osg::LOD();
        lod->setCenterMode(osg::LOD::USER_DEFINED_CENTER);
        lod->setRadius(static_cast<float>(wgs84::kEquatorialRadius));
        lod->addChild(layer, _options.minRange().value(), _options.maxRange().value());
        return lod.release();
    }

private:
    /// One for each node, which lets it go once it is built: an open source may hold all of its file.
    osg::ref_ptr<FeatureSource> makeSource() const
    {
        return FeatureSourceFactory::create(_options.featureOptions().value());
    }

    const FeatureGeomModelOptions _options;
};
} // namespace

ModelSource* createFeatureGeomModelSource(const ModelSourceOptions& options)
{
    return new FeatureGeomModelSource(options);
}

namespace {
const ModelDriver driver("feature_geom", &createFeatureGeomModelSource);
} // namespace
} // namespace osgEarth::Drivers
