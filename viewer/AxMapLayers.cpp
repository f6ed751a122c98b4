#include "viewer/AxMapLayers.h"

#include <osgEarth/ElevationLayer>
#include <osgEarth/ImageLayer>
#include <osgEarth/ModelLayer>
#include <osgEarthDrivers/gdal/GDALOptions>

#include <QFileInfo>

#include <algorithm>
#include <cmath>

using osgEarth::ElevationLayer;
using osgEarth::ImageLayer;
using osgEarth::ModelLayer;

namespace {
AxMapLayer Described(const osgEarth::TerrainLayer& layer, AxMapLayer::Kind kind)
{
    AxMapLayer shown;
    shown.id = layer.getUID();
    shown.kind = kind;
    shown.name = QString::fromStdString(layer.getName());
    shown.isVisible = layer.getVisible();
    if (layer.getStatus().isError())
        shown.fault = QString::fromStdString(layer.getStatus().message());
    const osgEarth::GeoExtent extent = layer.getDataExtent();
    if (extent.isValid())
        shown.extent = QRectF(extent.west(), extent.south(), extent.width(), extent.height());
    return shown;
}

template <typename Layer> osg::ref_ptr<Layer> Opened(const QString& file, QString* why)
{
    const auto refused = [why, &file](const QString& reason) {
        if (why)
            *why = AxMapLayers::tr("\"%1\" cannot be shown: %2").arg(QFileInfo(file).fileName(), reason);
        return osg::ref_ptr<Layer>();
    };
    if (!QFileInfo(file).isFile())
        return refused(AxMapLayers::tr("there is no such file."));
    osgEarth::Drivers::GDALOptions source;
    source.url() = osgEarth::URI(QFileInfo(file).absoluteFilePath().toStdString());
    osg::ref_ptr<Layer> layer = new Layer(QFileInfo(file).completeBaseName().toStdString(), source);
    const osgEarth::Status& status = layer->open();
    if (status.isError())
        return refused(QString::fromStdString(status.message()));
    if (!layer->getDataExtent().isValid())
        return refused(AxMapLayers::tr("it is not placed on the globe."));
    return layer;
}
} // namespace

void AxMapLayers::SetMap(osgEarth::Map* shown)
{
    map = shown;
    added.clear();
    emit changed();
}

QList<AxMapLayer> AxMapLayers::All() const
{
    QList<AxMapLayer> all;
    if (!map)
        return all;
    osgEarth::ModelLayerVector features;
    osgEarth::ImageLayerVector pictures;
    osgEarth::ElevationLayerVector heights;
    map->getModelLayers(features);
    map->getImageLayers(pictures);
    map->getElevationLayers(heights);
    for (auto layer = features.rbegin(); layer != features.rend(); ++layer) {
        AxMapLayer shown;
        shown.id = (*layer)->getUID();
        shown.kind = AxMapLayer::Kind::Features;
        shown.name = QString::fromStdString((*layer)->getName());
        shown.isVisible = (*layer)->getVisible();
        shown.opacity = static_cast<double>((*layer)->getOpacity());
        if ((*layer)->getStatus().isError())
            shown.fault = QString::fromStdString((*layer)->getStatus().message());
        all += shown;
    }
    for (auto layer = pictures.rbegin(); layer != pictures.rend(); ++layer) {
        all += Described(**layer, AxMapLayer::Kind::Image);
        all.back().opacity = static_cast<double>((*layer)->getOpacity());
    }
    for (auto layer = heights.rbegin(); layer != heights.rend(); ++layer)
        all += Described(**layer, AxMapLayer::Kind::Elevation);
    for (AxMapLayer& layer : all)
        layer.isAdded = added.contains(layer.id);
    return all;
}

bool AxMapLayers::SetVisible(int id, bool visible)
{
    if (!map)
        return false;
    if (ImageLayer* picture = map->getImageLayerByUID(id))
        picture->setVisible(visible);
    else if (ElevationLayer* heights = map->getElevationLayerByUID(id))
        heights->setVisible(visible);
    else if (ModelLayer* features = map->getModelLayerByUID(id))
        features->setVisible(visible);
    else
        return false;
    emit changed();
    return true;
}

bool AxMapLayers::SetOpacity(int id, double opacity)
{
    if (!map || !std::isfinite(opacity))
        return false;
    const auto wanted = static_cast<float>(std::clamp(opacity, 0.0, 1.0));
    if (ImageLayer* picture = map->getImageLayerByUID(id))
        picture->setOpacity(wanted);
    else if (ModelLayer* features = map->getModelLayerByUID(id))
        features->setOpacity(wanted);
    else
        return false;
    emit changed();
    return true;
}

int AxMapLayers::AddImage(const QString& file, QString* why)
{
    const osg::ref_ptr<ImageLayer> layer = map ? Opened<ImageLayer>(file, why) : nullptr;
    if (!layer)
        return 0;
    map->addImageLayer(layer);
    added.insert(layer->getUID());
    emit changed();
    return layer->getUID();
}

int AxMapLayers::AddElevation(const QString& file, QString* why)
{
    const osg::ref_ptr<ElevationLayer> layer = map ? Opened<ElevationLayer>(file, why) : nullptr;
    if (!layer)
        return 0;
    map->addElevationLayer(layer);
    added.insert(layer->getUID());
    emit changed();
    emit elevationAdded(QString::fromStdString(layer->getName()), file);
    return layer->getUID();
}

bool AxMapLayers::Remove(int id)
{
    if (!map || !added.remove(id))
        return false;
    if (ImageLayer* picture = map->getImageLayerByUID(id))
        map->removeImageLayer(picture);
    else if (ElevationLayer* heights = map->getElevationLayerByUID(id))
        map->removeElevationLayer(heights);
    emit changed();
    return true;
}
