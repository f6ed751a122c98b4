// The fill of a shape: spanned between the vertices, and laid on the ground.
#include "scene/base/AxGlobePoint.h"
#include "scene/shape/AxRingTriangles.h"
#include "scene/shape/AxShapeSurface.h"

#include <osg/Vec2d>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <unordered_map>

using namespace AxGlobe;

namespace {
// Longer edges of the fill would cut deep into the globe.
constexpr double longestChord = 150000.0;
// Seen from its middle, the plane of great circles ends at 90 degrees and is stretched long before.
constexpr double gnomonicReach = 75.0 * pi / 180.0;
// No finer than elevation models mostly are, metres, and what a fill on the ground may cost.
constexpr double fillStep = 80.0;
constexpr double mostCells = 300.0;
constexpr double mostInnerEdges = 1500.0;
// On ground as even as this, metres and by the fill's size, the rest is taken as even, too.
constexpr double leastFillError = 1.0;
constexpr double fillErrorShare = 0.004;
constexpr int enoughEvenSteps = 1;
// What a small picture may be off, by the fill's size, and from how many triangles on it is worth it.
constexpr double coarseErrorShare = 0.01;
constexpr std::size_t mostOfSmallPicture = 24;
constexpr std::size_t mostTriangles = 60000;
constexpr int mostPasses = 64;
// Triangles that are flatter than this share of their longest edge have no slope to speak of.
constexpr double sliver = 1e-3;

constexpr unsigned none = std::numeric_limits<unsigned>::max();

// The direction from which the points are seen within the smallest angle, of
// those that are cheap to find, and the cosine of that angle.
osg::Vec3d MiddleOf(const std::vector<osg::Vec3d>& outline, double& cosine)
{
    osg::Vec3d mean;
    osg::Vec3d area; // at a right angle to the plane that fits the outline best
    for (std::size_t i = 0; i < outline.size(); ++i) {
        mean += outline[i];
        area += outline[i] ^ outline[i + 1 < outline.size() ? i + 1 : 0];
    }
    osg::Vec3d best(0.0, 0.0, 1.0);
    cosine = -2.0;
    for (osg::Vec3d candidate : {mean, area, -area}) {
        if (!(candidate.normalize() > 0.0))
            continue;
        double least = 1.0;
        for (const osg::Vec3d& point : outline)
            least = std::min(least, candidate * point);
        if (least > cosine) {
            cosine = least;
            best = candidate;
        }
        if (cosine > 0.5)
            break;
    }
    return best;
}

// Whether all triangles of a ring that does not cross itself go round as they did.
bool AreUpright(const AxRingFill& fill, const std::vector<osg::Vec2d>& ring)
{
    if (fill.triangles.empty() || !fill.crossings.empty())
        return false;
    for (std::size_t i = 0; i < fill.triangles.size(); i += 3) {
        const osg::Vec2d& corner = ring[fill.triangles[i]];
        const osg::Vec2d one = ring[fill.triangles[i + 1]] - corner;
        const osg::Vec2d other = ring[fill.triangles[i + 2]] - corner;
        if (!(one.x() * other.y() - one.y() * other.x() > 0.0))
            return false;
    }
    return true;
}
} // namespace

// The points around `middle`, in a plane where they reach no farther than 1.
std::vector<osg::Vec2d> AxShapeSurface::InPlane(const std::vector<unsigned>& corners,
                                                const osg::Vec3d& middle, bool isGnomonic) const
{
    const osg::Vec3d east = Across(middle);
    const osg::Vec3d north = middle ^ east;
    std::vector<osg::Vec2d> ring;
    ring.reserve(corners.size());
    double size = 0.0;
    for (const unsigned corner : corners) {
        const osg::Vec3d& normal = normals[corner];
        osg::Vec2d at(east * normal, north * normal);
        const double up = middle * normal;
        if (isGnomonic)
            at /= up;
        else if (const double sine = at.length(); sine > 0.0)
            at *= std::atan2(sine, up) / sine;
        size = std::max({size, std::abs(at.x()), std::abs(at.y())});
        ring.push_back(at);
    }
    if (!(size > 0.0))
        return {};
    for (osg::Vec2d& at : ring)
        at /= size;
    return ring;
}

