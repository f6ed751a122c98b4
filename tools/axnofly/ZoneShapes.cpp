#include "ZoneShapes.h"

#include "ToolText.h"

#include <support/GeosContext.h>

#include <GeographicLib/Geodesic.hpp>
#include <GeographicLib/LocalCartesian.hpp>

#include <QRectF>
#include <QStringList>

#include <algorithm>
#include <cmath>

namespace {
constexpr double radiansPerDegree = 0.017453292519943295;
constexpr int circlePoints = 96;
/// GEOS divides a quarter circle into as many parts.
constexpr int quarterParts = circlePoints / 4;

/// The horizontal plane that touches the ellipsoid in a point; exact to centimetres over a zone's extent.
class Plane
{
public:
    explicit Plane(const QPointF& origin) : m_plane(origin.y(), origin.x(), 0.0) {}

    QPointF To(const QPointF& degrees) const
    {
        double x = 0.0;
        double y = 0.0;
        double z = 0.0;
        m_plane.Forward(degrees.y(), degrees.x(), 0.0, x, y, z);
        return {x, y};
    }
    QPointF From(const QPointF& metres) const
    {
        double longitude = 0.0;
        double latitude = 0.0;
        double height = 0.0;
        m_plane.Reverse(metres.x(), metres.y(), 0.0, latitude, longitude, height);
        return {longitude, latitude};
    }

private:
    GeographicLib::LocalCartesian m_plane;
};

QRectF Box(const Ring& ring)
{
    const auto [west, east] =
        std::minmax_element(ring.begin(), ring.end(), [](auto& a, auto& b) { return a.x() < b.x(); });
    const auto [south, north] =
        std::minmax_element(ring.begin(), ring.end(), [](auto& a, auto& b) { return a.y() < b.y(); });
    return QRectF(QPointF(west->x(), south->y()), QPointF(east->x(), north->y()));
}
} // namespace

Ring ParseArea(const QString& text, QString& error)
{
    Ring ring;
    const QStringList points = text.split(QLatin1Char('|'), Qt::SkipEmptyParts);
    for (int i = 0; i < points.size(); ++i) {
        const QStringList numbers = points.at(i).split(QLatin1Char(','));
        bool isLongitude = false;
        bool isLatitude = false;
        const double longitude = numbers.at(0).trimmed().toDouble(&isLongitude);
        const double latitude = numbers.value(1).trimmed().toDouble(&isLatitude);
        if (!isLongitude || !isLatitude || numbers.size() > 3) {
            error = ToolText::tr("Point %1 of the area, \"%2\", is not a longitude and a latitude.")
                        .arg(i + 1)
                        .arg(points.at(i).left(40));
            return {};
        }
        ring.emplace_back(longitude, latitude);
    }
    if (ring.size() > 1 && ring.front() == ring.back())
        ring.pop_back();
    if (ring.empty())
        error = ToolText::tr("The area has no point.");
    else if (ring.size() == 2)
        error = ToolText::tr("The area has two points; an outline needs three.");
    return ring.size() == 2 ? Ring() : ring;
}

QString FormatArea(const Ring& ring)
{
    QString text;
    text.reserve(int(ring.size()) * 24);
    for (const QPointF& point : ring) {
        if (!text.isEmpty())
            text += QLatin1Char('|');
        text += QString::number(point.x(), 'f', 6) + QLatin1Char(',') + QString::number(point.y(), 'f', 6);
    }
    return text;
}

bool IsOnGlobe(const Ring& ring)
{
    return std::all_of(ring.begin(), ring.end(), [](const QPointF& point) {
        return std::abs(point.x()) <= 180.0 && std::abs(point.y()) <= 90.0; // false for what is no number
    });
}

Ring Unwrapped(Ring ring)
{
    for (std::size_t i = 1; i < ring.size(); ++i) {
        const double step = ring[i].x() - ring[i - 1].x();
        ring[i].rx() -= 360.0 * std::round(step / 360.0);
    }
    return ring;
}

