#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <osg/Matrixd>
#include <osg/NodeVisitor>
#include <osg/Vec3d>

#include <cstddef>
#include <functional>
#include <limits>
#include <utility>
#include <vector>

/**
 * Collects the vertices of a model, at their places in the world: those that its faces, lines and points use,
 * and all of a drawable that has none of these. Each way to a drawable counts, so an instance that hangs
 * below several transforms is collected several times. Of levels of detail the finest that is there counts;
 * parts that are hidden count, too, and what hangs below a transform that does not follow its parents does
 * not. Vertices that are no numbers are left out.
 *
 * Any thread, as long as nobody changes the model meanwhile: what a pager works on is read from its files
 * instead (SetLevelsToRead()).
 */
class AXEARTHVIEWER_EXPORT ModelVertexVisitor : public osg::NodeVisitor
{
public:
    /// As many levels as there are.
    static constexpr int allLevels = -1;

    /// `toWorld` takes the parent's frame of the node that is visited to the world's.
    explicit ModelVertexVisitor(const osg::Matrixd& toWorld = {});

    /// Parts that are paged and not loaded are read from their files, so many levels down, and so many files
    /// altogether; beyond that only where nothing coarser is loaded, as without these there would be holes.
    /// Of the pictures only those are read that lie within these files. None unless set.
    void SetLevelsToRead(int levels, int files = std::numeric_limits<int>::max())
    {
        levelsToRead = levels;
        filesToRead = files;
    }
    /// Is asked at each node whether to go on.
    void SetGoOn(std::function<bool()> answer) { goOn = std::move(answer); }

    /// Drops vertices that are not needed; called whenever another million has come.
    void SetReduce(std::function<void(std::vector<osg::Vec3d>&)> drop) { reduce = std::move(drop); }

    void apply(osg::Node& node) override;
    void apply(osg::Transform& transform) override;
    void apply(osg::LOD& levels) override;
    void apply(osg::PagedLOD& levels) override;
    void apply(osg::ProxyNode& proxy) override;
    void apply(osg::Drawable& drawable) override;

    /// In the unit and the axes of the world.
    const std::vector<osg::Vec3d>& GetVertices() const { return vertices; }
    /// How many were left out.
    std::size_t GetDropped() const { return dropped; }
    /// How many files could not be read.
    int GetUnread() const { return unread; }

private:
    static constexpr std::size_t mostAtOnce = 1000000;

    bool isOver() const { return goOn && !goOn(); }
    void visitFinest(osg::LOD& levels);
    bool mayRead(const osg::Group& parent) const;
    osg::ref_ptr<osg::Node> read(const std::string& file, const osg::Referenced* options);

    osg::Matrixd toWorld;
    std::vector<osg::Vec3d> vertices;
    std::vector<char> isUsed; ///< room for one drawable after the other, and so is this:
    std::vector<unsigned> usedOrder;
    std::function<bool()> goOn;
    std::function<void(std::vector<osg::Vec3d>&)> reduce;
    std::size_t reduceFrom = mostAtOnce;
    std::size_t dropped = 0;
    int levelsToRead = 0;
    int filesToRead = 0;
    int unread = 0;
};
