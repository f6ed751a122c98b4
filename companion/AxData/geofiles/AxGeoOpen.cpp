#include <AxData/geofiles/AxGeoKml.h>
#include <AxData/geofiles/AxGeoOpen.h>
#include <AxData/geofiles/AxGeoText.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include <cpl_vsi.h>

namespace {
/// GDAL takes names in UTF-8.
QByteArray GdalName(const QString& path)
{
    return QFileInfo(path).absoluteFilePath().toUtf8();
}

bool Load(const QString& path, QByteArray& bytes, QString& fault)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        fault = file.errorString();
        return false;
    }
    bytes = file.readAll();
    if (file.error() != QFile::NoError)
        fault = file.errorString();
    return fault.isEmpty();
}

/// A copy that GDAL's memory owns.
bool Keep(const QByteArray& bytes, const QByteArray& name)
{
    VSILFILE* file = VSIFOpenL(name.constData(), "wb");
    if (!file)
        return false;
    const std::size_t written = VSIFWriteL(bytes.constData(), 1, std::size_t(bytes.size()), file);
    return VSIFCloseL(file) == 0 && written == std::size_t(bytes.size());
}

void Open(AxGeoOpened& opened, const QByteArray& name, const char* const* drivers,
          const char* const* settings, AxGeoSession& session)
{
    opened.data.reset(
        GDALDataset::Open(name.constData(), GDAL_OF_VECTOR | GDAL_OF_READONLY, drivers, settings, nullptr));
    if (opened.data)
        return;
    const QStringList errors = session.TakeErrors();
    opened.fault = errors.isEmpty() ? AX_GEO_TEXT("It is no file of this format.")
                                    : AX_GEO_TEXT("It cannot be read: %1").arg(errors.join(QLatin1Char(' ')));
}

void OpenKml(AxGeoOpened& opened, QByteArray text, AxGeoSession& session)
{
    opened.fault = AxPrepareKml(text, opened.notes);
    if (!opened.fault.isEmpty())
        return;
    const QByteArray name = session.InMemory("doc.kml");
    const char* const drivers[] = {"LIBKML", "KML", nullptr};
    if (Keep(text, name))
        Open(opened, name, drivers, nullptr, session);
    else
        opened.fault = AX_GEO_TEXT("The memory does not suffice.");
}

/// The file that belongs to a shapefile, whatever the case of its suffix; empty when there is none.
QString Beside(const QFileInfo& shape, const QString& suffix)
{
    const QStringList all = shape.dir().entryList(QDir::Files);
    const int at =
        all.indexOf(QRegularExpression(QRegularExpression::anchoredPattern(QRegularExpression::escape(
                                           shape.completeBaseName() + QLatin1Char('.') + suffix)),
                                       QRegularExpression::CaseInsensitiveOption));
    return at < 0 ? QString() : shape.dir().filePath(all[at]);
}

/// The codec of a table that does not say how its texts are coded; empty when it does.
QByteArray GuessedCodec(const QFileInfo& shape)
{
    constexpr qint64 languageAt = 29;
    constexpr char ofThisMachine = 0x57;
    constexpr qint64 bytesToLookAt = 1024LL * 1024;
    const QString name = Beside(shape, QStringLiteral("dbf"));
    QFile table(name);
    char language = 0;
    if (!Beside(shape, QStringLiteral("cpg")).isEmpty() || name.isEmpty() ||
        !table.open(QIODevice::ReadOnly) || !table.seek(languageAt) || !table.getChar(&language) ||
        (language != 0 && language != ofThisMachine))
        return {};
    return AxGeoCodecOf(table.read(bytesToLookAt));
}

void OpenShapefile(AxGeoOpened& opened, const QString& path, AxGeoSession& session)
{
    const QFileInfo shape(path);
    QByteArray name = GdalName(path);
    if (Beside(shape, QStringLiteral("shx")).isEmpty()) {
        // GDAL makes the index anew where the file lies.
        session.Set("SHAPE_RESTORE_SHX", "YES");
        for (const char* suffix : {"shp", "dbf", "prj", "cpg"}) {
            const QString part = Beside(shape, QLatin1String(suffix));
            QByteArray bytes;
            if (part.isEmpty())
                continue;
            if (!Load(part, bytes, opened.fault))
                return;
            if (!Keep(bytes, session.InMemory("shape.") + suffix)) {
                opened.fault = AX_GEO_TEXT("The memory does not suffice.");
                return;
            }
        }
        name = session.InMemory("shape.shp");
        opened.notes +=
            AX_GEO_TEXT("The index (.shx) of the shapefile is missing; it was made anew in memory.");
    }
    if (Beside(shape, QStringLiteral("dbf")).isEmpty())
        opened.notes +=
            AX_GEO_TEXT("The table (.dbf) of the shapefile is missing; the shapes have no names.");
    const char* const drivers[] = {"ESRI Shapefile", nullptr};
    const char* const raw[] = {"ENCODING=", nullptr};
    const QByteArray codec = GuessedCodec(shape);
    Open(opened, name, drivers, codec.isEmpty() ? nullptr : raw, session);
    if (!codec.isEmpty())
        opened.codec = codec;
}

