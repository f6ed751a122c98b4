#pragma once
#include <memory>
#include <osgEarth/TerrainEngineNode>

namespace osgUtil {
class IntersectionVisitor;
class LineSegmentIntersector;
} // namespace osgUtil

namespace osgEarth {
class MapNode;
struct TileContent;

/// Draws the ground of a map as a quadtree of tiles that the view's
/// osgDB::DatabasePager loads, each with a mesh as coarse as its relief
/// allows and one texture composed of the map's image layers.
///
/// Created and owned by the MapNode. Tiles are made on the pager's threads;
/// everything else happens on the update and cull traversals.
class QuadtreeTerrain : public TerrainEngineNode
{
public:
    explicit QuadtreeTerrain(Map* map);
    /// The terrain of a map node, whose engine is always one of these.
    static QuadtreeTerrain* of(const MapNode& mapNode);

    /// Nearest point of the drawn surface on a ray, geocentric metres; see Terrain.
    bool intersectRay(const osg::Vec3d& origin, const osg::Vec3d& direction, osg::Vec3d& outWorld,
                      osg::ref_ptr<osg::Node>* outTile = nullptr) const;
    /// The finest tile that is in memory at a geographic position in degrees; null without. It stands until
    /// the next update traversal.
    const TileContent* contentAt(double longitude, double latitude) const;
    /// Ground height at a geographic position in degrees; see Terrain::getHeight.
    bool heightAt(double longitude, double latitude, double& outHeight) const;

    /// Makes every resident tile anew in the background, the old picture standing until then.
    void refresh();
    /// Whether a refresh is under way.
    bool isRefreshing() const;

    void traverse(osg::NodeVisitor& nv) override;
    osg::BoundingSphere computeBound() const override;

protected:
    ~QuadtreeTerrain() override;

private:
    /// Adds what the segment meets first of the drawn surface.
    void intersectSegment(osgUtil::IntersectionVisitor& visitor,
                          osgUtil::LineSegmentIntersector& segment) const;
    class Private;
    class LayerWatch;

    const osg::ref_ptr<Map> _changeableMap; ///< takes the callbacks off again
    std::unique_ptr<Private> _private;
};
} // namespace osgEarth
