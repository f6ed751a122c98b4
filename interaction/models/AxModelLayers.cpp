#include "interaction/models/AxModelLayers.h"
#include "interaction/models/AxModelGeometry.h"
#include "interaction/models/AxModelPick.h"
#include "interaction/models/AxModelReader.h"
#include "scene/AxScene.h"
#include "scene/AxViewerParts.h"
#include "scene/base/AxGlobePoint.h"
#include "scene/base/AxViewerLog.h"

#include <AxAlgorthm/AxGeoid.h>
#include <AxAlgorthm/AxUniqueID.h>

#include <osg/ComputeBoundsVisitor>
#include <osg/CoordinateSystemNode>
#include <osg/LightModel>
#include <osg/LightSource>
#include <osg/Material>
#include <osg/MatrixTransform>
#include <osg/PagedLOD>
#include <osgDB/DatabasePager>
#include <osgViewer/Viewer>

#include <QFileInfo>
#include <QThread>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <limits>

namespace {
// Beginnings of an export's tiles are kept from their first reading until they weigh so much; the others are
// read again where they are looked at.
constexpr qint64 mostBytesKept = 64 << 20;
// A tile that is smaller than this in the picture is not loaded.
constexpr float leastPixels = 2.0f;

const osg::Matrixd thirdAxisUp(1.0, 0.0, 0.0, 0.0, 0.0, 0.0, 1.0, 0.0, 0.0, -1.0, 0.0, 0.0, 0.0, 0.0, 0.0,
                               1.0);

// Pictures of photogrammetry have the sun in them. What has none gets shades from a light at the camera, by
// night as well, when the sky's own is below the horizon.
void SetUpLight(osg::Group& group)
{
    constexpr int ofModels = 1;
    osg::StateSet* state = group.getOrCreateStateSet();
    state->setMode(GL_LIGHTING, osg::StateAttribute::OFF);
    state->setMode(GL_LIGHT0, osg::StateAttribute::OFF);
    state->setMode(GL_LIGHT0 + ofModels, osg::StateAttribute::ON);
    state->setMode(GL_NORMALIZE, osg::StateAttribute::ON);
    osg::ref_ptr<osg::Material> material = new osg::Material;
    material->setColorMode(osg::Material::AMBIENT_AND_DIFFUSE);
    state->setAttributeAndModes(material);
    osg::ref_ptr<osg::LightModel> bothSides = new osg::LightModel;
    bothSides->setTwoSided(true);
    state->setAttributeAndModes(bothSides);
    osg::ref_ptr<osg::LightSource> source = new osg::LightSource;
    source->setReferenceFrame(osg::LightSource::ABSOLUTE_RF);
    source->getLight()->setLightNum(ofModels);
    source->getLight()->setPosition({0.3f, 0.6f, 1.0f, 0.0f});
    source->getLight()->setAmbient({0.3f, 0.3f, 0.3f, 1.0f});
    source->getLight()->setDiffuse({0.75f, 0.75f, 0.75f, 1.0f});
    group.addChild(source);
}
} // namespace

/// What was read of a model, hung where it belongs but for the lift.
struct AxModelLayers::Piece
{
    QString file;
    osg::ref_ptr<osg::MatrixTransform> node;
    QRectF extent;
    double lowest = std::numeric_limits<double>::max();
    double highest = std::numeric_limits<double>::lowest();
};

struct AxModelLayers::Layer
{
    AxModelLayer info; ///< but for lowest and highest, which are those of the pieces
    osg::ref_ptr<osg::MatrixTransform> node;
    osg::ref_ptr<AxModelReader> reader;
    std::shared_ptr<std::atomic<bool>> off;
    bool isAboveSea = false;
    double shift = 0.0;       ///< from its heights to those of the map
    bool isUnshifted = false; ///< for want of the geoid

    QString Note() const;
};

QString AxModelLayers::Layer::Note() const
{
    const QString ofFiles = reader->Note();
    if (!isUnshifted)
        return ofFiles;
    const QString ofHeights =
        AxModelLayers::tr(
            "Its heights may be wrong by up to 100 m: they cannot be brought to those of the map. %1")
            .arg(AxGeoidFault());
    return ofFiles.isEmpty() ? ofHeights : ofHeights + QLatin1Char(' ') + ofFiles;
}

/// What the thread needs to know.
struct AxModelLayers::Load
{
    QString id;
    AxModelSource source;
    AxModelPlacement placement;
    bool isYUp = false;
    osg::ref_ptr<AxModelReader> reader;
    std::shared_ptr<std::atomic<bool>> off;
    qint64 bytesKept = 0;

