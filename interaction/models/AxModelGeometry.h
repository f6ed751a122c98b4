#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <osg/Node>
#include <osg/ref_ptr>
#include <osg/Vec3d>

#include <QtGlobal>

namespace osgDB {
class Options;
}

/// Makes a model that was just read fit to be drawn: nodes that are still to be read get the options,
/// faulty triangles go (AxModelRepair.h), what has no picture gets normals and shades, arrays go
/// into buffers. How many triangles went. Any thread; the model is nobody else's yet.
AXEARTHVIEWER_EXPORT qint64 AxPrepareModel(osg::Node& model, osgDB::Options* options);

/// Makes a model that is held as a whole quick to look at: what is drawn alike is put together where there
/// are thousands of nodes, large geometries are split in space (AxModelSplit.h), and vertices that are far
/// from their zero, as those with map coordinates are, are moved to around it: what they were moved by is
/// given back. What is below transforms, billboards or texts stays where it is unless it is put together.
/// Nothing for models with paged parts. As above.
AXEARTHVIEWER_EXPORT osg::Vec3d AxGatherModel(osg::ref_ptr<osg::Node>& model);

/// Whether there is anything to draw below a node, or anything that is still to be read.
AXEARTHVIEWER_EXPORT bool AxIsDrawable(osg::Node& model);