void AxShapeSurface::Triangulate()
{
    double cosine = 1.0;
    const osg::Vec3d middle = MiddleOf(normals, cosine);
    // Great circles are straight in the gnomonic plane, so the vertices will do there.
    const bool isGnomonic = cosine > std::cos(gnomonicReach);
    std::vector<unsigned> corners;
    if (isGnomonic)
        corners = edgeStarts;
    else
        for (std::size_t i = 0; i < mesh.outlineCount; ++i)
            corners.push_back(static_cast<unsigned>(i));
    const std::vector<osg::Vec2d> ring = InPlane(corners, middle, isGnomonic);
    if (ring.empty())
        return;

    if (filledCorners != ring.size() || !AreUpright(latestFill, ring)) {
        latestFill = AxFillRing(ring);
        filledCorners = ring.size();
    }
    const AxRingFill& fill = latestFill;
    std::vector<unsigned> meshIndex = corners;
    for (const AxRingFill::Crossing& crossing : fill.crossings) {
        osg::Vec3d normal;
        double altitude = 0.0;
        for (std::size_t i = 0; i < crossing.of.size(); ++i) {
            if (crossing.weight[i] == 0.0)
                continue;
            const unsigned index = meshIndex[crossing.of[i]];
            normal += normals[index] * (crossing.weight[i] / (isGnomonic ? middle * normals[index] : 1.0));
            altitude += altitudes[index] * crossing.weight[i];
        }
        normal.normalize();
        meshIndex.push_back(AddPoint(normal, altitude));
    }
    spanned.reserve(fill.triangles.size());
    for (const unsigned index : fill.triangles)
        spanned.push_back(meshIndex[index]);
    spannedPoints = mesh.points.size();
    LayOut(nullptr);
}

unsigned AxShapeSurface::AddPoint(const osg::Vec3d& normal, double altitude)
{
    mesh.points.push_back(WorldAt(normal, altitude));
    normals.push_back(normal);
    altitudes.push_back(altitude);
    return static_cast<unsigned>(mesh.points.size() - 1);
}

double AxShapeSurface::LengthOf(unsigned a, unsigned b) const
{
    return LengthBetween(normals[a], normals[b]);
}

// Whether two points lie on one edge of the shape, and the outline's point
// halfway between them, if there is one.
bool AxShapeSurface::IsOnOutline(unsigned a, unsigned b, unsigned& middle) const
{
    middle = none;
    if (a >= mesh.outlineCount || b >= mesh.outlineCount)
        return false;
    const auto edgeCount = static_cast<unsigned>(edgeStarts.size());
    const auto endOf = [&](unsigned edge) {
        return edge + 1 < edgeCount ? edgeStarts[edge + 1] : static_cast<unsigned>(mesh.outlineCount);
    };
    // The end of an edge is the start of the next one.
    const auto liesOn = [&](unsigned from, unsigned to) {
        const unsigned edge = edgeOf[from];
        if (edgeOf[to] == edge && to > from) {
            middle = to;
            return true;
        }
        middle = endOf(edge);
        return to == (middle < mesh.outlineCount ? middle : 0u);
    };
    unsigned from = a;
    if (!liesOn(a, b)) {
        from = b;
        if (!liesOn(b, a)) {
            middle = none;
            return false;
        }
    }
    const unsigned end = middle; // one past the last point for the edge that closes the ring
    const Edge& edge = edges[edgeOf[from]];
    const unsigned last =
        end < mesh.outlineCount && edgeOf[end] == edgeOf[from] ? placeOf[end] : 1u << edge.levels;
    const unsigned wanted = (placeOf[from] + last) / 2;
    const auto begin = placeOf.begin() + from + 1;
    const auto found = std::lower_bound(begin, placeOf.begin() + end, wanted);
    middle = found != placeOf.begin() + end && *found == wanted
                 ? static_cast<unsigned>(found - placeOf.begin())
                 : none;
    return true;
}

