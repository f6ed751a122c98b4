#include "host/models/ModelsKept.h"
#include "interaction/AxModelLayers.h"
#include "viewer/CAxEarthViewer.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QScopedValueRollback>

#include <algorithm>
#include <cmath>

namespace {
const QString pathKey = QStringLiteral("path");
const QString fromHomeKey = QStringLiteral("path_from_project");
const QString nameKey = QStringLiteral("name");
const QString systemKey = QStringLiteral("system");
const QString originKey = QStringLiteral("origin");
const QString heightsKey = QStringLiteral("heights");
const QString upKey = QStringLiteral("y_up");
const QString liftKey = QStringLiteral("lift");
const QString hiddenModelKey = QStringLiteral("hidden");
const QString ofEllipsoid = QStringLiteral("ellipsoid");
const QString ofSea = QStringLiteral("sea");

QJsonObject Written(const QString& path, const AxModelOptions& options)
{
    const osg::Vec3d origin = options.origin.value_or(osg::Vec3d());
    QJsonObject model{{pathKey, path},
                      {nameKey, options.name},
                      {systemKey, options.coordinateSystem},
                      {originKey, QJsonArray{origin.x(), origin.y(), origin.z()}},
                      {upKey, options.isYUp.value_or(false)},
                      {liftKey, options.lift}};
    if (options.heights != AxModelHeights::OfSystem)
        model.insert(heightsKey, options.heights == AxModelHeights::SeaLevel ? ofSea : ofEllipsoid);
    if (!options.isVisible)
        model.insert(hiddenModelKey, true);
    return model;
}

QString InProject(const QJsonValue& value)
{
    const QByteArray text = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
    constexpr int longest = 60;
    return QString::fromUtf8(text.mid(1, text.size() - 2)).left(longest);
}

// Which of its fields nobody can have meant; empty for a model that is as Written() would have it.
QString FaultOf(const QJsonObject& model)
{
    const auto isOriginGood = [](const QJsonValue& value) {
        const QJsonArray numbers = value.toArray();
        return numbers.size() == 3 && std::all_of(numbers.begin(), numbers.end(),
                                                  [](const QJsonValue& one) { return one.isDouble(); });
    };
    const auto isLiftGood = [](const QJsonValue& value) {
        return value.isDouble() && std::abs(value.toDouble()) <= axMostModelLift;
    };
    const auto areHeightsGood = [](const QJsonValue& value) {
        return value == QJsonValue(ofSea) || value == QJsonValue(ofEllipsoid);
    };
    const auto isText = [](const QJsonValue& value) { return value.isString(); };
    const auto isSwitch = [](const QJsonValue& value) { return value.isBool(); };
    const std::pair<QString, std::function<bool(const QJsonValue&)>> fields[] = {
        {nameKey, isText}, {systemKey, isText},   {originKey, isOriginGood}, {heightsKey, areHeightsGood},
        {upKey, isSwitch}, {liftKey, isLiftGood}, {hiddenModelKey, isSwitch}};
    for (const auto& [key, isGood] : fields)
        if (model.contains(key) && !isGood(model.value(key)))
            return ModelsKept::tr("The project has a value for \"%1\" that cannot be meant: %2")
                .arg(key, InProject(model.value(key)));
    return {};
}

// Of one without a fault.
AxModelOptions OptionsOf(const QJsonObject& model)
{
    AxModelOptions options;
    options.name = model.value(nameKey).toString();
    options.coordinateSystem = model.value(systemKey).toString();
    const QJsonArray origin = model.value(originKey).toArray();
    if (origin.size() == 3)
        options.origin = osg::Vec3d(origin[0].toDouble(), origin[1].toDouble(), origin[2].toDouble());
    if (model.contains(upKey))
        options.isYUp = model.value(upKey).toBool();
    options.lift = model.value(liftKey).toDouble();
    const QString heights = model.value(heightsKey).toString();
    options.heights = heights == ofSea         ? AxModelHeights::SeaLevel
                      : heights == ofEllipsoid ? AxModelHeights::Ellipsoid
                                               : AxModelHeights::OfSystem;
    options.isVisible = !model.value(hiddenModelKey).toBool();
    return options;
}
} // namespace

ModelsKept::ModelsKept(CAxEarthViewer* earthViewer, QObject* parent) : QObject(parent), viewer(earthViewer)
{
    connect(Layers(), &AxModelLayers::added, this, &ModelsKept::OnAdded);
    connect(Layers(), &AxModelLayers::failed, this, &ModelsKept::OnFailed);
    connect(Layers(), &AxModelLayers::removed, this, &ModelsKept::OnRemoved);
}

ModelsKept::~ModelsKept() = default;

AxModelLayers* ModelsKept::Layers() const
{
    return viewer ? viewer->GetModelLayers() : nullptr;
}

ModelsKept::Kept* ModelsKept::FindMissing(int id)
{
    const auto found = std::find_if(all.begin(), all.end(),
                                    [id](const Kept& one) { return one.id == id && one.layer.isEmpty(); });
    return found == all.end() ? nullptr : &*found;
}

