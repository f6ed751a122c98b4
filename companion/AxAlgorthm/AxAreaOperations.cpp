#include <AxAlgorthm/AxAreaOperations.h>
#include <AxAlgorthm/AxCoordinate.h>
#include <AxAlgorthm/AxMath.h>
#include <AxAlgorthm/CAxPoint2D.h>

#include <support/GeosContext.h>

#include <GeographicLib/AzimuthalEquidistant.hpp>
#include <GeographicLib/Gnomonic.hpp>

#include <algorithm>
#include <cmath>
#include <map>
#include <utility>

namespace AxAreaOperations {
namespace {
using Line = std::vector<CAxPoint2D>;

constexpr double grid = 0.001; // metres
constexpr double farthest = 1.0e6;
constexpr double mostGrowth = 1.0e5;
constexpr int pointsOfQuarter = 8;
constexpr double mitreLimit = 2.0;

bool isPlace(const QPointF& point)
{
    return std::isfinite(point.x()) && std::abs(point.y()) <= 90.0;
}

QPointF middleOf(const QList<Ring>& rings)
{
    // The mean of the directions from the middle of the Earth knows no date line.
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
    for (const Ring& ring : rings)
        for (const QPointF& point : ring) {
            const double longitude = DegreeToRadians(point.x());
            const double latitude = DegreeToRadians(point.y());
            x += std::cos(latitude) * std::cos(longitude);
            y += std::cos(latitude) * std::sin(longitude);
            z += std::sin(latitude);
        }
    return {RadiansToDegree(std::atan2(y, x)), RadiansToDegree(std::atan2(z, std::hypot(x, y)))};
}

/// Metres east and north of a place. In the equidistant one lengths are those of the ground, off by 0.1 % at
/// 500 km; in the gnomonic one geodesics are straight. It knows again the points that it was given.
class Plane
{
public:
    enum Kind
    {
        Equidistant,
        Straight,
    };

    Plane(Kind ofKind, const QPointF& origin) : kind(ofKind), middle(origin) {}
    Plane(Kind ofKind, const QList<Ring>& rings) : Plane(ofKind, middleOf(rings)) {}

    /// False for a point that is no place or too far away.
    bool take(const QList<QPointF>& places, Line& line)
    {
        for (const QPointF& place : places) {
            CAxPoint2D point;
            if (!isPlace(place) || !toPlane(place, point))
                return false;
            line.push_back(point);
            known.emplace(cellOf(point), place);
        }
        return true;
    }

    QList<QPointF> places(const Line& line) const
    {
        QList<QPointF> result;
        result.reserve(static_cast<int>(line.size()));
        for (const CAxPoint2D& point : line) {
            const auto same = known.find(cellOf(point));
            result += same != known.end() ? same->second : toLngLat(point);
        }
        return result;
    }

    bool knows(const CAxPoint2D& point) const { return known.count(cellOf(point)) > 0; }

    QPointF toLngLat(const CAxPoint2D& point) const
    {
        double latitude = 0.0;
        double longitude = 0.0;
        if (kind == Straight)
            GeographicLib::Gnomonic(GeographicLib::Geodesic::WGS84())
                .Reverse(middle.y(), middle.x(), point.x(), point.y(), latitude, longitude);
        else
            GeographicLib::AzimuthalEquidistant(GeographicLib::Geodesic::WGS84())
                .Reverse(middle.y(), middle.x(), point.x(), point.y(), latitude, longitude);
        return {longitude, latitude};
    }

private:
    bool toPlane(const QPointF& place, CAxPoint2D& point) const
    {
        double x = 0.0;
        double y = 0.0;
        if (kind == Straight)
            GeographicLib::Gnomonic(GeographicLib::Geodesic::WGS84())
                .Forward(middle.y(), middle.x(), place.y(), place.x(), x, y);
        else
            GeographicLib::AzimuthalEquidistant(GeographicLib::Geodesic::WGS84())
                .Forward(middle.y(), middle.x(), place.y(), place.x(), x, y);
        point = {x, y};
        return std::hypot(x, y) <= farthest; // beyond the horizon of the gnomonic one it is NaN
    }

    static std::pair<long long, long long> cellOf(const CAxPoint2D& point)
    {
        return {std::llround(point.x() / grid), std::llround(point.y() / grid)};
    }

