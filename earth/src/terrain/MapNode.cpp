#include <osgEarth/MapNode>

#include "terrain/QuadtreeTerrain.h"

#include <osg/ArgumentParser>
#include <osg/CullStack>
#include <osg/NodeVisitor>
#include <osgDB/FileNameUtils>
#include <osgDB/ReadFile>
#include <osgEarth/MapCallback>
#include <osgEarth/SpatialReference>

namespace osgEarth {
namespace {
class MapNodeFinder : public osg::NodeVisitor
{
public:
    explicit MapNodeFinder(unsigned travMask) : osg::NodeVisitor(TRAVERSE_ALL_CHILDREN)
    {
        setTraversalMask(travMask);
        setNodeMaskOverride(~0u);
    }

    void apply(osg::Group& group) override
    {
        if (found)
            return;
        found = dynamic_cast<MapNode*>(&group);
        if (!found)
            traverse(group);
    }

    MapNode* found = nullptr;
};
} // namespace

/// Keeps the model groups in step with the map.
class MapNode::LayerWatch : public MapCallback
{
public:
    explicit LayerWatch(MapNode* owner) : _owner(owner) {}
    void onModelLayerAdded(ModelLayer* layer, unsigned) override { _owner->onModelLayerAdded(layer); }
    void onModelLayerRemoved(ModelLayer* layer) override { _owner->onModelLayerRemoved(layer); }

private:
    MapNode* _owner;
};

MapNode* MapNode::load(osg::ArgumentParser& arguments)
{
    for (int i = 1; i < arguments.argc(); ++i) {
        if (arguments.isOption(i) || osgDB::getLowerCaseFileExtension(arguments[i]) != "earth")
            continue;
        osg::ref_ptr<osg::Node> node = osgDB::readRefNodeFile(arguments[i]);
        if (osg::ref_ptr<MapNode> mapNode = findMapNode(node.get())) {
            node = nullptr;
            return mapNode.release();
        }
    }
    return nullptr;
}

MapNode::MapNode() : _map(new Map)
{
    init();
}

MapNode::MapNode(const MapNodeOptions& options) : _map(new Map), _options(options)
{
    init();
}

MapNode::MapNode(Map* map) : _map(map ? map : new Map)
{
    init();
}

MapNode::MapNode(Map* map, const MapNodeOptions& options) : _map(map ? map : new Map), _options(options)
{
    init();
}

void MapNode::init()
{
    setName("osgEarth::MapNode");
    _engine = new QuadtreeTerrain(_map.get());
    addChild(_engine);
    _models = new osg::Group;
    _models->setName("Model layers");
    addChild(_models);
    ModelLayerVector layers;
    _map->getModelLayers(layers);
    for (const auto& layer : layers)
        onModelLayerAdded(layer.get());
    _watch = new LayerWatch(this);
    _map->addMapCallback(_watch.get());
}

MapNode::~MapNode()
{
    _map->removeMapCallback(_watch.get());
}

const SpatialReference* MapNode::getMapSRS() const
{
    return _map->getSRS();
}

Terrain* MapNode::getTerrain()
{
    return _engine->getTerrain();
}

const Terrain* MapNode::getTerrain() const
{
    return static_cast<const TerrainEngineNode*>(_engine.get())->getTerrain();
}

MapNode* MapNode::findMapNode(osg::Node* graph, unsigned travMask)
{
    if (!graph)
        return nullptr;
    MapNodeFinder finder(travMask);
    graph->accept(finder);
    return finder.found;
}

osg::Node* MapNode::getModelLayerNode(ModelLayer* layer) const
{
    const auto found = _modelNodes.find(layer);
    return found == _modelNodes.end() ? nullptr : found->second.get();
}

void MapNode::onModelLayerAdded(ModelLayer* layer)
{
    if (!layer || !layer->getEnabled() || _modelNodes.count(layer))
        return;
    osg::Node* scene = layer->getOrCreateSceneGraph(_map.get(), nullptr);
    if (!scene)
        return;
    osg::ref_ptr<osg::Group> group = new osg::Group;
    group->setName(layer->getName());
    group->addChild(scene);
    _models->addChild(group);
    _modelNodes[layer] = group;
}

void MapNode::onModelLayerRemoved(ModelLayer* layer)
{
    const auto found = _modelNodes.find(layer);
    if (found == _modelNodes.end())
        return;
    _models->removeChild(found->second);
    _modelNodes.erase(found);
}

osg::BoundingSphere MapNode::computeBound() const
{
    // The bound is the globe's and does not depend on which tiles are resident.
    osg::BoundingSphere bounds = _engine->getBound();
    bounds.expandBy(_models->getBound());
    return bounds;
}
} // namespace osgEarth
