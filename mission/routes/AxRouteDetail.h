#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <osg/BoundingSphere>
#include <osg/Vec3d>

#include <vector>

/**
 * Which points of a long line the screen can tell apart. The line is looked at in pieces, each by its own
 * distance: from near it is whole, far away a straight piece of it is two points. GUI thread.
 */
class AXEARTHVIEWER_EXPORT AxRouteDetail
{
public:
    /// Of geocentric points.
    void SetPoints(const std::vector<osg::Vec3d>& points);
    /// How much is left out of each piece, seen from there by a camera that sees so many metres in a pixel
    /// from a distance of 1 m. Two views of equal answers keep the same points.
    std::vector<int> Levels(const osg::Vec3d& eye, double pixel) const;
    /// Indices of the points that those levels keep, in order; the first and the last are among them.
    std::vector<int> Kept(const std::vector<int>& levels) const;

private:
    std::vector<float> offsets; // metres by which the line is off without the point
    std::vector<osg::BoundingSphered> pieces;
};