bool IsAroundPole(const Ring& unwrapped)
{
    return !unwrapped.empty() && std::abs(unwrapped.back().x() - unwrapped.front().x()) > 180.0;
}

std::vector<Ring> OnMap(const Ring& ring)
{
    if (ring.size() < 3)
        return {ring};
    const Ring whole = Unwrapped(ring);
    if (IsAroundPole(whole))
        return {};
    const QRectF box = Box(whole);
    if (box.left() >= -180.0 && box.right() <= 180.0)
        return {whole};

    const GeosContext geos;
    const auto shape = geos.polygon(whole);
    std::vector<Ring> pieces;
    for (const double shift : {-360.0, 0.0, 360.0}) {
        const double west = -180.0 - shift;
        const Ring world{{west, -90.0}, {west + 360.0, -90.0}, {west + 360.0, 90.0}, {west, 90.0}};
        const auto side = geos.own(GEOSIntersection_r(geos.handle(), shape.get(), geos.polygon(world).get()));
        const int count = side ? GEOSGetNumGeometries_r(geos.handle(), side.get()) : 0;
        for (int i = 0; i < count; ++i) {
            const GEOSGeometry* const part = GEOSGetGeometryN_r(geos.handle(), side.get(), i);
            if (GEOSGeomTypeId_r(geos.handle(), part) != GEOS_POLYGON ||
                GEOSisEmpty_r(geos.handle(), part) == 1)
                continue;
            Ring piece = geos.vertices<QPointF>(GEOSGetExteriorRing_r(geos.handle(), part));
            for (QPointF& point : piece)
                point.rx() += shift;
            pieces.push_back(std::move(piece));
        }
    }
    return pieces;
}

Ring CircleRing(const QPointF& centre, double metres)
{
    const Plane plane(centre);
    Ring ring;
    for (int i = 0; i < circlePoints; ++i) {
        const double bearing = i * (360.0 / circlePoints) * radiansPerDegree;
        ring.push_back(plane.From({metres * std::sin(bearing), metres * std::cos(bearing)}));
    }
    return ring;
}

double Distance(const QPointF& a, const QPointF& b)
{
    double metres = 0.0;
    GeographicLib::Geodesic::WGS84().Inverse(a.y(), a.x(), b.y(), b.x(), metres);
    return metres;
}

double RunwayMetres(const Runway& runway)
{
    return Distance(runway.begin, runway.end);
}

Ring RunwayOutline(const std::vector<Runway>& runways, double metres)
{
    if (runways.empty())
        return {};
    const GeosContext geos;
    const Plane plane(runways.front().begin);
    std::vector<GEOSGeometry*> ends;
    for (const Runway& runway : runways)
        for (const QPointF& end : {runway.begin, runway.end}) {
            const QPointF point = plane.To(end);
            ends.push_back(GEOSGeom_createPointFromXY_r(geos.handle(), point.x(), point.y()));
        }
    const auto field = geos.own(GEOSGeom_createCollection_r(geos.handle(), GEOS_MULTIPOINT, ends.data(),
                                                            static_cast<unsigned>(ends.size())));
    const auto hull = geos.own(GEOSConvexHull_r(geos.handle(), field.get()));
    const auto zone =
        geos.own(hull ? GEOSBuffer_r(geos.handle(), hull.get(), metres, quarterParts) : nullptr);
    if (!zone || GEOSGeomTypeId_r(geos.handle(), zone.get()) != GEOS_POLYGON)
        return {};
    Ring ring = geos.vertices<QPointF>(GEOSGetExteriorRing_r(geos.handle(), zone.get()));
    std::transform(ring.begin(), ring.end(), ring.begin(), [&](const QPointF& p) { return plane.From(p); });
    return ring;
}

QPointF BoxCentre(const Ring& ring)
{
    return ring.empty() ? QPointF() : Box(ring).center();
}
