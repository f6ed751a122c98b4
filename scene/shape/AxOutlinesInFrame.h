#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <osg/Matrixd>
#include <osg/Vec2d>
#include <osg/Vec3d>

#include <cstddef>
#include <vector>

/// A rectangle of the picture: -1 to 1, x to the right, y upwards.
struct AxPictureFrame
{
    osg::Vec2d low;
    osg::Vec2d high;

    /// Of two opposite corners, whichever.
    static AXEARTHVIEWER_EXPORT AxPictureFrame Between(const osg::Vec2d& a, const osg::Vec2d& b);
};

/// The outline of an object: degrees, degrees, metres. `closed` leads it back to its first place; a single
/// place is a point.
struct AxOutlineOnGlobe
{
    std::vector<osg::Vec3d> places;
    bool closed = false;
};

/// Indices, in order, of the outlines of which a part is seen within the frame, be it where an edge crosses
/// it. Edges are straight from place to place; what is behind the camera or behind the globe does not count.
/// `toClip` is the camera's view and projection, `eye` where it stands, geocentric metres.
AXEARTHVIEWER_EXPORT std::vector<std::size_t> AxOutlinesInFrame(const std::vector<AxOutlineOnGlobe>& outlines,
                                                                const osg::Matrixd& toClip,
                                                                const osg::Vec3d& eye,
                                                                const AxPictureFrame& frame);
