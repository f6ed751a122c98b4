#pragma once

#include "camera/CameraFlight.h"
#include "camera/CameraMoves.h"

#include <map>
#include <osg/observer_ptr>
#include <osgEarthUtil/EarthManipulator>

namespace osgEarth::Util {
/// Where in the window an event is, -1 to 1 and, for a cursor dragged out of it, somewhat beyond.
osg::Vec2d cursorOf(const osgGA::GUIEventAdapter& ea);

/// What the manipulator is in the middle of.
struct EarthManipulator::Motion
{
    struct Flight
    {
        FlightEnd from;
        Viewpoint goal; ///< leaves nothing open
        double seconds;
        bool begun = false; ///< the first frame is where it starts
        double elapsed = 0.0;
        double lift =
            0.0; ///< metres by which the goal stands higher than asked, for the ground that is there
    };
    std::optional<Flight> flight;

    /// The viewpoint that was asked for, and the pose that the ground so far
    /// allowed. As finer ground comes the camera goes to where it would stand
    /// had that ground been there at once; a pose that anybody else has changed
    /// is left alone.
    struct Stand
    {
        Viewpoint asked;
        CameraPose allowed;
    };
    std::optional<Stand> stand;

    /// The point under the cursor when the button went down, and how far from the eye it was.
    struct Grab
    {
        osg::Vec3d point;
        double away;
    };
    std::optional<Grab> grabbed;
    /// Set while a mouse drag is carried out.
    osg::View* dragging = nullptr;
    /// The second press of a double click belongs to it: what the hand shakes then is no drag.
    bool afterDoubleClick = false;

    struct HeldKey
    {
        ActionType action;
        double until;        ///< seconds; later it is taken as released
        double moved = 0.0;  ///< seconds of movement so far
        double most = 1e300; ///< seconds of movement that one press gives
        bool released = false;
    };
    /// By key code, 0 for what a program asked.
    std::map<int, HeldKey> keys;
    /// The key whose event is being handled.
    int key = 0;

    /// Ends drags, held keys and the stand; flights and the wheel go on.
    void letGo()
    {
        grabbed.reset();
        afterDoubleClick = false;
        stand.reset();
        keys.clear();
    }

    /// Logarithm of the zoom that the wheel still owes, and where it is aimed.
    double wheel = 0.0;
    osg::Vec2d wheelCursor;
    bool wheelAims = false; ///< the point under wheelCursor is still to be found
    std::optional<osg::Vec3d> wheelPoint;
    CameraPose wheelPose;         ///< as the wheel left it: a point that was found for another pose is none
    double groundSettlesAt = 0.0; ///< until then the ground that is drawn may change
    /// Set while zoom() is called on behalf of the wheel.
    std::optional<HeldPoint> anchor;

    /// Kept until a map is there to go to it.
    optional<Viewpoint> pending;
    double pendingSeconds = 0.0;

    osg::observer_ptr<osg::View> view;
};
} // namespace osgEarth::Util
