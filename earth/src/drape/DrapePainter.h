#pragma once
#include "drape/DrapeBatch.h"
#include <chrono>
#include <map>
#include <optional>
#include <osg/Uniform>
#include <osgEarth/DrapeableNode>
#include <osgUtil/CullVisitor>
#include <tuple>

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
        osg::ref_ptr<osg::StateSet> state; ///< colour and heights
        osg::ref_ptr<osg::Uniform> heights;
        DrapeGround ground;
    };
    /// What a geometry's volumes were made of.
    struct Origin
    {
        std::vector<unsigned> signature;
        osg::Matrixd localToWorld;
        float lineWidth = 1.0f;
        std::optional<int> bin; ///< named by a state set
        bool operator==(const Origin& other) const;
    };
    struct Entry
    {
        Origin origin;
        std::vector<Volume> volumes;
        std::vector<std::shared_ptr<DrapeBatch::Member>> members;
        unsigned lastSeen = 0;
    };
    /// By bin, areas before lines, and colour.
    using BatchKey = std::tuple<int, bool, osg::Vec4f>;
    class Collector;

    void refresh(const osg::Geometry& geometry, Origin origin);
    void makeVolumes(Entry& entry, const std::vector<DrapeShape>& shapes);
    void makeMembers(Entry& entry, const std::vector<DrapeShape>& shapes);
    void collect(DrapeableNode& node, const osg::Matrixd& localToWorld, unsigned traversalMask);
    void draw(Volume& volume, const DrapeView& view, osgUtil::CullVisitor& cv);
    void findMapNode(const osg::NodePath& path);
    void tellWhetherDone(DrapeableNode& node);

    std::map<osg::ref_ptr<const osg::Geometry>, Entry> _entries;
    std::vector<const osg::Geometry*> _order;
    std::map<BatchKey, DrapeBatch> _batches;
    std::chrono::steady_clock::time_point _enough;      ///< until then shapes are built in this pass
    bool _built = false;                                ///< one was
    bool _isBehind = false;                             ///< some have to wait for another frame
    std::optional<osg::Object::DataVariance> _variance; ///< the node's own, while it is behind
    unsigned _pass = 0;
    osg::observer_ptr<MapNode> _mapNode;
    unsigned _lastSearch = 0;
    osg::ref_ptr<DrapePasses> _passes;
    osg::ref_ptr<StencilClear> _clear = new StencilClear();
    osg::ref_ptr<osg::StateSet> _frame; ///< metres a pixel
    osg::ref_ptr<osg::Uniform> _pixel;
};
} // namespace osgEarth
