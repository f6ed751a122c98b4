#include <osgEarth/ModelLayer>
#include <osgEarth/Notify>

#include "layers/ModelDrivers.h"

#include <algorithm>
#include <map>
#include <mutex>
#include <osg/BlendColor>
#include <osg/BlendFunc>
#include <osg/StateSet>

namespace osgEarth {
namespace {
struct DriverTable
{
    std::mutex mutex;
    std::map<std::string, ModelDriver::Make> makers;
};

// Made by the first who asks: drivers register before this file's own statics may be ready.
DriverTable& drivers()
{
    static DriverTable table;
    return table;
}
} // namespace

ModelDriver::ModelDriver(const std::string& name, Make make)
{
    DriverTable& table = drivers();
    std::lock_guard<std::mutex> lock(table.mutex);
    table.makers[name] = make;
}

ModelSource::ModelSource(const ModelSourceOptions& options) : _options(options)
{
    setThreadSafeRefUnref(true);
}

const Status& ModelSource::open(const osgDB::Options* readOptions)
{
    _status = initialize(readOptions);
    return _status;
}

osg::Node* ModelSource::createNode(const Map* map, ProgressCallback* progress)
{
    return _status.isOK() ? createNodeImplementation(map, progress) : nullptr;
}

ModelSource* ModelSourceFactory::create(const ModelSourceOptions& options)
{
    ModelDriver::Make make = nullptr;
    {
        DriverTable& table = drivers();
        std::lock_guard<std::mutex> lock(table.mutex);
        const auto known = table.makers.find(options.getDriver());
        if (known != table.makers.end())
            make = known->second;
    }
    return make ? make(options) : nullptr;
}

ModelLayer::ModelLayer(const ModelLayerOptions& options)
    : _options(options), _name(options.name().value()), _enabled(options.enabled().value()),
      _visible(options.visible().value()), _opacity(std::clamp(options.opacity().value(), 0.0f, 1.0f))
{
}

ModelLayer::ModelLayer(const std::string& name, const ModelSourceOptions& options)
    : ModelLayer(ModelLayerOptions(name, options))
{
}

ModelLayer::ModelLayer(const ModelLayerOptions& options, ModelSource* source) : ModelLayer(options)
{
    _source = source;
}

ModelLayer::ModelLayer(const std::string& name, osg::Node* node) : ModelLayer(ModelLayerOptions(name))
{
    _node = node;
    _opened = true;
    applyVisible();
}

ModelLayer::~ModelLayer() = default;

void ModelLayer::setReadOptions(const osgDB::Options* readOptions)
{
    std::lock_guard<std::mutex> lock(_mutex);
    _readOptions = readOptions;
}

const Status& ModelLayer::open()
{
    std::lock_guard<std::mutex> lock(_mutex);
    if (_opened || !_enabled)
        return _status;
    _opened = true;
    if (!_source.valid() && _options.driver().isSet())
        _source = ModelSourceFactory::create(_options.driver().value());
    if (_source.valid())
        _status = _source->open(_readOptions.get());
    else if (!_options.driver().isSet())
        _status = Status(Status::ConfigurationError, "no driver is named");
    else
        _status = Status(Status::ConfigurationError,
                         "there is no driver \"" + _options.driver().value().getDriver() + "\"");
    if (_status.isError())
        notifyLine(osg::WARN, "Model layer \"" + _name + "\": " + _status.message());
    return _status;
}

osg::Node* ModelLayer::getOrCreateSceneGraph(const Map* map, ProgressCallback* progress)
{
    if (!_enabled || open().isError())
        return nullptr;
    std::lock_guard<std::mutex> lock(_mutex);
    if (!_node.valid() && _source.valid()) {
        _node = _source->createNode(map, progress);
        applyVisible();
    }
    return _node.get();
}

osg::Node* ModelLayer::getSceneGraph(const UID&) const
{
    std::lock_guard<std::mutex> lock(_mutex);
    return _node.get();
}

void ModelLayer::applyVisible()
{
    if (!_node.valid())
        return;
    _node->setNodeMask(getVisible() ? ~0u : 0u);
    const float opacity = _opacity;
    if (opacity < 1.0f) {
        osg::StateSet* state = _node->getOrCreateStateSet();
        state->setAttributeAndModes(new osg::BlendColor(osg::Vec4(1.0f, 1.0f, 1.0f, opacity)));
        state->setAttributeAndModes(
            new osg::BlendFunc(osg::BlendFunc::CONSTANT_ALPHA, osg::BlendFunc::ONE_MINUS_CONSTANT_ALPHA),
            osg::StateAttribute::ON | osg::StateAttribute::OVERRIDE);
        state->setRenderingHint(osg::StateSet::TRANSPARENT_BIN);
    } else if (osg::StateSet* state = _node->getStateSet()) {
        state->removeAttribute(osg::StateAttribute::BLENDCOLOR);
        state->removeAttribute(osg::StateAttribute::BLENDFUNC);
    }
}

void ModelLayer::setVisible(bool value)
{
    if (_visible.exchange(value) == value)
        return;
    {
        std::lock_guard<std::mutex> lock(_mutex);
        applyVisible();
    }
    const auto callbacks = _callbacks;
    for (const auto& callback : callbacks)
        callback->onVisibleChanged(this);
}

void ModelLayer::setOpacity(float value)
{
    value = std::clamp(value, 0.0f, 1.0f);
    if (_opacity.exchange(value) == value)
        return;
    {
        std::lock_guard<std::mutex> lock(_mutex);
        applyVisible();
    }
    const auto callbacks = _callbacks;
    for (const auto& callback : callbacks)
        callback->onOpacityChanged(this);
}

void ModelLayer::addCallback(ModelLayerCallback* callback)
{
    if (callback)
        _callbacks.emplace_back(callback);
}

void ModelLayer::removeCallback(ModelLayerCallback* callback)
{
    _callbacks.erase(std::remove(_callbacks.begin(), _callbacks.end(), callback), _callbacks.end());
}
} // namespace osgEarth
