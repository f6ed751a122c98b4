#include <AxAlgorthm/AxPlaneGeometry.h>

#include <support/GeosContext.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {
constexpr double SamePointMetres = 1e-6;
constexpr double StraightTurn = 1e-9;
constexpr double MitreLimit = 2.0;
// A power of two, so that a point on the grid moved by whole metres is still exact and a ring that is
// valid near the origin is valid at its place.
constexpr double MergeGrid = 1.0 / 1048576.0;
constexpr double NoiseWidth = 8.0 * MergeGrid; // a gap narrower than this on average comes from rounding

using Vector = CAxPoint2D;

Vector operator+(const Vector& a, const Vector& b)
{
    return {a.x() + b.x(), a.y() + b.y()};
}
Vector operator-(const Vector& a, const Vector& b)
{
    return {a.x() - b.x(), a.y() - b.y()};
}
Vector operator*(const Vector& a, double factor)
{
    return {a.x() * factor, a.y() * factor};
}
double dot(const Vector& a, const Vector& b)
{
    return a.x() * b.x() + a.y() * b.y();
}
double cross(const Vector& a, const Vector& b)
{
    return a.x() * b.y() - a.y() * b.x();
}
double length(const Vector& a)
{
    return std::hypot(a.x(), a.y());
}

struct Leg
{
    Vector normal; // unit, to the left
    double length;
};

struct OutlinePoint
{
    Vector place;
    int index;
};

/// The centre line without repeated points, moved near the origin so that no digits are lost to large
/// northings.
struct Line
{
    Vector origin; // whole metres
    std::vector<Vector> points;
    std::vector<int> indices; // in the caller's line
    std::vector<Leg> legs;
    std::vector<double> turns; // at each point, positive to the left; 0 at the ends

    explicit Line(const std::vector<CAxPoint2D>& input)
        : origin(std::round(input.front().x()), std::round(input.front().y()))
    {
        for (std::size_t i = 0; i < input.size(); ++i) {
            const Vector point = input[i] - origin;
            if (!points.empty() && length(point - points.back()) <= SamePointMetres)
                continue;
            points.push_back(point);
            indices.push_back(static_cast<int>(i));
        }
        for (std::size_t i = 0; i + 1 < points.size(); ++i) {
            const Vector along = points[i + 1] - points[i];
            const double metres = length(along);
            legs.push_back({{-along.y() / metres, along.x() / metres}, metres});
        }
        turns.assign(points.size(), 0.0);
        for (std::size_t i = 1; i + 1 < points.size(); ++i)
            turns[i] = std::atan2(cross(legs[i - 1].normal, legs[i].normal),
                                  dot(legs[i - 1].normal, legs[i].normal));
    }

    bool isEnd(std::size_t i) const { return i == 0 || i + 1 == points.size(); }
};

enum class Bend
{
    None,     // an end, a straight point, or a side without width
    Mitre,    // one point, outer or inner
    Bevel,    // outer, cut
    Overlaps, // inner, with legs too short for a mitre between them
};

/// One edge of the band. sign is 1 for the left, -1 for the right.
class Side
{
public:
    Side(const Line& line, double width, double sign) : m_line(line), m_offset(width * sign)
    {
        const std::size_t count = line.points.size();
        std::vector<double> trims(count, 0.0); // how much of its legs an inner mitre takes away
        for (std::size_t i = 0; i < count; ++i)
            if (m_offset * line.turns[i] > 0.0)
                trims[i] = width * std::tan(std::abs(line.turns[i]) / 2.0);
        for (std::size_t i = 0; i < count; ++i) {
            Bend bend = Bend::None;
            if (width > 0.0 && !line.isEnd(i) && std::abs(line.turns[i]) > StraightTurn) {
                const bool inner = m_offset * line.turns[i] > 0.0;
                if (inner)
                    bend = trims[i - 1] + trims[i] + SamePointMetres < line.legs[i - 1].length &&
                                   trims[i] + trims[i + 1] + SamePointMetres < line.legs[i].length
                               ? Bend::Mitre
                               : Bend::Overlaps;
                else
                    bend = std::cos(line.turns[i] / 2.0) * MitreLimit >= 1.0 ? Bend::Mitre : Bend::Bevel;
            }
            m_bends.push_back(bend);
        }
    }

