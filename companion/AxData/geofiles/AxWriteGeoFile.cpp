#include <AxData/AxReplaceFile.h>
#include <AxData/geofiles/AxGeoFile.h>
#include <AxData/geofiles/AxGeoSession.h>
#include <AxData/geofiles/AxGeoText.h>
#include <AxData/geofiles/AxGeoWriters.h>

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTemporaryDir>

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

QByteArray Zipped(const QByteArray& text, const AxGeoSession& session)
{
    const QByteArray archive = session.InMemory("zip.kmz");
    VSILFILE* member = VSIFOpenL(("/vsizip/" + archive + "/doc.kml").constData(), "wb");
    if (!member)
        return {};
    const std::size_t written = VSIFWriteL(text.constData(), 1, std::size_t(text.size()), member);
    return VSIFCloseL(member) == 0 && written == std::size_t(text.size()) ? BytesOf(archive) : QByteArray();
}

/// The parts of a shapefile are made aside, and take their places when all of them are on the disk.
QString PlaceShapefile(const QString& target, const QByteArray& made)
{
    const QFileInfo info(target);
    QTemporaryDir aside(
        info.dir().filePath(QStringLiteral(".") + info.fileName() + QStringLiteral(".XXXXXX")));
    if (!aside.isValid())
        return aside.errorString();
    // The shapes last: without them the others count for nothing.
    const QStringList suffixes{QStringLiteral("dbf"), QStringLiteral("shx"), QStringLiteral("prj"),
                               QStringLiteral("cpg"), QStringLiteral("shp")};
    QString error;
    for (const QString& suffix : suffixes) {
        const QByteArray bytes = BytesOf(made + '.' + suffix.toLatin1());
        if (!AxReplaceFile(bytes, aside.filePath(suffix), AxReadableBy::Anyone, error))
            return error;
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

AxGeoWritten WriteShapefile(const QString& path, const QList<const AxGeoShape*>& shapes,
                            AxGeoSession& session)
{
    const QFileInfo info(path);
    const struct
    {
        AxGeoShape::Kind kind;
        const char* behindName;
    } groups[] = {{AxGeoShape::Area, "_areas"}, {AxGeoShape::Line, "_lines"}, {AxGeoShape::Point, "_points"}};
    const auto fileOf = [&info](const char* behindName) {
        return info.dir().filePath(info.completeBaseName() + QLatin1String(behindName) +
                                   QStringLiteral(".shp"));
    };
    AxGeoWritten written;
    // Only the name that was asked for may be taken already: of it alone the pilot knows.
    bool isFirst = true;
    for (const auto& group : groups) {
        const bool isThere = std::any_of(shapes.begin(), shapes.end(),
                                         [&](const AxGeoShape* shape) { return shape->kind == group.kind; });
        if (isThere && !std::exchange(isFirst, false) && QFileInfo::exists(fileOf(group.behindName))) {
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
