#include <AxData/planner/AxPlanCameras.h>

#include <QCoreApplication>
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
    return {};
}

QList<AxListedCamera> ListBesideTheProgram()
{
    QList<AxListedCamera> cameras;
    QFile file(QCoreApplication::applicationDirPath() + QStringLiteral("/cameras.json"));
    if (!file.exists())
        return cameras;
    const QString fault =
        file.open(QIODevice::ReadOnly) ? AxReadCameras(file.readAll(), cameras) : file.errorString();
    if (!fault.isEmpty())
        qCWarning(logCameras).noquote() << file.fileName() + QStringLiteral(": ") + fault;
    return cameras;
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

const QList<AxListedCamera>& AxCameraList()
{
    static const QList<AxListedCamera> cameras = ListBesideTheProgram();
    return cameras;
}

AxPlanCamera AxCameraOfType(ECameraType type)
{
    const QList<AxListedCamera>& cameras = AxCameraList();
    const auto found = std::find_if(cameras.begin(), cameras.end(),
                                    [type](const AxListedCamera& listed) { return listed.type == type; });
    return found == cameras.end() ? AxPlanCamera() : found->camera;
}
