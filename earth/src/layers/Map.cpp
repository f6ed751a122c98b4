#include <osgEarth/Map>

#include <osgEarth/Notify>
#include <osgEarth/Registry>

#include <algorithm>
#include <shared_mutex>

namespace osgEarth {
namespace {
template <typename T> using Stack = std::vector<osg::ref_ptr<T>>;

// The three actions of one kind of layer.
template <typename T> struct Actions;
template <> struct Actions<ImageLayer>
{
    static constexpr auto add = MapModelChange::ADD_IMAGE_LAYER;
    static constexpr auto remove = MapModelChange::REMOVE_IMAGE_LAYER;
    static constexpr auto move = MapModelChange::MOVE_IMAGE_LAYER;
};
template <> struct Actions<ElevationLayer>
{
    static constexpr auto add = MapModelChange::ADD_ELEVATION_LAYER;
    static constexpr auto remove = MapModelChange::REMOVE_ELEVATION_LAYER;
    static constexpr auto move = MapModelChange::MOVE_ELEVATION_LAYER;
};
template <> struct Actions<ModelLayer>
{
    static constexpr auto add = MapModelChange::ADD_MODEL_LAYER;
    static constexpr auto remove = MapModelChange::REMOVE_MODEL_LAYER;
    static constexpr auto move = MapModelChange::MOVE_MODEL_LAYER;
};

template <typename T> unsigned indexOf(const Stack<T>& stack, const T* layer)
{
    return static_cast<unsigned>(std::find(stack.begin(), stack.end(), layer) - stack.begin());
}
} // namespace

void MapCallback::onMapModelChanged(const MapModelChange& change)
{
    const auto first = static_cast<unsigned>(change.getFirstIndex());
    const auto second = static_cast<unsigned>(change.getSecondIndex());
    switch (change.getAction()) {
    case MapModelChange::ADD_IMAGE_LAYER:
        return onImageLayerAdded(change.getImageLayer(), first);
    case MapModelChange::REMOVE_IMAGE_LAYER:
        return onImageLayerRemoved(change.getImageLayer(), first);
    case MapModelChange::MOVE_IMAGE_LAYER:
        return onImageLayerMoved(change.getImageLayer(), first, second);
    case MapModelChange::ADD_ELEVATION_LAYER:
        return onElevationLayerAdded(change.getElevationLayer(), first);
    case MapModelChange::REMOVE_ELEVATION_LAYER:
        return onElevationLayerRemoved(change.getElevationLayer(), first);
    case MapModelChange::MOVE_ELEVATION_LAYER:
        return onElevationLayerMoved(change.getElevationLayer(), first, second);
    case MapModelChange::ADD_MODEL_LAYER:
        return onModelLayerAdded(change.getModelLayer(), first);
    case MapModelChange::REMOVE_MODEL_LAYER:
        return onModelLayerRemoved(change.getModelLayer());
    case MapModelChange::MOVE_MODEL_LAYER:
        return onModelLayerMoved(change.getModelLayer(), first, second);
    case MapModelChange::BEGIN_BATCH_UPDATE:
        return onBeginUpdate();
    case MapModelChange::END_BATCH_UPDATE:
        return onEndUpdate();
    case MapModelChange::TOGGLE_ELEVATION_LAYER:
    case MapModelChange::ADD_MASK_LAYER:
    case MapModelChange::REMOVE_MASK_LAYER:
    case MapModelChange::UNSPECIFIED:
        return;
    }
}

struct Map::Impl
{
    explicit Impl(Map* owner);

    const UID uid = Registry::instance()->createUID();
    mutable std::shared_mutex mutex;
    Stack<ImageLayer> images;
    Stack<ElevationLayer> elevations;
    Stack<ModelLayer> models;
    std::vector<osg::ref_ptr<MapCallback>> callbacks;
    Revision revision{0};

    Stack<ImageLayer>& stack(ImageLayer*) { return images; }
    Stack<ElevationLayer>& stack(ElevationLayer*) { return elevations; }
    Stack<ModelLayer>& stack(ModelLayer*) { return models; }

    std::vector<osg::ref_ptr<MapCallback>> copyCallbacks() const
    {
        std::shared_lock<std::shared_mutex> lock(mutex);
        return callbacks;
    }

    void tell(MapModelChange::ActionType action, Layer* layer = nullptr, int first = -1, int second = -1)
    {
        Revision now;
        {
            std::shared_lock<std::shared_mutex> lock(mutex);
            now = revision;
        }
        const MapModelChange change(action, now, layer, first, second);
        for (const auto& callback : copyCallbacks())
            callback->onMapModelChanged(change);
    }