    std::optional<Piece> ReadPiece(const QString& file, QString& why);
    osg::ref_ptr<osg::Node> Paged(const osg::ref_ptr<osg::Node>& node, const QString& file);
};

osg::ref_ptr<osg::Node> AxModelLayers::Load::Paged(const osg::ref_ptr<osg::Node>& node, const QString& file)
{
    const osg::BoundingSphere bound = node->getBound();
    osg::ref_ptr<osg::PagedLOD> paged = new osg::PagedLOD;
    paged->setRangeMode(osg::LOD::PIXEL_SIZE_ON_SCREEN);
    paged->setCenterMode(osg::LOD::USER_DEFINED_CENTER);
    paged->setCenter(bound.center());
    paged->setRadius(bound.radius());
    paged->setDatabaseOptions(reader->NewOptions());
    paged->setFileName(0, QFile::encodeName(file).toStdString());
    paged->setRange(0, leastPixels, std::numeric_limits<float>::max());
    bytesKept += QFileInfo(file).size();
    if (bytesKept <= mostBytesKept)
        paged->addChild(node);
    return paged;
}

std::optional<AxModelLayers::Piece> AxModelLayers::Load::ReadPiece(const QString& file, QString& why)
{
    osg::ref_ptr<osg::Node> node = reader->Read(file, &why);
    if (!node)
        return std::nullopt;
    const osg::Vec3d zero = AxGatherModel(node);
    if (source.isTree)
        reader->KeepGathered(file);
    osg::ComputeBoundsVisitor boxed;
    node->accept(boxed);
    osg::BoundingBox box = boxed.getBoundingBox();
    if (!box.valid())
        box.expandBy(node->getBound());
    const bool isUpright = !isYUp && !(source.isTree && AxIsModelYUp(file));
    const osg::Matrixd upright = osg::Matrixd::translate(zero) * (isUpright ? osg::Matrixd() : thirdAxisUp);
    const auto matrix = placement.At(osg::Vec3d(box.center()) * upright);
    if (!matrix) {
        why = AxModelLayers::tr("\"%1\" lies outside of the model's coordinate system.")
                  .arg(QFileInfo(file).fileName());
        return std::nullopt;
    }
    Piece piece;
    piece.file = file;
    piece.node = new osg::MatrixTransform(upright * *matrix);
    piece.node->setName(QFileInfo(file).completeBaseName().toLocal8Bit().toStdString());
    piece.node->setNodeMask(AxModelLayerMask);
    piece.node->setDataVariance(osg::Object::STATIC);

    const osg::EllipsoidModel ellipsoid;
    double west = 0.0;
    double east = 0.0;
    double south = 90.0;
    double north = -90.0;
    for (unsigned i = 0; i < 8; ++i) {
        const osg::Vec3d world = osg::Vec3d(box.corner(i)) * piece.node->getMatrix();
        osg::Vec3d place; // latitude first, radians
        ellipsoid.convertXYZToLatLongHeight(world.x(), world.y(), world.z(), place.x(), place.y(), place.z());
        const double latitude = osg::RadiansToDegrees(place.x());
        double longitude = osg::RadiansToDegrees(place.y());
        if (i == 0)
            west = east = longitude;
        longitude = west + std::remainder(longitude - west, 360.0);
        west = std::min(west, longitude);
        east = std::max(east, longitude);
        south = std::min(south, latitude);
        north = std::max(north, latitude);
        piece.lowest = std::min(piece.lowest, place.z());
        piece.highest = std::max(piece.highest, place.z());
    }
    piece.extent = QRectF(west, south, east - west, north - south);
    piece.node->addChild(source.isTree ? Paged(node, file) : node);
    return piece;
}

AxModelLayers::AxModelLayers(AxViewerParts& earthViewer) : viewer(earthViewer)
{
    thread.setMaxThreadCount(1);
    // A piece of work lowers its thread's priority, and systems do not let everybody raise it again.
    thread.setExpiryTimeout(0);
}

AxModelLayers::~AxModelLayers()
{
    for (const auto& layer : layers) {
        *layer->off = true;
        layer->reader->Close();
    }
    thread.waitForDone();
    if (group)
        for (const auto& layer : layers)
            group->removeChild(layer->node);
}

AxModelLayers::Layer* AxModelLayers::find(const QString& id) const
{
    const auto found =
        std::find_if(layers.begin(), layers.end(), [&id](const auto& layer) { return layer->info.id == id; });
    return found == layers.end() ? nullptr : found->get();
}

