#include "mission/aircraft/AxTrailDetail.h"

#include <algorithm>

namespace {
double FromSegment2(const osg::Vec3d& point, const osg::Vec3d& a, const osg::Vec3d& b)
{
    const osg::Vec3d along = b - a;
    const double length2 = along.length2();
    const double share = length2 > 0.0 ? std::clamp(((point - a) * along) / length2, 0.0, 1.0) : 0.0;
    return (point - a - along * share).length2();
}
} // namespace

void AxTrailDetail::Clear()
{
    runs.clear();
    last.clear();
    count = 0;
}

void AxTrailDetail::Add(const osg::Vec3d& point)
{
    constexpr auto most = static_cast<std::size_t>(strides.back());
    if (last.size() > most)
        last.erase(last.begin(), last.end() - 1);
    last.push_back(point);
    // A group ends with the point at a multiple of its stride, which begins the next one.
    if (count > 0) {
        Run& run = runs[static_cast<std::size_t>((count - 1) / runLength)];
        run.box.expandBy(point);
        for (std::size_t level = 0; level < strides.size() && count % strides[level] == 0; ++level)
            close(run, level);
    }
    if (count % runLength == 0) {
        runs.emplace_back();
        runs.back().box.expandBy(point);
    }
    ++count;
}

void AxTrailDetail::close(Run& run, std::size_t level) const
{
    const auto stride = static_cast<std::size_t>(strides[level]);
    const osg::Vec3d& end = last.back();
    const osg::Vec3d& begin = last[last.size() - 1 - stride];
    double farthest2 = 0.0;
    for (std::size_t i = last.size() - stride; i + 1 < last.size(); ++i)
        farthest2 = std::max(farthest2, FromSegment2(last[i], begin, end));
    run.errors[level] = std::max(run.errors[level], static_cast<float>(std::sqrt(farthest2)));
}

int AxTrailDetail::StrideFor(const Run& run, const osg::Vec3d& eye, double partOfDistance) const
{
    const osg::Vec3d nearest(std::clamp(eye.x(), run.box.xMin(), run.box.xMax()),
                             std::clamp(eye.y(), run.box.yMin(), run.box.yMax()),
                             std::clamp(eye.z(), run.box.zMin(), run.box.zMax()));
    const double allowed = (eye - nearest).length() * partOfDistance;
    for (std::size_t level = strides.size(); level-- > 0;)
        if (static_cast<double>(run.errors[level]) < allowed)
            return strides[level];
    return 1;
}
