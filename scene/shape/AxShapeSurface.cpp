#include "scene/shape/AxShapeSurface.h"
#include "scene/base/AxGlobePoint.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>

using namespace AxGlobe;

namespace {
constexpr unsigned mostLevels = 8;
constexpr std::size_t mostSamples = 2500;
// How far the outline may leave the sampled ground: by its edge's length, and within limits, metres.
constexpr double outlineShare = 0.001;
constexpr double leastOutlineError = 0.5;
constexpr double mostOutlineError = 3.0;

bool IsOnGlobe(const osg::Vec3d& lngLatAlt)
{
    return std::isfinite(lngLatAlt.x()) && std::isfinite(lngLatAlt.z()) && std::abs(lngLatAlt.y()) <= 90.0;
}

bool IsSame(const osg::Vec3d& a, const osg::Vec3d& b)
{
    return a.x() == b.x() && a.y() == b.y() && a.z() == b.z();
}

// Even steps between neighbours that are known.
void FillGaps(std::vector<double>& altitudes)
{
    std::size_t known = 0;
    for (std::size_t i = 1; i < altitudes.size(); ++i) {
        if (std::isnan(altitudes[i]))
            continue;
        for (std::size_t j = known + 1; j < i; ++j)
            altitudes[j] = altitudes[known] + (altitudes[i] - altitudes[known]) *
                                                  static_cast<double>(j - known) /
                                                  static_cast<double>(i - known);
        known = i;
    }
}

// Marks which of the places between two others are needed, halving by halving.
void KeepPlaces(const std::vector<osg::Vec3d>& world, std::size_t from, std::size_t to, double tolerance,
                std::vector<char>& keep)
{
    if (to - from < 2)
        return;
    const osg::Vec3d step = (world[to] - world[from]) / static_cast<double>(to - from);
    double error2 = 0.0;
    for (std::size_t i = from + 1; i < to; ++i)
        error2 = std::max(error2, (world[from] + step * static_cast<double>(i - from) - world[i]).length2());
    if (error2 <= tolerance * tolerance)
        return;
    const std::size_t middle = (from + to) / 2;
    keep[middle] = 1;
    KeepPlaces(world, from, middle, tolerance, keep);
    KeepPlaces(world, middle, to, tolerance, keep);
}
} // namespace

void AxShapeSurface::SetVertices(const std::vector<osg::Vec3d>& lngLatAlt, bool closed, bool filled,
                                 const AxHeightSource& heights)
{
    // A vertex upon another one has no edge between them.
    const auto isUpon = [](const osg::Vec3d& a, const osg::Vec3d& b) {
        return a.x() == b.x() && a.y() == b.y();
    };
    std::vector<osg::Vec3d> vertices;
    vertices.reserve(lngLatAlt.size());
    for (const osg::Vec3d& vertex : lngLatAlt)
        if (IsOnGlobe(vertex) && (vertices.empty() || !isUpon(vertex, vertices.back())))
            vertices.push_back(vertex);
    while (closed && vertices.size() > 1 && isUpon(vertices.back(), vertices.front()))
        vertices.pop_back();
    isClosed = closed && vertices.size() > 2;
    isFilled = filled && isClosed;

    const std::size_t count = vertices.empty() ? 0 : vertices.size() - (isClosed ? 0 : 1);
    unsigned cap = 0;
    while (cap < mostLevels && (count << (cap + 1)) <= mostSamples)
        ++cap;
    const auto isKept = [&](const Edge& edge, std::size_t i) {
        const osg::Vec3d& to = vertices[i + 1 < vertices.size() ? i + 1 : 0];
        return IsSame(edge.from, vertices[i]) && IsSame(edge.to, to) &&
               edge.levels == std::min(edge.wantedLevels, cap);
    };

    // What did not change at both ends stays.
    std::size_t head = 0;
    while (head < std::min(count, edges.size()) && isKept(edges[head], head))
        ++head;
    std::size_t tail = 0;
    while (tail < std::min(count, edges.size()) - head &&
           isKept(edges[edges.size() - 1 - tail], count - 1 - tail))
        ++tail;
    const auto first = edges.begin() + static_cast<std::ptrdiff_t>(head);
    edges.erase(first, edges.end() - static_cast<std::ptrdiff_t>(tail));
    edges.insert(edges.begin() + static_cast<std::ptrdiff_t>(head), count - head - tail, Edge());
    for (std::size_t i = head; i < count - tail; ++i) {
        edges[i].from = vertices[i];
        edges[i].to = vertices[i + 1 < vertices.size() ? i + 1 : 0];
        const double steps = LengthBetween(NormalAt(edges[i].from), NormalAt(edges[i].to)) / sampleStep;
        edges[i].wantedLevels = steps > 1.0 ? static_cast<unsigned>(std::ceil(std::log2(steps))) : 0u;
        edges[i].levels = std::min(edges[i].wantedLevels, cap);
    }
    SampleEdges(head, count - tail, heights);
    Assemble(vertices);
}

