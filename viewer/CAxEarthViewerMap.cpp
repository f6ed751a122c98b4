// The viewer as the map that it shows: its ground and its coordinate systems.
#include "viewer/AxGroundRequests.h"
#include "viewer/AxViewerPrivate.h"

#include <osgEarth/SpatialReference>

#include <QCoreApplication>

#include <cmath>
#include <limits>

double CAxEarthViewer::GetElevation(double longitude, double latitude) const
{
    constexpr double unknown = std::numeric_limits<double>::quiet_NaN();
    if (!d->mapNode || !std::isfinite(longitude) || !(std::abs(latitude) <= 90.0))
        return unknown;
    QList<osg::Vec3d> place = {osg::Vec3d(longitude, latitude, unknown)};
    d->GetElevations(place);
    return place.front().z();
}

void CAxEarthViewer::slotRequestElevation(double longitude, double latitude)
{
    d->groundRequests->Ask(d->map, longitude, latitude);
}

bool CAxEarthViewer::SetCoordSys(const QString& system, QString* why)
{
    const QString wanted = system.trimmed();
    if (!wanted.isEmpty()) {
        bool isCode = false;
        wanted.toUInt(&isCode);
        const QString named = isCode ? QStringLiteral("epsg:") + wanted : wanted;
        const osgEarth::SpatialReference* known = osgEarth::SpatialReference::create(named.toStdString());
        if (!known || !(known->isGeographic() || known->isProjected())) {
            if (why)
                *why =
                    tr("\"%1\" is no coordinate system of places that is known here.").arg(wanted.left(100));
            return false;
        }
    }
    d->coordSys = wanted;
    return true;
}
