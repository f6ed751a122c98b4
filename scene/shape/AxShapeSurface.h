#pragma once
#include "scene/base/AxEarthViewerExport.h"
#include "scene/shape/AxRingTriangles.h"

#include <osg/Vec2d>
#include <osg/Vec3d>

#include <cstddef>
#include <functional>
#include <vector>

/// Puts the height of the ground into the z of each point (degrees, degrees,
/// metres above the ellipsoid) and leaves it alone where nothing is known.
using AxHeightSource = std::function<void(std::vector<osg::Vec3d>& lngLatAlt)>;

/// What a shape looks like: geocentric points in metres. A plain value.
struct AxShapeMesh
{
    std::vector<osg::Vec3d> points;  ///< the outline in its order, then points of the fill
    std::size_t outlineCount = 0;    ///< how many of them are the outline's
    std::vector<unsigned> triangles; ///< three indices each, counter-clockwise from above
    double lowest = 0.0;             ///< altitude of the lowest point, metres above the ellipsoid
    double steepest = 0.0;           ///< greatest slope of a triangle against the horizon, radians

    // For small pictures, once the fill lies on the ground: an outline of fewer
    // of the points, within `coarseError` metres of the others, and triangles
    // spanned in it. Nothing where the whole shape has hardly more.
    std::vector<unsigned> coarseOutline;
    std::vector<unsigned> coarseTriangles;
    double coarseError = 0.0;
    double coarseSteepest = 0.0;
};

/**
 * A line or an area on the WGS84 ellipsoid, from its vertices to the points
 * that are drawn. Edges follow great circles and the ground between the
 * vertices, the shorter way round; the fill is the smaller of the two parts
 * that the outline divides the globe into.
 *
 * It is kept with its shape: when some vertices change, only the edges beside
 * them ask for heights again. The fill is at first spanned between the edges;
 * Refine() lays it on the ground, which is dearer and waits for the end of an
 * edit. Vertices that are not on the globe or not finite are left out. One
 * thread at a time.
 */
class AXEARTHVIEWER_EXPORT AxShapeSurface
{
public:
    /// The vertices: degrees, degrees, metres. `closed` leads the outline back to
    /// the first one; `filled` wants the fill, too.
    void SetVertices(const std::vector<osg::Vec3d>& lngLatAlt, bool closed, bool filled,
                     const AxHeightSource& heights);

    /// Lays the fill on the ground between the edges. It holds until the next SetVertices().
    void Refine(const AxHeightSource& heights);

    /// Makes the next SetVertices() ask for all heights again.
    void ForgetHeights()
    {
        edges.clear();
        filledCorners = 0;
    }

    const AxShapeMesh& Mesh() const { return mesh; }
    /// Of each of the mesh's points: the ellipsoid's outward normal below it, of length 1.
    const std::vector<osg::Vec3d>& Normals() const { return normals; }

private:
    // No finer than elevation models are, metres.
    static constexpr double sampleStep = 40.0;

    // One of the 2^levels + 1 even places of an edge.
    struct Place
    {
        osg::Vec3d normal; // outward, of length 1
        osg::Vec3d world;
        double altitude = 0.0;
        unsigned at = 0;
    };
    struct Edge
    {
        osg::Vec3d from;
        osg::Vec3d to;
        unsigned wantedLevels = 0; // by its length
        unsigned levels = 0;       // what the shape as a whole allows of them
        std::vector<Place> places; // those that are drawn, the first vertex but not the second
    };

    void SampleEdges(std::size_t first, std::size_t end, const AxHeightSource& heights);
    void Assemble(const std::vector<osg::Vec3d>& vertices);
    void Triangulate();
    unsigned AddPoint(const osg::Vec3d& normal, double altitude);
    double LengthOf(unsigned a, unsigned b) const;
    bool IsOnOutline(unsigned a, unsigned b, unsigned& middle) const;
    void LayOut(const AxHeightSource* ground);
    double Split(double longestOuter, double longestInner, const AxHeightSource& heights);
    void HalveTriangles(const std::vector<unsigned>& halves);
    void Measure();
    void MakeSmallPicture();
    double SteepestOf(const std::vector<unsigned>& triangles) const;
    void ThinOutline();
    std::vector<osg::Vec2d> InPlane(const std::vector<unsigned>& corners, const osg::Vec3d& middle,
                                    bool isGnomonic) const;
    void ForgetSmallPicture();

    bool isClosed = false;
    bool isFilled = false;
    std::vector<Edge> edges;

    AxShapeMesh mesh;
    // Of each of the mesh's points.
    std::vector<osg::Vec3d> normals;
    std::vector<double> altitudes;
    // Of each of the outline's points.
    std::vector<unsigned> edgeOf;
    std::vector<unsigned> placeOf;
    std::vector<unsigned> edgeStarts; // an edge's first point

    // Of the latest fill: of how many corners it is, and its triangles of them. While these stay the right
    // way round, as most do while a vertex is dragged, they fill the next shape as well.
    std::size_t filledCorners = 0;
    AxRingFill latestFill;

    // The fill as it is spanned between the vertices, and how many points it has.
    std::vector<unsigned> spanned;
    std::size_t spannedPoints = 0;
};
