#pragma once
#include "analysis/zones/AxBoxTree.h"
#include "scene/base/AxEarthViewerExport.h"

#include <osg/Vec2d>
#include <osg/Vec3d>

#include <vector>

/// Twice the area of the triangle, positive when it turns left.
inline double AxTurnOf(const osg::Vec2d& a, const osg::Vec2d& b, const osg::Vec2d& c)
{
    return (b.x() - a.x()) * (c.y() - a.y()) - (b.y() - a.y()) * (c.x() - a.x());
}

/// Counts where edges of rings cross or touch, each ring with itself and with those before it, and refuses a
/// ring that brings so many that cutting areas along them would take seconds.
class AXEARTHVIEWER_EXPORT AxRingCrossings
{
public:
    /// Takes a ring in, closed or not; false, with nothing taken in, when it brings too many crossings.
    bool Add(const std::vector<osg::Vec3d>& ring);

    /// Of all rings that were taken in. Neighbours that meet in their corner do not count.
    int Count() const { return own + mutual; }

private:
    struct Edge
    {
        osg::Vec2d from, to;
    };
    struct Ring
    {
        std::vector<Edge> edges;
        AxBoxTree tree;
    };

    static std::vector<Edge> edgesOf(const std::vector<osg::Vec3d>& ring);
    static bool doMeet(const Edge& a, const Edge& b);

    std::vector<Ring> rings;
    int own = 0;    ///< of rings with themselves
    int mutual = 0; ///< of rings with one another
};
