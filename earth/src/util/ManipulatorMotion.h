#pragma once

#include "CameraFlight.h"
#include "CameraMoves.h"

#include <osg/observer_ptr>
#include <osgEarthUtil/EarthManipulator>

namespace osgEarth::Util {

/** What the manipulator is in the middle of. */
struct EarthManipulator::Motion
{
    struct Flight
    {
        CameraFlight way;
        double seconds;
        double start = -1.0; // until the first frame says what time it is
    };
    std::optional<Flight> flight;

    /** The point under the cursor when the button went down. */
    std::optional<osg::Vec3d> grabbed;
    /** Set while a mouse drag is carried out. */
    osg::View* dragging = nullptr;

    /** A held key. */
    ActionType keyAction = ACTION_NULL;
    int key = 0;
    double keyRate = 1.0;
    double keyUntil = 0.0;

    /** Logarithm of the zoom that the wheel still owes, and where it is aimed. */
    double wheel = 0.0;
    osg::Vec2d wheelCursor;
    std::optional<osg::Vec3d> wheelPoint;
    /** Set while zoom() is called on behalf of the wheel. */
    std::optional<ZoomAnchor> anchor;

    /** Kept until a map is there to go to it. */
    optional<Viewpoint> pending;
    double pendingSeconds = 0.0;

    osg::observer_ptr<osg::View> view;
};

} // namespace osgEarth::Util
