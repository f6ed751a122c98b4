#include <AxData/planner/AxPlanCameras.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLoggingCategory>

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>

namespace {
Q_LOGGING_CATEGORY(logCameras, "ax.data")

constexpr std::array<const char*, 10> typeNames{"fullFrame", "apsC",    "mediumFormat", "multispectral",
                                                "thermal",   "oblique", "video",        "lidar",
                                                "dual",      "swing"};

QString Fault(int number, const char* field)
{
    return QCoreApplication::translate("AxPlanner", "Camera %1: \"%2\" is missing or wrong.")
        .arg(QString::number(number), QLatin1String(field));
}

/// As the file writes it; projects made elsewhere may have types that no list knows.
QString TypeName(ECameraType type)
{
    const auto index = static_cast<std::size_t>(type);
    return index < typeNames.size() ? QString(QLatin1String(typeNames[index])) : QString::number(type);
}

bool ReadPositive(const QJsonValue& value, double& number)
{
    number = value.toDouble(-1.0);
    return value.isDouble() && std::isfinite(number) && number > 0.0;
}

bool ReadPair(const QJsonValue& value, double& first, double& second)
{
    const QJsonArray pair = value.toArray();
    return pair.size() == 2 && ReadPositive(pair[0], first) && ReadPositive(pair[1], second);
}

/// Where cameras look whose list does not say it.
std::vector<AxPlanView> UsualViews(ECameraType type)
{
    constexpr double tilt = 45.0;
    if (type == CameraOblique)
        return {{0.0, 0.0}, {0.0, tilt}, {90.0, tilt}, {180.0, tilt}, {270.0, tilt}};
    if (type == CameraSwing)
        return {{90.0, tilt}, {0.0, 0.0}, {270.0, tilt}};
    return {};
}

bool ReadViews(const QJsonValue& value, std::vector<AxPlanView>& views)
{
    const QJsonArray pairs = value.toArray();
    views.clear();
    for (const QJsonValue& entry : pairs) {
        const QJsonArray pair = entry.toArray();
        const double turn = pair.at(0).toDouble(-1.0);
        const double tilt = pair.at(1).toDouble(-1.0);
        if (pair.size() != 2 || !(turn >= 0.0 && turn < 360.0) || !(tilt >= 0.0 && tilt < 90.0))
            return false;
        views.push_back({turn, tilt});
    }
    return value.isArray();
}

QString ReadCamera(const QJsonObject& object, int number, AxListedCamera& listed)
{
    AxPlanCamera& camera = listed.camera;
    camera.name = object[QLatin1String("name")].toString();
    if (camera.name.isEmpty())
        return Fault(number, "name");
    const QString type = object[QLatin1String("type")].toString();
    const auto named = std::find_if(typeNames.begin(), typeNames.end(),
                                    [&type](const char* name) { return type == QLatin1String(name); });
    if (named == typeNames.end())
        return Fault(number, "type");
    listed.type = static_cast<ECameraType>(named - typeNames.begin());
    if (!ReadPair(object[QLatin1String("sensor")], camera.sensorWidth, camera.sensorHeight))
        return Fault(number, "sensor");
    double width = 0.0;
    double height = 0.0;
    constexpr double mostPixels = 1e6;
    if (!ReadPair(object[QLatin1String("image")], width, height) || width > mostPixels ||
        height > mostPixels || width != std::floor(width) || height != std::floor(height))
        return Fault(number, "image");
    camera.imageWidth = static_cast<int>(width);
    camera.imageHeight = static_cast<int>(height);
    if (!ReadPositive(object[QLatin1String("focalLength")], camera.focalLength))
        return Fault(number, "focalLength");
    if (!ReadPositive(object[QLatin1String("shortestInterval")], camera.shortestInterval))
        return Fault(number, "shortestInterval");
    camera.isSwinging = listed.type == CameraSwing;
    camera.views = UsualViews(listed.type);
    const QJsonValue views = object[QLatin1String("views")];
    if (!views.isUndefined() && !ReadViews(views, camera.views))
        return Fault(number, "views");
    return {};
}

const AxCameraFile& FileBesideTheProgram()
{
    static const AxCameraFile read = [] {
        AxCameraFile file =
            AxReadCameraFile(QCoreApplication::applicationDirPath() + QStringLiteral("/cameras.json"));
        if (!file.isThere)
            qCInfo(logCameras).noquote()
                << QCoreApplication::translate("AxPlanner", "There is no list of cameras %1: routes are "
                                                            "planned for a full-frame camera of 35 mm.")
                       .arg(file.path);
        else if (!file.fault.isEmpty())
            qCWarning(logCameras).noquote() << file.fault;
        return file;
    }();
    return read;
}
} // namespace

QString AxReadCameras(const QByteArray& json, QList<AxListedCamera>& cameras)
{
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(json, &error);
    if (error.error != QJsonParseError::NoError)
        return QCoreApplication::translate("AxPlanner", "The list of cameras is no JSON at byte %1: %2.")
            .arg(QString::number(error.offset), error.errorString());
    if (!document.isArray() || document.array().isEmpty())
        return QCoreApplication::translate("AxPlanner",
                                           "The list of cameras must be an array with a camera.");
    QList<AxListedCamera> read;
    const QJsonArray entries = document.array();
    for (const QJsonValue& entry : entries) {
        AxListedCamera listed;
        const QString fault = ReadCamera(entry.toObject(), read.size() + 1, listed);
        if (!fault.isEmpty())
            return fault;
        read += listed;
    }
    cameras = read;
    return {};
}

AxCameraFile AxReadCameraFile(const QString& path)
{
    AxCameraFile read;
    read.path = QDir::toNativeSeparators(path);
    QFile file(path);
    read.isThere = file.exists();
    if (!read.isThere)
        return read;
    const QString fault =
        file.open(QIODevice::ReadOnly) ? AxReadCameras(file.readAll(), read.cameras) : file.errorString();
    if (!fault.isEmpty())
        read.fault = read.path + QStringLiteral(": ") + fault;
    return read;
}

AxPlanCamera AxCameraIn(const AxCameraFile& file, ECameraType type, const QString& name)
{
    const AxListedCamera* first = nullptr;
    bool isNamed = name.isEmpty();
    for (const AxListedCamera& listed : file.cameras) {
        const bool hasName = listed.camera.name == name;
        if (listed.type == type && hasName)
            return listed.camera;
        isNamed = isNamed || hasName;
        if (listed.type == type && !first)
            first = &listed;
    }
    if (first && isNamed)
        return first->camera;
    AxPlanCamera camera;
    const QString typeName = TypeName(type);
    if (!file.fault.isEmpty())
        camera.fault = file.fault;
    else if (!isNamed)
        camera.fault =
            QCoreApplication::translate("AxPlanner", "%1: no camera has the \"name\" %2 and the \"type\" %3.")
                .arg(file.path, name, typeName);
    else if (file.isThere)
        camera.fault = QCoreApplication::translate("AxPlanner", "%1: no camera has the \"type\" %2.")
                           .arg(file.path, typeName);
    return camera;
}

const QList<AxListedCamera>& AxCameraList()
{
    return FileBesideTheProgram().cameras;
}

AxPlanCamera AxCameraOfType(ECameraType type, const QString& name)
{
    return AxCameraIn(FileBesideTheProgram(), type, name);
}
