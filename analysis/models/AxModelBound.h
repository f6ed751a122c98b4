#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <osg/Geometry>
#include <osg/Matrixd>
#include <osg/Node>
#include <osg/ref_ptr>
#include <osgEarth/SpatialReference>

#include <QVariant>

#include <functional>

/// The outline of a model on the ground.
struct AxModelBoundJob
{
    osg::ref_ptr<osg::Node> model;
    osg::Matrixd modelToWorld;
    osg::ref_ptr<const osgEarth::SpatialReference> srs; ///< of the world
    int order = 0;                                      ///< tells jobs apart; from 1 on
    int number = 0;                                     ///< given back with the answer
    double margin = 0.0;                                ///< metres around the model
    /// Of paged parts that are not loaded, as ModelVertexVisitor takes them.
    int levelsToRead = 0;
    int filesToRead = 0;
};

/// The model as it is now, for another thread: the same drawables below groups of their own at the top and
/// wherever a pager comes and goes; what it has loaded is left to be read from its files. On the thread that
/// changes the scene, on which the copy has to go, too.
AXEARTHVIEWER_EXPORT osg::ref_ptr<osg::Node> AxModelSnapshot(osg::Node& model);

/// The convex outline of all vertices of the model as seen from above, with the margin around it: a list of
/// longitude, latitude (degrees) and altitude (metres, the model's lowest). Empty for a model without
/// vertices at places of the globe, and when `goOn` answers false meanwhile.
AXEARTHVIEWER_EXPORT QVariantList AxModelOutline(const AxModelBoundJob& job,
                                                 const std::function<bool()>& goOn = {});

/// The closed line through such an outline, in world coordinates; null for an empty one.
AXEARTHVIEWER_EXPORT osg::ref_ptr<osg::Geometry> AxOutlineDrawable(const QVariantList& outline,
                                                                   const osgEarth::SpatialReference& srs);
