#pragma once
#include "mission/aircraft/AxTrailDetail.h"
#include "scene/base/AxEarthViewerExport.h"

#include <osg/BufferObject>
#include <osg/Geometry>
#include <osg/Vec4f>

#include <optional>
#include <vector>

/**
 * A line that grows point by point, in geocentric coordinates, drawn over the ground without regard to depth
 * save what the globe hides. The vertex array holds single precision; four bytes a point hold what that
 * leaves over, so that the line stands still beside an aircraft. Only what is new is sent to the graphics
 * card, and from afar only as many points are drawn as can be told apart. GUI thread, between frames.
 */
class AXEARTHVIEWER_EXPORT AxTrailGeometry : public osg::Geometry
{
public:
    /// More points than that go into a further geometry.
    static constexpr int mostVertices = 100000;

    AxTrailGeometry(float width, const osg::Vec4f& color);

    const char* libraryName() const override { return "ax"; }
    const char* className() const override { return "AxTrailGeometry"; }

    /// The line begins with a piece from there, which is no vertex of this geometry.
    void SetJoint(const osg::Vec3d& world);
    /// False when the geometry is full, or the point is to the bit where the last one is.
    bool Append(const osg::Vec3d& world);
    bool IsFull() const { return Count() >= mostVertices; }
    int Count() const { return detail.Count(); }
    /// The last point is drawn there instead, until the next one is appended or `world` is nothing.
    void SetHead(const std::optional<osg::Vec3d>& world);
    std::size_t Bytes() const; ///< of memory that its points take

    using osg::Geometry::accept;
    void accept(osg::NodeVisitor& visitor) override;
    osg::BoundingBox computeBoundingBox() const override { return box; }
    /// Its points are nobody's business: lines of sight pass by them.
    bool supports(const osg::PrimitiveFunctor&) const override { return false; }
    bool supports(const osg::PrimitiveIndexFunctor&) const override { return false; }
    void drawImplementation(osg::RenderInfo& info) const override;
    void releaseGLObjects(osg::State* state = nullptr) const override;

protected:
    ~AxTrailGeometry() override;

private:
    struct Vertex; // of the graphics card
    Vertex vertex(int index) const;
    bool upload(osg::State& state) const;
    void drawRuns(const osg::Vec3d& eye, double partOfDistance, osg::State& state) const;

    AxTrailDetail detail;
    osg::ref_ptr<osg::Vec3Array> points;
    std::vector<osg::Vec4b> rest; // as AxGeocentric::Rest() has it
    osg::ref_ptr<osg::DrawArrays> strip;
    osg::BoundingBox box;
    osg::Vec4f color;
    std::optional<osg::Vec3d> joint;
    std::optional<osg::Vec3d> head;

    // What the graphics card has. Of one context: a viewer has one.
    osg::ref_ptr<osg::VertexBufferObject> buffer;
    mutable const osg::GLBufferObject* filled = nullptr; // compared, never followed
    mutable int room = 0;
    mutable int uploaded = 0; // vertices that need not be sent again
};
