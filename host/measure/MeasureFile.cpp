#include "host/measure/MeasureFile.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QSaveFile>
#include <QStringList>

#include <algorithm>
#include <cmath>

namespace {
QString Tr(const char* text)
{
    return QCoreApplication::translate("MeasureFile", text);
}

// A field as RFC 4180 has it. A name that a spreadsheet would take for a formula is kept from that.
QString Field(QString text)
{
    if (!text.isEmpty() && QStringLiteral("=+-@\t\r").contains(text.front()))
        text.prepend(QLatin1Char('\''));
    if (!text.contains(QLatin1Char(',')) && !text.contains(QLatin1Char('"')) &&
        !text.contains(QLatin1Char('\n')) && !text.contains(QLatin1Char('\r')))
        return text;
    return QLatin1Char('"') + text.replace(QLatin1Char('"'), QStringLiteral("\"\"")) + QLatin1Char('"');
}

QStringList Place(const osg::Vec3d& place)
{
    return {QString::number(std::remainder(place.x(), 360.0), 'f', 9), QString::number(place.y(), 'f', 9)};
}

QVector<AxQuantity> Occurring(const QVector<AxMeasurement>& measurements)
{
    QVector<AxQuantity> found;
    const auto look = [&found](const QVector<AxMeasured>& values) {
        for (const AxMeasured& one : values)
            if (!found.contains(one.quantity))
                found += one.quantity;
    };
    for (const AxMeasurement& measurement : measurements) {
        look(measurement.values.whole);
        for (const QVector<AxMeasured>& part : measurement.values.parts)
            look(part);
    }
    std::sort(found.begin(), found.end());
    return found;
}

QString WriteBytes(const QString& path, const QByteArray& bytes)
{
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.commit())
        return {};
    return Tr(QT_TRANSLATE_NOOP("MeasureFile", "%1: %2")).arg(path, file.errorString());
}

QString NumberIn(const QVector<AxMeasured>& values, AxQuantity quantity)
{
    for (const AxMeasured& one : values)
        if (one.quantity == quantity)
            return AxMeasureText::Number(one);
    return {};
}
} // namespace

QByteArray MeasureFile::Csv(const QVector<AxMeasurement>& measurements)
{
    const QVector<AxQuantity> columns = Occurring(measurements);
    QStringList titles{QStringLiteral("name"),          QStringLiteral("kind"),
                       QStringLiteral("part"),          QStringLiteral("from_longitude"),
                       QStringLiteral("from_latitude"), QStringLiteral("to_longitude"),
                       QStringLiteral("to_latitude")};
    for (const AxQuantity quantity : columns)
        titles += AxMeasureText::Key(quantity);
    QStringList rows{titles.join(QLatin1Char(','))};
    const auto add = [&](const AxMeasurement& of, int part, const osg::Vec3d& from, const osg::Vec3d& to,
                         const QVector<AxMeasured>& values) {
        QStringList row{Field(of.name), Field(AxMeasureText::Kind(of.tool)), QString::number(part)};
        row += Place(from) + Place(to);
        for (const AxQuantity quantity : columns)
            row += NumberIn(values, quantity);
        rows += row.join(QLatin1Char(','));
    };
    for (const AxMeasurement& one : measurements) {
        if (one.points.empty())
            continue;
        add(one, 0, one.points.front(), one.isClosed ? one.points.front() : one.points.back(),
            one.values.whole);
        const auto count = static_cast<int>(one.points.size());
        for (int i = 0; i < one.values.parts.size() && i < count; ++i)
            add(one, i + 1, one.points[static_cast<std::size_t>(i)],
                one.points[static_cast<std::size_t>((i + 1) % count)], one.values.parts[i]);
    }
    return (rows.join(QStringLiteral("\r\n")) + QStringLiteral("\r\n")).toUtf8();
}

QString MeasureFile::Text(const QVector<AxMeasurement>& measurements)
{
    QStringList texts;
    for (const AxMeasurement& one : measurements) {
        QStringList lines{one.name, AxMeasureText::Lines(one.values.whole)};
        if (!one.values.note.isEmpty())
            lines += one.values.note;
        for (int i = 0; one.values.parts.size() > 1 && i < one.values.parts.size(); ++i)
            lines += Tr(QT_TRANSLATE_NOOP("MeasureFile", "Part %1: %2"))
                         .arg(QString::number(i + 1), AxMeasureText::Lines(one.values.parts[i])
                                                          .replace(QLatin1Char('\n'), QStringLiteral("; ")));
        texts += lines.join(QLatin1Char('\n'));
    }
    return texts.join(QStringLiteral("\n\n"));
}

QVector<AxGeoShape> MeasureFile::Shapes(const QVector<AxMeasurement>& measurements)
{
    QVector<AxGeoShape> shapes;
    for (const AxMeasurement& one : measurements) {
        if (one.points.empty())
            continue;
        AxGeoShape shape;
        shape.kind = one.points.size() == 1                  ? AxGeoShape::Point
                     : one.isClosed && one.points.size() > 2 ? AxGeoShape::Area
                                                             : AxGeoShape::Line;
        shape.name = one.name;
        for (const osg::Vec3d& point : one.points)
            shape.points += QPointF(std::remainder(point.x(), 360.0), point.y());
        shape.attributes[QStringLiteral("kind")] = AxMeasureText::Kind(one.tool);
        for (const AxMeasured& value : one.values.whole)
            if (const QString number = AxMeasureText::Number(value); !number.isEmpty())
                shape.attributes[AxMeasureText::Key(value.quantity)] = number;
        shapes += shape;
    }
    return shapes;
}

QString MeasureFile::Write(const QString& file, const QVector<AxMeasurement>& measurements)
{
    const QString suffix = QFileInfo(file).suffix().toLower();
    if (suffix == QLatin1String("kml"))
        return AxWriteGeoFile(file, AxGeoFormat::Kml, Shapes(measurements)).fault;
    if (suffix == QLatin1String("geojson") || suffix == QLatin1String("json"))
        return AxWriteGeoFile(file, AxGeoFormat::GeoJson, Shapes(measurements)).fault;
    if (suffix == QLatin1String("csv"))
        return WriteBytes(file, Csv(measurements));
    return Tr(QT_TRANSLATE_NOOP("MeasureFile", "%1: not a name that ends in csv, kml or geojson")).arg(file);
}