void OpenGeoPackage(AxGeoOpened& opened, const QString& path, AxGeoSession& session)
{
    const char* const drivers[] = {"GPKG", nullptr};
    // Without files of SQLite beside it, unless somebody who has it open has made them.
    const char* const unchanging[] = {"IMMUTABLE=YES", "LIST_ALL_TABLES=NO", nullptr};
    const bool isInUse = QFileInfo(path + QStringLiteral("-wal")).size() > 0;
    Open(opened, GdalName(path), drivers, isInUse ? unchanging + 1 : unchanging, session);
}

/// A comment with the coordinate system is how AxWriteGeoFile() begins a drawing.
QString SystemOfDrawing(const QString& path)
{
    constexpr int mostLines = 2;
    const QByteArray mark = "coordinate system EPSG:";
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    for (int i = 0; i < mostLines; ++i) {
        const QByteArray line = file.readLine(200).trimmed();
        if (line.startsWith(mark))
            return QStringLiteral("EPSG:") + QString::fromLatin1(line.mid(mark.size()));
    }
    return {};
}

bool HasZeroByte(const QString& path, QString& fault)
{
    constexpr qint64 atOnce = 1024LL * 1024;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        fault = file.errorString();
        return false;
    }
    while (!file.atEnd()) {
        const QByteArray part = file.read(atOnce);
        if (part.isEmpty())
            break;
        if (part.contains('\0'))
            return true;
    }
    if (file.error() != QFile::NoError)
        fault = file.errorString();
    return false;
}

void OpenDrawing(AxGeoOpened& opened, const QString& path, AxGeoSession& session)
{
    // GDAL reads drawings as text only, and does not get past a byte that is zero: it reads it for ever.
    if (HasZeroByte(path, opened.fault))
        opened.fault = AX_GEO_TEXT("It is no drawing in text (ASCII DXF), or it is damaged.");
    if (!opened.fault.isEmpty())
        return;
    const char* const drivers[] = {"DXF", nullptr};
    Open(opened, GdalName(path), drivers, nullptr, session);
    opened.system = SystemOfDrawing(path);
    opened.isDrawing = true;
}

/// Formats that are read into memory as a whole before the first shape of them is known.
bool IsHeldWhole(const QString& suffix)
{
    return QStringList{QStringLiteral("kml"), QStringLiteral("geojson"), QStringLiteral("json")}.contains(
        suffix);
}
} // namespace

AxGeoOpened AxOpenGeoFile(const QString& path, const AxGeoReadOptions& options, AxGeoSession& session)
{
    AxGeoOpened opened;
    const QFileInfo file(path);
    const QByteArray name = GdalName(path);
    const QString suffix = file.suffix().toLower();
    if (!file.exists())
        opened.fault = AX_GEO_TEXT("There is no such file.");
    else if (!file.isFile() || name.startsWith("/vsi"))
        opened.fault = AX_GEO_TEXT("It is no file.");
    else if (!file.isReadable())
        opened.fault = AX_GEO_TEXT("It may not be read.");
    else if (file.size() == 0)
        opened.fault = AX_GEO_TEXT("The file is empty.");
    else
        opened.fault = AxGeoTooLarge(file.size(), IsHeldWhole(suffix) ? qMin(options.mostBytes, axMostGeoText)
                                                                      : options.mostBytes);
    if (!opened.fault.isEmpty())
        return opened;

    if (suffix == QLatin1String("kml") || suffix == QLatin1String("kmz")) {
        QByteArray text;
        opened.isKml = true;
        if (suffix == QLatin1String("kmz"))
            opened.fault = AxUnpackKmz(name, text, opened.notes);
        else
            Load(path, text, opened.fault);
        if (opened.fault.isEmpty())
            OpenKml(opened, text, session);
    } else if (suffix == QLatin1String("geojson") || suffix == QLatin1String("json")) {
        const char* const drivers[] = {"GeoJSON", "GeoJSONSeq", nullptr};
        Open(opened, name, drivers, nullptr, session);
    } else if (suffix == QLatin1String("shp")) {
        OpenShapefile(opened, path, session);
    } else if (suffix == QLatin1String("gpkg")) {
        OpenGeoPackage(opened, path, session);
    } else if (suffix == QLatin1String("dxf")) {
        OpenDrawing(opened, path, session);
    } else if (suffix == QLatin1String("csv")) {
        const char* const drivers[] = {"CSV", nullptr};
        const char* const texts[] = {"AUTODETECT_TYPE=NO", "KEEP_GEOM_COLUMNS=YES", nullptr};
        Open(opened, name, drivers, texts, session);
        opened.isTable = true;
    } else {
        opened.fault = AX_GEO_TEXT("The format \"%1\" is not known.").arg(suffix.left(20));
    }
    return opened;
}