QString AxModelLayers::Add(const QString& path, const AxModelOptions& options, QString* why)
{
    const auto refused = [why](const QString& reason) {
        if (why)
            *why = reason;
        return QString();
    };
    if (!viewer.Scene().DrawGroup())
        return refused(tr("The map is not loaded yet."));
    const AxModelSource source = AxExamineModel(path);
    for (const auto& layer : layers)
        if (QFileInfo(layer->info.path) == QFileInfo(source.path)) {
            const QString known = layer->info.id;
            SetVisible(known, true);
            return known;
        }
    if (!source.fault.isEmpty())
        return refused(source.fault);

    auto layer = std::make_unique<Layer>();
    AxModelLayer& info = layer->info;
    info.options = options;
    AxModelOptions& kept = info.options;
    if (kept.coordinateSystem.trimmed().isEmpty())
        kept.coordinateSystem = source.coordinateSystem;
    if (kept.coordinateSystem.trimmed().isEmpty())
        return refused(tr("Nothing tells in which coordinate system \"%1\" is.").arg(source.name));
    if (!(std::abs(kept.lift) <= axMostModelLift))
        return refused(tr("A lift is a number from -%1 to %1 m.").arg(axMostModelLift));
    kept.origin = kept.origin.value_or(source.origin);
    kept.isYUp = kept.isYUp.value_or(source.isYUp);
    if (kept.name.trimmed().isEmpty())
        kept.name = source.name;
    QString fault;
    const auto placement = AxModelPlacement::Of(kept.coordinateSystem, *kept.origin, &fault);
    if (!placement) {
        const bool isOfFile = kept.coordinateSystem == source.coordinateSystem;
        return refused(isOfFile ? source.systemSource + QStringLiteral(": ") + fault : fault);
    }
    info.id = CreateUniqueID();
    info.name = kept.name;
    info.path = source.path;
    info.isLoading = true;
    layer->isAboveSea = kept.heights == AxModelHeights::SeaLevel ||
                        (kept.heights == AxModelHeights::OfSystem && placement->IsAboveSea());
    layer->off = std::make_shared<std::atomic<bool>>(false);
    layer->reader = new AxModelReader([this, id = info.id] {
        QMetaObject::invokeMethod(
            this, [this, id] { note(id); }, Qt::QueuedConnection);
    });
    hang(*layer);

    auto load = std::make_shared<Load>();
    load->id = info.id;
    load->source = source;
    load->placement = *placement;
    load->isYUp = *kept.isYUp;
    load->reader = layer->reader;
    load->off = layer->off;
    const QString id = info.id;
    layers.push_back(std::move(layer));
    thread.start([this, load] { run(*load); });
    emit added(id);
    return id;
}

// On the thread.
void AxModelLayers::run(Load& load)
{
    QThread::currentThread()->setPriority(QThread::LowPriority);
    const QString id = load.id;
    const QStringList roots = *load.off ? QStringList() : AxModelRoots(load.source);
    QString fault;
    if (roots.isEmpty())
        fault = tr("There are no tiles beside %1, as in Data/Tile_1/Tile_1.osgb.").arg(load.source.path);
    for (int i = 0; i < roots.size() && !*load.off; ++i) {
        const std::optional<Piece> piece = load.ReadPiece(roots[i], fault);
        const int percent = static_cast<int>(100LL * (i + 1) / roots.size());
        if (piece)
            QMetaObject::invokeMethod(
                this, [this, id, piece, percent] { take(id, *piece, percent); }, Qt::QueuedConnection);
        else
            load.reader->Miss(roots[i], fault);
    }
    if (!*load.off)
        QMetaObject::invokeMethod(
            this, [this, id, fault] { end(id, fault); }, Qt::QueuedConnection);
}

void AxModelLayers::hang(Layer& layer)
{
    if (!group) {
        osg::Group* data = viewer.Scene().DrawGroup()->getParent(0);
        root = AxFindModelRoot(viewer.Scene().View()->getSceneData());
        if (!root) {
            root = new osg::Group;
            root->setName("ModelRoot");
            data->addChild(root);
        }
        group = new osg::Group;
        group->setName("ModelLayer");
        SetUpLight(*group);
        root->addChild(group);
    }
    layer.node = new osg::MatrixTransform;
    layer.node->setName(layer.info.id.toStdString());
    layer.node->setNodeMask(layer.info.options.isVisible ? AxModelLayerMask : 0u);
    group->addChild(layer.node);
}

