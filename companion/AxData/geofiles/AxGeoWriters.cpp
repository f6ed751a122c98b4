#include <AxData/geofiles/AxGeoSession.h>
#include <AxData/geofiles/AxGeoText.h>
#include <AxData/geofiles/AxGeoWriters.h>

#include <QRegularExpression>

#include <cpl_string.h>
#include <ogrsf_frmts.h>

#include <algorithm>
#include <cmath>
#include <memory>

namespace {
struct MetresField
{
    const char* key;
    double AxGeoShape::*value;
};
constexpr MetresField metresFields[] = {{"left_m", &AxGeoShape::leftWidth},
                                        {"right_m", &AxGeoShape::rightWidth},
                                        {"radius_m", &AxGeoShape::radius}};

/// Further fields of all shapes, without those that have a field of their own.
QStringList FieldsOf(const QList<const AxGeoShape*>& shapes)
{
    constexpr int mostFields = 40;
    QStringList fields;
    QStringList taken{QStringLiteral("name"), QStringLiteral("fid"), QStringLiteral("geom"),
                      QStringLiteral("wkt")};
    for (const MetresField& field : metresFields)
        taken += QLatin1String(field.key);
    for (const AxGeoShape* shape : shapes)
        for (auto entry = shape->attributes.cbegin(); entry != shape->attributes.cend(); ++entry)
            if (!taken.contains(entry.key().toLower()) && fields.size() < mostFields) {
                taken += entry.key().toLower();
                fields += entry.key();
            }
    return fields;
}

/// Longitudes are continuous along the line, and close to the one given.
void AddPlaces(OGRLineString& line, const QList<QPointF>& places, double altitude, double longitude)
{
    for (const QPointF& place : places) {
        longitude += std::remainder(place.x() - longitude, 360.0);
        if (std::isfinite(altitude))
            line.addPoint(longitude, place.y(), altitude);
        else
            line.addPoint(longitude, place.y());
    }
}

std::unique_ptr<OGRGeometry> GeometryOf(const AxGeoShape& shape, bool isDrawing)
{
    const QPointF first = shape.points.constFirst();
    if (shape.kind == AxGeoShape::Point) {
        auto point = std::make_unique<OGRPoint>(first.x(), first.y());
        if (std::isfinite(shape.altitude))
            point->setZ(shape.altitude);
        return point;
    }
    // Programs that draw know closed lines; areas are patterns to them.
    if (shape.kind == AxGeoShape::Line || (isDrawing && shape.holes.isEmpty())) {
        auto line = std::make_unique<OGRLineString>();
        AddPlaces(*line, shape.points, shape.altitude, first.x());
        if (shape.kind == AxGeoShape::Area)
            line->closeRings();
        if (shape.kind == AxGeoShape::Area && !line->get_IsClosed())
            AddPlaces(*line, {first}, shape.altitude, line->getX(line->getNumPoints() - 1));
        return line;
    }
    auto area = std::make_unique<OGRPolygon>();
    for (const QList<QPointF>& places : QList<QList<QPointF>>{shape.points} + shape.holes) {
        OGRLinearRing ring;
        AddPlaces(ring, places, shape.altitude, first.x());
        ring.closeRings();
        area->addRing(&ring);
    }
    return area;
}

OGRwkbGeometryType TypeOf(const AxGeoLayer& layer)
{
    if (!layer.isOneKind)
        return wkbUnknown;
    const AxGeoShape::Kind kind = layer.shapes.constFirst()->kind;
    const OGRwkbGeometryType flat = kind == AxGeoShape::Area   ? wkbPolygon
                                    : kind == AxGeoShape::Line ? wkbLineString
                                                               : wkbPoint;
    const bool isFlat = std::any_of(layer.shapes.begin(), layer.shapes.end(),
                                    [](const AxGeoShape* shape) { return !std::isfinite(shape->altitude); });
    return isFlat ? flat : wkbSetZ(flat);
}

QByteArray NameOf(const AxGeoShape& shape, bool isDrawing)
{
    bool isCut = false;
    QString name = AxGeoOneLine(shape.name, isCut);
    if (isDrawing) {
        name.replace(QRegularExpression(QStringLiteral("[<>/\\\\\":;?*|=',`]")), QStringLiteral("_"));
        name = AxGeoEscaped(name);
    }
    return name.toUtf8();
}

void AddFields(OGRLayer& layer, const QStringList& further, const QList<const AxGeoShape*>& shapes)
{
    OGRFieldDefn name("Name", OFTString);
    layer.CreateField(&name);
    for (const MetresField& field : metresFields)
        if (std::any_of(shapes.begin(), shapes.end(),
                        [&](const AxGeoShape* shape) { return std::isfinite(shape->*field.value); })) {
            OGRFieldDefn metres(field.key, OFTReal);
            layer.CreateField(&metres);
        }
    for (const QString& key : further) {
        OGRFieldDefn text(key.toUtf8().constData(), OFTString);
        layer.CreateField(&text);
    }
}

void FillFields(OGRFeature& feature, const AxGeoShape& shape, const QStringList& further)
{
    for (const MetresField& field : metresFields)
        if (std::isfinite(shape.*field.value))
            feature.SetField(field.key, shape.*field.value);
    // By their place, because a format may have shortened the names.
    const int before = feature.GetFieldCount() - further.size();
    bool isCut = false;
    for (int i = 0; i < further.size(); ++i)
        if (shape.attributes.contains(further[i]))
            feature.SetField(before + i,
                             AxGeoOneLine(shape.attributes[further[i]], isCut).toUtf8().constData());
}

/// Metres in the UTM zone of the first place.
std::unique_ptr<OGRCoordinateTransformation> ToMetres(const QPointF& place, OGRSpatialReference& degrees,
                                                      int& epsg)
{
    constexpr int northernZones = 32600;
    constexpr int southernZones = 32700;
    const int zone = std::clamp(int(std::floor((place.x() + 180.0) / 6.0)) + 1, 1, 60);
    epsg = (place.y() < 0.0 ? southernZones : northernZones) + zone;
    OGRSpatialReference metres;
    metres.importFromEPSG(epsg);
    metres.SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
    return std::unique_ptr<OGRCoordinateTransformation>(OGRCreateCoordinateTransformation(&degrees, &metres));
}
} // namespace