void AxShapeSurface::Refine(const AxHeightSource& heights)
{
    if (spanned.empty())
        return;
    mesh.points.resize(spannedPoints);
    normals.resize(spannedPoints);
    altitudes.resize(spannedPoints);
    LayOut(&heights);
    Measure();
    ForgetSmallPicture();
    if (mesh.triangles.size() / 3 > mostOfSmallPicture)
        MakeSmallPicture();
}

void AxShapeSurface::ForgetSmallPicture()
{
    mesh.coarseOutline.clear();
    mesh.coarseTriangles.clear();
    mesh.coarseError = 0.0;
}

// The thinned outline and what is spanned within it.
void AxShapeSurface::MakeSmallPicture()
{
    double cosine = 1.0;
    const osg::Vec3d middle = MiddleOf({normals.begin(), normals.begin() + mesh.outlineCount}, cosine);
    if (cosine <= std::cos(gnomonicReach))
        return;
    osg::Vec3d doubled; // of the area
    for (std::size_t i = 0; i < mesh.outlineCount; ++i)
        doubled += (mesh.points[i] - mesh.points[0]) ^
                   (mesh.points[i + 1 < mesh.outlineCount ? i + 1 : 0] - mesh.points[0]);
    mesh.coarseError = std::max(leastFillError, coarseErrorShare * std::sqrt(0.5 * doubled.length()));
    ThinOutline();
    const AxRingFill fill = AxFillRing(InPlane(mesh.coarseOutline, middle, true));
    if (fill.triangles.empty() || !fill.crossings.empty())
        return ForgetSmallPicture();
    mesh.coarseTriangles.reserve(fill.triangles.size());
    for (const unsigned index : fill.triangles)
        mesh.coarseTriangles.push_back(mesh.coarseOutline[index]);
    mesh.coarseSteepest = SteepestOf(mesh.coarseTriangles);
}

// Points of the outline that a line past them may not leave out (Douglas and Peucker 1973).
void AxShapeSurface::ThinOutline()
{
    std::vector<bool> isKept(mesh.outlineCount + 1, false);
    std::vector<std::pair<std::size_t, std::size_t>> open;
    const auto at = [this](std::size_t i) { return mesh.points[i < mesh.outlineCount ? i : 0]; };
    for (std::size_t i = 0; i < edgeStarts.size(); ++i) {
        const std::size_t end = i + 1 < edgeStarts.size() ? edgeStarts[i + 1] : mesh.outlineCount;
        isKept[edgeStarts[i]] = true;
        open.emplace_back(edgeStarts[i], end);
    }
    while (!open.empty()) {
        const auto [first, last] = open.back();
        open.pop_back();
        const osg::Vec3d along = at(last) - at(first);
        const double length2 = along.length2();
        double farthest = mesh.coarseError * mesh.coarseError;
        std::size_t worst = first;
        for (std::size_t i = first + 1; i < last; ++i) {
            const osg::Vec3d way = at(i) - at(first);
            const double t = length2 > 0.0 ? std::clamp((way * along) / length2, 0.0, 1.0) : 0.0;
            if (const double off = (way - along * t).length2(); off > farthest) {
                farthest = off;
                worst = i;
            }
        }
        if (worst == first)
            continue;
        isKept[worst] = true;
        open.emplace_back(first, worst);
        open.emplace_back(worst, last);
    }
    mesh.coarseOutline.clear();
    for (std::size_t i = 0; i < mesh.outlineCount; ++i)
        if (isKept[i])
            mesh.coarseOutline.push_back(static_cast<unsigned>(i));
}

