#include "terrain/QuadtreeTerrain.h"

#include "globe/PickRay.h"
#include "globe/Wgs84.h"
#include "terrain/TileNode.h"
#include "terrain/TileRefresher.h"
#include "terrain/TileScene.h"

#include <osg/CullFace>
#include <osg/PagedLOD>
#include <osg/Program>
#include <osgEarth/MapCallback>
#include <osgEarth/MapNode>
#include <osgEarth/SpatialReference>
#include <osgUtil/IntersectionVisitor>
#include <osgUtil/LineSegmentIntersector>

#include <limits>

namespace osgEarth {
namespace {
const char* const kTerrainVertexShader = R"(#version 330 compatibility
out vec2 ax_tileCoordinate;
void main()
{
    gl_Position = gl_ModelViewProjectionMatrix * gl_Vertex;
    ax_tileCoordinate = gl_MultiTexCoord0.st;
}
)";

// No lighting: relief is part of the picture, and a map that goes dark with
// the sun is of no use to a pilot.
const char* const kTerrainFragmentShader = R"(#version 330 compatibility
in vec2 ax_tileCoordinate;
uniform sampler2D ax_tilePicture;
out vec4 ax_colour;
void main()
{
    ax_colour = texture(ax_tilePicture, ax_tileCoordinate);
}
)";

/// Radius of a sphere that holds the globe and everything on the ground, metres.
constexpr float kGlobeRadius = static_cast<float>(wgs84::kEquatorialRadius + 10000.0);

/// Brings the two tiles of the coarsest level through the pager, as all others.
class RootTiles : public osg::PagedLOD
{
public:
    explicit RootTiles(std::shared_ptr<TileScene> scene) : _scene(std::move(scene))
    {
        setName("Terrain roots");
        setCenterMode(USER_DEFINED_CENTER);
        setCenter(osg::Vec3());
        setRadius(kGlobeRadius);
        setNumChildrenThatCannotBeExpired(1);
        setRange(0, 0.0f, std::numeric_limits<float>::max());
        setFileName(0, _scene->rootsFileName());
    }

    using osg::PagedLOD::addChild;
    bool addChild(osg::Node* child) override
    {
        if (!osg::PagedLOD::addChild(child))
            return false;
        if (osg::Group* group = child->asGroup())
            _scene->onMerged(*group);
        return true;
    }

    TileNode* tile(unsigned index) const
    {
        const osg::Group* group = getNumChildren() > 0 ? getChild(0)->asGroup() : nullptr;
        return group && index < group->getNumChildren()
                   ? const_cast<TileNode*>(static_cast<const TileNode*>(group->getChild(index)))
                   : nullptr;
    }

private:
    std::shared_ptr<TileScene> _scene;
};

void enqueueAll(TileNode* tile, TileRefresher& refresher)
{
    refresher.enqueue(tile);
    if (osg::Group* quarters = tile->quarters())
        for (unsigned i = 0; i < quarters->getNumChildren(); ++i)
            enqueueAll(static_cast<TileNode*>(quarters->getChild(i)), refresher);
}
} // namespace

class QuadtreeTerrain::Private
{
public:
    explicit Private(const std::shared_ptr<TileScene>& tileScene)
        : scene(tileScene), roots(new RootTiles(tileScene)), refresher(tileScene)
    {
    }

    std::shared_ptr<TileScene> scene;
    osg::ref_ptr<RootTiles> roots;
    TileRefresher refresher;
    osg::ref_ptr<LayerWatch> watch;
    /// Set by layer callbacks, honoured on the next update, so that a burst of changes costs one refresh.
    bool refreshWanted = false;
};

/// Any change of what the ground shows makes the tiles anew.
class QuadtreeTerrain::LayerWatch : public MapCallback
{
public:
    explicit LayerWatch(QuadtreeTerrain* engine) : _layerNews(new LayerNews(engine)) {}

