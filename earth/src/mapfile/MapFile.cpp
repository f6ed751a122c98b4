#include "mapfile/MapFile.h"

#include "base/ConfigXml.h"

#include <osgEarth/Notify>

#include <istream>

namespace osgEarth {
namespace {
void warn(const std::string& file, const std::string& what)
{
    notifyLine(osg::WARN, "Map file \"" + file + "\": " + what);
}
} // namespace

bool MapFile::read(std::istream& in, const std::string& file, std::string& out_cause)
{
    Config root;
    if (!readXml(in, root, out_cause))
        return false;
    // Very old files call the root element <earth>.
    if (root.key() != "map" && root.key() != "earth") {
        out_cause = "its root element is <" + root.key() + ">, not <map>";
        return false;
    }
    root.setReferrer(file);
    _file = file;
    _options = Config("options");
    _layers.clear();
    for (const Config& element : root.children())
        if (element.key() == "options")
            _options.merge(element);
    for (const Config& element : root.children())
        if (element.key() != "options")
            readElement(element);
    _options.setReferrer(file);
    _mapNodeOptions = MapNodeOptions(_options);
    return true;
}

void MapFile::readElement(const Config& element)
{
    const std::string& key = element.key();
    if (key == "name" || key == "type") {
        // "round", "globe" and "flat" are other words for the two types.
        const std::string value = trim(element.value());
        if (key == "name")
            _options.set("name", value);
        else
            _options.set("type",
                         std::string(value == "projected" || value == "flat" ? "projected" : "geocentric"));
    } else if (key == "version") {
        const int version = as<int>(element.value(), 2);
        if (version > 2)
            warn(_file, "version " + toString(version) + " is newer than this reader, which reads 2");
    } else if (key == "image" || key == "elevation" || key == "heightfield" || key == "model")
        _layers.push_back(element);
    else if (key == "profile" || key == "cache" || key == "terrain") {
        if (!_options.hasChild(key))
            _options.add(element);
    } else
        warn(_file, "<" + key + "> means nothing here and is skipped");
}

osg::ref_ptr<Map> MapFile::createMap() const
{
    MapOptions options{ConfigOptions(_options)};
    options.referenceURI() = _file;
    osg::ref_ptr<Map> map = new Map(options);
    const bool cacheOnly = _mapNodeOptions.cacheOnly().value();
    if (cacheOnly)
        map->setCacheOnly(true);
    map->beginUpdate();
    for (const Config& layer : _layers) {
        if (layer.key() == "image")
            map->addImageLayer(new ImageLayer(ImageLayerOptions(ConfigOptions(layer))));
        else if (layer.key() == "model")
            map->addModelLayer(new ModelLayer(ModelLayerOptions(ConfigOptions(layer))));
        else
            map->addElevationLayer(new ElevationLayer(ElevationLayerOptions(ConfigOptions(layer))));
    }
    map->endUpdate();
    return map;
}

std::string MapFile::write(const Map& map, const MapNodeOptions& options)
{
    Config root("map");
    root.add("name", map.getName());
    root.add("type", map.isGeocentric() ? "geocentric" : "projected");
    root.add("version", "2");
    Config opts = map.getMapOptions().getConfig();
    opts.merge(options.getConfig());
    opts.key() = "options";
    opts.remove("name");
    opts.remove("type");
    root.add(opts);
    const auto add = [&](const char* key, Config conf, const auto& layer) {
        conf.key() = key;
        conf.set("visible", !layer.getEnabled() || layer.getVisible());
        root.add(conf);
    };
    ImageLayerVector images;
    map.getImageLayers(images);
    for (const auto& layer : images) {
        Config conf = layer->getImageLayerOptions().getConfig();
        conf.set("opacity", layer->getOpacity());
        add("image", conf, *layer);
    }
    ElevationLayerVector elevations;
    map.getElevationLayers(elevations);
    for (const auto& layer : elevations)
        add("elevation", layer->getElevationLayerOptions().getConfig(), *layer);
    ModelLayerVector models;
    map.getModelLayers(models);
    for (const auto& layer : models)
        add("model", layer->getModelLayerOptions().getConfig(), *layer);
    return writeXml(root);
}
} // namespace osgEarth
