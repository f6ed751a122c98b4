#pragma once
#include <osg/Node>
#include <osg/ref_ptr>

/// The same picture in few nodes: what is drawn in the same states becomes one geometry, in the model's own
/// frame. Of levels of detail and switches that what is shown close by. For models of very many nodes, in
/// time that grows with their number. Any thread; the model is nobody else's yet, and is used up by it.
osg::ref_ptr<osg::Node> AxMergeModel(osg::Node& model);
