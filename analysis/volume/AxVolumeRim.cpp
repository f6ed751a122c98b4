#include "analysis/volume/AxVolumeRim.h"

#include <support/GeosContext.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <map>
#include <optional>
#include <utility>

namespace {
constexpr float unknownBase = std::numeric_limits<float>::quiet_NaN();

std::vector<AxVolumeRimPoint> KnownOf(const AxVolumeGrid& grid)
{
    std::vector<AxVolumeRimPoint> known;
    for (const AxVolumeRimPoint& point : grid.rim)
        if (std::isfinite(point.height))
            known.push_back(point);
    return known;
}

double LevelOf(AxVolumeBase base, const std::vector<AxVolumeRimPoint>& rim)
{
    const auto isLower = [](const AxVolumeRimPoint& a, const AxVolumeRimPoint& b) {
        return a.height < b.height;
    };
    if (base == AxVolumeBase::LowestOfRim)
        return std::min_element(rim.begin(), rim.end(), isLower)->height;
    if (base == AxVolumeBase::HighestOfRim)
        return std::max_element(rim.begin(), rim.end(), isLower)->height;
    double sum = 0.0;
    double length = 0.0;
    for (const AxVolumeRimPoint& point : rim) {
        sum += point.height * point.length;
        length += point.length;
    }
    return sum / length;
}

/// By least squares around the middle of the points; nothing where they lie on one line.
std::optional<AxVolumePlane> PlaneThrough(const std::vector<AxVolumeRimPoint>& rim)
{
    AxVolumePlane plane;
    double length = 0.0;
    for (const AxVolumeRimPoint& point : rim) {
        plane.x += point.x * point.length;
        plane.y += point.y * point.length;
        plane.height += point.height * point.length;
        length += point.length;
    }
    plane.x /= length;
    plane.y /= length;
    plane.height /= length;
    double xx = 0.0, xy = 0.0, yy = 0.0, xz = 0.0, yz = 0.0;
    for (const AxVolumeRimPoint& point : rim) {
        const double x = point.x - plane.x;
        const double y = point.y - plane.y;
        const double z = point.height - plane.height;
        xx += point.length * x * x;
        xy += point.length * x * y;
        yy += point.length * y * y;
        xz += point.length * x * z;
        yz += point.length * y * z;
    }
    constexpr double ofOneLine = 1.0e-9;
    const double determinant = xx * yy - xy * xy;
    if (!(determinant > ofOneLine * xx * yy))
        return {};
    plane.east = (xz * yy - yz * xy) / determinant;
    plane.north = (yz * xx - xz * xy) / determinant;
    return plane;
}

using Triangle = std::array<AxVolumeRimPoint, 3>;

std::vector<Triangle> TrianglesOf(const std::vector<AxVolumeRimPoint>& rim)
{
    const GeosContext geos;
    std::map<std::pair<double, double>, std::size_t> numbers;
    GEOSCoordSequence* places = GEOSCoordSeq_create_r(geos.handle(), static_cast<unsigned>(rim.size()), 2);
    for (std::size_t i = 0; i < rim.size(); ++i) {
        numbers.emplace(std::make_pair(rim[i].x, rim[i].y), i);
        GEOSCoordSeq_setXY_r(geos.handle(), places, static_cast<unsigned>(i), rim[i].x, rim[i].y);
    }
    const GeosContext::Geometry line = geos.own(GEOSGeom_createLineString_r(geos.handle(), places));
    const GeosContext::Geometry all =
        geos.own(line ? GEOSDelaunayTriangulation_r(geos.handle(), line.get(), 0.0, 0) : nullptr);
    std::vector<Triangle> triangles;
    const int count = all ? GEOSGetNumGeometries_r(geos.handle(), all.get()) : 0;
    for (int i = 0; i < count; ++i) {
        const GEOSGeometry* ring =
            GEOSGetExteriorRing_r(geos.handle(), GEOSGetGeometryN_r(geos.handle(), all.get(), i));
        const GEOSCoordSequence* corners = ring ? GEOSGeom_getCoordSeq_r(geos.handle(), ring) : nullptr;
        Triangle triangle;
        bool isWhole = corners != nullptr;
        for (unsigned corner = 0; isWhole && corner < triangle.size(); ++corner) {
            double x = 0.0;
            double y = 0.0;
            isWhole = GEOSCoordSeq_getXY_r(geos.handle(), corners, corner, &x, &y) == 1;
            const auto found = numbers.find({x, y});
            isWhole = isWhole && found != numbers.end();
            if (isWhole)
                triangle[corner] = rim[found->second];
        }
        if (isWhole)
            triangles.push_back(triangle);
    }
    return triangles;
}

/// Fills the cells whose middles lie in a triangle.
class Filler
{
public:
    Filler(const AxVolumeGrid& ofGrid, std::vector<float>& filled) : grid(ofGrid), heights(filled) {}