    bool overlaps() const
    {
        return std::find(m_bends.begin(), m_bends.end(), Bend::Overlaps) != m_bends.end();
    }

    std::vector<OutlinePoint> edge() const
    {
        std::vector<OutlinePoint> result;
        for (std::size_t i = 0; i < m_line.points.size(); ++i) {
            if (m_bends[i] == Bend::Mitre)
                result.push_back({mitre(i), m_line.indices[i]});
            else {
                const std::size_t before = i == 0 ? 0 : i - 1;
                result.push_back({corner(i, before), m_line.indices[i]});
                if (m_bends[i] == Bend::Bevel)
                    result.push_back({corner(i, i), m_line.indices[i]});
            }
        }
        return result;
    }

    /// Where leg's own part of this edge ends at point i.
    Vector legEnd(std::size_t i, std::size_t leg) const
    {
        const bool trimmed = m_bends[i] == Bend::Mitre && m_offset * m_line.turns[i] > 0.0;
        return trimmed ? mitre(i) : corner(i, leg);
    }

    /// The part of the band that fills the outer side of bend i; empty when there is none.
    std::vector<Vector> wedge(std::size_t i) const
    {
        const bool outer = m_offset * m_line.turns[i] < 0.0;
        if (!outer || (m_bends[i] != Bend::Mitre && m_bends[i] != Bend::Bevel))
            return {};
        std::vector<Vector> result{m_line.points[i], corner(i, i - 1)};
        if (m_bends[i] == Bend::Mitre)
            result.push_back(mitre(i));
        result.push_back(corner(i, i));
        return result;
    }

private:
    Vector corner(std::size_t i, std::size_t leg) const
    {
        return m_line.points[i] + m_line.legs[leg].normal * m_offset;
    }

    Vector mitre(std::size_t i) const
    {
        const Vector& a = m_line.legs[i - 1].normal;
        const Vector& b = m_line.legs[i].normal;
        return m_line.points[i] + (a + b) * (m_offset / (1.0 + dot(a, b)));
    }

    const Line& m_line;
    double m_offset;
    std::vector<Bend> m_bends;
};

/// Both edges one after the other; the usual case, in which no parts overlap.
std::vector<OutlinePoint> joinedEdges(const Side& left, const Side& right)
{
    std::vector<OutlinePoint> outline = left.edge();
    const std::vector<OutlinePoint> back = right.edge();
    outline.insert(outline.end(), back.rbegin(), back.rend());
    return outline;
}

std::vector<GeosContext::Geometry> bandParts(const GeosContext& geos, const Line& line, const Side& left,
                                             const Side& right)
{
    std::vector<GeosContext::Geometry> parts;
    for (std::size_t leg = 0; leg < line.legs.size(); ++leg) {
        std::vector<Vector> ring{left.legEnd(leg, leg), left.legEnd(leg + 1, leg)};
        if (!line.isEnd(leg + 1))
            ring.push_back(line.points[leg + 1]);
        ring.push_back(right.legEnd(leg + 1, leg));
        ring.push_back(right.legEnd(leg, leg));
        if (!line.isEnd(leg))
            ring.push_back(line.points[leg]);
        ring.erase(std::unique(ring.begin(), ring.end()), ring.end());
        parts.push_back(geos.polygon(ring));
    }
    for (std::size_t i = 1; i + 1 < line.points.size(); ++i) {
        parts.push_back(geos.polygon(left.wedge(i)));
        parts.push_back(geos.polygon(right.wedge(i)));
    }
    return parts;
}

std::size_t nearest(const std::vector<Vector>& points, const Vector& place)
{
    return static_cast<std::size_t>(std::min_element(points.begin(), points.end(),
                                                     [&place](const Vector& a, const Vector& b) {
                                                         return length(a - place) < length(b - place);
                                                     }) -
                                    points.begin());
}

