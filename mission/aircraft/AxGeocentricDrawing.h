#pragma once
#include <osg/ref_ptr>
#include <osg/State>
#include <osg/StateSet>
#include <osg/Vec3d>
#include <osg/Vec4b>

#include <osgUtil/CullVisitor>

/// How lines and points in geocentric coordinates are drawn over the ground, relative to the eye, without
/// regard to depth save what the globe hides: the vertex holds a place in single precision, an attribute of
/// four bytes what that leaves over, to 2 mm. GUI thread.
namespace AxGeocentric {
constexpr unsigned restAttribute = 6; ///< four normalised signed bytes
osg::Vec3f High(const osg::Vec3d& world);
osg::Vec4b Rest(const osg::Vec3d& world);

/// With the program; a new one with each call.
osg::ref_ptr<osg::StateSet> State(int bin);
/// Tells the program, which is applied, where the eye is, and returns that.
osg::Vec3d SetUniforms(osg::State& state);

/// While it lives, what is culled does not move the clip planes: it is drawn whatever they are.
class ClipPlanesKept
{
public:
    explicit ClipPlanesKept(osgUtil::CullVisitor* visitor);
    ~ClipPlanesKept();
    ClipPlanesKept(const ClipPlanesKept&) = delete;
    ClipPlanesKept& operator=(const ClipPlanesKept&) = delete;

private:
    osgUtil::CullVisitor* const cull; // null: nothing is kept
    osg::CullSettings::ComputeNearFarMode mode{};
    osg::CullSettings::InheritanceMask inherited{};
};
} // namespace AxGeocentric
