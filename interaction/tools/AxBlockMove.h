#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <osg/Vec3d>

class CAxHandleAdapter;

/// Moving whole objects with the mouse.
namespace AxBlockMove {

/// From an object's first vertex to the cursor where the move began.
AXEARTHVIEWER_EXPORT osg::Vec3d Offset(const osg::Vec3d& firstPoint, const osg::Vec3d& cursor);

/// What is to be added to every vertex so that the cursor is again at `offset`
/// from the first one: degrees, degrees and 0, in single precision.
AXEARTHVIEWER_EXPORT osg::Vec3d Delta(const osg::Vec3d& firstPoint, const osg::Vec3d& cursor,
                                      const osg::Vec3d& offset);

/// Whether the object may be moved: it has vertices and no routes, and is not locked.
AXEARTHVIEWER_EXPORT bool IsMovable(CAxHandleAdapter* adapter);

} // namespace AxBlockMove