void AxShapeSurface::SampleEdges(std::size_t first, std::size_t end, const AxHeightSource& heights)
{
    std::vector<osg::Vec3d> asked;
    std::vector<osg::Vec3d> allNormals;
    for (std::size_t e = first; e < end; ++e) {
        const std::size_t steps = std::size_t(1) << edges[e].levels;
        std::vector<osg::Vec3d> way(steps + 1);
        way.front() = NormalAt(edges[e].from);
        way.back() = NormalAt(edges[e].to);
        for (std::size_t stride = steps; stride > 1; stride /= 2)
            for (std::size_t i = stride / 2; i < steps; i += stride)
                way[i] = Middle(way[i - stride / 2], way[i + stride / 2]);
        for (std::size_t i = 1; i < steps; ++i) {
            asked.push_back(LngLatOf(way[i]));
            asked.back().z() = std::numeric_limits<double>::quiet_NaN();
        }
        allNormals.insert(allNormals.end(), way.begin(), way.end());
    }
    if (heights && !asked.empty()) {
        const std::size_t count = asked.size();
        heights(asked);
        asked.resize(count, osg::Vec3d(0.0, 0.0, std::numeric_limits<double>::quiet_NaN()));
    }

    auto answer = asked.begin();
    auto normal = allNormals.begin();
    std::vector<double> altitude;
    std::vector<osg::Vec3d> world;
    std::vector<char> keep;
    for (std::size_t e = first; e < end; ++e) {
        Edge& edge = edges[e];
        const std::size_t steps = std::size_t(1) << edge.levels;
        altitude.assign(1, edge.from.z());
        for (std::size_t i = 1; i < steps; ++i, ++answer)
            altitude.push_back(std::isfinite(answer->z()) ? answer->z()
                                                          : std::numeric_limits<double>::quiet_NaN());
        altitude.push_back(edge.to.z());
        FillGaps(altitude);
        world.clear();
        for (std::size_t i = 0; i <= steps; ++i)
            world.push_back(WorldAt(normal[static_cast<std::ptrdiff_t>(i)], altitude[i]));
        keep.assign(steps + 1, 0);
        const double tolerance =
            std::clamp(outlineShare * LengthBetween(normal[0], normal[static_cast<std::ptrdiff_t>(steps)]),
                       leastOutlineError, mostOutlineError);
        KeepPlaces(world, 0, steps, tolerance, keep);
        keep[0] = 1;
        edge.places.clear();
        for (std::size_t i = 0; i < steps; ++i)
            if (keep[i])
                edge.places.push_back({normal[static_cast<std::ptrdiff_t>(i)], world[i], altitude[i],
                                       static_cast<unsigned>(i)});
        normal += static_cast<std::ptrdiff_t>(steps + 1);
    }
}

void AxShapeSurface::Assemble(const std::vector<osg::Vec3d>& vertices)
{
    mesh = AxShapeMesh();
    spanned.clear();
    normals.clear();
    altitudes.clear();
    edgeOf.clear();
    placeOf.clear();
    edgeStarts.clear();
    std::size_t total = 1;
    for (const Edge& edge : edges)
        total += edge.places.size();
    mesh.points.reserve(total);
    normals.reserve(total);
    altitudes.reserve(total);
    edgeOf.reserve(total);
    placeOf.reserve(total);
    const auto add = [this](const Place& place, std::size_t edge) {
        mesh.points.push_back(place.world);
        normals.push_back(place.normal);
        altitudes.push_back(place.altitude);
        edgeOf.push_back(static_cast<unsigned>(edge));
        placeOf.push_back(place.at);
    };
    for (std::size_t e = 0; e < edges.size(); ++e) {
        edgeStarts.push_back(static_cast<unsigned>(mesh.points.size()));
        for (const Place& place : edges[e].places)
            add(place, e);
    }
    if (!isClosed && !vertices.empty()) {
        const osg::Vec3d normal = NormalAt(vertices.back());
        add({normal, WorldAt(normal, vertices.back().z()), vertices.back().z(), 0}, edges.size());
    }
    mesh.outlineCount = mesh.points.size();
    if (isFilled)
        Triangulate();
    Measure();
}
