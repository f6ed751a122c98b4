#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <osg/Matrixd>
#include <osg/Vec3d>

#include <QRect>
#include <QSize>

#include <vector>

namespace osg {
class Camera;
}

/// A picture that is to be taken. A plain value.
struct AxShot
{
    osg::Matrixd view;       ///< as of osg::Camera: geocentric metres to the eye
    osg::Matrixd projection; ///< its near and far planes count for nothing
    QSize size;              ///< pixels, which are squares
    /// How many times as large as on the screen texts, marks and lines are, in pixels; above 0.
    double scale = 1.0;
};

/// Where a camera is and looks.
struct AxShotPose
{
    osg::Vec3d place;     ///< degrees, degrees, metres as the map has them
    double heading = 0.0; ///< degrees clockwise from north
    double pitch = -90.0; ///< degrees; 0 level, -90 straight down, the heading then upwards in the picture
};

/// A rectangle of ground, seen straight from above with north up.
struct AxShotGround
{
    osg::Vec3d middle;   ///< degrees, degrees; the altitude counts for nothing
    double width = 0.0;  ///< metres, to the east in the middle
    double height = 0.0; ///< metres, to the north
};

/// Which pictures there are. Plain functions, any thread.
namespace AxShots {

/// What a camera shows, in a picture of any shape: all of that is in it, and above and below or to the sides
/// more, where the shape is another one.
AXEARTHVIEWER_EXPORT AxShot AsSeen(const osg::Camera& camera, const QSize& size);
/// How many times as large as in the window what a camera shows is in such a picture; 1 for none.
AXEARTHVIEWER_EXPORT double ScaleAsSeen(const osg::Camera& camera, const QSize& size);
/// What is seen from a place; `high` is the vertical field of view, degrees.
AXEARTHVIEWER_EXPORT AxShot From(const AxShotPose& pose, double high, const QSize& size);
/// Ground as a map has it: all lines of sight are parallel, so that no height moves anything, but what the
/// globe curves away from the middle. The pixels are squares when the sizes have one shape.
AXEARTHVIEWER_EXPORT AxShot FromAbove(const AxShotGround& ground, const QSize& size);
/// The length of a pixel in the middle of what a camera shows, at a place there, metres.
AXEARTHVIEWER_EXPORT double PixelAt(const osg::Camera& camera, const osg::Vec3d& world);

/// A picture cut into parts, row by row from the upper left, in pixels, y downwards; none larger than that.
AXEARTHVIEWER_EXPORT std::vector<QRect> Parts(const QSize& picture, const QSize& largest);
/// The projection that shows a part of a picture, which may reach beyond it.
AXEARTHVIEWER_EXPORT osg::Matrixd ProjectionOf(const AxShot& shot, const QRect& part);

/// Poses along a route of places in degrees, degrees and metres, so many metres apart on the ground, its
/// ends among them, each looking along the route where it is; no more than `most`, which are then farther
/// apart. Legs that only climb, or lead nowhere, have the heading of those before. Empty for less than two
/// places, for places that are none, and for a step that is not above 0.
AXEARTHVIEWER_EXPORT std::vector<AxShotPose> Along(const std::vector<osg::Vec3d>& route, double step,
                                                   double pitch, std::size_t most);

} // namespace AxShots
