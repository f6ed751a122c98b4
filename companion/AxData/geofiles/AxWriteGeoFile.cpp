#include <AxData/AxReplaceFile.h>
#include <AxData/geofiles/AxGeoFile.h>
#include <AxData/geofiles/AxGeoSession.h>
#include <AxData/geofiles/AxGeoText.h>
#include <AxData/geofiles/AxGeoWriters.h>

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSet>
#include <QTemporaryDir>
#include <QtEndian>

#include <cpl_vsi.h>
#include <gdal_priv.h>

#include <algorithm>
#include <cmath>
#include <exception>
#include <iterator>
#include <utility>

namespace {
QByteArray BytesOf(const QByteArray& name)
{
    vsi_l_offset size = 0;
    const GByte* bytes = VSIGetMemFileBuffer(name.constData(), &size, FALSE);
    return bytes ? QByteArray(reinterpret_cast<const char*>(bytes), int(size)) : QByteArray();
}

QString FaultOf(const QVector<AxGeoShape>& shapes)
{
    if (shapes.isEmpty())
        return AX_GEO_TEXT("There is nothing to write.");
    const auto isBeside = [](const QPointF& place) {
        return !(std::abs(place.x()) <= 180.0 && std::abs(place.y()) <= 90.0);
    };
    for (const AxGeoShape& shape : shapes) {
        const auto isWrong = [&](const QList<QPointF>& places, int fewest) {
            return places.size() < fewest || std::any_of(places.begin(), places.end(), isBeside);
        };
        const int fewest = shape.kind == AxGeoShape::Area ? 3 : shape.kind == AxGeoShape::Line ? 2 : 1;
        if (isWrong(shape.points, fewest) ||
            std::any_of(shape.holes.begin(), shape.holes.end(),
                        [&](const QList<QPointF>& hole) { return isWrong(hole, 3); }))
            return AX_GEO_TEXT("\"%1\" has too few points, or one that is not on the globe.").arg(shape.name);
    }
    return {};
}

/// The archive of one member with the time of that: GDAL leaves it out, which means the year 1980.
void SetTime(QByteArray& archive, const QDateTime& local)
{
    constexpr int fileTime = 10;  // in the header of the member, PKWARE APPNOTE 4.3.7
    constexpr int listTime = 12;  // in its entry in the list, 4.3.12
    constexpr int listPlace = 16; // in the end of the list, 4.3.16
    const int end = archive.lastIndexOf("PK\5\6");
    if (!archive.startsWith("PK\3\4") || end < 0 || end + listPlace + 4 > archive.size())
        return;
    const quint32 list = qFromLittleEndian<quint32>(archive.constData() + end + listPlace);
    if (list + 16 > quint32(archive.size()) || archive.mid(int(list), 4) != "PK\1\2")
        return;
    const QDate day = local.date();
    const QTime time = local.time();
    const auto clock = quint16(time.hour() << 11 | time.minute() << 5 | time.second() / 2);
    const auto date = quint16((day.year() - 1980) << 9 | day.month() << 5 | day.day());
    for (const int place : {fileTime, int(list) + listTime}) {
        qToLittleEndian(clock, archive.data() + place);
        qToLittleEndian(date, archive.data() + place + 2);
    }
}

QByteArray Zipped(const QByteArray& text, const AxGeoSession& session)
{
    const QByteArray archive = session.InMemory("zip.kmz");
    VSILFILE* member = VSIFOpenL(("/vsizip/" + archive + "/doc.kml").constData(), "wb");
    if (!member)
        return {};
    const std::size_t written = VSIFWriteL(text.constData(), 1, std::size_t(text.size()), member);
    if (VSIFCloseL(member) != 0 || written != std::size_t(text.size()))
        return {};
    QByteArray bytes = BytesOf(archive);
    SetTime(bytes, QDateTime::currentDateTime());
    return bytes;
}

/// The parts of a shapefile are made aside, and take their places when all of them are on the disk.
QString PlaceShapefile(const QString& target, const QByteArray& made)
{
    const QFileInfo info(target);
    QTemporaryDir aside(
        info.dir().filePath(QStringLiteral(".") + info.fileName() + QStringLiteral(".XXXXXX")));
    if (!aside.isValid())
        return QStringLiteral("\"%1\": %2").arg(QDir::toNativeSeparators(target), aside.errorString());
    // The shapes last: without them the others count for nothing.
    const QStringList suffixes{QStringLiteral("dbf"), QStringLiteral("shx"), QStringLiteral("prj"),
                               QStringLiteral("cpg"), QStringLiteral("shp")};
    QString error;
    for (const QString& suffix : suffixes) {
        const QByteArray bytes = BytesOf(made + '.' + suffix.toLatin1());
        if (!AxReplaceFile(bytes, aside.filePath(suffix), AxReadableBy::Anyone, error))
            return error.replace(QDir::toNativeSeparators(aside.filePath(suffix)),
                                 QDir::toNativeSeparators(target));
    }
    const QString stem = info.dir().filePath(info.completeBaseName()) + QLatin1Char('.');
    // Search trees of the shapes that were there.
    for (const char* index : {"qix", "sbn", "sbx"})
        QFile::remove(stem + QLatin1String(index));
    for (const QString& suffix : suffixes)
        if (!AxRename(aside.filePath(suffix), stem + suffix, error))
            return error;
    return {};
}

/// The names of the fields of a shapefile's table.
QSet<QByteArray> TableFieldsOf(const QString& shapefile)
{
    constexpr int headBytes = 32; // of the file, and of each field
    constexpr int nameBytes = 11;
    constexpr int mostFields = 255;
    const QFileInfo info(shapefile);
    QFile table(info.dir().filePath(info.completeBaseName() + QStringLiteral(".dbf")));
    QSet<QByteArray> names;
    if (!table.open(QIODevice::ReadOnly) || table.read(headBytes).size() != headBytes)
        return names;
    for (int i = 0; i < mostFields; ++i) {
        const QByteArray field = table.read(headBytes);
        if (field.size() != headBytes || field.startsWith('\r'))
            break;
        names += QByteArray(field.left(nameBytes).constData());
    }
    return names;
}

AxGeoWritten WriteShapefile(const QString& path, const QList<const AxGeoShape*>& shapes,
                            AxGeoSession& session)
{
    const QFileInfo info(path);
    const struct
    {
        AxGeoShape::Kind kind;
        const char* behindName;
        QSet<QByteArray> fields; // that nobody else's file has
    } groups[] = {{AxGeoShape::Area, "_areas", {}},
                  {AxGeoShape::Line, "_lines", {"Name", "left_m", "right_m"}},
                  {AxGeoShape::Point, "_points", {"Name", "radius_m"}}};
    const auto fileOf = [&info](const char* behindName) {
        return info.dir().filePath(info.completeBaseName() + QLatin1String(behindName) +
                                   QStringLiteral(".shp"));
    };
    AxGeoWritten written;
    QStringList left;
    // Of the name that was asked for the pilot knows whether it is taken; with it goes what an earlier export
    // has put beside it, but nothing else.
    const bool isSetThere = QFileInfo::exists(path);
    const auto isOfSet = [&](const auto& group) {
        return isSetThere && !group.fields.isEmpty() &&
               TableFieldsOf(fileOf(group.behindName)).contains(group.fields);
    };
    bool isFirst = true;
    for (const auto& group : groups) {
        const bool isThere = std::any_of(shapes.begin(), shapes.end(),
                                         [&](const AxGeoShape* shape) { return shape->kind == group.kind; });
        const bool isBeside = isThere && !std::exchange(isFirst, false);
        if (!QFileInfo::exists(fileOf(group.behindName)))
            continue;
        const bool isOurs = isOfSet(group);
        if (!isBeside && isOurs)
            left += QFileInfo(fileOf(group.behindName)).fileName();
        if (isBeside && !isOurs) {
            written.fault = AX_GEO_TEXT("A shapefile has shapes of one kind; the others would be in \"%1\", "
                                        "which is there already. Choose another name.")
                                .arg(QFileInfo(fileOf(group.behindName)).fileName());
            return written;
        }
    }
    int files = 0;
    for (const auto& group : groups) {
        AxGeoLayer layer{"ESRI Shapefile", {}, session.InMemory(group.behindName) + ".shp", {}, true, false};
        std::copy_if(shapes.begin(), shapes.end(), std::back_inserter(layer.shapes),
                     [&](const AxGeoShape* shape) { return shape->kind == group.kind; });
        if (layer.shapes.isEmpty())
            continue;
        layer.layerSettings = QStringList{QStringLiteral("ENCODING=UTF-8")};
        // The name that was asked for goes to the first kind.
        const QString file = files++ == 0 ? path : fileOf(group.behindName);
        int epsg = 0;
        written.fault = AxWriteGeoLayer(layer, session, epsg);
        if (written.fault.isEmpty())
            written.fault = PlaceShapefile(file, session.InMemory(group.behindName));
        if (!written.fault.isEmpty())
            return written;
        if (files > 1)
            written.notes += AX_GEO_TEXT("A shapefile has shapes of one kind; the others are in \"%1\".")
                                 .arg(QFileInfo(file).fileName());
    }
    for (const QString& file : qAsConst(left))
        written.notes +=
            AX_GEO_TEXT("\"%1\" of an earlier export is still there; nothing of this export is in it.")
                .arg(file);
    const auto isHigh = [](const AxGeoShape* shape) { return std::isfinite(shape->altitude); };
    const auto high = std::count_if(shapes.begin(), shapes.end(), isHigh);
    if (high > 0 && high < shapes.size())
        written.notes += AX_GEO_TEXT("Not all shapes have a height, so the file may have none.");
    return written;
}

AxGeoWritten Write(const QString& path, AxGeoFormat format, const QVector<AxGeoShape>& shapes,
                   AxGeoSession& session)
{
    AxGeoWritten written;
    QList<const AxGeoShape*> all;
    for (const AxGeoShape& shape : shapes)
        all += &shape;
    if (format == AxGeoFormat::Shapefile)
        return WriteShapefile(path, all, session);
    AxGeoLayer layer{nullptr, all, {}, {}, false, false};
    switch (format) {
    case AxGeoFormat::GeoJson:
        layer.driver = "GeoJSON";
        layer.file = session.InMemory("out.geojson");
        layer.layerSettings = QStringList{QStringLiteral("COORDINATE_PRECISION=9")};
        break;
    case AxGeoFormat::GeoPackage:
        layer.driver = "GPKG";
        layer.file = session.InMemory("out.gpkg");
        break;
    case AxGeoFormat::Dxf:
        layer.driver = "DXF";
        layer.file = session.InMemory("out.dxf");
        layer.isDrawing = true;
        break;
    case AxGeoFormat::Csv:
        layer.driver = "CSV";
        layer.file = session.InMemory("out.csv");
        layer.layerSettings = QStringList{QStringLiteral("GEOMETRY=AS_WKT"), QStringLiteral("WRITE_BOM=YES")};
        break;
    default:
        layer.driver = GetGDALDriverManager()->GetDriverByName("LIBKML") ? "LIBKML" : "KML";
        layer.file = session.InMemory("out.kml");
        // Areas that cross themselves are written as they are, in all formats.
        session.Set("LIBKML_STRICT_COMPLIANCE", "FALSE");
        break;
    }
    int epsg = 0;
    written.fault = AxWriteGeoLayer(layer, session, epsg);
    if (!written.fault.isEmpty())
        return written;
    QByteArray bytes = BytesOf(layer.file);
    if (format == AxGeoFormat::Kmz)
        bytes = Zipped(bytes, session);
    if (format == AxGeoFormat::Dxf) {
        const QByteArray system = "EPSG:" + QByteArray::number(epsg);
        // GDAL lets no backslash into the name of a layer.
        static const QRegularExpression escape(QStringLiteral("_(U\\+[0-9A-F]{4})"));
        bytes = QString::fromLatin1(bytes).replace(escape, QStringLiteral("\\\\\\1")).toLatin1();
        bytes.prepend("999\ncoordinate system " + system + '\n');
        written.notes +=
            AX_GEO_TEXT("The drawing has metres in the UTM zone %1; it says so only in a comment.")
                .arg(QString::fromLatin1(system));
        written.notes +=
            AX_GEO_TEXT("A drawing has names as those of its layers, and neither widths nor radius.");
    }
    if (bytes.isEmpty())
        written.fault = AX_GEO_TEXT("The memory does not suffice.");
    else
        AxReplaceFile(bytes, path, AxReadableBy::Anyone, written.fault);
    return written;
}
} // namespace

AxGeoWritten AxWriteGeoFile(const QString& path, AxGeoFormat format, const QVector<AxGeoShape>& shapes)
{
    AxGeoWritten written;
    written.fault = FaultOf(shapes);
    try {
        AxGeoSession session;
        if (written.fault.isEmpty())
            written = Write(path, format, shapes, session);
    } catch (const std::exception& failure) {
        written.fault = AX_GEO_TEXT("Writing failed: %1").arg(QString::fromLocal8Bit(failure.what()));
    }
    if (!written.fault.isEmpty())
        written.notes.clear();
    return written;
}
