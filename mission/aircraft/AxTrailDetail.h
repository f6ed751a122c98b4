#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <osg/BoundingBox>
#include <osg/Vec3d>

#include <array>
#include <vector>

/// What of a trail can be left out from afar, kept up while the trail grows: it is looked at in runs, and of
/// each run it is known how far the line is off when only every 2nd, 8th, ... point of it is drawn. Adding
/// a point costs the same however long the trail is. Metres.
class AXEARTHVIEWER_EXPORT AxTrailDetail
{
public:
    static constexpr int runLength = 4096;
    /// OpenGL allows no more than 2,048 bytes from one vertex to the next.
    static constexpr std::array<int, 4> strides{2, 8, 32, 128};

    /// A run: points from `first`, as many as runLength or, of the last one, fewer.
    struct Run
    {
        osg::BoundingBoxd box;
        std::array<float, strides.size()> errors{}; ///< metres, of whole groups of so many points
    };

    void Add(const osg::Vec3d& point);
    void Clear();
    int Count() const { return count; }
    const std::vector<Run>& Runs() const { return runs; }
    /// The largest stride, or 1, by which the run is off by less than a part of its distance from `eye`.
    int StrideFor(const Run& run, const osg::Vec3d& eye, double partOfDistance) const;

private:
    void close(Run& run, std::size_t level) const;

    std::vector<Run> runs;
    std::vector<osg::Vec3d> last; // of the newest group of the largest stride, with the point before it
    int count = 0;
};