    // Hidden elevation layers give no heights: hiding or showing one changes the ground.
    struct ToggleCallback : public ElevationLayerCallback
    {
        explicit ToggleCallback(Map* owner) : map(owner) {}
        void onVisibleChanged(TerrainLayer* layer) override
        {
            osg::ref_ptr<Map> safe;
            if (!map.lock(safe))
                return;
            {
                std::unique_lock<std::shared_mutex> lock(safe->_impl->mutex);
                ++safe->_impl->revision;
            }
            auto* elevation = static_cast<ElevationLayer*>(layer);
            safe->_impl->tell(MapModelChange::TOGGLE_ELEVATION_LAYER, layer,
                              static_cast<int>(indexOf(safe->_impl->elevations, elevation)));
        }
        osg::observer_ptr<Map> map;
    };
    osg::ref_ptr<ToggleCallback> toggle;

    void watch(ElevationLayer* layer) { layer->addCallback(toggle.get()); }
    void unwatch(ElevationLayer* layer) { layer->removeCallback(toggle.get()); }
    void watch(Layer*) {}
    void unwatch(Layer*) {}

    template <typename T> void insert(T* layer, unsigned index)
    {
        Stack<T>& s = stack(layer);
        {
            std::unique_lock<std::shared_mutex> lock(mutex);
            if (std::find(s.begin(), s.end(), layer) != s.end())
                return;
            index = std::min(index, static_cast<unsigned>(s.size()));
            s.insert(s.begin() + index, layer);
            ++revision;
        }
        watch(layer);
        tell(Actions<T>::add, layer, static_cast<int>(index));
    }

    template <typename T> void remove(T* layer)
    {
        if (!layer)
            return;
        const osg::ref_ptr<T> keep = layer; // until everyone has heard
        Stack<T>& s = stack(layer);
        unsigned index;
        {
            std::unique_lock<std::shared_mutex> lock(mutex);
            index = indexOf(s, layer);
            if (index >= s.size())
                return;
            s.erase(s.begin() + index);
            ++revision;
        }
        unwatch(layer);
        tell(Actions<T>::remove, layer, static_cast<int>(index));
    }

    template <typename T> void move(T* layer, unsigned newIndex)
    {
        if (!layer)
            return;
        const osg::ref_ptr<T> keep = layer;
        Stack<T>& s = stack(layer);
        unsigned index;
        {
            std::unique_lock<std::shared_mutex> lock(mutex);
            index = indexOf(s, layer);
            if (index >= s.size())
                return;
            newIndex = std::min(newIndex, static_cast<unsigned>(s.size() - 1));
            if (newIndex == index)
                return;
            s.erase(s.begin() + index);
            s.insert(s.begin() + newIndex, layer);
            ++revision;
        }
        tell(Actions<T>::move, layer, static_cast<int>(index), static_cast<int>(newIndex));
    }

    template <typename T, typename Out> Revision copy(const Stack<T>& s, Out& out) const
    {
        std::shared_lock<std::shared_mutex> lock(mutex);
        out.insert(out.end(), s.begin(), s.end());
        return revision;
    }

    template <typename T, typename Match> T* find(const Stack<T>& s, Match match) const
    {
        std::shared_lock<std::shared_mutex> lock(mutex);
        for (const auto& layer : s)
            if (match(*layer))
                return layer.get();
        return nullptr;
    }

    template <typename T> T* byName(const Stack<T>& s, const std::string& name) const
    {
        return find(s, [&](const T& layer) { return layer.getName() == name; });
    }

    template <typename T> T* byUid(const Stack<T>& s, UID uid_) const
    {
        return find(s, [&](const T& layer) { return layer.getUID() == uid_; });
    }

    template <typename T> T* at(const Stack<T>& s, int index) const
    {
        std::shared_lock<std::shared_mutex> lock(mutex);
        return index >= 0 && index < static_cast<int>(s.size()) ? s[static_cast<size_t>(index)].get()
                                                                : nullptr;
    }

