#include <AxAlgorthm/AxGeoid.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QLoggingCategory>
#include <QStandardPaths>
#include <QtEndian>

#include <algorithm>
#include <cmath>
#include <cstring>

Q_LOGGING_CATEGORY(logGeoid, "ax.data")

namespace {
constexpr char gridName[] = "egm96_15.gtx";
// Two corner coordinates and two steps as doubles, the numbers of rows and columns as integers.
constexpr qint64 headerSize = 40;                // bytes
constexpr qint64 largestGrid = qint64(64) << 20; // bytes; no larger file is read
constexpr double noValue = -88.8888;             // metres: the format's mark for a node without a value

QString GeoidText(const char* text)
{
    return QCoreApplication::translate("AxGeoid", text);
}

double DoubleAt(const char* data)
{
    const quint64 bits = qFromBigEndian<quint64>(data);
    double value = 0.0;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}

float FloatAt(const char* data)
{
    const quint32 bits = qFromBigEndian<quint32>(data);
    float value = 0.0F;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}

const AxGeoidGrid& SharedGrid()
{
    static const AxGeoidGrid grid = [] {
        AxGeoidGrid read(AxGeoidFolders());
        if (!read.Fault().isEmpty())
            qCWarning(logGeoid).noquote() << read.Fault();
        return read;
    }();
    return grid;
}
} // namespace

AxGeoidGrid::AxGeoidGrid(const QStringList& folders)
{
    for (const QString& folder : folders) {
        const QString path = QDir(folder).filePath(QLatin1String(gridName));
        if (!QFile::exists(path))
            continue;
        m_fault = read(path);
        return;
    }
    m_fault =
        GeoidText(QT_TRANSLATE_NOOP("AxGeoid", "The height of the sea above the ellipsoid is not known: "
                                               "PROJ's grid %1 (package proj-data) is in none of %2."))
            .arg(QLatin1String(gridName), folders.join(QLatin1String(", ")));
}

QString AxGeoidGrid::read(const QString& path)
{
    const QString native = QDir::toNativeSeparators(path);
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return GeoidText(QT_TRANSLATE_NOOP("AxGeoid", "The geoid grid %1 cannot be read: %2."))
            .arg(native, file.errorString());
    const QByteArray data = file.read(std::min(file.size(), largestGrid) + 1);
    const QString broken =
        GeoidText(
            QT_TRANSLATE_NOOP("AxGeoid", "The geoid grid %1 is damaged, or no grid of the whole earth."))
            .arg(native);
    if (data.size() < headerSize)
        return broken;
    const double south = DoubleAt(data.constData());
    const double west = DoubleAt(data.constData() + 8);
    const double rowStep = DoubleAt(data.constData() + 16);
    const double columnStep = DoubleAt(data.constData() + 24);
    const auto rows = qFromBigEndian<qint32>(data.constData() + 32);
    const auto columns = qFromBigEndian<qint32>(data.constData() + 36);
    const bool isGlobal = rows >= 2 && columns >= 4 && std::fabs(west) <= 360.0 &&
                          std::fabs(south + 90.0) < 1e-6 && std::fabs((rows - 1) * rowStep - 180.0) < 1e-6 &&
                          std::fabs(columns * columnStep - 360.0) < 1e-6;
    if (!isGlobal || data.size() != headerSize + 4 * qint64(rows) * columns)
        return broken;
    std::vector<float> nodes(std::size_t(rows) * std::size_t(columns));
    for (std::size_t i = 0; i < nodes.size(); ++i)
        nodes[i] = FloatAt(data.constData() + headerSize + 4 * qint64(i));
    const bool isWhole = std::all_of(nodes.begin(), nodes.end(), [](float node) {
        return std::isfinite(node) && std::fabs(double(node) - noValue) > 1e-3;
    });
    if (!isWhole)
        return broken;
    m_nodes = std::move(nodes);
    m_rows = rows;
    m_columns = columns;
    m_west = west;
    m_step = 360.0 / columns;
    return {};
}

std::optional<double> AxGeoidGrid::HeightAt(double latitude, double longitude) const
{
    if (m_nodes.empty() || !(std::fabs(latitude) <= 90.0) || !std::isfinite(longitude))
        return {};
    const double row = (latitude + 90.0) * (m_rows - 1) / 180.0;
    const int south = std::min(int(row), m_rows - 2);
    const double eastOfWest = std::fmod(longitude - m_west, 360.0);
    const double column = (eastOfWest < 0.0 ? eastOfWest + 360.0 : eastOfWest) / m_step;
    const int west = int(column) % m_columns;
    const int east = (west + 1) % m_columns; // beyond the last column comes the first again
    const double northwards = row - south;
    const double eastwards = column - std::floor(column);
    const auto node = [this](int atRow, int atColumn) {
        return double(m_nodes[std::size_t(atRow) * std::size_t(m_columns) + std::size_t(atColumn)]);
    };
    const auto between = [](double from, double to, double share) { return from + share * (to - from); };
    return between(between(node(south, west), node(south, east), eastwards),
                   between(node(south + 1, west), node(south + 1, east), eastwards), northwards);
}

QStringList AxGeoidFolders()
{
    QStringList folders;
    for (const char* variable : {"PROJ_DATA", "PROJ_LIB"})
        folders += qEnvironmentVariable(variable).split(QDir::listSeparator(), Qt::SkipEmptyParts);
    if (QCoreApplication::instance())
        folders += QCoreApplication::applicationDirPath() + QLatin1String("/proj");
    folders += QStandardPaths::locateAll(QStandardPaths::GenericDataLocation, QStringLiteral("proj"),
                                         QStandardPaths::LocateDirectory);
    const QString ofSystem = QStringLiteral("/usr/share/proj");
    if (!folders.contains(ofSystem))
        folders += ofSystem;
    return folders;
}

std::optional<double> AxGeoidHeight(double latitude, double longitude)
{
    return SharedGrid().HeightAt(latitude, longitude);
}

QString AxGeoidFault()
{
    return SharedGrid().Fault();
}
