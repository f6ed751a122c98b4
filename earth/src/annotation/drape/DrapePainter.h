#pragma once
#include "DrapePasses.h"
#include "DrapeVolume.h"
#include <map>
#include <osg/observer_ptr>
#include <osg/Uniform>
#include <osgEarth/DrapeableNode>
#include <osgUtil/CullVisitor>

namespace osgEarth {
class MapNode;

/// Keeps the volumes of a node's shapes and hands them to the cull traversal.
/// Used on the thread that culls; one camera at a time.
class DrapeableNode::Painter
{
public:
    void cull(DrapeableNode& node, osgUtil::CullVisitor& cv);
    void releaseGLObjects(osg::State* state) const;

private:
    struct Volume
    {
        DrapeVolume mesh;
        osg::ref_ptr<osg::StateSet> state; // colour and heights
        osg::ref_ptr<osg::Uniform> heights;
        unsigned heightsFrame = 0;
        bool heightsKnown = false;
        osg::Vec3d ground; // lowest, highest and middle height
    };
    /// What a geometry's volumes were made of.
    struct Origin
    {
        std::vector<unsigned> signature;
        osg::Matrixd localToWorld;
        float lineWidth = 1.0f;
    };
    struct Entry
    {
        Origin origin;
        std::vector<Volume> volumes;
        unsigned lastSeen = 0;
    };
    class Collector;

    void refresh(const osg::Geometry& geometry, const osg::Matrixd& localToWorld, float lineWidth);
    void lookUpHeights(Volume& volume, unsigned frame);
    void updateHeights(Volume& volume, const osg::Vec3d& eye, unsigned frame);
    void draw(Volume& volume, const osg::Matrixd& worldToView, const osg::Matrixd& worldToLocal,
              const osg::Vec3d& eye, osgUtil::CullVisitor& cv);
    void findMapNode(const osg::NodePath& path);

    std::map<osg::ref_ptr<const osg::Geometry>, Entry> _entries;
    std::vector<const osg::Geometry*> _order;
    unsigned _pass = 0;
    osg::observer_ptr<MapNode> _mapNode;
    unsigned _lastSearch = 0;
    osg::ref_ptr<DrapePasses> _passes;
    osg::ref_ptr<StencilClear> _clear = new StencilClear();
    osg::ref_ptr<osg::StateSet> _frame; // metres a pixel
    osg::ref_ptr<osg::Uniform> _pixel;
};
} // namespace osgEarth
