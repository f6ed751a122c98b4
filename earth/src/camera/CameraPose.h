#pragma once

#include "globe/Geodetic.h"

#include <functional>
#include <optional>
#include <osg/Matrixd>

namespace osgEarth::Util {
/// Height of the ground above the ellipsoid, metres, at a latitude and longitude in radians.
using GroundHeight = std::function<double(double latitude, double longitude)>;

/// A camera that looks at a point of the globe.
///
/// Of the camera's axes x points right, y up and z back. `rotation` turns them
/// into the east-north-up frame of the centre, and `frame` turns that frame
/// into the world; with no rotation the camera looks straight down, north up.
struct CameraPose
{
    osg::Vec3d center; ///< geocentric, metres
    osg::Quat frame;
    osg::Quat rotation;
    double distance = 1.0; ///< from the centre to the eye, metres

    bool operator==(const CameraPose& rhs) const
    {
        return center == rhs.center && rotation == rhs.rotation && distance == rhs.distance;
    }
};

/// A half line; `direction` has length 1.
struct Ray
{
    osg::Vec3d origin;
    osg::Vec3d direction;
};

/// Heading clockwise from north, pitch up from level (-pi/2 looks straight down); radians.
osg::Quat rotationOf(double heading, double pitch);
/// Well defined for every rotation, also when it looks straight down.
void anglesOf(const osg::Quat& rotation, double& heading, double& pitch);

CameraPose makePose(const osg::EllipsoidModel& ellipsoid, const osg::Vec3d& center, double heading,
                    double pitch, double distance);

/// Camera axes to world.
osg::Matrixd cameraMatrix(const CameraPose& pose);
/// World to camera axes.
osg::Matrixd viewMatrix(const CameraPose& pose);
osg::Vec3d eyeOf(const CameraPose& pose);

/// The pose of an eye that looks at a target with no roll; `heading` is used when it looks straight down.
CameraPose lookAt(const osg::EllipsoidModel& ellipsoid, const osg::Vec3d& eye, const osg::Vec3d& target,
                  double heading);

/// The line of sight, in camera axes, through a point of the window in
/// normalised device coordinates (-1..1). Taken from the coefficients of the
/// projection, so that extreme near and far planes cost no precision.
Ray cursorRay(const osg::Matrixd& projection, double x, double y);
Ray transformed(const Ray& ray, const osg::Matrixd& matrix);

/// First distance along the ray at which it meets the ground; none when it misses the globe.
std::optional<double> groundAlong(const osg::EllipsoidModel& ellipsoid, const Ray& ray,
                                  const GroundHeight& ground);

/// First distance, metres, along a ray at which it meets the ground.
using GroundPick = std::function<std::optional<double>(const Ray& ray)>;

/// Moves the centre along the line of sight to where it meets the ground. The
/// picture stays as it is. False, and nothing changes, when it meets none.
bool recenter(const osg::EllipsoidModel& ellipsoid, const GroundPick& pick, CameraPose& pose);

/// Radians against the tangent plane at the centre.
struct PitchLimits
{
    double lowest;
    double highest;
};

/// Turns the camera round its centre until the pitch is within the limits. Returns whether it had to.
bool limitPitch(const PitchLimits& limits, CameraPose& pose);

/// Whether an eye that must rise takes a centre that is under ground with it.
enum class SunkenCentre
{
    Rises,          ///< always: whoever named the view did not know the height of the place
    RisesWithTheEye ///< only if the eye is about as deep, so that a grazed slope is no leap
};

/// Lifts an eye that is less than `clearance` metres above the ground; keeps
/// the centre in the middle as long as the pitch stays within its limits.
/// Returns whether anything had to move.
bool keepAboveGround(const osg::EllipsoidModel& ellipsoid, const GroundHeight& ground, double clearance,
                     const PitchLimits& limits, SunkenCentre sunken, CameraPose& pose);
} // namespace osgEarth::Util
