#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <osg/ref_ptr>
#include <osg/Vec3d>

#include <functional>
#include <vector>

class AxGroundWatch;

namespace osgEarth {
class Terrain;
}

/**
 * Lets a shape be laid on the ground anew when the ground below it becomes
 * finer or coarser, or when an edit has settled. All shapes of a terrain share
 * one terrain callback, and what they do is spread over time: a couple of
 * milliseconds at once. GUI thread; nothing is called once it is destroyed.
 */
class AXEARTHVIEWER_EXPORT AxShapeClamp
{
public:
    /// Lays the shape on the ground; false when that has to wait for a later call.
    using Work = std::function<bool()>;

    /// Without a terrain there are no tiles to hear of.
    AxShapeClamp(osgEarth::Terrain* terrain, Work work);
    ~AxShapeClamp();
    AxShapeClamp(const AxShapeClamp&) = delete;
    AxShapeClamp& operator=(const AxShapeClamp&) = delete;

    /// Which ground matters: that around places, each as the ellipsoid's outward normal there, of length 1.
    void SetExtent(const std::vector<osg::Vec3d>& normals);
    /// Asks for the work to be done soon; asking again meanwhile changes nothing.
    void Ask();
    /// Asks so for all shapes of a terrain with ground near these places, normals as in SetExtent():
    /// something else that they are laid on, as a model, has come, gone or moved there.
    static void AskNear(osgEarth::Terrain* terrain, const std::vector<osg::Vec3d>& normals);

private:
    friend class AxGroundWatch;
    const Work work;
    osg::Vec3d middle;   // of the extent: the ellipsoid's normal there
    double reach = -1.0; // angle to its rim, radians; below 0 nothing matters
    bool asked = false;
    osg::ref_ptr<AxGroundWatch> watch;
};