// Without ground the fill only gets what keeps it from cutting through the globe.
void AxShapeSurface::LayOut(const AxHeightSource* ground)
{
    mesh.triangles = spanned;
    ForgetSmallPicture();
    double area = 0.0;
    double innerLength = 0.0;
    double longest = 0.0;
    for (std::size_t i = 0; i < spanned.size(); ++i) {
        const unsigned a = spanned[i];
        const unsigned b = spanned[i % 3 == 2 ? i - 2 : i + 1];
        const double length = LengthOf(a, b);
        unsigned middle = none;
        if (!IsOnOutline(a, b, middle))
            innerLength += 0.5 * length;
        longest = std::max(longest, length);
        if (i % 3 == 0)
            area +=
                0.5 *
                ((mesh.points[b] - mesh.points[a]) ^ (mesh.points[spanned[i + 2]] - mesh.points[a])).length();
    }
    const double affordable = innerLength / mostInnerEdges;
    const double shortest =
        std::max(ground ? std::max(fillStep, std::sqrt(area / mostCells)) : longestChord, affordable);
    const double fillError = std::max(leastFillError, fillErrorShare * std::sqrt(area));
    const AxHeightSource unknown;
    double inner = longest;
    int evenSteps = 0;
    // Long edges of all kinds are halved first, which keeps triangles fat.
    for (double target = 0.5 * longest; target > 0.5 * shortest; target *= 0.5) {
        if (evenSteps >= enoughEvenSteps && inner <= std::max(longestChord, affordable))
            break;
        inner = std::max(target, shortest);
        const double error = Split(inner, inner, ground ? *ground : unknown);
        evenSteps = error < fillError ? evenSteps + 1 : 0;
    }
    Split(0.0, inner, ground ? *ground : unknown);
}

// Halves edges, and with them the triangles on both sides, until all are short
// enough. Whether one is halved depends on nothing but the edge, so neighbours
// agree and no crack opens. Returns how far the ground was from the middle of
// an edge, at most.
double AxShapeSurface::Split(double longestOuter, double longestInner, const AxHeightSource& heights)
{
    std::unordered_map<std::uint64_t, unsigned> middles;
    const auto keyOf = [](unsigned a, unsigned b) {
        return (static_cast<std::uint64_t>(std::min(a, b)) << 32) | std::max(a, b);
    };
    double error = 0.0;
    bool isDone = false;
    for (int pass = 0; !isDone && pass < mostPasses && mesh.triangles.size() / 3 < mostTriangles; ++pass) {
        isDone = true;
        middles.clear();
        const std::size_t before = mesh.points.size();
        std::vector<osg::Vec3d> asked;
        std::vector<unsigned> halves(mesh.triangles.size(), none); // of the edge that begins at the corner
        for (std::size_t i = 0; i < mesh.triangles.size(); ++i) {
            const unsigned a = mesh.triangles[i];
            const unsigned b = mesh.triangles[i % 3 == 2 ? i - 2 : i + 1];
            unsigned middle = none;
            // Between neighbours of the outline the fill may have points of its own: it
            // could not become fine beside a long step otherwise.
            if (IsOnOutline(a, b, middle) && middle != none) {
                if (LengthOf(a, b) > longestOuter)
                    halves[i] = middle;
            } else if (LengthOf(a, b) > longestInner) {
                const auto [place, isNew] = middles.emplace(keyOf(a, b), none);
                if (isNew) {
                    place->second =
                        AddPoint(Middle(normals[a], normals[b]), 0.5 * (altitudes[a] + altitudes[b]));
                    asked.push_back(LngLatOf(normals.back()));
                    asked.back().z() = std::numeric_limits<double>::quiet_NaN();
                }
                halves[i] = place->second;
            }
            isDone = isDone && halves[i] == none;
        }
        if (heights && !asked.empty()) {
            heights(asked);
            for (std::size_t i = 0; i < asked.size() && before + i < mesh.points.size(); ++i) {
                if (!std::isfinite(asked[i].z()))
                    continue;
                error = std::max(error, std::abs(asked[i].z() - altitudes[before + i]));
                altitudes[before + i] = asked[i].z();
                mesh.points[before + i] = WorldAt(normals[before + i], asked[i].z());
            }
        }
        if (!isDone)
            HalveTriangles(halves);
    }
    return error;
}