    template <typename T> int count(const Stack<T>& s) const
    {
        std::shared_lock<std::shared_mutex> lock(mutex);
        return static_cast<int>(s.size());
    }
};

Map::Impl::Impl(Map* owner) : toggle(new ToggleCallback(owner)) {}

Map::Map(const MapOptions& options)
    : osg::Referenced(true), _options(options), _name(options.name().value()), _impl(new Impl(this))
{
    if (options.profile().isSet()) {
        _profile = Profile::create(options.profile().value());
        if (!_profile.valid())
            notifyLine(osg::WARN,
                       "Map \"" + _name + "\": its profile is not understood, global-geodetic is used");
    }
    if (!_profile.valid() || isGeocentric())
        _profile = Registry::instance()->getGlobalGeodeticProfile();
}

Map::~Map()
{
    for (const auto& layer : _impl->elevations)
        _impl->unwatch(layer.get());
}

UID Map::getUID() const
{
    return _impl->uid;
}

bool Map::isGeocentric() const
{
    return _options.coordSysType().value() != MapOptions::CSTYPE_PROJECTED;
}

const SpatialReference* Map::getWorldSRS() const
{
    return isGeocentric() ? getSRS()->getECEF() : getSRS();
}

Revision Map::getDataModelRevision() const
{
    std::shared_lock<std::shared_mutex> lock(_impl->mutex);
    return _impl->revision;
}

void Map::prepare(TerrainLayer* layer) const
{
    if (layer->_cachePath.empty())
        layer->_cachePath = _options.cachePath().value();
    layer->_cacheOnly = layer->_cacheOnly || _cacheOnly;
    layer->open();
}

void Map::addImageLayer(ImageLayer* layer)
{
    insertImageLayer(layer, ~0u);
}

void Map::insertImageLayer(ImageLayer* layer, unsigned index)
{
    if (!layer)
        return;
    prepare(layer);
    _impl->insert(layer, index);
}

void Map::removeImageLayer(ImageLayer* layer)
{
    _impl->remove(layer);
}

void Map::moveImageLayer(ImageLayer* layer, unsigned newIndex)
{
    _impl->move(layer, newIndex);
}

Revision Map::getImageLayers(ImageLayerVector& out_layers) const
{
    return _impl->copy(_impl->images, out_layers);
}

int Map::getNumImageLayers() const
{
    return _impl->count(_impl->images);
}

ImageLayer* Map::getImageLayerByName(const std::string& name) const
{
    return _impl->byName(_impl->images, name);
}

ImageLayer* Map::getImageLayerByUID(UID uid) const
{
    return _impl->byUid(_impl->images, uid);
}

ImageLayer* Map::getImageLayerAt(int index) const
{
    return _impl->at(_impl->images, index);
}

void Map::addElevationLayer(ElevationLayer* layer)
{
    if (!layer)
        return;
    prepare(layer);
    _impl->insert(layer, ~0u);
}

void Map::removeElevationLayer(ElevationLayer* layer)
{
    _impl->remove(layer);
}

void Map::moveElevationLayer(ElevationLayer* layer, unsigned newIndex)
{
    _impl->move(layer, newIndex);
}

Revision Map::getElevationLayers(ElevationLayerVector& out_layers) const
{
    return _impl->copy(_impl->elevations, out_layers);
}

int Map::getNumElevationLayers() const
{
    return _impl->count(_impl->elevations);
}

ElevationLayer* Map::getElevationLayerByName(const std::string& name) const
{
    return _impl->byName(_impl->elevations, name);
}

ElevationLayer* Map::getElevationLayerByUID(UID uid) const
{
    return _impl->byUid(_impl->elevations, uid);
}

ElevationLayer* Map::getElevationLayerAt(int index) const
{
    return _impl->at(_impl->elevations, index);
}

void Map::addModelLayer(ModelLayer* layer)
{
    insertModelLayer(layer, ~0u);
}

void Map::insertModelLayer(ModelLayer* layer, unsigned index)
{
    if (!layer)
        return;
    layer->open();
    _impl->insert(layer, index);
}

void Map::removeModelLayer(ModelLayer* layer)
{
    _impl->remove(layer);
}

void Map::moveModelLayer(ModelLayer* layer, unsigned newIndex)
{
    _impl->move(layer, newIndex);
}

Revision Map::getModelLayers(ModelLayerVector& out_layers) const
{
    return _impl->copy(_impl->models, out_layers);
}

int Map::getNumModelLayers() const
{
    return _impl->count(_impl->models);
}

ModelLayer* Map::getModelLayerByName(const std::string& name) const
{
    return _impl->byName(_impl->models, name);
}

ModelLayer* Map::getModelLayerByUID(UID uid) const
{
    return _impl->byUid(_impl->models, uid);
}

ModelLayer* Map::getModelLayerAt(int index) const
{
    return _impl->at(_impl->models, index);
}

void Map::clear()
{
    ImageLayerVector images;
    getImageLayers(images);
    ElevationLayerVector elevations;
    getElevationLayers(elevations);
    ModelLayerVector models;
    getModelLayers(models);
    beginUpdate();
    for (const auto& layer : images)
        removeImageLayer(layer.get());
    for (const auto& layer : elevations)
        removeElevationLayer(layer.get());
    for (const auto& layer : models)
        removeModelLayer(layer.get());
    endUpdate();
}

void Map::addMapCallback(MapCallback* callback) const
{
    if (!callback)
        return;
    std::unique_lock<std::shared_mutex> lock(_impl->mutex);
    _impl->callbacks.emplace_back(callback);
}

void Map::removeMapCallback(MapCallback* callback)
{
    std::unique_lock<std::shared_mutex> lock(_impl->mutex);
    auto& list = _impl->callbacks;
    list.erase(std::remove(list.begin(), list.end(), callback), list.end());
}

void Map::beginUpdate()
{
    _impl->tell(MapModelChange::BEGIN_BATCH_UPDATE);
}

void Map::endUpdate()
{
    _impl->tell(MapModelChange::END_BATCH_UPDATE);
}
} // namespace osgEarth
