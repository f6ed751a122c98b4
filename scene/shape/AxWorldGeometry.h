#pragma once
#include "scene/base/AxEarthViewerExport.h"
#include "scene/shape/AxFillSides.h"

#include <osg/Geometry>
#include <osg/Vec3d>
#include <osg/Vec4f>

#include <memory>
#include <vector>

struct AxBatchMesh;
struct AxShapeMesh;
struct AxWorldStates;

namespace osgUtil {
class CullVisitor;
}

/**
 * Lines and fills in geocentric world coordinates, drawn over the ground
 * without regard to depth. The vertex array holds the coordinates in single
 * precision, a second one what that leaves over, and the picture is made
 * relative to the eye from both: a shape of a metre stands still 20 m from it.
 * What the body of the globe hides is left out. Overlapping parts of one fill
 * are blended once. Where there is no GLSL it is drawn in single precision.
 *
 * It hangs below no transform other than such that move it as a whole. GUI
 * thread, between frames; reference-counted.
 */
class AXEARTHVIEWER_EXPORT AxWorldGeometry : public osg::Geometry
{
public:
    AxWorldGeometry();
    AxWorldGeometry(const AxWorldGeometry& other, const osg::CopyOp& copy = osg::CopyOp::SHALLOW_COPY);

    osg::Object* cloneType() const override { return new AxWorldGeometry; }
    osg::Object* clone(const osg::CopyOp& copy) const override { return new AxWorldGeometry(*this, copy); }
    bool isSameKindAs(const osg::Object* object) const override
    {
        return dynamic_cast<const AxWorldGeometry*>(object) != nullptr;
    }
    const char* libraryName() const override { return "ax"; }
    const char* className() const override { return "AxWorldGeometry"; }
    using osg::Geometry::accept;
    void accept(osg::NodeVisitor& visitor) override;

    /// Replaces everything by a shape: its outline in one colour and, unless
    /// its fill has no triangles or `fill` cannot be seen, the fill in the other.
    void SetShape(const AxShapeMesh& mesh, bool closed, const osg::Vec4f& edge, const osg::Vec4f& fill);
    /// Replaces all points, and with them colours and primitives by nothing.
    void SetPoints(const std::vector<osg::Vec3d>& world);
    /// Of lines, in pixels.
    void SetLineWidth(float pixels);
    float GetLineWidth() const;

    osg::BoundingBox computeBoundingBox() const override;
    void drawImplementation(osg::RenderInfo& info) const override;
    void resizeGLObjectBuffers(unsigned maxSize) override;
    void releaseGLObjects(osg::State* state = nullptr) const override;

    /// Least alpha that counts as visible.
    static constexpr float visibleAlpha = 1e-5f;

protected:
    ~AxWorldGeometry() override;

private:
    bool IsBeyondHorizon(const osg::Vec3d& eye) const;
    bool IsInSight(const osg::Vec3d& eye) const;
    bool MayFold(const osg::Vec3d& eye, double pixelsAtOneMetre, bool coarse) const;

    void drawLines(bool coarse, osg::State& state, bool hasBuffers) const;
    void drawFill(bool coarse, osg::State& state, bool hasBuffers) const;
    bool isSmall(const osg::Vec3d& eye, double pixelsAtOneMetre) const;
    void setHorizon(const osg::Vec3d& eye, osg::State& state) const;
    std::shared_ptr<const AxBatchMesh> batchMesh() const;
    bool isOneOfMany(const osg::Vec3d& eye, double pixelsAtOneMetre, bool coarse) const;
    void drawWithOthers(osgUtil::CullVisitor& cull, const osg::Vec3d& eye);

    // The same shape of fewer points, for small pictures; null when there is none.
    osg::ref_ptr<osg::DrawElementsUInt> coarseFill;
    osg::ref_ptr<osg::DrawElementsUInt> coarseLine;
    double coarseError = 0.0; // metres
    double coarseSteepest = 0.0;
    AxFillSides coarseSides;
    mutable std::shared_ptr<const AxBatchMesh> batched; // made when first wanted
    mutable std::vector<unsigned> batchedFrom;          // modified counts of what it was made of
    double lowest = 0.0;                                // metres above the ellipsoid
    double steepest = 0.0;                              // radians against the horizon
    AxFillSides sides;
    osg::ref_ptr<AxWorldStates> states;
};
