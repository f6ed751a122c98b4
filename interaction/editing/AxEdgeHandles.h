#pragma once
#include <osg/Vec2d>
#include <osg/Vec3d>

#include <functional>
#include <optional>
#include <vector>

struct AxViewRay;

/**
 * The places in the middle of a shape's edges, of which those are shown whose
 * edge is long enough on the screen. Places are longitude, latitude and
 * altitude in degrees and metres. GUI thread only.
 */
class AxEdgeHandles
{
public:
    /// Height of the ground at a longitude and latitude, where it is known.
    using Ground = std::function<std::optional<double>(double, double)>;

    struct Shown
    {
        int edge; ///< index of its first vertex
        osg::Vec3d place;
        osg::Vec3d world;
        osg::Vec2d window;
    };

    /// With heights these hold until the next call, where they are known, in the place of the ground's.
    void Set(const std::vector<osg::Vec3d>& vertices, bool closed, const Ground& heights = {});
    /// Those that are in sight, on the ground as it is now.
    std::vector<Shown> InView(const AxViewRay& view, const Ground& ground) const;

    /// The vertices have changed; Set() is due.
    bool outdated = true;
    /// First vertex of the edge whose handle the mouse is on, or -1.
    int hovered = -1;

private:
    struct Middle
    {
        int edge;
        osg::Vec3d place;
        osg::Vec3d ends[2]; // geocentric
        bool isSettled;     // its height
    };
    std::vector<Middle> middles;
};
