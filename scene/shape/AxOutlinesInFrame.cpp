#include "scene/shape/AxOutlinesInFrame.h"
#include "scene/base/AxGlobePoint.h"
#include "scene/shape/AxViewRay.h"

#include <algorithm>
#include <array>
#include <optional>

namespace {
// How far a place is within the borders of the frame, and in front of the eye; below 0 outside. They are
// linear along an edge, which the picture's coordinates are not.
constexpr std::size_t borderCount = 5;
using Borders = std::array<double, borderCount>;

struct FramedPlace
{
    osg::Vec3d world;
    Borders within{};
};

// The rows of a projection that turn a geocentric place into its borders.
class FrameTest
{
public:
    FrameTest(const osg::Matrixd& toClip, const AxPictureFrame& frame)
    {
        constexpr double nearest = 1e-3; // metres before the eye
        for (int i = 0; i < 4; ++i) {
            const double x = toClip(i, 0);
            const double y = toClip(i, 1);
            const double w = toClip(i, 3);
            rows[static_cast<std::size_t>(i)] = {x - frame.low.x() * w, frame.high.x() * w - x,
                                                 y - frame.low.y() * w, frame.high.y() * w - y, w};
        }
        rows[3][borderCount - 1] -= nearest;
    }

    FramedPlace Of(const osg::Vec3d& place) const
    {
        FramedPlace framed{AxGlobe::WorldOf(place), {}};
        for (std::size_t i = 0; i < borderCount; ++i)
            framed.within[i] = framed.world.x() * rows[0][i] + framed.world.y() * rows[1][i] +
                               framed.world.z() * rows[2][i] + rows[3][i];
        return framed;
    }

private:
    std::array<Borders, 4> rows;
};

// The middle of that part of an edge that is within all borders; the line is clipped by one after the other.
std::optional<osg::Vec3d> MiddleWithin(const FramedPlace& from, const FramedPlace& to)
{
    double first = 0.0;
    double last = 1.0;
    for (std::size_t i = 0; i < borderCount; ++i) {
        const double a = from.within[i];
        const double b = to.within[i];
        if (a < 0.0 && b < 0.0)
            return {};
        if (a < 0.0)
            first = std::max(first, a / (a - b));
        else if (b < 0.0)
            last = std::min(last, a / (a - b));
    }
    if (first > last)
        return {};
    return from.world + (to.world - from.world) * (0.5 * (first + last));
}

bool IsInFrame(const AxOutlineOnGlobe& outline, const FrameTest& test, const osg::Vec3d& eye)
{
    const std::size_t count = outline.places.size();
    if (count == 0)
        return false;
    const FramedPlace first = test.Of(outline.places.front());
    const auto isSeen = [&eye](const FramedPlace& from, const FramedPlace& to) {
        const std::optional<osg::Vec3d> middle = MiddleWithin(from, to);
        return middle && !AxIsBehindGlobe(eye, *middle);
    };
    if (count == 1)
        return isSeen(first, first);
    FramedPlace before = first;
    for (std::size_t i = 1; i < count; ++i) {
        const FramedPlace place = test.Of(outline.places[i]);
        if (isSeen(before, place))
            return true;
        before = place;
    }
    return outline.closed && isSeen(before, first);
}
} // namespace

AxPictureFrame AxPictureFrame::Between(const osg::Vec2d& a, const osg::Vec2d& b)
{
    return {{std::min(a.x(), b.x()), std::min(a.y(), b.y())},
            {std::max(a.x(), b.x()), std::max(a.y(), b.y())}};
}

std::vector<std::size_t> AxOutlinesInFrame(const std::vector<AxOutlineOnGlobe>& outlines,
                                           const osg::Matrixd& toClip, const osg::Vec3d& eye,
                                           const AxPictureFrame& frame)
{
    const FrameTest test(toClip, frame);
    std::vector<std::size_t> met;
    for (std::size_t i = 0; i < outlines.size(); ++i)
        if (IsInFrame(outlines[i], test, eye))
            met.push_back(i);
    return met;
}