    Kind kind;
    QPointF middle;
    std::map<std::pair<long long, long long>, QPointF> known;
};

using Geometry = GeosContext::Geometry;

Geometry lineOf(const GeosContext& geos, const Line& line)
{
    GEOSCoordSequence* const sequence =
        GEOSCoordSeq_create_r(geos.handle(), static_cast<unsigned>(line.size()), 2);
    for (unsigned i = 0; i < line.size(); ++i)
        GEOSCoordSeq_setXY_r(geos.handle(), sequence, i, line[i].x(), line[i].y());
    return geos.own(GEOSGeom_createLineString_r(geos.handle(), sequence));
}

/// An operation on rings: its plane, their polygons, and what was wrong with them.
class Work
{
public:
    Work(Plane::Kind kind, const QList<Ring>& rings) : plane(kind, rings)
    {
        const auto isRing = [](const Ring& ring) {
            return ring.size() >= 3 && std::all_of(ring.begin(), ring.end(), isPlace);
        };
        if (!std::all_of(rings.begin(), rings.end(), isRing)) {
            fault = Fault::NotAnArea;
            return;
        }
        for (const Ring& ring : rings) {
            Line line;
            if (!plane.take(ring, line)) {
                fault = Fault::TooLarge;
                return;
            }
            polygons.push_back(geos.polygon(line));
            if (!geos.isValid(polygons.back())) {
                fault = Fault::Crosses;
                return;
            }
        }
    }

    explicit operator bool() const { return fault == Fault::None; }

    /// The areas of what came out of an operation.
    Result result(const Geometry& geometry) const
    {
        Result result;
        result.fault = fault;
        if (fault != Fault::None)
            return result;
        const int count = geometry ? GEOSGetNumGeometries_r(geos.handle(), geometry.get()) : 0;
        for (int i = 0; i < count; ++i)
            add(result, GEOSGetGeometryN_r(geos.handle(), geometry.get(), i));
        std::stable_sort(result.areas.begin(), result.areas.end(),
                         [](const Area& a, const Area& b) { return SquareMetres(a) > SquareMetres(b); });
        if (result.areas.isEmpty())
            result.fault = Fault::NothingLeft;
        return result;
    }

    const GeosContext geos;
    Plane plane;
    std::vector<Geometry> polygons;
    Fault fault = Fault::None;

private:
    void add(Result& result, const GEOSGeometry* part) const
    {
        if (GEOSGeomTypeId_r(geos.handle(), part) != GEOS_POLYGON || isNoise(part))
            return;
        Area area;
        area.ring = ringOf(GEOSGetExteriorRing_r(geos.handle(), part));
        for (int i = 0; i < GEOSGetNumInteriorRings_r(geos.handle(), part); ++i) {
            const GEOSGeometry* const hole = GEOSGetInteriorRingN_r(geos.handle(), part, i);
            const Geometry filled = geos.polygon(geos.vertices<CAxPoint2D>(hole));
            if (filled && !isNoise(filled.get()))
                area.holes += ringOf(hole);
        }
        if (area.ring.size() >= 3)
            result.areas += area;
    }

    /// What is thinner than the grid is left over from rounding.
    bool isNoise(const GEOSGeometry* polygon) const
    {
        double area = 0.0;
        double length = 0.0;
        return GEOSArea_r(geos.handle(), polygon, &area) != 1 ||
               GEOSLength_r(geos.handle(), polygon, &length) != 1 || !(area > length * grid);
    }

    Ring ringOf(const GEOSGeometry* line) const
    {
        Line points = geos.vertices<CAxPoint2D>(line);
        // Where an edge was cut and put together again there is no corner.
        for (std::size_t i = 0; i < points.size() && points.size() > 3;) {
            const CAxPoint2D& before = points[(i + points.size() - 1) % points.size()];
            const CAxPoint2D& after = points[(i + 1) % points.size()];
            if (!plane.knows(points[i]) && isBetween(points[i], before, after))
                points.erase(points.begin() + static_cast<std::ptrdiff_t>(i));
            else
                ++i;
        }
        return plane.places(points);
    }

