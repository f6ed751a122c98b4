#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <osg/BoundingBox>
#include <osg/Vec2d>
#include <osgEarthAnnotation/LabelNode>

/// Where a text goes that stands so far from a place of the window, pixels: as it is where it lies in the
/// window, on the other side of the place where it lies there, else as near as it can be. A place beside the
/// window takes its text along. `box` is the text's own. Any thread.
AXEARTHVIEWER_EXPORT osg::Vec2d AxOffsetInside(const osg::Vec2d& place, const osg::BoundingBox& box,
                                               const osg::Vec2d& offset, const osg::Vec2d& window);

/// Has the text of a label, as it is written now, go where AxOffsetInside() says in each frame, whatever the
/// camera does. GUI thread.
void AxKeepLabelInside(osgEarth::Annotation::LabelNode& label);
