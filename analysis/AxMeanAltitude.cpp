#include "analysis/AxMeanAltitude.h"
#include "analysis/elevation/AxHeightGrid.h"
#include "scene/base/AxLongitudes.h"

#include <osgEarth/ElevationQuery>
#include <osgEarth/GeoData>

#include <QLineF>
#include <QPolygonF>

#include <algorithm>
#include <cmath>

namespace {
// More would change the mean of an area by centimetres.
constexpr std::size_t mostCells = 10000;
constexpr double finestCell = 1.0; // metres
constexpr int lineSteps = 48;

/// Across the antimeridian longitudes go on.
QPolygonF Continuous(const QList<QPointF>& vertices)
{
    QPolygonF points;
    for (const QPointF& vertex : vertices)
        if (std::isfinite(vertex.x()) && std::isfinite(vertex.y()))
            points += QPointF(points.isEmpty() ? vertex.x()
                                               : AxLongitudes::NearestTo(points.back().x(), vertex.x()),
                              vertex.y());
    return points;
}

QPolygonF Along(const QPolygonF& line)
{
    double length = 0.0;
    for (int i = 0; i + 1 < line.size(); ++i)
        length += QLineF(line[i], line[i + 1]).length();
    QPolygonF places = line.mid(0, 1);
    for (int i = 0; length > 0.0 && i + 1 < line.size(); ++i) {
        const QLineF edge(line[i], line[i + 1]);
        const int steps = std::max(1, static_cast<int>(std::ceil(lineSteps * edge.length() / length)));
        for (int step = 1; step <= steps; ++step)
            places += edge.pointAt(static_cast<double>(step) / steps);
    }
    return places;
}
} // namespace

std::optional<double> AxMeanAltitude(const AxMeanAltitudeJob& job, const std::atomic<bool>& isOff)
{
    if (!job.map)
        return std::nullopt;
    if (job.isArea && job.vertices.size() > 2) {
        AxHeightsQuestion question;
        question.ring.assign(job.vertices.begin(), job.vertices.end());
        question.cell = finestCell;
        question.mostCells = mostCells;
        const AxHeightGrid grid = AxHeightGridOf(question, job.map, [&isOff](double) { return !isOff; });
        if (isOff)
            return std::nullopt;
        // A sliver may lie between the middles of the cells.
        if (grid.inside > 1)
            return grid.known > 0 ? std::make_optional(grid.mean) : std::nullopt;
    }
    const QPolygonF places = Along(Continuous(job.vertices));
    if (places.isEmpty())
        return std::nullopt;
    const QRectF box = places.boundingRect();
    // Finer heights than the steps would cost more to read and change the mean by nothing.
    const double resolution = std::max(box.width(), box.height()) / lineSteps;
    const osg::ref_ptr<const osgEarth::SpatialReference> geographic = job.map->getSRS()->getGeographicSRS();
    osgEarth::ElevationQuery heights(job.map);
    double sum = 0.0;
    int known = 0;
    for (const QPointF& place : places) {
        if (isOff)
            return std::nullopt;
        double height = 0.0;
        if (!heights.getElevation(
                osgEarth::GeoPoint(geographic, AxLongitudes::Normalized(place.x()), place.y()), height,
                resolution))
            continue;
        sum += height;
        ++known;
    }
    if (known == 0)
        return std::nullopt;
    return sum / known;
}
