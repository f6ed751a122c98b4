#pragma once
#include <osg/Node>
#include <osg/ref_ptr>
#include <osg/Vec3d>

/// The same picture in few nodes: what is drawn in the same states becomes one geometry, in the model's own
/// frame, with its zero moved to `zero`. Of levels of detail and switches that what is shown close by. For
/// models of very many nodes, in time that grows with their number. Any thread; the model is nobody else's
/// yet, and is used up by it.
osg::ref_ptr<osg::Node> AxMergeModel(osg::Node& model, const osg::Vec3d& zero);
