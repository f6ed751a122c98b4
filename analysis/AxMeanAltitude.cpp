#include "analysis/AxMeanAltitude.h"
#include "scene/base/AxLongitudes.h"

#include <osgEarth/ElevationQuery>
#include <osgEarth/GeoData>

#include <QLineF>
#include <QPolygonF>

#include <algorithm>
#include <cmath>

namespace {
constexpr int gridCells = 12;
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

QPolygonF Inside(const QPolygonF& ring)
{
    QPolygonF places;
    const QRectF box = ring.boundingRect();
    for (int row = 0; row < gridCells; ++row)
        for (int column = 0; column < gridCells; ++column) {
            const QPointF place(box.left() + box.width() * (column + 0.5) / gridCells,
                                box.top() + box.height() * (row + 0.5) / gridCells);
            if (ring.containsPoint(place, Qt::OddEvenFill))
                places += place;
        }
    return places;
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

QPolygonF Places(const AxMeanAltitudeJob& job)
{
    const QPolygonF points = Continuous(job.vertices);
    const QPolygonF inside = job.isArea && points.size() > 2 ? Inside(points) : QPolygonF();
    // A sliver may lie between the grid's places.
    return inside.isEmpty() ? Along(points) : inside;
}
} // namespace

std::optional<double> AxMeanAltitude(const AxMeanAltitudeJob& job, const std::atomic<bool>& isOff)
{
    const QPolygonF places = Places(job);
    if (!job.map || places.isEmpty())
        return std::nullopt;
    const QRectF box = places.boundingRect();
    // Finer heights than the grid would cost more to read and change the mean by nothing.
    const double resolution = std::max(box.width(), box.height()) / gridCells;
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
