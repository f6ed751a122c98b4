#pragma once
#include <osg/Vec2d>
#include <osgEarthFeatures/Feature>
#include <vector>

/// Plane work on lines in longitude and latitude, before they become drawables.
/// Pure functions.
namespace osgEarth::Features {
typedef std::vector<osg::Vec2d> LonLatLine;

/// The lines and outlines of features as runs that draw each segment once:
/// neighbours share their border, which must not be drawn twice. Segments along
/// the rim of the map (longitude +-180, the poles), which only close a polygon
/// there, are left out, and so are those that jump from one end of the map to
/// the other.
std::vector<LonLatLine> distinctLines(const FeatureList& features);

/// Drops points that lie within tolerance (degrees) of the line without them
/// (Douglas and Peucker 1973). Ends stay; a closed line smaller than the
/// tolerance vanishes (empty result).
LonLatLine simplified(const LonLatLine& line, double tolerance);

/// A square of longitudes and latitudes and the runs of lines in it.
struct LineCell
{
    double west, south, size;
    std::vector<LonLatLine> runs;
};

/// Sorts segments into squares of `size` degrees by their middle; runs are cut
/// where they change over. Segments longer than `longest` degrees are divided.
std::vector<LineCell> cellsOf(const std::vector<LonLatLine>& lines, double size, double longest);
} // namespace osgEarth::Features