void AxShapeSurface::HalveTriangles(const std::vector<unsigned>& halves)
{
    std::vector<unsigned> next;
    next.reserve(2 * mesh.triangles.size());
    const auto addTriangle = [&next](unsigned a, unsigned b, unsigned c) {
        next.insert(next.end(), {a, b, c});
    };
    for (std::size_t i = 0; i < mesh.triangles.size(); i += 3) {
        const unsigned* corner = mesh.triangles.data() + i;
        const unsigned* half = halves.data() + i;
        const auto halved = 3 - std::count(half, half + 3, none);
        if (halved == 0) {
            addTriangle(corner[0], corner[1], corner[2]);
        } else if (halved == 3) {
            addTriangle(corner[0], half[0], half[2]);
            addTriangle(half[0], corner[1], half[1]);
            addTriangle(half[2], half[1], corner[2]);
            addTriangle(half[0], half[1], half[2]);
        } else if (halved == 1) {
            const std::size_t k = half[0] != none ? 0 : half[1] != none ? 1 : 2;
            addTriangle(corner[k], half[k], corner[(k + 2) % 3]);
            addTriangle(half[k], corner[(k + 1) % 3], corner[(k + 2) % 3]);
        } else {
            // The edge from a to b stays; the four-sided rest is cut along its shorter diagonal.
            const std::size_t k = half[0] == none ? 0 : half[1] == none ? 1 : 2;
            const unsigned a = corner[k];
            const unsigned b = corner[(k + 1) % 3];
            const unsigned nearB = half[(k + 1) % 3];
            const unsigned nearA = half[(k + 2) % 3];
            addTriangle(nearB, corner[(k + 2) % 3], nearA);
            if (LengthOf(a, nearB) < LengthOf(b, nearA)) {
                addTriangle(a, b, nearB);
                addTriangle(a, nearB, nearA);
            } else {
                addTriangle(a, b, nearA);
                addTriangle(b, nearB, nearA);
            }
        }
    }
    mesh.triangles.swap(next);
}

double AxShapeSurface::SteepestOf(const std::vector<unsigned>& triangles) const
{
    double least = 1.0;
    for (std::size_t i = 0; i < triangles.size(); i += 3) {
        const osg::Vec3d& a = mesh.points[triangles[i]];
        const osg::Vec3d& b = mesh.points[triangles[i + 1]];
        const osg::Vec3d& c = mesh.points[triangles[i + 2]];
        const osg::Vec3d across = (b - a) ^ (c - a);
        const double side2 = std::max({(b - a).length2(), (c - b).length2(), (a - c).length2()});
        const double twice = across.length();
        if (twice > sliver * side2)
            least = std::min(least, (across * normals[triangles[i]]) / twice);
    }
    return std::acos(std::clamp(least, -1.0, 1.0));
}

void AxShapeSurface::Measure()
{
    mesh.lowest = 0.0;
    mesh.steepest = 0.0;
    if (mesh.points.empty())
        return;
    double longest2 = 0.0;
    for (std::size_t i = 1; i < mesh.outlineCount; ++i)
        longest2 = std::max(longest2, (mesh.points[i] - mesh.points[i - 1]).length2());
    for (std::size_t i = 0; i < mesh.triangles.size(); ++i) {
        const unsigned next = mesh.triangles[i % 3 == 2 ? i - 2 : i + 1];
        longest2 = std::max(longest2, (mesh.points[next] - mesh.points[mesh.triangles[i]]).length2());
    }
    mesh.steepest = SteepestOf(mesh.triangles);
    // A straight line between two places on the globe passes below the ground between them.
    mesh.lowest = *std::min_element(altitudes.begin(), altitudes.end()) - longest2 / (8.0 * meanRadius);
}
