// The viewer as the map that it shows: its ground and its coordinate systems.
#include "interaction/input/CAxEarthManipulator.h"
#include "scene/base/AxLongitudes.h"
#include "viewer/AxGroundRequests.h"
#include "viewer/AxMapLayers.h"
#include "viewer/AxViewerPrivate.h"

#if __has_include(<osgEarth/KnownGround>)
#include <osgEarth/KnownGround>
#endif

#include <algorithm>
#include <cmath>
#include <limits>

double CAxEarthViewer::GetElevation(double longitude, double latitude) const
{
    constexpr double unknown = std::numeric_limits<double>::quiet_NaN();
    if (!d->mapNode || !std::isfinite(longitude) || !(std::abs(latitude) <= 90.0))
        return unknown;
    longitude = AxLongitudes::Normalized(longitude);
    // A layer may be gone or hidden, and the tiles not be made anew yet.
    osgEarth::ElevationLayerVector layers;
    d->map->getElevationLayers(layers);
    const auto covers = [longitude, latitude](const auto& layer) {
        return layer->getVisible() && layer->isOpen() && layer->getDataExtent().contains(longitude, latitude);
    };
    if (std::none_of(layers.begin(), layers.end(), covers))
        return unknown;
#if __has_include(<osgEarth/KnownGround>) // osgEarth 2.8 itself does not tell gaps
    if (!osgEarth::isGroundKnown(*d->mapNode, longitude, latitude))
        return unknown;
#endif
    QList<osg::Vec3d> place = {osg::Vec3d(longitude, latitude, unknown)};
    d->manipulator->GetElevations(place, false);
    return place.front().z();
}

void CAxEarthViewer::slotRequestElevation(double longitude, double latitude)
{
    d->groundRequests->Ask(d->map, longitude, latitude);
}

bool CAxEarthViewer::SetCoordSys(const QString& system, QString* why)
{
    const std::optional<AxCoordinateSystem> made = AxCoordinateSystem::Of(system, why);
    if (!made)
        return false;
    const bool isOther = made->Text() != d->coordSystem.Text();
    d->coordSystem = *made;
    if (isOther) {
        d->showReadOutAgain();
        emit signalCoordSys(made->Text());
    }
    return true;
}

const AxCoordinateSystem& CAxEarthViewer::GetCoordinateSystem() const
{
    return d->coordSystem;
}

AxMapLayers* CAxEarthViewer::GetMapLayers() const
{
    return d->layers.get();
}
