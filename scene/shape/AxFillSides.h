#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <osg/Vec3d>

#include <vector>

/**
 * The sides of a fill's triangles, by which it is told whether one of its parts
 * lies before another one. A plain value, made once a shape and asked once a
 * frame.
 */
class AXEARTHVIEWER_EXPORT AxFillSides
{
public:
    /// Nothing is known: such a fill may always cover itself.
    AxFillSides() = default;
    /// Geocentric points in metres; the indices of the ring around the fill, and
    /// of its triangles, three each and counter-clockwise from above.
    AxFillSides(const std::vector<osg::Vec3d>& points, const std::vector<unsigned>& ring,
                const std::vector<unsigned>& triangles);

    /// The solid angle, steradians, in which parts of the fill may lie before
    /// others for this eye, geocentric in metres; infinite where it is not known.
    double CoveringItself(const osg::Vec3d& eye) const;

private:
    struct Side
    {
        osg::Vec3d middle;
        osg::Vec3d area; // outward, square metres long
    };
    // Only of rings without an inward corner, of others not even all sides will do.
    std::vector<Side> sides;
};
