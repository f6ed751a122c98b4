#include "interaction/models/AxModelPlacement.h"
#include "scene/base/AxGlobePoint.h"

#include <QCoreApplication>
#include <QRegularExpression>

#include <cmath>

namespace {
QString PlacementText(const char* text)
{
    return QCoreApplication::translate("AxModelLayers", text);
}

// To the east, north and up of a place on the ellipsoid.
osg::Matrixd PlaneUpon(double latitude, double longitude)
{
    const osg::Vec3d up = AxGlobe::NormalAt({longitude, latitude, 0.0});
    const double lng = longitude * AxGlobe::pi / 180.0;
    const osg::Vec3d east(-std::sin(lng), std::cos(lng), 0.0);
    const osg::Vec3d north = up ^ east;
    const osg::Vec3d at = AxGlobe::WorldAt(up, 0.0);
    return {east.x(), east.y(), east.z(), 0.0, north.x(), north.y(), north.z(), 0.0,
            up.x(),   up.y(),   up.z(),   0.0, at.x(),    at.y(),    at.z(),    1.0};
}

bool HasHeightsOfSea(const QString& system)
{
    static const QRegularExpression two(QStringLiteral("^\\s*EPSG:\\d+\\s*\\+\\s*(?:EPSG:)?\\d+\\s*$"),
                                        QRegularExpression::CaseInsensitiveOption);
    if (two.match(system).hasMatch())
        return true;
    const bool isCompound = system.startsWith(QLatin1String("COMPD_CS"), Qt::CaseInsensitive) ||
                            system.startsWith(QLatin1String("COMPOUNDCRS"), Qt::CaseInsensitive);
    // A few programs write the ellipsoid's heights as if they were a system of heights.
    static const QRegularExpression ofEllipsoid(
        QStringLiteral("VERT(?:_|CS|CRS|ICALCRS)[^\\[]*\\[\\s*\"[^\"]*ellips"),
        QRegularExpression::CaseInsensitiveOption);
    return isCompound && !ofEllipsoid.match(system).hasMatch();
}
} // namespace

std::optional<AxModelPlacement> AxModelPlacement::Of(const QString& text, const osg::Vec3d& origin,
                                                     QString* why)
{
    const auto refused = [why](const QString& reason) {
        if (why)
            *why = reason;
        return std::nullopt;
    };
    const QString system = text.simplified();
    AxModelPlacement made;
    made.origin = origin;
    if (!std::isfinite(origin.x()) || !std::isfinite(origin.y()) || !std::isfinite(origin.z()))
        return refused(PlacementText(QT_TRANSLATE_NOOP("AxModelLayers", "The origin is not three numbers.")));
    if (system.startsWith(QLatin1String("ENU:"), Qt::CaseInsensitive)) {
        const QStringList parts = system.mid(4).split(QLatin1Char(','));
        bool isLatitude = false;
        bool isLongitude = false;
        const double latitude = parts.value(0).toDouble(&isLatitude);
        const double longitude = parts.value(1).toDouble(&isLongitude);
        if (parts.size() != 2 || !isLatitude || !isLongitude || !(std::abs(latitude) <= 90.0) ||
            !(std::abs(longitude) <= 360.0))
            return refused(PlacementText(QT_TRANSLATE_NOOP(
                                             "AxModelLayers",
                                             "\"%1\" does not tell a latitude and a longitude in degrees."))
                               .arg(system));
        made.plane = PlaneUpon(latitude, longitude);
        return made;
    }
    QString fault;
    const std::optional<AxCoordinateSystem> known = AxCoordinateSystem::Of(system, &fault);
    if (!known)
        return refused(fault);
    if (!known->IsOfProj())
        return refused(PlacementText(QT_TRANSLATE_NOOP("AxModelLayers",
                                                       "\"%1\" is a way to write places and no system that a "
                                                       "model can have. Degrees are \"EPSG:4326\"."))
                           .arg(system));
    made.system = *known;
    made.isAboveSea = HasHeightsOfSea(system);
    if (!made.At({}))
        return refused(
            PlacementText(
                QT_TRANSLATE_NOOP("AxModelLayers", "The origin %1, %2 lies outside of the system \"%3\"."))
                .arg(QString::number(origin.x(), 'f', 3), QString::number(origin.y(), 'f', 3),
                     known->Name()));
    return made;
}

std::optional<osg::Vec3d> AxModelPlacement::worldOf(double x, double y, double altitude) const
{
    const std::optional<PointLatLng> place = system.ToPlace({x, y});
    if (!place)
        return std::nullopt;
    return AxGlobe::WorldOf({place->Lng(), place->Lat(), altitude});
}

std::optional<osg::Matrixd> AxModelPlacement::At(const osg::Vec3d& point) const
{
    if (plane)
        return osg::Matrixd::translate(origin) * *plane;
    const osg::Vec3d there = origin + point;
    // A hundredth is a kilometre where the unit is a degree, and less than ten metres of any length.
    constexpr double probe = 0.01;
    const auto middle = worldOf(there.x(), there.y(), 0.0);
    const auto beside = worldOf(there.x(), there.y() + probe, 0.0);
    if (!middle || !beside)
        return std::nullopt;
    const bool isAngle = (*beside - *middle).length() > 100.0;
    // Wide enough that the last digits of PROJ's way back do not turn the axes.
    const double half = isAngle ? 0.005 : 500.0;
    const auto west = worldOf(there.x() - half, there.y(), 0.0);
    const auto east = worldOf(there.x() + half, there.y(), 0.0);
    const auto south = worldOf(there.x(), there.y() - half, 0.0);
    const auto north = worldOf(there.x(), there.y() + half, 0.0);
    if (!west || !east || !south || !north)
        return std::nullopt;
    osg::Vec3d right = (*east - *west) / (2.0 * half);
    osg::Vec3d front = (*north - *south) / (2.0 * half);
    osg::Vec3d up = right ^ front;
    up.normalize();
    const double unit = system.MetresOfHeight();
    const double altitude = there.z() * unit;
    // Higher up the same degrees are more metres.
    const double grown = 1.0 + altitude / AxGlobe::meanRadius;
    right *= grown;
    front *= grown;
    const auto at = worldOf(there.x(), there.y(), altitude);
    const osg::Vec3d zero = *at - right * point.x() - front * point.y() - up * (unit * point.z());
    up *= unit;
    return osg::Matrixd(right.x(), right.y(), right.z(), 0.0, front.x(), front.y(), front.z(), 0.0, up.x(),
                        up.y(), up.z(), 0.0, zero.x(), zero.y(), zero.z(), 1.0);
}
