#pragma once
#include "scene/shape/AxScenePick.h"

#include <QString>

#include <optional>

namespace osg {
class Group;
}
namespace osgEarth {
class SpatialReference;
}

/// Nodes of model layers carry exactly this node mask; they are searched with it, too.
constexpr osg::Node::NodeMask AxModelLayerMask = 0x123;

/// Where the mouse meets a model of a model layer.
struct AxModelHit
{
    osg::Vec3d lngLatAlt; ///< degrees, degrees, metres in the map's vertical reference
    double height = 0.0;  ///< metres above the ellipsoid
    osg::Vec3d world;     ///< geocentric metres
    QString currNode;     ///< name of the model's node
    QString parentNode;   ///< name of that node's parent
};

/// The nearest model below `root` on the line of sight: the innermost node
/// over the hit drawable whose mask is AxModelLayerMask.
AXEARTHVIEWER_EXPORT std::optional<AxModelHit> AxPickModelLayer(osg::Node& root, const AxViewRay& ray,
                                                                const osgEarth::SpatialReference& srs);

/// The group "ModelRoot" of the scene, or null when nothing has added one.
/// `sceneRoot` is the node that the viewer shows.
AXEARTHVIEWER_EXPORT osg::Group* AxFindModelRoot(osg::Node* sceneRoot);

/// Whether a layer of it has something that is to be seen: neither hidden nor still without a piece.
AXEARTHVIEWER_EXPORT bool AxIsModelShown(osg::Node* sceneRoot);

/// The altitude of the top of what the layers named "ModelLayer" below
/// `modelRoot` have at a place, degrees and metres above the ellipsoid.
AXEARTHVIEWER_EXPORT std::optional<double> AxTopOfModels(osg::Group& modelRoot, double longitude,
                                                         double latitude,
                                                         const osgEarth::SpatialReference& srs);