ModelsKept::Kept* ModelsKept::FindLayer(const QString& layer)
{
    const auto found =
        std::find_if(all.begin(), all.end(), [&layer](const Kept& one) { return one.layer == layer; });
    return found == all.end() ? nullptr : &*found;
}

// The project

QString ModelsKept::Text() const
{
    QJsonArray models;
    for (const Kept& one : all) {
        const auto layer = Layers() ? Layers()->Find(one.layer) : std::nullopt;
        if (!layer && one.isRefused)
            continue;
        models += layer ? WithWayFromHome(Written(layer->path, layer->options)) : one.model;
    }
    return models.isEmpty() ? QString()
                            : QString::fromUtf8(QJsonDocument(models).toJson(QJsonDocument::Compact));
}

void ModelsKept::SetText(const QString& text)
{
    if (AxModelLayers* layers = Layers())
        layers->Clear();
    all.clear();
    const QJsonArray models = QJsonDocument::fromJson(text.toUtf8()).array();
    int leftOut = models.isEmpty() && !text.isEmpty() ? 1 : 0;
    for (const QJsonValue& model : models) {
        if (model.toObject().value(pathKey).toString().isEmpty()) {
            ++leftOut;
            continue;
        }
        Kept one;
        one.id = ++last;
        one.model = model.toObject();
        Load(one);
        if (one.layer.isEmpty() || !FindLayer(one.layer))
            all += one;
    }
    if (leftOut > 0)
        emit Told(tr("Models of the project that cannot be read and are left out: %1").arg(leftOut));
    emit missingChanged();
}

void ModelsKept::Load(Kept& one)
{
    const QScopedValueRollback<bool> guard(isLoading, true);
    one.reason = FaultOf(one.model);
    if (AxModelLayers* layers = one.reason.isEmpty() ? Layers() : nullptr)
        one.layer = layers->Add(PathOf(one.model), OptionsOf(one.model), &one.reason);
}

QString ModelsKept::PathOf(const QJsonObject& model) const
{
    const QString fromHome = model.value(fromHomeKey).toString();
    const QString folder = home ? home() : QString();
    const QString beside = QDir::cleanPath(QDir(folder).absoluteFilePath(fromHome));
    return !folder.isEmpty() && !fromHome.isEmpty() && QFileInfo::exists(beside)
               ? beside
               : model.value(pathKey).toString();
}

QJsonObject ModelsKept::WithWayFromHome(QJsonObject model) const
{
    const QString folder = home ? home() : QString();
    const QString way = QDir(folder).relativeFilePath(model.value(pathKey).toString());
    // Another drive has none.
    if (!folder.isEmpty() && QDir::isRelativePath(way))
        model.insert(fromHomeKey, way);
    return model;
}

void ModelsKept::OnAdded(const QString& layer)
{
    if (isLoading)
        return;
    // What the project misses may be what the pilot has found.
    const auto added = Layers()->Find(layer);
    for (Kept& missing : all)
        if (added && missing.layer.isEmpty() && QFileInfo(PathOf(missing.model)) == QFileInfo(added->path)) {
            missing.layer = layer;
            emit missingChanged();
            return;
        }
    Kept one;
    one.id = ++last;
    one.layer = layer;
    all += one;
}

void ModelsKept::OnFailed(const QString& layer, const QString& why)
{
    Kept* one = FindLayer(layer);
    if (!one)
        return;
    if (one->model.isEmpty()) {
        const auto refused = Layers() ? Layers()->Find(layer) : std::nullopt;
        if (!refused)
            return;
        one->isRefused = true;
        one->model = Written(refused->path, refused->options);
    }
    one->layer.clear();
    one->reason = why;
    emit missingChanged();
}

void ModelsKept::OnRemoved(const QString& layer)
{
    if (const Kept* one = FindLayer(layer))
        all.remove(static_cast<int>(one - all.constData()));
}

QVector<ModelsKept::Missing> ModelsKept::GetMissing() const
{
    QVector<Missing> missing;
    for (const Kept& one : all) {
        if (!one.layer.isEmpty())
            continue;
        const QString path = one.model.value(pathKey).toString();
        const QString name = one.model.value(nameKey).toString();
        missing += Missing{one.id, name.isEmpty() ? QFileInfo(path).fileName() : name, path, one.reason,
                           one.isRefused};
    }
    return missing;
}

void ModelsKept::Forget(int id)
{
    const Kept* one = FindMissing(id);
    if (!one)
        return;
    all.remove(static_cast<int>(one - all.constData()));
    emit missingChanged();
}

void ModelsKept::TryAgain(int id, const QString& path)
{
    Kept* one = FindMissing(id);
    if (!one)
        return;
    const QJsonObject had = one->model;
    if (!path.isEmpty()) {
        one->model.remove(fromHomeKey);
        one->model.insert(pathKey, path);
    }
    Load(*one);
    const QString layer = one->layer;
    if (layer.isEmpty()) {
        one->model = had;
        emit Told(one->reason);
    } else if (std::count_if(all.begin(), all.end(),
                             [&layer](const Kept& other) { return other.layer == layer; }) > 1) {
        all.remove(static_cast<int>(one - all.constData()));
    }
    emit missingChanged();
}
