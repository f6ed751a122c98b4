#include <osgEarth/Terrain>

#include "globe/PickRay.h"
#include "terrain/QuadtreeTerrain.h"
#include "terrain/TileNode.h"

#include <osgEarth/SpatialReference>
#include <osgViewer/View>

#include <algorithm>
#include <cmath>

namespace osgEarth {
namespace {
bool toGeographic(const SpatialReference* from, const SpatialReference* geographic, double x, double y,
                  osg::Vec3d& out)
{
    if (!from || !std::isfinite(x) || !std::isfinite(y))
        return false;
    if (!from->transform(osg::Vec3d(x, y, 0.0), geographic, out))
        return false;
    if (out.y() < -90.0 || out.y() > 90.0)
        return false;
    out.x() = std::remainder(out.x(), 360.0);
    return true;
}

void store(double height, double* aboveMSL, double* aboveEllipsoid)
{
    if (aboveMSL)
        *aboveMSL = height;
    if (aboveEllipsoid)
        *aboveEllipsoid = height;
}

/// Turns an event's position into the window's pixels, y upwards. Events carry
/// the range that their positions are meant in; before the first event that
/// range says nothing, and positions are pixels.
void toWindow(osg::View* view, float mx, float my, double& x, double& y)
{
    x = mx;
    y = my;
    const auto* viewerView = dynamic_cast<osgViewer::View*>(view);
    const osg::GraphicsContext* context = view->getCamera()->getGraphicsContext();
    if (!viewerView || !viewerView->getEventQueue() || !context || !context->getTraits())
        return;
    const osgGA::GUIEventAdapter* state = viewerView->getEventQueue()->getCurrentEventState();
    const double width = state->getXmax() - state->getXmin();
    const double height = state->getYmax() - state->getYmin();
    constexpr double kUnsetRange = 2.0;
    if (width <= kUnsetRange || height <= kUnsetRange)
        return;
    x = (mx - state->getXmin()) / width * context->getTraits()->width;
    y = (my - state->getYmin()) / height;
    if (state->getMouseYOrientation() == osgGA::GUIEventAdapter::Y_INCREASING_DOWNWARDS)
        y = 1.0 - y;
    y *= context->getTraits()->height;
}
} // namespace

Terrain::Terrain(QuadtreeTerrain* engine, const Profile* profile)
    : _engine(engine), _graph(engine), _profile(profile)
{
}

bool Terrain::getHeight(const SpatialReference* srs, double x, double y, double* outHeightAboveMSL,
                        double* outHeightAboveEllipsoid) const
{
    osg::Vec3d place;
    double height = 0.0;
    if (!_graph.valid() || !toGeographic(srs, getSRS()->getGeographicSRS(), x, y, place) ||
        !_engine->heightAt(place.x(), place.y(), height))
        return false;
    store(height, outHeightAboveMSL, outHeightAboveEllipsoid);
    return true;
}

bool Terrain::getHeight(osg::Node* patch, const SpatialReference* srs, double x, double y,
                        double* outHeightAboveMSL, double* outHeightAboveEllipsoid) const
{
    const auto* tile = dynamic_cast<TileNode*>(patch);
    osg::Vec3d place;
    if (!tile || !toGeographic(srs, getSRS()->getGeographicSRS(), x, y, place))
        return false;
    const TileBounds& bounds = tile->content().bounds;
    if (place.x() < bounds.west || place.x() > bounds.east || place.y() < bounds.south ||
        place.y() > bounds.north)
        return false;
    store(tile->content().heightAt(place.x(), place.y()), outHeightAboveMSL, outHeightAboveEllipsoid);
    return true;
}

bool Terrain::getWorldCoordsUnderMouse(osg::View* view, float mx, float my, osg::Vec3d& outWorld) const
{
    osg::ref_ptr<osg::Node> node;
    return getWorldCoordsUnderMouse(view, mx, my, outWorld, node);
}

bool Terrain::getWorldCoordsUnderMouse(osg::View* view, float mx, float my, osg::Vec3d& outWorld,
                                       osg::ref_ptr<osg::Node>& outNode) const
{
    if (!view || !view->getCamera() || !_graph.valid())
        return false;
    double x = 0.0;
    double y = 0.0;
    toWindow(view, mx, my, x, y);
    TerrainRay ray;
    return pickRay(*view->getCamera(), x, y, ray) &&
           _engine->intersectRay(ray.origin, ray.direction, outWorld, &outNode);
}

void Terrain::addTerrainCallback(TerrainCallback* callback)
{
    if (!callback)
        return;
    removeTerrainCallback(callback);
    const std::lock_guard<std::mutex> lock(_mutex);
    _callbacks.emplace_back(callback);
}

void Terrain::removeTerrainCallback(TerrainCallback* callback)
{
    const std::lock_guard<std::mutex> lock(_mutex);
    _callbacks.erase(std::remove(_callbacks.begin(), _callbacks.end(), callback), _callbacks.end());
}

void Terrain::accept(osg::NodeVisitor& nv)
{
    osg::ref_ptr<osg::Node> graph;
    if (_graph.lock(graph))
        graph->accept(nv);
}

void Terrain::notifyTileAdded(const TileKey& key, osg::Node* tile)
{
    const std::lock_guard<std::mutex> lock(_mutex);
    _added.push_back({key, tile});
}

void Terrain::fireTileAdded(const TileKey& key, osg::Node* tile)
{
    fire({{key, tile}});
}

void Terrain::fireQueuedTiles()
{
    std::vector<AddedTile> added;
    {
        const std::lock_guard<std::mutex> lock(_mutex);
        added.swap(_added);
    }
    if (!added.empty())
        fire(added);
}

void Terrain::fire(const std::vector<AddedTile>& added)
{
    // Callbacks may add and remove callbacks, so none runs under the lock.
    std::vector<osg::ref_ptr<TerrainCallback>> callbacks;
    {
        const std::lock_guard<std::mutex> lock(_mutex);
        callbacks = _callbacks;
    }
    for (const auto& callback : callbacks) {
        TerrainCallbackContext context(this);
        for (const AddedTile& tile : added) {
            osg::ref_ptr<osg::Node> node;
            if (tile.node.lock(node))
                callback->onTileAdded(tile.key, node.get(), context);
            if (context.markedForRemoval())
                break;
        }
        if (context.markedForRemoval())
            removeTerrainCallback(callback.get());
    }
}
} // namespace osgEarth