    void onImageLayerAdded(ImageLayer* layer, unsigned) override { follow(layer); }
    void onImageLayerRemoved(ImageLayer* layer, unsigned) override { unfollow(layer); }
    void onImageLayerMoved(ImageLayer*, unsigned, unsigned) override { _layerNews->changed(); }
    void onElevationLayerAdded(ElevationLayer* layer, unsigned) override { follow(layer); }
    void onElevationLayerRemoved(ElevationLayer* layer, unsigned) override { unfollow(layer); }
    void onElevationLayerMoved(ElevationLayer*, unsigned, unsigned) override { _layerNews->changed(); }

    void followAll(const Map& map)
    {
        forAll(map, [](auto& layer, auto* news) { layer.addCallback(news); });
    }
    void unfollowAll(const Map& map)
    {
        forAll(map, [](auto& layer, auto* news) { layer.removeCallback(news); });
    }

private:
    template <typename Do> void forAll(const Map& map, const Do& act)
    {
        ImageLayerVector images;
        map.getImageLayers(images);
        for (const auto& layer : images)
            act(*layer, _layerNews.get());
        ElevationLayerVector elevations;
        map.getElevationLayers(elevations);
        for (const auto& layer : elevations)
            act(*layer, _layerNews->forElevation.get());
    }

    struct LayerNews : public ImageLayerCallback
    {
        struct ElevationNews : public ElevationLayerCallback
        {
            explicit ElevationNews(QuadtreeTerrain* owner) : engine(owner) {}
            void onVisibleChanged(TerrainLayer*) override { engine->_private->refreshWanted = true; }
            QuadtreeTerrain* engine;
        };

        explicit LayerNews(QuadtreeTerrain* owner) : engine(owner), forElevation(new ElevationNews(owner)) {}
        void onVisibleChanged(TerrainLayer*) override { changed(); }
        void onOpacityChanged(ImageLayer*) override { changed(); }
        void changed() { engine->_private->refreshWanted = true; }

        QuadtreeTerrain* engine;
        osg::ref_ptr<ElevationNews> forElevation;
    };

    void follow(ImageLayer* layer)
    {
        layer->addCallback(_layerNews.get());
        _layerNews->changed();
    }
    void unfollow(ImageLayer* layer)
    {
        layer->removeCallback(_layerNews.get());
        _layerNews->changed();
    }
    void follow(ElevationLayer* layer)
    {
        layer->addCallback(_layerNews->forElevation.get());
        _layerNews->changed();
    }
    void unfollow(ElevationLayer* layer)
    {
        layer->removeCallback(_layerNews->forElevation.get());
        _layerNews->changed();
    }

    osg::ref_ptr<LayerNews> _layerNews;
};

QuadtreeTerrain::QuadtreeTerrain(Map* map) : _changeableMap(map)
{
    setName("Terrain");
    _map = map;
    _terrain = new Terrain(this, map->getProfile());
    map->getSRS()->populateCoordinateSystemNode(this);
    _private = std::make_unique<Private>(TileScene::create(map, _terrain.get()));
    addChild(_private->roots);
    setNumChildrenRequiringUpdateTraversal(getNumChildrenRequiringUpdateTraversal() + 1);

    osg::ref_ptr<osg::Program> program = new osg::Program;
    program->setName("terrain");
    program->addShader(new osg::Shader(osg::Shader::VERTEX, kTerrainVertexShader));
    program->addShader(new osg::Shader(osg::Shader::FRAGMENT, kTerrainFragmentShader));
    osg::StateSet* state = getOrCreateStateSet();
    state->setAttributeAndModes(program, osg::StateAttribute::ON);
    state->addUniform(new osg::Uniform("ax_tilePicture", 0));
    state->setAttributeAndModes(new osg::CullFace(osg::CullFace::BACK), osg::StateAttribute::ON);
    state->setMode(GL_BLEND, osg::StateAttribute::OFF);

    _private->watch = new LayerWatch(this);
    _private->watch->followAll(*map);
    map->addMapCallback(_private->watch.get());
}

QuadtreeTerrain::~QuadtreeTerrain()
{
    _changeableMap->removeMapCallback(_private->watch.get());
    _private->watch->unfollowAll(*_map);
    _private->scene->detach();
}

