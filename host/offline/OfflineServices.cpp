#include "host/offline/OfflineServices.h"
#include "interaction/CAxHandleAdapter.h"
#include "viewer/CAxEarthViewer.h"

#include <AxAlgorthm/AxAreaOperations.h>

#include <osgEarth/GeoData>
#include <osgEarth/ImageLayer>
#include <osgEarth/Map>
#include <osgEarth/MapNode>
#include <osgEarth/Profile>
#include <osgEarth/SpatialReference>
#include <osgEarth/Terrain>
#include <osgEarthDrivers/tms/TMSOptions>
#include <osgEarthDrivers/xyz/XYZOptions>
#include <osgViewer/Viewer>

#include <algorithm>
#include <cmath>

namespace {
constexpr double turn = 360.0;

QString TemplateOf(const std::string& driver, const osgEarth::TileSourceOptions& options)
{
    if (driver == "xyz") {
        const osgEarth::Drivers::XYZOptions xyz(options);
        QString address = QString::fromStdString(xyz.url()->full());
        if (xyz.invertY().isSetTo(true))
            address.replace(QLatin1String("{y}"), QLatin1String("{-y}"));
        return address;
    }
    if (driver == "tms") {
        const osgEarth::Drivers::TMSOptions tms(options);
        QString root = QString::fromStdString(tms.url()->full());
        if (root.endsWith(QLatin1String("tms.xml"), Qt::CaseInsensitive))
            root.truncate(root.lastIndexOf(QLatin1Char('/')));
        while (root.endsWith(QLatin1Char('/')))
            root.chop(1);
        const bool isFromNorth = tms.tmsType().isSet() &&
                                 QString::fromStdString(*tms.tmsType()).toLower() == QLatin1String("google");
        const QString format =
            tms.format().isSet() ? QString::fromStdString(*tms.format()) : QStringLiteral("png");
        return root + QLatin1String(isFromNorth ? "/{z}/{x}/{y}." : "/{z}/{x}/{-y}.") + format;
    }
    return {};
}

// Longitudes of one turn, so that a view across 180 degrees is one rectangle.
double Near(double longitude, double middle)
{
    return middle + std::remainder(longitude - middle, turn);
}

double Within180(double longitude)
{
    return std::remainder(longitude, turn);
}
} // namespace

namespace Offline {
QList<AxTileService> ServicesOf(CAxEarthViewer* viewer)
{
    QList<AxTileService> services;
    if (!viewer->getMapNode())
        return services;
    osgEarth::ImageLayerVector layers;
    viewer->getMapNode()->getMap()->getImageLayers(layers);
    for (auto layer = layers.rbegin(); layer != layers.rend(); ++layer) {
        const osgEarth::ImageLayerOptions& options = (*layer)->getImageLayerOptions();
        if (!options.driver().isSet() || !(*layer)->getProfile() ||
            !(*layer)->getProfile()->getSRS()->isSphericalMercator())
            continue;
        AxTileService service;
        service.name = QString::fromStdString((*layer)->getName());
        service.address = TemplateOf(options.driver()->getDriver(), *options.driver());
        service.lastLevel =
            std::min(static_cast<int>(options.driver()->maxDataLevel().value()), axMostTileLevel);
        // A folder of tiles is there without a network.
        if (AxTileAddressFault(service.address).isEmpty())
            services += service;
    }
    return services;
}

std::optional<AxTileBounds> SeenGround(CAxEarthViewer* viewer)
{
    constexpr int steps = 12;
    osgEarth::MapNode* map = viewer->getMapNode();
    if (!map)
        return {};
    const osg::Viewport* port = viewer->getOSGViewer()->getCamera()->getViewport();
    std::optional<AxTileBounds> seen;
    for (int i = 0; port && i <= steps; ++i)
        for (int j = 0; j <= steps; ++j) {
            osg::Vec3d world;
            osgEarth::GeoPoint place;
            const auto x = static_cast<float>(port->x() + port->width() * i / steps);
            const auto y = static_cast<float>(port->y() + port->height() * j / steps);
            if (!map->getTerrain()->getWorldCoordsUnderMouse(viewer->getOSGViewer(), x, y, world) ||
                !place.fromWorld(map->getMapSRS(), world))
                continue;
            if (!seen)
                seen = AxTileBounds{place.x(), place.y(), place.x(), place.y()};
            const double longitude = Near(place.x(), (seen->west + seen->east) / 2.0);
            seen->west = std::min(seen->west, longitude);
            seen->east = std::max(seen->east, longitude);
            seen->south = std::min(seen->south, place.y());
            seen->north = std::max(seen->north, place.y());
        }
    if (!seen)
        return {};
    if (seen->east - seen->west >= turn)
        return AxTileBounds{-180.0, seen->south, 180.0, seen->north};
    return AxTileBounds{Within180(seen->west), seen->south, Within180(seen->east), seen->north};
}

std::optional<AxTileArea> AroundBlock(CAxEarthViewer* viewer, double metres)
{
    CAxHandleAdapter* current = viewer->GetCurHandleAdapter();
    if (!current)
        return {};
    QList<QPointF> outline;
    for (const osg::Vec3d& point : current->Outline())
        outline += QPointF(point.x(), point.y());
    AxAreaOperations::Result grown;
    if (current->IsOutlineClosed() && outline.size() >= 3) {
        if (metres <= 0.0)
            return AxTileArea::OfRings({outline});
        grown = AxAreaOperations::Buffer(outline, metres);
    } else {
        grown = AxAreaOperations::BufferLine(outline, std::max(metres, 1.0));
    }
    QList<QList<QPointF>> rings;
    for (const AxAreaOperations::Area& area : grown.areas)
        rings += area.ring;
    return AxTileArea::OfRings(rings);
}
} // namespace Offline
