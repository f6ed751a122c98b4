#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <osg/BoundingBox>
#include <osg/Vec2d>
#include <osgEarthAnnotation/LabelNode>

/// Where a text goes that stands so far from a place of the window, pixels: as it is where it lies in the
/// window, on the other side of the place where it lies there, else as near as it can be. A place beside the
/// window takes its text along. `box` is the text's own; at the right border no text is put on so many
/// pixels. Any thread.
AXEARTHVIEWER_EXPORT osg::Vec2d AxOffsetInside(const osg::Vec2d& place, const osg::BoundingBox& box,
                                               const osg::Vec2d& offset, const osg::Vec2d& window,
                                               double takenAtRight = 0.0);

/// Has the text of a label, as it is written now, go where AxOffsetInside() says in each frame, whatever the
/// camera does, and beside the bar of tools. Again for a text that was written anew. GUI thread.
AXEARTHVIEWER_EXPORT void AxKeepLabelInside(osgEarth::Annotation::LabelNode& label);
