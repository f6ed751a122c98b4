#include "viewer/AxMapLayers.h"

#include <AxData/tiles/AxTileFetch.h>

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

// An MBTiles file across 180 degrees says that it has the whole turn.
std::optional<QRectF> ExtentOfTiles(const QString& file)
{
    constexpr double wholeTurn = 360.0;
    const std::optional<AxTileBounds> bounds = AxTileFileBounds(file);
    if (!bounds)
        return {};
    const double width = bounds->east - bounds->west + (bounds->east < bounds->west ? wholeTurn : 0.0);
    return QRectF(bounds->west, bounds->south, width, bounds->north - bounds->south);
}

// Less the file and the words around it, which both the engine and GDAL put before what they say.
QString Reason(const osgEarth::Status& status, const QString& file)
{
    QString reason = QString::fromStdString(status.message());
    for (const char* quoted : {"\"%1\" ", "cannot be opened: ", "`%1' ", "'%1' ", "%1: "}) {
        const QString lead = QString(QLatin1String(quoted)).replace(QLatin1String("%1"), file);
        if (reason.startsWith(lead))
            reason.remove(0, lead.size());
    }
    return reason;
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
    const QString path = QFileInfo(file).absoluteFilePath();
    osgEarth::Drivers::GDALOptions source;
    source.url() = osgEarth::URI(path.toStdString());
    osg::ref_ptr<Layer> layer = new Layer(QFileInfo(file).completeBaseName().toStdString(), source);
    const osgEarth::Status& status = layer->open();
    if (status.isError())
        return refused(Reason(status, path));
    if (!layer->getDataExtent().isValid())
        return refused(AxMapLayers::tr("it is not placed on the globe."));
    return layer;
}
} // namespace

/// Tells of every change of the map and its layers. Others than this list change them, too: a viewshed is a
/// layer, and names of places come and go with the height of the view.
class AxMapLayers::Watch : public osgEarth::MapCallback
{
public:
    Watch(AxMapLayers& owner, osgEarth::Map& shown)
        : layers(owner), ofPictures(new OfPictures(owner)), ofFeatures(new OfFeatures(owner))
    {
        osgEarth::ImageLayerVector pictures;
        osgEarth::ModelLayerVector features;
        shown.getImageLayers(pictures);
        shown.getModelLayers(features);
        for (const auto& layer : pictures)
            layer->addCallback(ofPictures);
        for (const auto& layer : features)
            layer->addCallback(ofFeatures);
        shown.addMapCallback(this);
    }

    void End(osgEarth::Map& shown)
    {
        osgEarth::ImageLayerVector pictures;
        osgEarth::ModelLayerVector features;
        shown.getImageLayers(pictures);
        shown.getModelLayers(features);
        for (const auto& layer : pictures)
            layer->removeCallback(ofPictures);
        for (const auto& layer : features)
            layer->removeCallback(ofFeatures);
        shown.removeMapCallback(this);
    }

    void onMapModelChanged(const osgEarth::MapModelChange& change) override
    {
        using Change = osgEarth::MapModelChange;
        switch (change.getAction()) {
        case Change::ADD_IMAGE_LAYER:
            change.getImageLayer()->addCallback(ofPictures);
            break;
        case Change::ADD_MODEL_LAYER:
            change.getModelLayer()->addCallback(ofFeatures);
            break;
        case Change::REMOVE_IMAGE_LAYER:
            layers.added.remove(change.getImageLayer()->getUID());
            change.getImageLayer()->removeCallback(ofPictures);
            break;
        case Change::REMOVE_MODEL_LAYER:
            change.getModelLayer()->removeCallback(ofFeatures);
            break;
        case Change::REMOVE_ELEVATION_LAYER:
            layers.added.remove(change.getElevationLayer()->getUID());
            break;
        case Change::BEGIN_BATCH_UPDATE:
        case Change::END_BATCH_UPDATE:
            return;
        default:
            break;
        }
        emit layers.changed();
        if (change.getElevationLayer())
            emit layers.groundChanged();
    }

private:
    struct OfPictures : public osgEarth::ImageLayerCallback
    {
        explicit OfPictures(AxMapLayers& owner) : layers(owner) {}
        void onVisibleChanged(osgEarth::TerrainLayer*) override { emit layers.changed(); }
        void onOpacityChanged(ImageLayer*) override { emit layers.changed(); }
        AxMapLayers& layers;
    };
    struct OfFeatures : public osgEarth::ModelLayerCallback
    {
        explicit OfFeatures(AxMapLayers& owner) : layers(owner) {}
        void onVisibleChanged(ModelLayer*) override { emit layers.changed(); }
        void onOpacityChanged(ModelLayer*) override { emit layers.changed(); }
        AxMapLayers& layers;
    };

