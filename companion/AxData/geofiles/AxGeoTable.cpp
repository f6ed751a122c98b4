#include <AxData/geofiles/AxGeoFields.h>
#include <AxData/geofiles/AxGeoTable.h>
#include <AxData/geofiles/AxGeoText.h>

#include <ogr_spatialref.h>
#include <ogrsf_frmts.h>

#include <limits>
#include <memory>

namespace {
struct Columns
{
    int text = -1;
    int x = -1;
    int y = -1;
    int kind = -1;
    bool isDegrees = false;
};

int ColumnOf(const OGRFeatureDefn& columns, const QStringList& names)
{
    for (const QString& name : names)
        for (int i = 0; i < columns.GetFieldCount(); ++i)
            if (QString::fromUtf8(columns.GetFieldDefn(i)->GetNameRef()).trimmed().toLower() == name)
                return i;
    return -1;
}

Columns ColumnsOf(const OGRFeatureDefn& all)
{
    const auto find = [&all](const char* names) {
        return ColumnOf(all, QString::fromUtf8(names).split(QLatin1Char(' ')));
    };
    Columns columns;
    columns.text = find("wkt geometry geom the_geom shape_wkt");
    columns.x = find("longitude lon lng long 经度");
    columns.y = find("latitude lat 纬度");
    columns.isDegrees = columns.x >= 0 && columns.y >= 0;
    if (!columns.isDegrees) {
        columns.x = find("x easting east");
        columns.y = find("y northing north");
    }
    columns.kind = find("kind type shape 类型");
    return columns;
}

/// NaN for what is no number. A table may have decimal commas where semicolons part its columns.
double NumberOf(QString text)
{
    bool isNumber = false;
    const double value = text.trimmed().replace(QLatin1Char(','), QLatin1Char('.')).toDouble(&isNumber);
    return isNumber ? value : std::numeric_limits<double>::quiet_NaN();
}

std::unique_ptr<OGRGeometry> FromText(const QByteArray& text)
{
    OGRGeometry* made = nullptr;
    OGRGeometryFactory::createFromWkt(text.constData(), nullptr, &made);
    return std::unique_ptr<OGRGeometry>(made);
}

AxGeoShape::Kind KindOf(const QString& text)
{
    const QString kind = text.trimmed().toLower();
    const QStringList areas{QStringLiteral("area"), QStringLiteral("polygon"), QString::fromUtf8("面"),
                            QString::fromUtf8("区域")};
    const QStringList lines{QStringLiteral("line"), QStringLiteral("polyline"), QStringLiteral("linestring"),
                            QStringLiteral("strip"), QString::fromUtf8("线")};
    return areas.contains(kind)   ? AxGeoShape::Area
           : lines.contains(kind) ? AxGeoShape::Line
                                  : AxGeoShape::Point;
}

/// Rows that make one shape.
struct Rows
{
    AxGeoShape::Kind kind = AxGeoShape::Point;
    AxGeoFeature feature;
    qint64 row = 0; // the first
    OGRLineString places;

    std::unique_ptr<OGRGeometry> Geometry() const
    {
        if (kind == AxGeoShape::Point)
            return std::make_unique<OGRPoint>(places.getX(0), places.getY(0));
        if (kind == AxGeoShape::Line)
            return std::make_unique<OGRLineString>(places);
        OGRLinearRing ring;
        ring.addSubLineString(&places);
        auto area = std::make_unique<OGRPolygon>();
        area->addRing(&ring);
        return area;
    }
};
} // namespace

bool AxReadGeoTable(OGRLayer& table, const QString& fileName, const AxGeoReadOptions& options,
                    AxGeoContent& content, AxGeoCollector& collector, const std::function<bool()>& done)
{
    const Columns columns = ColumnsOf(*table.GetLayerDefn());
    if (columns.text < 0 && (columns.x < 0 || columns.y < 0)) {
        content.fault =
            options.arePointsWanted
                ? AX_GEO_TEXT("The table has neither columns \"longitude\" and \"latitude\" nor a column "
                              "\"WKT\" with points.")
                : AX_GEO_TEXT("The table has neither columns \"longitude\" and \"latitude\" nor a column "
                              "\"WKT\" with shapes.");
        return false;
    }
    OGRSpatialReference degrees;
    degrees.SetWellKnownGeogCS("WGS84");
    std::unique_ptr<AxGeoSystem> system;
    if (columns.isDegrees && columns.text < 0)
        system = std::make_unique<AxGeoSystem>(&degrees);
    else if (!options.assumedSystem.isEmpty())
        system = std::make_unique<AxGeoSystem>(options.assumedSystem);
    else
        system = std::make_unique<AxGeoSystem>(nullptr);
    content.coordinateSystem = system->Name();
    if (!system->Fault().isEmpty()) {
        content.fault = system->Fault();
        return false;
    }
    AxGeoFields fields(*table.GetLayerDefn(), "GB18030", {columns.text, columns.x, columns.y});
    std::unique_ptr<Rows> open;
    const auto add = [&](const OGRGeometry* geometry, AxGeoFeature feature, qint64 row) {
        if (feature.name.trimmed().isEmpty())
            feature.name = fileName + QLatin1Char(' ') + QString::number(row);
        return collector.Add(geometry, *system, feature);
    };
    const auto close = [&] {
        const std::unique_ptr<Rows> rows = std::move(open);
        return !rows || add(rows->Geometry().get(), rows->feature, rows->row);
    };
    int points = 0;
    table.ResetReading();
    for (qint64 row = 1; const auto read = OGRFeatureUniquePtr(table.GetNextFeature()); ++row) {
        if (!done())
            return false;
        AxGeoFeature feature = fields.Of(*read);
        feature.where = AX_GEO_TEXT("Row %1").arg(row);
        if (columns.text >= 0 && (columns.x < 0 || *read->GetFieldAsString(columns.text))) {
            if (!close() || !add(FromText(read->GetFieldAsString(columns.text)).get(), feature, row))
                return false;
            continue;
        }
        const double x = NumberOf(QString::fromUtf8(read->GetFieldAsString(columns.x)));
        const double y = NumberOf(QString::fromUtf8(read->GetFieldAsString(columns.y)));
        const AxGeoShape::Kind kind = columns.kind < 0
                                          ? AxGeoShape::Point
                                          : KindOf(QString::fromUtf8(read->GetFieldAsString(columns.kind)));
        const bool isMore =
            open && kind != AxGeoShape::Point && kind == open->kind && feature.name == open->feature.name;
        if (!isMore) {
            if (!close())
                return false;
            open = std::make_unique<Rows>();
            open->kind = kind;
            open->feature = feature;
            open->row = row;
        }
        open->places.addPoint(x, y);
        points += kind == AxGeoShape::Point ? 1 : 0;
    }
    if (!close())
        return false;
    if (points > 0 && !options.arePointsWanted)
        content.notes +=
            AX_GEO_TEXT("Rows of the table that are points: %1. Rows with \"area\" or \"line\" in a column "
                        "\"kind\" and the same name make one shape.")
                .arg(points);
    if (system->IsGuessed() && !content.shapes.isEmpty() && !options.arePointsWanted)
        content.notes +=
            AX_GEO_TEXT("The file does not say which coordinate system it uses; WGS 84 is assumed.");
    return true;
}
