#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <osg/Vec2d>

#include <array>
#include <vector>

/// Triangles that cover a ring once, counter-clockwise. A plain value.
struct AxRingFill
{
    /// Three indices a triangle: into the ring, and from the ring's size on into `crossings`.
    std::vector<unsigned> triangles;

    /// A point that the ring does not have: where it crosses itself, as a
    /// weighted mean of points before it.
    struct Crossing
    {
        std::array<unsigned, 4> of;
        std::array<double, 4> weight;
    };
    std::vector<Crossing> crossings;
};

/// Fills a ring of a plane, which closes by itself. Its direction does not
/// matter, and a ring that crosses itself is filled where the winding is odd.
/// Coordinates are finite. Nothing comes of a ring without area, and of one that
/// crosses itself some ten thousand times.
AXEARTHVIEWER_EXPORT AxRingFill AxFillRing(const std::vector<osg::Vec2d>& ring);

/// The same of several rings together: a ring within another one is a hole, and
/// one within the hole an island. Indices count the points of all rings in their order.
AXEARTHVIEWER_EXPORT AxRingFill AxFillRings(const std::vector<std::vector<osg::Vec2d>>& rings);