    AxMapLayers& layers;
    const osg::ref_ptr<OfPictures> ofPictures;
    const osg::ref_ptr<OfFeatures> ofFeatures;
};

AxMapLayers::AxMapLayers() = default;

AxMapLayers::~AxMapLayers()
{
    if (watch)
        watch->End(*map);
}

void AxMapLayers::SetMap(osgEarth::Map* shown)
{
    if (watch)
        watch->End(*map);
    map = shown;
    watch = map ? new Watch(*this, *map) : nullptr;
    added.clear();
    emit changed();
    emit groundChanged();
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
    for (AxMapLayer& layer : all) {
        layer.isAdded = added.contains(layer.id);
        if (const auto extent = added.value(layer.id).extent)
            layer.extent = extent;
    }
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
    return true;
}

bool AxMapLayers::hasMap(QString* why) const
{
    if (!map && why)
        *why = tr("The map is not loaded yet.");
    return map != nullptr;
}

int AxMapLayers::shownAgain(const QString& file, AxMapLayer::Kind kind)
{
    const QString path = QFileInfo(file).canonicalFilePath();
    for (auto one = added.cbegin(); !path.isEmpty() && one != added.cend(); ++one) {
        const int id = one.key();
        const bool isOfKind = kind == AxMapLayer::Kind::Image ? map->getImageLayerByUID(id) != nullptr
                                                              : map->getElevationLayerByUID(id) != nullptr;
        if (isOfKind && one->path == path) {
            SetVisible(id, true);
            return id;
        }
    }
    return 0;
}

int AxMapLayers::AddImage(const QString& file, QString* why)
{
    if (!hasMap(why))
        return 0;
    if (const int known = shownAgain(file, AxMapLayer::Kind::Image))
        return known;
    const osg::ref_ptr<ImageLayer> layer = Opened<ImageLayer>(file, why);
    if (!layer)
        return 0;
    added[layer->getUID()] = {QFileInfo(file).canonicalFilePath(), ExtentOfTiles(file)};
    map->addImageLayer(layer);
    return layer->getUID();
}

int AxMapLayers::OpenImageAgain(int id, QString* why)
{
    osgEarth::ImageLayerVector pictures;
    if (map)
        map->getImageLayers(pictures);
    const auto former = std::find_if(pictures.begin(), pictures.end(),
                                     [id](const auto& layer) { return layer->getUID() == id; });
    if (former == pictures.end() || !added.contains(id)) {
        if (why)
            *why = tr("There is no such layer.");
        return 0;
    }
    const QString file = added[id].path;
    const osg::ref_ptr<ImageLayer> layer = Opened<ImageLayer>(file, why);
    if (!layer)
        return 0;
    layer->setVisible((*former)->getVisible());
    layer->setOpacity((*former)->getOpacity());
    const int anew = layer->getUID();
    added[anew] = {file, ExtentOfTiles(file)};
    map->addImageLayer(layer);
    map->moveImageLayer(layer, static_cast<unsigned>(former - pictures.begin()));
    map->removeImageLayer(*former);
    return anew;
}

int AxMapLayers::AddElevation(const QString& file, QString* why)
{
    if (!hasMap(why))
        return 0;
    if (const int known = shownAgain(file, AxMapLayer::Kind::Elevation))
        return known;
    const osg::ref_ptr<ElevationLayer> layer = Opened<ElevationLayer>(file, why);
    if (!layer)
        return 0;
    added[layer->getUID()] = {QFileInfo(file).canonicalFilePath(), std::nullopt};
    map->addElevationLayer(layer);
    emit elevationAdded(QString::fromStdString(layer->getName()), file);
    return layer->getUID();
}

bool AxMapLayers::Remove(int id)
{
    if (!map || !added.contains(id))
        return false;
    if (ImageLayer* picture = map->getImageLayerByUID(id))
        map->removeImageLayer(picture);
    else
        map->removeElevationLayer(map->getElevationLayerByUID(id));
    return true;
}
