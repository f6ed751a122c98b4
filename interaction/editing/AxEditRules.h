#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <osg/Vec2d>
#include <osg/Vec3d>

#include <functional>
#include <optional>
#include <utility>
#include <vector>

/**
 * The mathematics of editing the vertices of a shape: plain functions over
 * window positions (pixels) and places (longitude and latitude in degrees,
 * altitude in metres above the ellipsoid). Edges are great circles; angles are
 * those of the local tangent plane on the WGS 84 ellipsoid. Any thread.
 */
namespace AxEditRules {

/// How near the mouse must come to a handle, pixels.
constexpr double pickPixels = 8.0;
/// How near a dragged vertex must come to what it snaps to, pixels.
constexpr double snapPixels = 10.0;
/// Edges that are shorter on the screen have no handle in their middle, pixels.
constexpr double shortestEdgePixels = 40.0;
/// A hand that only presses may tremble this much, pixels.
constexpr double tremblePixels = 3.0;
constexpr double angleStepDegrees = 15.0;

using Edge = std::pair<int, int>;

/// The edges of a shape of `count` vertices by the indices of their ends; an
/// area of two vertices has one edge.
AXEARTHVIEWER_EXPORT std::vector<Edge> EdgesOf(int count, bool closed);

/// What of its own shape a vertex snaps to: neither its neighbours nor the
/// edges that end in it or in one of them.
struct OwnParts
{
    std::vector<int> vertices;
    std::vector<Edge> edges;
};
AXEARTHVIEWER_EXPORT OwnParts SnapPartsFor(int index, int count, bool closed);

/// The edge from whose direction the angle at a vertex' neighbour is counted:
/// the two vertices before it, the nearer one second; at the beginning of an
/// open shape those behind it. Nothing with fewer than three vertices.
AXEARTHVIEWER_EXPORT std::optional<Edge> PreviousEdge(int index, int count, bool closed);

/// The middle of the great circle between two places, altitude in between.
AXEARTHVIEWER_EXPORT osg::Vec3d MiddleOf(const osg::Vec3d& a, const osg::Vec3d& b);

/// The place nearest to `wanted` from which the edge to `corner` turns away
/// from the edge `before`-`corner` by a multiple of the step, degrees. It keeps
/// the altitude. `wanted` itself when an edge has no length.
AXEARTHVIEWER_EXPORT osg::Vec3d KeepAngle(const osg::Vec3d& before, const osg::Vec3d& corner,
                                          const osg::Vec3d& wanted, double stepDegrees);

} // namespace AxEditRules

/// The screen around a dragged vertex.
struct AxSnapView
{
    osg::Vec2d target; ///< window position that the vertex is dragged to
    double metresPerPixel = 1.0;
    /// Window position of a geocentric point; nothing when it cannot be seen.
    std::function<std::optional<osg::Vec2d>(const osg::Vec3d&)> project;
};

/**
 * Vertices and edges that a dragged vertex goes to when it comes near them on
 * the screen. Gathered once for a drag, then asked on each step.
 */
class AXEARTHVIEWER_EXPORT AxSnapTargets
{
public:
    void Clear();
    void AddVertex(const osg::Vec3d& lngLatAlt);
    void AddEdge(const osg::Vec3d& a, const osg::Vec3d& b);

    /// The nearest vertex within reach, as it was added, else the nearest place
    /// on an edge, with the altitude of `wanted`, which is the place that the
    /// mouse asks for.
    std::optional<osg::Vec3d> Find(const osg::Vec3d& wanted, const AxSnapView& view) const;

private:
    struct Vertex
    {
        osg::Vec3d place;
        osg::Vec3d world;
    };
    struct Arc
    {
        osg::Vec3d from; // ellipsoid normals
        osg::Vec3d side; // at a right angle to `from`, towards the other end
        double angle;    // radians
    };
    std::vector<Vertex> vertices;
    std::vector<Arc> arcs;
};