QString AxWriteGeoLayer(const AxGeoLayer& wanted, AxGeoSession& session, int& epsg)
{
    const auto failed = [&session](const char* what) {
        const QStringList errors = session.TakeErrors();
        return AX_GEO_TEXT("Writing failed: %1")
            .arg(errors.isEmpty() ? QLatin1String(what) : errors.join(QLatin1Char(' ')));
    };
    GDALDriver* driver = GetGDALDriverManager()->GetDriverByName(wanted.driver);
    if (!driver)
        return AX_GEO_TEXT("This installation of GDAL cannot write the format (%1).")
            .arg(QLatin1String(wanted.driver));
    GDALDatasetUniquePtr file(driver->Create(wanted.file.constData(), 0, 0, 0, GDT_Unknown, nullptr));
    OGRSpatialReference degrees;
    degrees.SetWellKnownGeogCS("WGS84");
    degrees.SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
    CPLStringList settings;
    for (const QString& setting : wanted.layerSettings)
        settings.AddString(setting.toLatin1().constData());
    OGRLayer* layer = file ? file->CreateLayer(wanted.isDrawing ? "entities" : "shapes", &degrees,
                                               TypeOf(wanted), settings.List())
                           : nullptr;
    if (!layer)
        return failed("CreateLayer");
    const QStringList further = wanted.isDrawing ? QStringList() : FieldsOf(wanted.shapes);
    std::unique_ptr<OGRCoordinateTransformation> toMetres;
    if (wanted.isDrawing)
        toMetres = ToMetres(wanted.shapes.constFirst()->points.constFirst(), degrees, epsg);
    else
        AddFields(*layer, further, wanted.shapes);
    if (wanted.isDrawing && !toMetres)
        return failed("UTM");
    for (const AxGeoShape* shape : wanted.shapes) {
        const std::unique_ptr<OGRGeometry> geometry = GeometryOf(*shape, wanted.isDrawing);
        if (toMetres && geometry->transform(toMetres.get()) != OGRERR_NONE)
            return AX_GEO_TEXT("\"%1\" is too far from the first shape for one drawing in metres.")
                .arg(shape->name);
        const OGRFeatureUniquePtr feature(OGRFeature::CreateFeature(layer->GetLayerDefn()));
        feature->SetField(wanted.isDrawing ? "Layer" : "Name", NameOf(*shape, wanted.isDrawing).constData());
        if (!wanted.isDrawing)
            FillFields(*feature, *shape, further);
        feature->SetGeometry(geometry.get());
        if (layer->CreateFeature(feature.get()) != OGRERR_NONE)
            return failed("CreateFeature");
    }
    file.reset(); // which writes what is still open
    const QStringList errors = session.TakeErrors();
    return errors.isEmpty() ? QString()
                            : AX_GEO_TEXT("Writing failed: %1").arg(errors.join(QLatin1Char(' ')));
}
