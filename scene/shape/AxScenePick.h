#pragma once
#include "scene/shape/AxViewRay.h"

#include <osg/Drawable>
#include <osg/Node>

#include <vector>

/// One drawable that the mouse is over.
struct AxSceneHit
{
    osg::NodePath path; ///< from the search root to the drawable itself
    osg::Drawable* drawable = nullptr;
    osg::Vec3d world; ///< where it was hit, geocentric metres
    double distance = 0.0;
    /// Drawn in pixels on top of the scene, as labels are.
    bool onScreen = false;
};

struct AxSceneQuery
{
    osg::Node::NodeMask mask = ~0u;
    /// How near the mouse must come to lines and points, pixels; triangles
    /// have to be hit themselves.
    double tolerancePixels = 0.0;
    /// Whether to find what is drawn in pixels on top of the scene.
    bool labels = false;
    /// Unless 0: only drawables under a node whose mask is exactly this one.
    osg::Node::NodeMask under = 0;
    /// Of levels of detail the finest one that is loaded, instead of the one that is drawn for this eye.
    bool finest = false;
};

/**
 * The drawables below `root` that the line of sight meets, nearest first, with
 * those drawn on top of the scene before all others. What the earth itself
 * hides is left out; hills hide nothing. The root's parents take no part: it
 * stands in world coordinates. Thread of the update and event traversals.
 */
AXEARTHVIEWER_EXPORT std::vector<AxSceneHit> AxPickScene(osg::Node& root, const AxViewRay& ray,
                                                         const AxSceneQuery& query);