std::vector<Vector> placesOf(const std::vector<OutlinePoint>& outline)
{
    std::vector<Vector> places;
    places.reserve(outline.size());
    for (const OutlinePoint& point : outline)
        places.push_back(point.place);
    return places;
}

/// The outer ring of the merged parts of the band; empty when it is not one piece without gaps.
std::vector<OutlinePoint> mergedOutline(const GeosContext& geos, const Line& line, const Side& left,
                                        const Side& right)
{
    const GeosContext::Geometry all = geos.unionOf(bandParts(geos, line, left, right), MergeGrid);
    if (!all || GEOSGetNumGeometries_r(geos.handle(), all.get()) != 1)
        return {};
    const GEOSGeometry* const band = GEOSGetGeometryN_r(geos.handle(), all.get(), 0);
    if (GEOSGeomTypeId_r(geos.handle(), band) != GEOS_POLYGON)
        return {};
    for (int i = 0; i < GEOSGetNumInteriorRings_r(geos.handle(), band); ++i) {
        const auto gap = geos.polygon(geos.vertices<Vector>(GEOSGetInteriorRingN_r(geos.handle(), band, i)));
        double area = 0.0;
        double outlineLength = 0.0;
        const bool measured = gap && GEOSArea_r(geos.handle(), gap.get(), &area) == 1 &&
                              GEOSLength_r(geos.handle(), gap.get(), &outlineLength) == 1;
        if (!measured || area > NoiseWidth * outlineLength / 2.0)
            return {};
    }

    const std::vector<OutlinePoint> corners = joinedEdges(left, right);
    const std::vector<Vector> cornerPlaces = placesOf(corners);
    std::vector<OutlinePoint> outline;
    for (const Vector& place : geos.vertices<Vector>(GEOSGetExteriorRing_r(geos.handle(), band))) {
        const std::size_t corner = nearest(cornerPlaces, place);
        const bool isCorner = length(cornerPlaces[corner] - place) < 2.0 * MergeGrid;
        outline.push_back(
            {place, isCorner ? corners[corner].index : line.indices[nearest(line.points, place)]});
    }
    double twiceArea = 0.0;
    for (std::size_t i = 0; i < outline.size(); ++i)
        twiceArea += cross(outline[i].place, outline[(i + 1) % outline.size()].place);
    if (twiceArea > 0.0)
        std::reverse(outline.begin(), outline.end());
    return outline;
}

std::vector<OutlinePoint> atPlace(std::vector<OutlinePoint> outline, const Vector& origin)
{
    for (OutlinePoint& point : outline)
        point.place = point.place + origin;
    return outline;
}

bool allFinite(const std::vector<CAxPoint2D>& points)
{
    return std::all_of(points.begin(), points.end(), [](const CAxPoint2D& point) {
        return std::isfinite(point.x()) && std::isfinite(point.y());
    });
}
} // namespace

bool CreateStripPolygon(const std::vector<CAxPoint2D>& centreLine, double width1, double width2,
                        std::vector<CAxPoint2D>& outline, QList<int>& indices)
{
    // outline may be the same object. NOLINTNEXTLINE(performance-unnecessary-copy-initialization)
    const std::vector<CAxPoint2D> input = centreLine;
    outline.clear();
    indices.clear();
    const bool usable = std::isfinite(width1) && std::isfinite(width2) && width1 >= 0.0 && width2 >= 0.0 &&
                        width1 + width2 > 0.0 && !input.empty() && allFinite(input);
    if (!usable)
        return false;
    const Line line(input);
    if (line.points.size() < 2)
        return false;

    const GeosContext geos;
    const Side left(line, width1, 1.0);
    const Side right(line, width2, -1.0);
    std::vector<OutlinePoint> result = atPlace(joinedEdges(left, right), line.origin);
    if (left.overlaps() || right.overlaps() || !geos.isValid(geos.polygon(placesOf(result))))
        result = atPlace(mergedOutline(geos, line, left, right), line.origin);
    if (!geos.isValid(geos.polygon(placesOf(result))))
        return false;

    outline = placesOf(result);
    for (const OutlinePoint& point : result)
        indices.append(point.index);
    return true;
}
