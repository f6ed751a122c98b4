#include <osgEarth/ElevationLayer>
#include <osgEarth/ImageLayer>
#include <osgEarth/Notify>
#include <osgEarth/Registry>

#include "layers/LayerHeights.h"
#include "sources/RasterSource.h"

#include <algorithm>

namespace osgEarth {
namespace {
constexpr int kImageSize = 256;
constexpr unsigned kHeightFieldSize = 257;

template <typename T> void removeFrom(std::vector<osg::ref_ptr<T>>& list, T* item)
{
    list.erase(std::remove(list.begin(), list.end(), item), list.end());
}
} // namespace

Layer::Layer() : osg::Referenced(true), _uid(Registry::instance()->createUID()) {}

TerrainLayer::TerrainLayer(const TerrainLayerOptions& options)
    : _name(options.name()), _minLevel(options.minLevel().value()), _maxLevel(options.maxLevel().value()),
      _enabled(options.enabled().value()), _visible(options.visible().value())
{
}

TerrainLayer::~TerrainLayer() = default;

const Status& TerrainLayer::open()
{
    std::lock_guard<std::mutex> lock(_openMutex);
    if (_opened || !_enabled)
        return _status;
    RasterRequest request;
    request.layerName = _name;
    request.heights = dynamic_cast<ElevationLayer*>(this) != nullptr;
    request.cachePath = _cachePath;
    request.cacheOnly = _cacheOnly;
    const optional<TileSourceOptions>& driver = getTerrainLayerRuntimeOptions().driver();
    const std::string policy = driver.value().getConfig().child("cache_policy").value("usage");
    if (driver.value().cachePath().isSet())
        request.cachePath = driver.value().cachePath().value();
    if (policy == "cache_only")
        request.cacheOnly = true;
    else if (policy == "no_cache")
        request.cachePath.clear();
    if (driver.isSet())
        _source = RasterSource::open(driver.value(), request, _status);
    else
        _status = Status(Status::ConfigurationError, "no driver is named");
    if (_status.isError())
        notifyLine(osg::WARN, std::string(request.heights ? "Elevation" : "Image") + " layer \"" + _name +
                                  "\": " + _status.message());
    else
        _profile = _source->profile();
    _opened = true;
    return _status;
}

void TerrainLayer::setVisible(bool value)
{
    if (_visible.exchange(value) != value)
        fireVisibleChanged();
}

double TerrainLayer::getDataResolution() const
{
    return isOpen() ? _source->resolutionDegrees() : 0.0;
}

GeoExtent TerrainLayer::getDataExtent() const
{
    return isOpen() ? _source->geographicExtent() : GeoExtent();
}

bool TerrainLayer::isKeyInRange(const TileKey& key) const
{
    return key.valid() && key.getLOD() >= _minLevel && key.getLOD() <= _maxLevel;
}

bool TerrainLayer::mayHaveData(const TileKey& key) const
{
    return isOpen() && isKeyInRange(key) && _source->geographicExtent().intersects(key.getExtent());
}

ImageLayer::ImageLayer(const ImageLayerOptions& options)
    : TerrainLayer(options), _options(options), _opacity(std::clamp(options.opacity().value(), 0.0f, 1.0f))
{
}

ImageLayer::ImageLayer(const std::string& name, const TileSourceOptions& driverOptions)
    : ImageLayer(ImageLayerOptions(name, driverOptions))
{
}

void ImageLayer::setOpacity(float value)
{
    value = std::clamp(value, 0.0f, 1.0f);
    if (_opacity.exchange(value) == value)
        return;
    const auto callbacks = _callbacks; // a callback may remove itself
    for (const auto& callback : callbacks)
        callback->onOpacityChanged(this);
}

GeoImage ImageLayer::createImage(const TileKey& key, ProgressCallback* progress)
{
    if (!mayHaveData(key) || (progress && progress->isCanceled()))
        return {};
    osg::ref_ptr<osg::Image> image;
    if (getSource()->readImage(key.getExtent(), kImageSize, image, progress) != RasterSource::Answer::Data)
        return {};
    return {image.get(), key.getExtent()};
}

void ImageLayer::addCallback(ImageLayerCallback* callback)
{
    if (callback)
        _callbacks.emplace_back(callback);
}

void ImageLayer::removeCallback(ImageLayerCallback* callback)
{
    removeFrom(_callbacks, callback);
}

void ImageLayer::fireVisibleChanged()
{
    const auto callbacks = _callbacks;
    for (const auto& callback : callbacks)
        callback->onVisibleChanged(this);
}

ElevationLayer::ElevationLayer(const ElevationLayerOptions& options)
    : TerrainLayer(options), _options(options)
{
}

ElevationLayer::ElevationLayer(const std::string& name, const TileSourceOptions& driverOptions)
    : ElevationLayer(ElevationLayerOptions(name, driverOptions))
{
}

GeoHeightField ElevationLayer::createHeightField(const TileKey& key, ProgressCallback* progress)
{
    if (!mayHaveData(key))
        return {};
    const GeoExtent& extent = key.getExtent();
    const SpatialReference* wgs84 = SpatialReference::get("wgs84");
    const GeoExtent geographic = extent.transform(wgs84);
    if (!geographic.isValid())
        return {};
    const auto window =
        readHeightWindow(*this, geographic, geographic.height() / (kHeightFieldSize - 1), progress);
    if (!window)
        return {};
    osg::ref_ptr<osg::HeightField> field = new osg::HeightField;
    field->allocate(kHeightFieldSize, kHeightFieldSize);
    bool any = false;
    for (unsigned row = 0; row < kHeightFieldSize; ++row)
        for (unsigned column = 0; column < kHeightFieldSize; ++column) {
            osg::Vec3d p(extent.west() + extent.width() * column / (kHeightFieldSize - 1),
                         extent.south() + extent.height() * row / (kHeightFieldSize - 1), 0.0);
            std::optional<double> height;
            if (extent.getSRS()->transform(p, wgs84, p))
                height = window->heightAt(p.x(), p.y());
            any = any || height.has_value();
            field->setHeight(column, row, height ? static_cast<float>(*height) : NO_DATA_VALUE);
        }
    return any ? GeoHeightField(field.get(), extent) : GeoHeightField();
}

void ElevationLayer::addCallback(ElevationLayerCallback* callback)
{
    if (callback)
        _callbacks.emplace_back(callback);
}

void ElevationLayer::removeCallback(ElevationLayerCallback* callback)
{
    removeFrom(_callbacks, callback);
}

void ElevationLayer::fireVisibleChanged()
{
    const auto callbacks = _callbacks;
    for (const auto& callback : callbacks)
        callback->onVisibleChanged(this);
}
} // namespace osgEarth
