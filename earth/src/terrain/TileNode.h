#pragma once
#include "globe/PickRay.h"
#include "terrain/TileContent.h"
#include "terrain/TileScene.h"

#include <osg/MatrixTransform>
#include <osg/PagedLOD>

#include <memory>

namespace osgEarth {
/// What the pager brings when a tile asked for a picture of its own.
class TileNews : public osg::Group
{
public:
    explicit TileNews(std::shared_ptr<const TileContent> made) : content(std::move(made)) {}
    const std::shared_ptr<const TileContent> content;
};

/// One tile of the quadtree: its own geometry as the first child and, once the
/// pager has brought it, a group of its four quarters as the second. A quarter
/// that nobody sees shows its parent's picture until it comes into view, and so
/// does one that came together with the quarters that are drawn in its place.
///
/// Created on a pager thread with its content; joins the scene and is read on
/// the update and cull traversals only.
class TileNode : public osg::PagedLOD
{
public:
    TileNode(const std::shared_ptr<TileScene>& scene, std::shared_ptr<const TileContent> content);

    const TileContent& content() const { return *_content; }
    const TileKey& key() const { return _content->key; }

    /// Replaces the tile's own geometry and picture. Update traversal only.
    void setContent(std::shared_ptr<const TileContent> content);

    /// Gives a tile that is not in the scene yet its quarters.
    void attachQuarters(osg::Group* quarters);
    /// The quarter that holds a place, while it is resident.
    TileNode* quarterAt(double longitude, double latitude);
    osg::Group* quarters();

    /// Nearest hit on what was drawn last, if nearer than `distance`, which then shrinks to it.
    bool intersect(const TerrainRay& ray, double& distance, TileNode*& hit);

    using osg::PagedLOD::addChild;
    bool addChild(osg::Node* child) override;
    void traverse(osg::NodeVisitor& nv) override;

protected:
    ~TileNode() override;

private:
    /// Consecutive triangles of the mesh and a sphere around them.
    struct Cluster
    {
        std::size_t firstIndex;
        std::size_t lastIndex;
        osg::Vec3d centre;
        double radius;
    };

    void buildDrawable();
    void clusterTriangles();
    void traverseForCull(osg::NodeVisitor& nv, const TerrainView& view);
    void requestQuarters(osg::NodeVisitor& nv, float priority);
    /// Of those quarters that have none of their own and are in view or about to be.
    void requestPictures(osg::NodeVisitor& nv, const TerrainView& view, float priority);

    std::weak_ptr<TileScene> _scene;
    std::shared_ptr<const TileContent> _content;
    osg::ref_ptr<osg::Referenced> _pictureRequest;
    std::vector<Cluster> _clusters;
    bool _wantsQuarters = false;
    bool _drawnAsQuarters = false;
};
} // namespace osgEarth
