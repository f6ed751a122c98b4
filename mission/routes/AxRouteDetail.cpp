#include "mission/routes/AxRouteDetail.h"

#include <osg/BoundingBox>

#include <algorithm>
#include <cmath>
#include <limits>
#include <tuple>
#include <utility>

namespace {
constexpr std::size_t pieceSize = 512;
constexpr float always = std::numeric_limits<float>::infinity();
// Of a pixel: what is left out of a line is not seen.
constexpr double mostOffPixels = 0.5;
constexpr int wholeLevel = -20; // 2^-20 m

double OffSegment(const osg::Vec3d& point, const osg::Vec3d& from, const osg::Vec3d& to)
{
    const osg::Vec3d way = to - from;
    const double share =
        way.length2() > 0.0 ? std::clamp(((point - from) * way) / way.length2(), 0.0, 1.0) : 0.0;
    return (point - from - way * share).length();
}

// By Douglas and Peucker. No point counts more than the one for which its part of the line was divided, so
// that the points kept for any offset are those of the division that stops there.
void MeasureOffsets(const std::vector<osg::Vec3d>& points, std::size_t first, std::size_t last,
                    std::vector<float>& offsets)
{
    struct Part
    {
        std::size_t first, last;
        float most;
    };
    std::vector<Part> parts{{first, last, always}};
    while (!parts.empty()) {
        const Part part = parts.back();
        parts.pop_back();
        double farthest = -1.0;
        std::size_t at = 0;
        for (std::size_t i = part.first + 1; i < part.last; ++i) {
            const double off = OffSegment(points[i], points[part.first], points[part.last]);
            if (off > farthest)
                std::tie(farthest, at) = std::pair(off, i);
        }
        if (at == 0)
            continue;
        offsets[at] = std::min(part.most, static_cast<float>(farthest));
        parts.push_back({part.first, at, offsets[at]});
        parts.push_back({at, part.last, offsets[at]});
    }
}
} // namespace

void AxRouteDetail::SetPoints(const std::vector<osg::Vec3d>& points)
{
    offsets.assign(points.size(), always);
    pieces.clear();
    for (std::size_t first = 0; first + 1 < points.size(); first += pieceSize) {
        const std::size_t last = std::min(first + pieceSize, points.size() - 1);
        MeasureOffsets(points, first, last, offsets);
        osg::BoundingBoxd box;
        for (std::size_t i = first; i <= last; ++i)
            box.expandBy(points[i]);
        pieces.emplace_back(box);
    }
}

std::vector<int> AxRouteDetail::Levels(const osg::Vec3d& eye, double pixel) const
{
    std::vector<int> levels;
    levels.reserve(pieces.size());
    for (const osg::BoundingSphered& piece : pieces) {
        const double distance = (piece.center() - eye).length() - piece.radius();
        const double metres = mostOffPixels * pixel * distance;
        levels.push_back(metres > 0.0 ? std::max(static_cast<int>(std::floor(std::log2(metres))), wholeLevel)
                                      : wholeLevel);
    }
    return levels;
}

std::vector<int> AxRouteDetail::Kept(const std::vector<int>& levels) const
{
    std::vector<int> kept;
    for (std::size_t i = 0; i < offsets.size(); ++i) {
        const std::size_t piece = std::min(i / pieceSize, levels.empty() ? 0 : levels.size() - 1);
        if (levels.empty() || offsets[i] >= std::ldexp(1.0, levels[piece]))
            kept.push_back(static_cast<int>(i));
    }
    return kept;
}
