#include "analysis/models/ModelComputeBounds.h"
#include "scene/base/AxLongitudes.h"
#include "scene/base/AxWgs84.h"

#include <support/GeosContext.h>

#include <osg/Math>
#include <osg/Matrixd>
#include <osg/Vec2d>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <optional>

namespace {
/// Round the edges of a margin.
constexpr int cornerSegments = 4;
/// Half the width of what has none.
constexpr double leastMargin = 0.5;
constexpr std::size_t directions = 16;
/// Farther from the ellipsoid there is no place; the middle of the Earth has no longitude.
constexpr double deep = 1e6;
/// Of wider models every vertex is looked at, metres from the first one.
constexpr double widest = 500000.0;

/// A world vertex as metres to the east, to the north and above the plane that touches the globe at a place.
struct Flat
{
    double east = 0.0;
    double north = 0.0;
    double up = 0.0;
};

class TouchingPlane
{
public:
    TouchingPlane(const osgEarth::SpatialReference& srs, const osg::Vec3d& place)
    {
        osg::Matrixd toWorld;
        srs.createLocalToWorld(place, toWorld);
        toPlane = osg::Matrixd::inverse(toWorld);
    }
    Flat Of(const osg::Vec3d& world) const
    {
        const osg::Vec3d p = world * toPlane;
        return {p.x(), p.y(), p.z()};
    }

private:
    osg::Matrixd toPlane;
};

/// The vertices that may stand out farthest to some side, lowest or highest. The plane bends them a little
/// against the globe; by how much, at the most, is left to spare.
class Candidates
{
public:
    Candidates()
    {
        for (std::size_t i = 0; i < directions; ++i) {
            const double angle = 2.0 * osg::PI * static_cast<double>(i) / directions;
            towards[i] = {std::cos(angle), std::sin(angle)};
        }
        outermost.fill(-std::numeric_limits<double>::max());
    }

    void Look(const Flat& flat, std::size_t index)
    {
        const double height = HeightOf(flat);
        if (!(std::abs(height) < deep))
            return;
        for (std::size_t i = 0; i < directions; ++i) {
            const double reach = flat.east * towards[i].x() + flat.north * towards[i].y();
            if (reach > outermost[i]) {
                outermost[i] = reach;
                corners[i] = flat;
            }
        }
        farthest2 = std::max(farthest2, flat.east * flat.east + flat.north * flat.north);
        steepest = std::max(steepest, std::abs(flat.up));
        if (height < lowest) {
            lowest = height;
            lowestIndex = index;
        }
        if (height > highest) {
            highest = height;
            highestIndex = index;
        }
    }
    void Settle(double latitude)
    {
        const double tangent = std::tan(osg::DegreesToRadians(std::min(std::abs(latitude), 89.9)));
        const double farthest = std::sqrt(farthest2);
        isWide = farthest > widest;
        spare = 2.0 * farthest2 * (1.0 + tangent) / AxWgs84::semiMinorAxis +
                2.0 * (steepest + farthest2 / AxWgs84::semiMinorAxis) * farthest / AxWgs84::semiMinorAxis;
        for (std::size_t i = 0; i < directions; ++i) {
            const Flat& from = corners[i];
            const Flat& to = corners[(i + 1) % directions];
            osg::Vec2d inwards(from.north - to.north, to.east - from.east);
            if (inwards.normalize() > 0.0)
                edges.push_back({inwards, inwards * osg::Vec2d(from.east, from.north) + spare});
        }
    }
    bool IsOne(std::size_t index, const osg::Vec3d& vertex, const TouchingPlane& plane) const
    {
        return index == lowestIndex || index == highestIndex || IsOutside(plane.Of(vertex));
    }

private:
    struct Edge
    {
        osg::Vec2d inwards; ///< of length 1
        double least;       ///< metres along it
    };

    bool IsOutside(const Flat& flat) const
    {
        if (isWide)
            return true;
        for (const Edge& edge : edges)
            if (flat.east * edge.inwards.x() + flat.north * edge.inwards.y() < edge.least)
                return true;
        return false;
    }
    static double HeightOf(const Flat& flat)
    {
        return flat.up + 0.5 * (flat.east * flat.east + flat.north * flat.north) / AxWgs84::meanRadius;
    }

    std::array<osg::Vec2d, directions> towards;
    std::array<double, directions> outermost{};
    std::array<Flat, directions> corners{};
    std::vector<Edge> edges;
    double farthest2 = 0.0;
    double steepest = 0.0;
    double lowest = std::numeric_limits<double>::max();
    double highest = -std::numeric_limits<double>::max();
    std::size_t lowestIndex = 0;
    std::size_t highestIndex = 0;
    double spare = 0.0; ///< metres
    bool isWide = false;
};

std::optional<osg::Vec3d> PlaceOf(const osgEarth::SpatialReference& srs, const osg::Vec3d& vertex)
{
    osg::Vec3d place;
    if (!vertex.valid() || !srs.transformFromWorld(vertex, place) || !place.valid() ||
        std::abs(place.z()) > deep)
        return std::nullopt;
    return place;
}
std::optional<osg::Vec3d> FirstPlace(const osgEarth::SpatialReference* srs,
                                     const std::vector<osg::Vec3d>& vertices)
{
    for (const osg::Vec3d& vertex : vertices)
        if (const auto place = srs ? PlaceOf(*srs, vertex) : std::nullopt)
            return place;
    return std::nullopt;
}
} // namespace

