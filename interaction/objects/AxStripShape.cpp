#include "interaction/objects/AxStripShape.h"
#include "scene/base/AxLongitudes.h"

#include <AxAlgorthm/AxCoordinate.h>
#include <AxAlgorthm/AxPlaneGeometry.h>

#include <osg/Math>
#include <osgEarth/GeoMath>

#include <QString>

#include <cmath>
#include <optional>

namespace {
constexpr double sphereRadius = 6378137.0; // metres
constexpr double leastWidth = 3.0;         // metres, of both sides together
constexpr double mostWidth = 100000.0;     // metres, of a side; further out the UTM plane is not to scale

std::optional<double> NumberOf(const QString& text)
{
    bool isNumber = false;
    const double number = text.trimmed().toDouble(&isNumber);
    return isNumber && std::isfinite(number) ? std::make_optional(number) : std::nullopt;
}
} // namespace

std::vector<osg::Vec3d> AxStripShape::Band(const std::vector<osg::Vec3d>& centreLine, double width1,
                                           double width2)
{
    std::vector<CAxPoint2D> line;
    line.reserve(centreLine.size());
    for (const osg::Vec3d& vertex : centreLine) {
        const double longitude =
            line.empty() ? vertex.x() : AxLongitudes::NearestTo(line.back().x(), vertex.x());
        line.emplace_back(longitude, vertex.y());
    }
    if (line.size() < 2 || width1 > mostWidth || width2 > mostWidth)
        return {};
    // Of the first place alone, so that a vertex further on does not move the band beside the others.
    const auto plane = AxUtmPlane::At(line.front().y(), AxLongitudes::Normalized(line.front().x()));
    std::vector<CAxPoint2D> outline;
    QList<int> vertices;
    if (!plane || !plane->FromLngLat(line, line) ||
        !CreateStripPolygon(line, width1, width2, outline, vertices) || !plane->ToLngLat(outline, outline))
        return {};
    std::vector<osg::Vec3d> band;
    band.reserve(outline.size());
    for (std::size_t i = 0; i < outline.size(); ++i)
        band.emplace_back(outline[i].x(), outline[i].y(),
                          centreLine[static_cast<std::size_t>(vertices[static_cast<int>(i)])].z());
    return band;
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

AxStripShape::TypedWidths AxStripShape::ReadWidths(const QString& width1, const QString& width2)
{
    const auto left = NumberOf(width1);
    const auto right = NumberOf(width2);
    if (!left || !right)
        return {TypedWidths::NoNumber, {}};
    // What the operator reads is that the widths must be greater than 0; one of them may be 0 all the same.
    if (0.0 > *left || 0.0 > *right)
        return {TypedWidths::Negative, {}};
    if (leastWidth > *left + *right)
        return {TypedWidths::TooNarrow, {}};
    return {TypedWidths::None, {*left, *right}};
}