QuadtreeTerrain* QuadtreeTerrain::of(const MapNode& mapNode)
{
    return static_cast<QuadtreeTerrain*>(mapNode.getTerrainEngine());
}

bool QuadtreeTerrain::intersectRay(const osg::Vec3d& origin, const osg::Vec3d& direction,
                                   osg::Vec3d& outWorld, osg::ref_ptr<osg::Node>* outTile) const
{
    TerrainRay ray{origin, direction};
    if (ray.direction.normalize() <= 0.0)
        return false;
    double distance = std::numeric_limits<double>::max();
    TileNode* hit = nullptr;
    for (unsigned i = 0; TileNode* root = _private->roots->tile(i); ++i)
        root->intersect(ray, distance, hit);
    if (!hit)
        return false;
    outWorld = ray.origin + ray.direction * distance;
    if (outTile)
        *outTile = hit;
    return true;
}

void QuadtreeTerrain::intersectSegment(osgUtil::IntersectionVisitor& visitor,
                                       osgUtil::LineSegmentIntersector& segment) const
{
    const osg::Vec3d way = segment.getEnd() - segment.getStart();
    const double length = way.length();
    osg::ref_ptr<osg::Node> tile;
    osg::Vec3d ground;
    if (segment.reachedLimit() || !(length > 0.0) || !intersectRay(segment.getStart(), way, ground, &tile))
        return;
    osgUtil::LineSegmentIntersector::Intersection hit;
    hit.ratio = (ground - segment.getStart()).length() / length;
    if (hit.ratio > 1.0)
        return;
    hit.nodePath = visitor.getNodePath();
    hit.nodePath.push_back(tile);
    hit.matrix = visitor.getModelMatrix();
    hit.localIntersectionPoint = ground;
    segment.insertIntersection(hit);
}

const TileContent* QuadtreeTerrain::contentAt(double longitude, double latitude) const
{
    for (unsigned i = 0; TileNode* tile = _private->roots->tile(i); ++i) {
        const TileBounds& bounds = tile->content().bounds;
        if (longitude < bounds.west || longitude > bounds.east)
            continue;
        while (TileNode* quarter = tile->quarterAt(longitude, latitude))
            tile = quarter;
        return &tile->content();
    }
    return nullptr;
}

bool QuadtreeTerrain::heightAt(double longitude, double latitude, double& outHeight) const
{
    const TileContent* content = contentAt(longitude, latitude);
    if (content)
        outHeight = content->heightAt(longitude, latitude);
    return content != nullptr;
}

void QuadtreeTerrain::refresh()
{
    _private->scene->bumpRevision();
    _private->refresher.clear();
    for (unsigned i = 0; TileNode* root = _private->roots->tile(i); ++i)
        enqueueAll(root, _private->refresher);
}

bool QuadtreeTerrain::isRefreshing() const
{
    return _private->refreshWanted || _private->refresher.busy();
}

void QuadtreeTerrain::traverse(osg::NodeVisitor& nv)
{
    if (nv.getVisitorType() == osg::NodeVisitor::UPDATE_VISITOR) {
        if (_private->refreshWanted) {
            _private->refreshWanted = false;
            refresh();
        }
        for (const auto& tile : _private->scene->takeOutdated())
            _private->refresher.enqueue(tile.get());
        _private->refresher.apply();
        _terrain->fireQueuedTiles();
    } else if (osgUtil::CullVisitor* visitor = nv.asCullVisitor()) {
        _private->scene->setView(*visitor);
    } else if (auto* picking = dynamic_cast<osgUtil::IntersectionVisitor*>(&nv)) {
        // As levels of detail the tiles would be taken for all that they ever showed.
        if (auto* segment = dynamic_cast<osgUtil::LineSegmentIntersector*>(picking->getIntersector())) {
            intersectSegment(*picking, *segment);
            return;
        }
    }
    TerrainEngineNode::traverse(nv);
}

osg::BoundingSphere QuadtreeTerrain::computeBound() const
{
    return {osg::Vec3(), kGlobeRadius};
}
} // namespace osgEarth