void AxModelLayers::place(Layer& layer)
{
    if (!layer.info.extent)
        return;
    const QPointF middle = layer.info.extent->center();
    const std::optional<double> geoid = AxGeoidHeight(middle.y(), middle.x());
    layer.isUnshifted = !geoid && layer.isAboveSea == isMapAboveEllipsoid;
    const double sea = layer.isAboveSea ? geoid.value_or(0.0) : 0.0;
    layer.shift = viewer.Scene().GetHAE(std::remainder(middle.x(), 360.0), middle.y(), sea);
    if (!std::isfinite(layer.shift))
        layer.shift = 0.0;
    const osg::Vec3d up = AxGlobe::NormalAt({middle.x(), middle.y(), 0.0});
    layer.node->setMatrix(osg::Matrixd::translate(up * (layer.shift + layer.info.options.lift)));
}

void AxModelLayers::take(const QString& id, const Piece& piece, int percent)
{
    Layer* layer = find(id);
    if (!layer)
        return;
    AxModelLayer& info = layer->info;
    info.percent = percent;
    info.files += piece.file;
    if (info.extent) {
        const QRectF& had = *info.extent;
        const double turns = std::round((had.center().x() - piece.extent.center().x()) / 360.0);
        info.extent = had.united(piece.extent.translated(360.0 * turns, 0.0));
        info.lowest = std::min(info.lowest, piece.lowest);
        info.highest = std::max(info.highest, piece.highest);
    } else {
        info.extent = piece.extent;
        info.lowest = piece.lowest;
        info.highest = piece.highest;
    }
    place(*layer);
    layer->node->addChild(piece.node);
    if (osgDB::DatabasePager* pager = viewer.Scene().View()->getDatabasePager())
        pager->registerPagedLODs(piece.node);
    emit changed(id);
}

void AxModelLayers::end(const QString& id, const QString& fault)
{
    Layer* layer = find(id);
    if (!layer)
        return;
    if (layer->info.files.isEmpty()) {
        qCWarning(axViewerLog).noquote() << "cannot load the model" << layer->info.path << "-" << fault;
        emit failed(id, fault);
        Remove(id);
        return;
    }
    layer->info.isLoading = false;
    layer->info.percent = 100;
    layer->info.note = layer->Note();
    if (!layer->info.note.isEmpty())
        qCWarning(axViewerLog).noquote() << "the model" << layer->info.path << "-" << layer->info.note;
    emit changed(id);
    if (find(id))
        emit loaded(id);
}

void AxModelLayers::note(const QString& id)
{
    Layer* layer = find(id);
    if (!layer)
        return;
    layer->info.note = layer->Note();
    emit changed(id);
}

QList<AxModelLayer> AxModelLayers::All() const
{
    QList<AxModelLayer> all;
    for (const auto& layer : layers) {
        all += layer->info;
        const double raised = layer->shift + layer->info.options.lift;
        all.back().lowest += raised;
        all.back().highest += raised;
    }
    return all;
}

std::optional<AxModelLayer> AxModelLayers::Find(const QString& id) const
{
    for (const AxModelLayer& layer : All())
        if (layer.id == id)
            return layer;
    return std::nullopt;
}

bool AxModelLayers::SetVisible(const QString& id, bool visible)
{
    Layer* layer = find(id);
    if (!layer)
        return false;
    if (layer->info.options.isVisible == visible)
        return true;
    layer->info.options.isVisible = visible;
    layer->node->setNodeMask(visible ? AxModelLayerMask : 0u);
    emit changed(id);
    return true;
}

bool AxModelLayers::SetLift(const QString& id, double metres)
{
    Layer* layer = find(id);
    if (!layer || !(std::abs(metres) <= axMostModelLift))
        return false;
    if (layer->info.options.lift == metres)
        return true;
    layer->info.options.lift = metres;
    place(*layer);
    emit changed(id);
    return true;
}

bool AxModelLayers::Remove(const QString& id)
{
    const auto found =
        std::find_if(layers.begin(), layers.end(), [&id](const auto& layer) { return layer->info.id == id; });
    if (found == layers.end())
        return false;
    const std::unique_ptr<Layer> layer = std::move(*found);
    layers.erase(found);
    *layer->off = true;
    layer->reader->Close();
    group->removeChild(layer->node);
    emit removed(layer->info.id);
    return true;
}

void AxModelLayers::Clear()
{
    while (!layers.empty())
        Remove(layers.front()->info.id);
}

osg::Group* AxModelLayers::NodeOf(const QString& id) const
{
    const Layer* layer = find(id);
    return layer ? layer->node.get() : nullptr;
}

void AxModelLayers::PlaceAgain(bool isAboveEllipsoid)
{
    isMapAboveEllipsoid = isAboveEllipsoid;
    QStringList all;
    for (const auto& layer : layers) {
        place(*layer);
        layer->info.note = layer->Note();
        all += layer->info.id;
    }
    for (const QString& id : qAsConst(all))
        if (find(id))
            emit changed(id);
}