    void Fill(const Triangle& of)
    {
        double x[3], y[3];
        for (std::size_t i = 0; i < 3; ++i) {
            x[i] = of[i].x - grid.West();
            y[i] = of[i].y - grid.South();
        }
        const double twice = (x[1] - x[0]) * (y[2] - y[0]) - (x[2] - x[0]) * (y[1] - y[0]);
        if (twice == 0.0)
            return;
        const auto [low, high] = std::minmax({y[0], y[1], y[2]});
        for (int row = rowOf(low); row <= rowOf(high); ++row) {
            const auto [west, east] = extentIn(x, y, row * grid.cell, (row + 1) * grid.cell);
            for (int column = columnOf(west); column <= columnOf(east); ++column) {
                const std::size_t at =
                    static_cast<std::size_t>(row) * static_cast<std::size_t>(grid.columns) +
                    static_cast<std::size_t>(column);
                if (grid.kinds[at] == AxVolumeGrid::Outside || !std::isnan(heights[at]))
                    continue;
                // A middle on a side belongs to either.
                constexpr double slack = 1.0e-6;
                const auto [px, py] = middleOf(at, column, row);
                const double b = ((px - x[0]) * (y[2] - y[0]) - (x[2] - x[0]) * (py - y[0])) / twice;
                const double c = ((x[1] - x[0]) * (py - y[0]) - (px - x[0]) * (y[1] - y[0])) / twice;
                if (b >= -slack && c >= -slack && b + c <= 1.0 + slack)
                    heights[at] = static_cast<float>(of[0].height + b * (of[1].height - of[0].height) +
                                                     c * (of[2].height - of[0].height));
            }
        }
    }

private:
    int columnOf(double x) const
    {
        return std::clamp(static_cast<int>(std::floor(x / grid.cell)), 0, grid.columns - 1);
    }
    int rowOf(double y) const
    {
        return std::clamp(static_cast<int>(std::floor(y / grid.cell)), 0, grid.rows - 1);
    }
    /// Of what is inside of a cell, from the grid's corner.
    std::pair<double, double> middleOf(std::size_t at, int column, int row) const
    {
        if (grid.kinds[at] == AxVolumeGrid::Inside)
            return {(column + 0.5) * grid.cell, (row + 0.5) * grid.cell};
        const auto edge = std::lower_bound(
            grid.edges.begin(), grid.edges.end(), at,
            [](const AxVolumeGrid::EdgeCell& one, std::size_t cell) { return one.cell < cell; });
        return {edge->x - grid.West(), edge->y - grid.South()};
    }
    /// From where to where a triangle reaches between two parallels.
    static std::pair<double, double> extentIn(const double (&x)[3], const double (&y)[3], double low,
                                              double high)
    {
        double west = std::numeric_limits<double>::max();
        double east = std::numeric_limits<double>::lowest();
        const auto take = [&](double at) {
            west = std::min(west, at);
            east = std::max(east, at);
        };
        for (std::size_t i = 0; i < 3; ++i) {
            const std::size_t j = (i + 1) % 3;
            if (y[i] >= low && y[i] <= high)
                take(x[i]);
            for (const double at : {low, high})
                if ((y[i] < at) != (y[j] < at))
                    take(x[i] + (x[j] - x[i]) * (at - y[i]) / (y[j] - y[i]));
        }
        return {west, east};
    }

    const AxVolumeGrid& grid;
    std::vector<float>& heights;
};

/// Cells that no triangle has taken though they are beside one: the outline between two places of the rim is
/// not quite straight, and slivers are no triangles. False when it is ended.
template <typename GoesOn>
bool FillSlivers(const AxVolumeGrid& grid, const std::vector<AxVolumeRimPoint>& rim,
                 std::vector<float>& heights, const GoesOn& goesOn)
{
    const auto fill = [&](std::size_t at, double x, double y, double) {
        if (!std::isnan(heights[at]))
            return;
        const auto distance = [x, y](const AxVolumeRimPoint& point) {
            return std::hypot(point.x - x, point.y - y);
        };
        const auto nearest = std::min_element(
            rim.begin(), rim.end(),
            [&](const AxVolumeRimPoint& a, const AxVolumeRimPoint& b) { return distance(a) < distance(b); });
        if (distance(*nearest) <= grid.cell)
            heights[at] = static_cast<float>(nearest->height);
    };
    return grid.EachCell(fill, goesOn);
}

/// False when it is ended.
template <typename GoesOn>
bool Span(const std::vector<AxVolumeRimPoint>& rim, const std::vector<Triangle>& triangles,
          const AxVolumeGrid& grid, std::vector<float>& heights, const GoesOn& goesOn)
{
    heights.assign(grid.kinds.size(), unknownBase);
    Filler filler(grid, heights);
    constexpr double partOfFilling = 0.5;
    double filled = 0.0;
    for (const Triangle& triangle : triangles) {
        if (!goesOn(partOfFilling * filled / static_cast<double>(triangles.size())))
            return false;
        filler.Fill(triangle);
        filled += 1.0;
    }
    // With gaps in the rim, what no triangle has taken is not known.
    return rim.size() != grid.rim.size() || FillSlivers(grid, rim, heights, [&](double done) {
               return goesOn(partOfFilling + (1.0 - partOfFilling) * done);
           });
}
} // namespace

AxVolumeBaseHeights AxVolumeBaseOf(const AxVolumeQuestion& question, const AxVolumeGrid& grid,
                                   const AxVolumeProgress& progress)
{
    AxVolumeBaseHeights base;
    const std::vector<AxVolumeRimPoint> rim = KnownOf(grid);
    if (question.base != AxVolumeBase::Height && rim.empty()) {
        base.fault = AxVolumeFault::NoRim;
        return base;
    }
    if (question.base == AxVolumeBase::SurfaceOfRim) {
        const std::vector<Triangle> triangles = TrianglesOf(rim);
        base.fault = triangles.empty() ? AxVolumeFault::NoRim : AxVolumeFault::None;
        const auto goesOn = [&progress](double done) { return !progress || progress(done); };
        if (!triangles.empty() && !Span(rim, triangles, grid, base.heights, goesOn))
            base.fault = AxVolumeFault::Interrupted;
        return base;
    }
    std::optional<AxVolumePlane> plane;
    if (question.base == AxVolumeBase::PlaneOfRim)
        plane = PlaneThrough(rim);
    else {
        plane.emplace();
        plane->height = question.base == AxVolumeBase::Height ? question.height : LevelOf(question.base, rim);
    }
    if (!plane) {
        base.fault = AxVolumeFault::NoRim;
        return base;
    }
    base.plane = *plane;
    return base;
}