    static bool isBetween(const CAxPoint2D& point, const CAxPoint2D& a, const CAxPoint2D& b)
    {
        const double length = std::hypot(b.x() - a.x(), b.y() - a.y());
        const double across = (b.x() - a.x()) * (point.y() - a.y()) - (b.y() - a.y()) * (point.x() - a.x());
        return std::abs(across) <= 2.0 * grid * length;
    }
};

bool isLength(double metres)
{
    return metres > 0.0 && metres <= mostGrowth; // neither is NaN
}

Geometry buffered(const GeosContext& geos, const Geometry& geometry, double metres, int join)
{
    return geos.own(GEOSBufferWithStyle_r(geos.handle(), geometry.get(), metres, pointsOfQuarter,
                                          GEOSBUF_CAP_ROUND, join, mitreLimit));
}

/// Points in the metres around the centre, changed and led back; empty when that is not possible.
template <typename Change>
QList<QPointF> changed(const QList<QPointF>& points, const QPointF& centre, const Change& change)
{
    if (!isPlace(centre))
        return {};
    Plane plane(Plane::Equidistant, centre);
    Line line;
    if (!plane.take(points, line))
        return {};
    QList<QPointF> result;
    for (const CAxPoint2D& point : line) {
        const CAxPoint2D to = change(point);
        if (!(std::hypot(to.x(), to.y()) <= farthest))
            return {};
        result += plane.toLngLat(to);
    }
    return result;
}

/// Where a line crosses the edge between two points, as parts of it from 0 to 1, in their order.
std::vector<double> crossings(const CAxPoint2D& from, const CAxPoint2D& to, const Line& line)
{
    std::vector<double> parts;
    const CAxPoint2D edge(to.x() - from.x(), to.y() - from.y());
    // What crosses at a point is not lost between the edges that meet there.
    const double rounding = grid / std::hypot(edge.x(), edge.y());
    for (std::size_t i = 1; i < line.size(); ++i) {
        const CAxPoint2D other(line[i].x() - line[i - 1].x(), line[i].y() - line[i - 1].y());
        const CAxPoint2D between(line[i - 1].x() - from.x(), line[i - 1].y() - from.y());
        const double sine = edge.x() * other.y() - edge.y() * other.x();
        const double part = (between.x() * other.y() - between.y() * other.x()) / sine;
        const double along = (between.x() * edge.y() - between.y() * edge.x()) / sine;
        const bool isOnEdge = part >= -rounding && part <= 1.0 + rounding; // NaN of parallel ones is not
        if (isOnEdge && along >= 0.0 && along <= 1.0)
            parts.push_back(std::clamp(part, 0.0, 1.0));
    }
    std::sort(parts.begin(), parts.end());
    return parts;
}
} // namespace

Result Unite(const QList<Ring>& rings)
{
    Work work(Plane::Straight, rings);
    return work.result(work ? work.geos.unionOf(std::move(work.polygons), grid) : work.geos.own(nullptr));
}

Result Subtract(const Ring& ring, const QList<Ring>& others)
{
    Work work(Plane::Straight, QList<Ring>{ring} + others);
    if (!work || others.isEmpty())
        return work.result(work ? std::move(work.polygons.front()) : work.geos.own(nullptr));
    const Geometry from = std::move(work.polygons.front());
    work.polygons.erase(work.polygons.begin());
    const Geometry taken = work.geos.unionOf(std::move(work.polygons), grid);
    return work.result(work.geos.own(
        taken ? GEOSDifferencePrec_r(work.geos.handle(), from.get(), taken.get(), grid) : nullptr));
}

Result Split(const Ring& ring, const QList<QPointF>& line)
{
    Work work(Plane::Straight, {ring});
    Line cut;
    if (work && (line.size() < 2 || !work.plane.take(line, cut)))
        work.fault = Fault::NotCut;
    if (!work)
        return work.result(work.geos.own(nullptr));
    const GEOSContextHandle_t handle = work.geos.handle();
    // Both on the grid and cut where they meet; out of the pieces come all faces, also those outside.
    std::vector<Geometry> lines;
    lines.push_back(work.geos.own(GEOSBoundary_r(handle, work.polygons.front().get())));
    lines.push_back(lineOf(work.geos, cut));
    const Geometry pieces = work.geos.unionOf(std::move(lines), grid);
    const GEOSGeometry* const all = pieces.get();
    const Geometry faces = work.geos.own(pieces ? GEOSPolygonize_r(handle, &all, 1) : nullptr);
    std::vector<GEOSGeometry*> within;
    for (int i = 0; faces && i < GEOSGetNumGeometries_r(handle, faces.get()); ++i) {
        const GEOSGeometry* const face = GEOSGetGeometryN_r(handle, faces.get(), i);
        const Geometry inside = work.geos.own(GEOSPointOnSurface_r(handle, face));
        if (inside && GEOSContains_r(handle, work.polygons.front().get(), inside.get()) == 1)
            within.push_back(GEOSGeom_clone_r(handle, face));
    }
    const Geometry parts = work.geos.own(GEOSGeom_createCollection_r(
        handle, GEOS_GEOMETRYCOLLECTION, within.data(), static_cast<unsigned>(within.size())));
    Result result = work.result(parts);
    if (result.areas.size() < 2)
        result = {{}, Fault::NotCut};
    return result;
}

QList<QList<QPointF>> SplitLine(const QList<QPointF>& line, const QList<QPointF>& cut)
{
    Plane plane(Plane::Straight, QList<Ring>{line});
    Line points;
    Line knife;
    if (line.size() < 2 || cut.size() < 2 || !plane.take(line, points) || !plane.take(cut, knife))
        return {};
    QList<QList<QPointF>> pieces;
    Line piece{points.front()};
    const auto isAtEnd = [&piece](const CAxPoint2D& point) {
        return std::hypot(point.x() - piece.back().x(), point.y() - piece.back().y()) < grid;
    };
    for (std::size_t i = 1; i < points.size(); ++i) {
        for (const double part : crossings(points[i - 1], points[i], knife)) {
            const CAxPoint2D from = points[i - 1];
            const CAxPoint2D place(from.x() + part * (points[i].x() - from.x()),
                                   from.y() + part * (points[i].y() - from.y()));
            if (!isAtEnd(place))
                piece.push_back(place);
            if (piece.size() < 2)
                continue;
            pieces += plane.places(piece);
            piece = {place};
        }
        if (!isAtEnd(points[i]))
            piece.push_back(points[i]);
    }
    if (piece.size() > 1)
        pieces += plane.places(piece);
    return pieces.size() > 1 ? pieces : QList<QList<QPointF>>();
}

Result Buffer(const Ring& ring, double metres)
{
    Work work(Plane::Equidistant, {ring});
    if (work && !isLength(std::abs(metres)))
        work.fault = Fault::BadMeasure;
    return work.result(work ? buffered(work.geos, work.polygons.front(), metres, GEOSBUF_JOIN_MITRE)
                            : work.geos.own(nullptr));
}

Result BufferLine(const QList<QPointF>& line, double metres)
{
    Work work(Plane::Equidistant, {});
    work.plane = Plane(Plane::Equidistant, QList<Ring>{line});
    Line points;
    if (line.size() < 2 || !std::all_of(line.begin(), line.end(), isPlace))
        work.fault = Fault::NotAnArea;
    else if (!work.plane.take(line, points))
        work.fault = Fault::TooLarge;
    else if (!isLength(metres))
        work.fault = Fault::BadMeasure;
    return work.result(work ? buffered(work.geos, lineOf(work.geos, points), metres, GEOSBUF_JOIN_ROUND)
                            : work.geos.own(nullptr));
}

Result Simplify(const Ring& ring, double metres)
{
    Work work(Plane::Equidistant, {ring});
    if (work && !isLength(metres))
        work.fault = Fault::BadMeasure;
    return work.result(work.geos.own(
        work ? GEOSTopologyPreserveSimplify_r(work.geos.handle(), work.polygons.front().get(), metres)
             : nullptr));
}

QList<QPointF> SimplifyLine(const QList<QPointF>& line, double metres)
{
    Plane plane(Plane::Equidistant, QList<Ring>{line});
    Line points;
    if (line.size() < 2 || !isLength(metres) || !plane.take(line, points))
        return {};
    const GeosContext geos;
    const Geometry whole = lineOf(geos, points);
    const Geometry simple =
        geos.own(whole ? GEOSTopologyPreserveSimplify_r(geos.handle(), whole.get(), metres) : nullptr);
    if (!simple)
        return {};
    Line kept = geos.vertices<CAxPoint2D>(simple.get());
    kept.push_back(points.back()); // which vertices() takes for that which closes a ring
    return plane.places(kept);
}

QList<QPointF> Rotated(const QList<QPointF>& points, double degrees, const QPointF& centre)
{
    const double cosine = std::cos(DegreeToRadians(degrees));
    const double sine = std::sin(DegreeToRadians(degrees));
    return changed(points, centre, [=](const CAxPoint2D& at) {
        return CAxPoint2D(at.x() * cosine + at.y() * sine, at.y() * cosine - at.x() * sine);
    });
}

QList<QPointF> Scaled(const QList<QPointF>& points, double along, double across, const QPointF& centre,
                      double heading)
{
    if (!(along > 0.0) || !(across > 0.0))
        return {};
    const double north = std::cos(DegreeToRadians(heading));
    const double east = std::sin(DegreeToRadians(heading));
    return changed(points, centre, [=](const CAxPoint2D& at) {
        const double ahead = (at.x() * east + at.y() * north) * along;
        const double right = (at.x() * north - at.y() * east) * across;
        return CAxPoint2D(ahead * east + right * north, ahead * north - right * east);
    });
}

double SquareMetres(const Area& area)
{
    const auto inside = [](const Ring& ring) {
        Line points;
        for (const QPointF& point : ring)
            points.emplace_back(point.x(), point.y());
        return GeodesicRingArea(points);
    };
    double squareMetres = inside(area.ring);
    for (const Ring& hole : area.holes)
        squareMetres -= inside(hole);
    return squareMetres;
}

} // namespace AxAreaOperations
