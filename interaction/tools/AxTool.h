#pragma once
#include <AxBaseUI/AxToolTable.h>

#include <osg/Vec2d>
#include <osg/Vec3d>

class AxBlockMover;
class AxViewerParts;

namespace osg {
class Node;
}

/**
 * One event of the mouse on the map: where it is, and what a tool may ask and say about it. It lives as
 * long as the event is handled.
 */
class AxMouseStep
{
public:
    AxMouseStep(const osg::Vec3d& lngLatPos, const osg::Vec3d& worldCoordPos)
        : lngLat(lngLatPos), world(worldCoordPos)
    {
    }
    virtual ~AxMouseStep() = default;

    const osg::Vec3d lngLat; ///< degrees, degrees, metres; zeros over space
    const osg::Vec3d world;  ///< geocentric metres; zeros over space
    bool IsOverGround() const { return world != osg::Vec3d(); }
    /// Where in the picture, -1 to 1, x to the right, y upwards.
    virtual osg::Vec2d InPicture() const = 0;
    /// The modifier keys that are held, osg's bits.
    virtual int Modifiers() const = 0;

    /// The feature node of the map object, or the named handle, under the mouse; null without.
    virtual osg::Node* Object() = 0;
    /// The drawable under the mouse hears of it. ClickDrawable() is false when there is none.
    virtual void HoverDrawable() = 0;
    virtual void PressDrawable() = 0;
    virtual bool ClickDrawable() = 0;
    /// So does the model under the mouse.
    virtual void ClickModel() = 0;
    virtual AxBlockMover& Mover() = 0;

    /// Whoever hears of a step may delete the viewer, and with it the tool: when this is false, nothing of
    /// both may be touched.
    virtual bool HasViewer() const = 0;
};

/**
 * What a tool does with the mouse. This one is the tool of all that only look and pick; tools that do more
 * derive from it. They live as long as the viewer and are told when they are taken up and put down. A
 * gesture that began with one tool may go on under another. GUI thread.
 */
class AxTool
{
public:
    explicit AxTool(AxViewerParts& viewer) : parts(viewer) {}
    virtual ~AxTool() = default;
    AxTool(const AxTool&) = delete;
    AxTool& operator=(const AxTool&) = delete;

    /// Whether taking it up leaves the current object and what is being done to it.
    virtual bool LeavesCurrent() const { return false; }
    virtual void Activate() {}
    virtual void Deactivate() {}

    /// The mouse moves with no button held.
    virtual void Move(AxMouseStep& step);
    /// The left button goes down.
    virtual void Press(AxMouseStep& step);
    /// The mouse moves with the left button held; true keeps the camera where it is.
    virtual bool Drag(AxMouseStep& step);
    /// The left button is let go after a drag; true keeps it from everybody else.
    virtual bool Release(AxMouseStep& step);
    /// Escape: true when there was something to give up.
    virtual bool GiveUp() { return false; }
    /// The left button was pressed and let go in one place; true keeps the click from everybody else.
    virtual bool Click(AxMouseStep& step);
    /// The place of a click that is nobody else's, over the ground.
    virtual void Pick(const osg::Vec3d& lngLatPos);

protected:
    AxViewerParts& parts;
};
