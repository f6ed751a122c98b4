#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <osg/Camera>
#include <osgEarth/DrapeableNode>
#include <osgEarth/SpatialReference>

/**
 * A drapeable node with a camera that looks straight down on the whole map, for
 * shaders that need to know where on the map a fragment lies.
 *
 * Reference counted, owned by its parents; changed on the thread that updates
 * the scene.
 */
class AXEARTHVIEWER_EXPORT CAxDrapeableNode : public osgEarth::DrapeableNode
{
public:
    CAxDrapeableNode();
    /// With a camera of its own, set up as the other's.
    CAxDrapeableNode(const CAxDrapeableNode& other, const osg::CopyOp& copy = osg::CopyOp::SHALLOW_COPY);
    META_Node(ax, CAxDrapeableNode);

    /// Makes the camera take in a map: one of a geographic system the whole
    /// ellipsoid, seen from above the north pole; a projected one the square of
    /// its coordinates that the globe's circumference allows.
    void SetUpCamera(const osgEarth::SpatialReference& srs);
    /// Not part of the scene: it renders nothing by itself.
    const osg::Camera& GetCamera() const { return *camera; }

protected:
    ~CAxDrapeableNode() override = default;

private:
    osg::ref_ptr<osg::Camera> camera;
};
