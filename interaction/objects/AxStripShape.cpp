#include "interaction/objects/AxStripShape.h"
#include "scene/base/AxLongitudes.h"

#include <AxAlgorthm/AxPlaneGeometry.h>

#include <osg/Math>
#include <osgEarth/GeoMath>

#include <algorithm>
#include <cmath>
#include <utility>

namespace {
constexpr double sphereRadius = 6378137.0; // metres
constexpr double leastWidth = 3.0;         // metres, of both sides together
constexpr double mostWidth = 100000.0;     // metres, of a side; further out the UTM plane is not to scale

bool IsSamePoint(const CAxPoint2D& a, const CAxPoint2D& b)
{
    return a.x() == b.x() && a.y() == b.y();
}

// Brings `from` and `to`, which belong together, up to date: points of `from` that are still the same,
// counted from the beginning or, when some came or went, from the end, are not converted again. False, with
// both empty, for what cannot be.
template <typename Convert>
bool ConvertChanged(const std::vector<CAxPoint2D>& wanted, std::vector<CAxPoint2D>& from,
                    std::vector<CAxPoint2D>& to, const Convert& convert)
{
    std::vector<CAxPoint2D> converted(wanted.size());
    std::vector<std::size_t> places;
    std::vector<CAxPoint2D> changed;
    for (std::size_t i = 0; i < wanted.size(); ++i) {
        const std::size_t fromEnd = i + from.size() - wanted.size(); // wraps around where there is none
        if (i < from.size() && IsSamePoint(from[i], wanted[i]))
            converted[i] = to[i];
        else if (fromEnd < from.size() && IsSamePoint(from[fromEnd], wanted[i]))
            converted[i] = to[fromEnd];
        else {
            places.push_back(i);
            changed.push_back(wanted[i]);
        }
    }
    if (!changed.empty() && !convert(changed, changed)) {
        from.clear();
        to.clear();
        return false;
    }
    for (std::size_t i = 0; i < places.size(); ++i)
        converted[places[i]] = changed[i];
    to = std::move(converted);
    from = wanted;
    return true;
}
} // namespace

const std::vector<osg::Vec3d>& AxStripShape::KeptBand::Of(const std::vector<osg::Vec3d>& centreLine,
                                                          double width1, double width2)
{
    if (line == centreLine && left == width1 && right == width2)
        return band;
    line = centreLine;
    left = width1;
    right = width2;
    band.clear();
    if (line.size() < 2 || left > mostWidth || right > mostWidth)
        return band;
    Points degrees;
    degrees.reserve(line.size());
    for (const osg::Vec3d& vertex : line) {
        const double longitude =
            degrees.empty() ? vertex.x() : AxLongitudes::NearestTo(degrees.back().x(), vertex.x());
        degrees.emplace_back(longitude, vertex.y());
    }
    Points outline;
    QList<int> vertices;
    if (!toPlane(degrees) || !CreateStripPolygon(lineMetres, left, right, outline, vertices) ||
        !toLngLat(outline))
        return band;
    band.reserve(bandDegrees.size());
    for (std::size_t i = 0; i < bandDegrees.size(); ++i)
        band.emplace_back(bandDegrees[i].x(), bandDegrees[i].y(),
                          line[static_cast<std::size_t>(vertices[static_cast<int>(i)])].z());
    return band;
}

bool AxStripShape::KeptBand::toPlane(const Points& lngLat)
{
    // That of the first place alone, so that a vertex further on does not move the band beside the others.
    if (lineDegrees.empty() || !IsSamePoint(lineDegrees.front(), lngLat.front())) {
        plane = AxUtmPlane::At(lngLat.front().y(), AxLongitudes::Normalized(lngLat.front().x()));
        lineDegrees.clear();
        lineMetres.clear();
        bandMetres.clear();
        bandDegrees.clear();
    }
    return plane && ConvertChanged(lngLat, lineDegrees, lineMetres, [this](const Points& in, Points& out) {
               return plane->FromLngLat(in, out);
           });
}

bool AxStripShape::KeptBand::toLngLat(const Points& metres)
{
    return ConvertChanged(metres, bandMetres, bandDegrees,
                          [this](const Points& in, Points& out) { return plane->ToLngLat(in, out); });
}

std::vector<osg::Vec3d> AxStripShape::Band(const std::vector<osg::Vec3d>& centreLine, double width1,
                                           double width2)
{
    return KeptBand().Of(centreLine, width1, width2);
}

double AxStripShape::LegLength(const osg::Vec3d& from, const osg::Vec3d& to)
{
    return osgEarth::GeoMath::distance(osg::DegreesToRadians(from.y()), osg::DegreesToRadians(from.x()),
                                       osg::DegreesToRadians(to.y()), osg::DegreesToRadians(to.x()),
                                       sphereRadius);
}

double AxStripShape::Length(const std::vector<osg::Vec3d>& centreLine)
{
    double length = 0.0;
    for (std::size_t i = 1; i < centreLine.size(); ++i)
        length += LegLength(centreLine[i - 1], centreLine[i]);
    return length;
}

bool AxStripShape::HasShortLegAt(const std::vector<osg::Vec3d>& centreLine, int vertex, double minDistance)
{
    const auto isShort = [&](int from) {
        return from >= 0 && from + 1 < static_cast<int>(centreLine.size()) &&
               LegLength(centreLine[static_cast<std::size_t>(from)],
                         centreLine[static_cast<std::size_t>(from) + 1]) < minDistance;
    };
    return isShort(vertex - 1) || isShort(vertex);
}

AxStripShape::WidthFault AxStripShape::FaultOf(const Widths& widths)
{
    // What the operator reads is that the widths must be greater than 0; one of them may be 0 all the same.
    if (!(widths.left >= 0.0) || !(widths.right >= 0.0))
        return WidthFault::Negative;
    return leastWidth > widths.left + widths.right ? WidthFault::TooNarrow : WidthFault::None;
}
