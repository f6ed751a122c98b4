#pragma once
#include <osg/Geometry>
#include <osg/StateSet>
#include <osg/Vec3f>
#include <osg/Vec4f>

#include <memory>
#include <vector>

namespace osgUtil {
class CullVisitor;
class StateGraph;
} // namespace osgUtil

/// A shape of few points, in geocentric coordinates: what single precision holds
/// of them and what it leaves over. Immutable once it is shared.
struct AxBatchMesh
{
    std::vector<osg::Vec3f> points;
    std::vector<osg::Vec3f> rest;
    std::vector<osg::Vec4f> colors;
    std::vector<unsigned> triangles;
    std::vector<unsigned> segments; ///< pairs of points
};

/**
 * Draws the small shapes of a frame together: a shape of its own costs the
 * driver more than all its pixels. Fills come before lines. One for all shapes
 * and cameras; on the thread that culls and draws.
 */
class AxShapeBatches : public osg::Referenced
{
public:
    AxShapeBatches();
    /// Takes a shape for the frame that is culled now, to be drawn in the state
    /// that is current, at a depth of its own.
    void Take(const std::shared_ptr<const AxBatchMesh>& mesh, osgUtil::CullVisitor& cull, float depth);
    void ReleaseGLObjects(osg::State* state) const;

    /// The vertex attribute of what single precision leaves over. OpenGL's own
    /// share their places with lower ones on some drivers.
    static constexpr unsigned restAttribute = 6;

protected:
    ~AxShapeBatches() override;

private:
    class Batch;

    std::vector<osg::ref_ptr<Batch>> batches;
    std::size_t used = 0; // in this frame
    unsigned frame = 0;   // number of the traversal
};
