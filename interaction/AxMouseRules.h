#pragma once
#include "viewer/AxEarthViewerExport.h"

#include <AxBaseUI/EToolType.h>

#include <osg/Vec2f>

/**
 * What a mouse or key event means for the tool in hand: rules over plain
 * values, without a camera or a scene.
 */
namespace AxMouseRules {

/// What the tool does when the left button goes down.
enum class PushRole
{
    BeginDrawing,  ///< the tool draws by dragging: its shape begins here
    SelectForMove, ///< the object under the mouse is taken, so that a drag can move it
    PressDrawable, ///< whatever drawable is under the mouse hears of it
};
AXEARTHVIEWER_EXPORT PushRole PushRoleOf(EToolType tool);

/// What the tool does at a left click.
enum class ClickRole
{
    BeginDrawing, ///< the tool draws by clicks: its shape begins with the first
    Select,       ///< the click belongs to the selection and to nobody else
    Pick,         ///< drawables, model layers and objects under the mouse hear of it
};
AXEARTHVIEWER_EXPORT ClickRole ClickRoleOf(EToolType tool);

/// Tools that draw by dragging hold the camera still while they do.
AXEARTHVIEWER_EXPORT bool HoldsCameraWhileDragging(EToolType tool);

/// Tools that a double click ends; it is theirs even before they have an object.
AXEARTHVIEWER_EXPORT bool OwnsDoubleClick(EToolType tool);

/// A release is a click when it comes at the place of the push, window units
/// within 1e-5. A push at exactly (0, 0) never was one on the map.
AXEARTHVIEWER_EXPORT bool IsClick(const osg::Vec2f& push, const osg::Vec2f& release);

/// Whether both Shift keys' bits, and no others, are set.
AXEARTHVIEWER_EXPORT bool IsShiftAlone(int modKeyMask);

/// Delete, whichever keyboard block or character it comes from.
AXEARTHVIEWER_EXPORT bool IsDelete(int key);

/// Keys that leave the tool alone when they are released with Shift held.
AXEARTHVIEWER_EXPORT bool KeepsTool(int key);

/// Which layers of place names are shown from a distance to the focal point, metres.
struct NameLayers
{
    bool capital;
    bool city;
    /// Counties and towns are in the maps, but too many to be shown.
    bool county = false;
    bool town = false;
};
AXEARTHVIEWER_EXPORT NameLayers NameLayersAt(double range);

/// An angle brought into (-pi, pi], radians.
AXEARTHVIEWER_EXPORT double WrapHeading(double radians);

} // namespace AxMouseRules