ModelComputeBounds::ModelComputeBounds(const osgEarth::SpatialReference* world)
    : srs(world ? world->getGeographicSRS() : nullptr)
{
}

void ModelComputeBounds::Reduce(std::vector<osg::Vec3d>& vertices) const
{
    const std::optional<osg::Vec3d> origin = FirstPlace(srs, vertices);
    if (!origin)
        return;
    const TouchingPlane plane(*srs, osg::Vec3d(origin->x(), origin->y(), 0.0));
    Candidates candidates;
    for (std::size_t i = 0; i < vertices.size(); ++i)
        candidates.Look(plane.Of(vertices[i]), i);
    candidates.Settle(origin->y());
    std::size_t kept = 0;
    for (std::size_t i = 0; i < vertices.size(); ++i)
        if (candidates.IsOne(i, vertices[i], plane))
            vertices[kept++] = vertices[i];
    vertices.resize(kept);
}

bool ModelComputeBounds::Compute(const std::vector<osg::Vec3d>& vertices, double margin)
{
    hull.clear();
    lowest = highest = 0.0;
    const std::optional<osg::Vec3d> begin = FirstPlace(srs, vertices);
    if (!begin)
        return false;
    const osg::Vec3d origin = *begin;
    const double metresNorth = osg::DegreesToRadians(AxWgs84::semiMajorAxis);
    const double metresEast = metresNorth * std::cos(osg::DegreesToRadians(origin.y()));
    if (metresEast < 1.0)
        return false;

    // Geodetic places cost the most, and hardly a vertex is on the outline.
    const TouchingPlane plane(*srs, osg::Vec3d(origin.x(), origin.y(), 0.0));
    Candidates candidates;
    for (std::size_t i = 0; i < vertices.size(); ++i)
        candidates.Look(plane.Of(vertices[i]), i);
    candidates.Settle(origin.y());

    std::vector<osg::Vec2d> places;
    lowest = std::numeric_limits<double>::max();
    highest = -lowest;
    for (std::size_t i = 0; i < vertices.size(); ++i) {
        if (!candidates.IsOne(i, vertices[i], plane))
            continue;
        const std::optional<osg::Vec3d> place = PlaceOf(*srs, vertices[i]);
        if (!place)
            continue;
        const double longitude = AxLongitudes::NearestTo(origin.x(), place->x());
        places.emplace_back((longitude - origin.x()) * metresEast, (place->y() - origin.y()) * metresNorth);
        lowest = std::min(lowest, place->z());
        highest = std::max(highest, place->z());
    }

    if (places.empty()) {
        lowest = highest = 0.0;
        return false;
    }

    const GeosContext geos;
    // As a line: one geometry instead of one for each place.
    if (places.size() == 1)
        places.push_back(places.front());
    GEOSCoordSequence* const sequence =
        GEOSCoordSeq_create_r(geos.handle(), static_cast<unsigned>(places.size()), 2);
    for (std::size_t i = 0; i < places.size(); ++i)
        GEOSCoordSeq_setXY_r(geos.handle(), sequence, static_cast<unsigned>(i), places[i].x(), places[i].y());
    const auto all = geos.own(GEOSGeom_createLineString_r(geos.handle(), sequence));
    auto outline = geos.own(GEOSConvexHull_r(geos.handle(), all.get()));
    const bool isFlat = outline && GEOSGeomTypeId_r(geos.handle(), outline.get()) != GEOS_POLYGON;
    const double wide = isFlat ? std::max(margin, leastMargin) : margin;
    if (outline && wide > 0.0)
        outline = geos.own(GEOSBuffer_r(geos.handle(), outline.get(), wide, cornerSegments));
    if (outline)
        GEOSNormalize_r(geos.handle(), outline.get()); // clockwise
    if (!outline || GEOSGeomTypeId_r(geos.handle(), outline.get()) != GEOS_POLYGON)
        return false;
    for (const osg::Vec2d& point :
         geos.vertices<osg::Vec2d>(GEOSGetExteriorRing_r(geos.handle(), outline.get())))
        hull.emplace_back(origin.x() + point.x() / metresEast, origin.y() + point.y() / metresNorth);
    std::reverse(hull.begin(), hull.end());
    return true;
}

QRectF ModelComputeBounds::GetBox() const
{
    if (hull.empty())
        return {};
    const auto [west, east] = std::minmax_element(
        hull.begin(), hull.end(), [](const QPointF& a, const QPointF& b) { return a.x() < b.x(); });
    const auto [south, north] = std::minmax_element(
        hull.begin(), hull.end(), [](const QPointF& a, const QPointF& b) { return a.y() < b.y(); });
    return {QPointF(west->x(), south->y()), QPointF(east->x(), north->y())};
}
