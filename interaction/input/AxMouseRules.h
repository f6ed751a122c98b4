#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <osg/Vec2f>

/**
 * What a mouse or key event means, and what the camera's distance does: rules over
 * plain values, without a camera or a scene.
 */
namespace AxMouseRules {

/// A release is a click when it comes at the place of the push, window units
/// within 1e-5. A push at exactly (0, 0) never was one on the map.
AXEARTHVIEWER_EXPORT bool IsClick(const osg::Vec2f& push, const osg::Vec2f& release);

/// Whether an event of this type (osgGA::GUIEventAdapter::EventType) tells where the pointer is now. A
/// release may be told at (0, 0), and keys are told at whatever place came last.
AXEARTHVIEWER_EXPORT bool SaysPlace(int eventType);

/// Whether both Shift keys' bits, and no others, are set.
AXEARTHVIEWER_EXPORT bool IsShiftAlone(int modKeyMask);

/// Delete, whichever keyboard block or character it comes from.
AXEARTHVIEWER_EXPORT bool IsDelete(int key);

/// Keys that leave the tool alone when they are released with Shift held.
AXEARTHVIEWER_EXPORT bool KeepsTool(int key);

/// An angle brought into (-pi, pi], radians.
AXEARTHVIEWER_EXPORT double WrapHeading(double radians);

} // namespace AxMouseRules
