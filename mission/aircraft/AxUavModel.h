#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <AxAlgorthm/AxMissionTypes.h>

#include <osg/Node>
#include <osg/ref_ptr>

/// The model of a kind of aircraft, named "UavModel", as it lies beside the executable; metres, x to the
/// right, y ahead, z up, shaded by ModelNodeMaterialVisitor. Where it is missing or cannot be read, one line
/// of the log says so and a plain marker stands for it. Never null.
AXEARTHVIEWER_EXPORT osg::ref_ptr<osg::Node> AxReadUavModel(EPlaneType type);
