#include "FeatureImport.h"

#include "OgrSource.h"
#include "Progress.h"
#include "ToolText.h"
#include "ZoneShapes.h"

#include <QFileInfo>

#include <ogr_geometry.h>
#include <ogrsf_frmts.h>

#include <cmath>
#include <functional>
#include <memory>

namespace {
constexpr double longestRadiusMetres = 1000000.0;

QStringList IdFields()
{
    return {QStringLiteral("local_id"), QStringLiteral("id"), QStringLiteral("name")};
}

/// The features of one layer: their fields and the outlines of their shapes.
class FeatureReader
{
public:
    FeatureReader(const OgrSource& file, OGRLayer* sourceLayer, Notes& collected)
        : source(file), layer(sourceLayer), notes(collected),
          area(OgrSource::FieldOf(layer, {QStringLiteral("area")})),
          longitude(OgrSource::FieldOf(layer, {QStringLiteral("lng"), QStringLiteral("lon"),
                                               QStringLiteral("longitude"), QStringLiteral("x")})),
          latitude(OgrSource::FieldOf(
              layer, {QStringLiteral("lat"), QStringLiteral("latitude"), QStringLiteral("y")})),
          radius(OgrSource::FieldOf(layer, {QStringLiteral("radius")}))
    {
        OGRSpatialReference* const own = layer->GetSpatialRef();
        if (!own)
            return;
        OGRSpatialReference degrees;
        degrees.SetWellKnownGeogCS("WGS84");
        degrees.SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
        const std::unique_ptr<OGRSpatialReference> from(own->Clone());
        from->SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
        if (!from->IsSame(&degrees))
            toDegrees.reset(OGRCreateCoordinateTransformation(from.get(), &degrees));
    }

    void Begin(OGRFeature& next)
    {
        feature = &next;
        ++ordinal;
    }
    qint64 Ordinal() const { return ordinal; }

    QString Text(int field) const
    {
        if (field < 0 || !feature->IsFieldSetAndNotNull(field))
            return {};
        // Shapefiles keep whole numbers as "7.000000000000000".
        if (feature->GetFieldDefnRef(field)->GetType() == OFTReal)
            return QString::number(feature->GetFieldAsDouble(field), 'g', 15);
        return QString::fromUtf8(feature->GetFieldAsString(field)).trimmed();
    }

    /// The texts of a list, whether the format knows lists or keeps them in a text with commas.
    QStringList Texts(int field) const
    {
        QStringList texts;
        if (field >= 0 && feature->GetFieldDefnRef(field)->GetType() == OFTStringList)
            for (char** text = feature->GetFieldAsStringList(field); text && *text; ++text)
                texts << QString::fromUtf8(*text).trimmed();
        else
            for (const QString& text : Text(field).split(QLatin1Char(','), Qt::SkipEmptyParts))
                texts << text.trimmed();
        return texts;
    }

    void Add(const QString& field, const QString& text)
    {
        notes << Note{source.PlaceOf(layer, *feature, ordinal), field, text};
    }

    /// False when there is a text that is no number.
    bool Number(int field, double& number)
    {
        const QString text = Text(field);
        if (text.isEmpty())
            return true;
        bool isNumber = false;
        number = text.toDouble(&isNumber);
        if (!isNumber || !std::isfinite(number)) {
            Add(FieldName(field), ToolText::tr("\"%1\" is no number.").arg(text.left(40)));
            return false;
        }
        return true;
    }

    QString FieldName(int field) const
    {
        return QString::fromUtf8(layer->GetLayerDefn()->GetFieldDefn(field)->GetNameRef());
    }

    /// The outlines of the feature on the map, one or more. Points that stay points are circles of
    /// zoneCircleMetres. Empty after a note.
    std::vector<Ring> Outlines(bool mayStayPoint)
    {
        double metres = zoneCircleMetres;
        if (!Number(radius, metres))
            return {};
        if (!(metres > 0.0) || metres > longestRadiusMetres) {
            Add(FieldName(radius), ToolText::tr("A radius of %1 m is not possible.").arg(metres));
            return {};
        }
        QString field;
        std::vector<Ring> found;
        for (const Ring& ring : Shapes(field)) {
            const bool isPoint = ring.size() == 1;
            if (!IsUsable(ring)) {
                Add(field, ToolText::tr("The shape leaves the globe."));
                continue;
            }
            if (isPoint && mayStayPoint && qFuzzyCompare(metres, zoneCircleMetres)) {
                found.push_back(ring);
                continue;
            }
            const std::vector<Ring> pieces = OnMap(isPoint ? CircleRing(ring.front(), metres) : ring);
            if (pieces.empty())
                Add(field, ToolText::tr("The shape goes around a pole."));
            found.insert(found.end(), pieces.begin(), pieces.end());
        }
        return found;
    }

private:
    /// Up to a whole turn beyond the map's edges, as files write shapes that cross them.
    static bool IsUsable(const Ring& ring)
    {
        for (const QPointF& point : ring)
            if (!(std::abs(point.x()) <= 360.0) || !(std::abs(point.y()) <= 90.0))
                return false;
        return ring.size() > 1 || IsOnGlobe(ring);
    }

    std::vector<Ring> Shapes(QString& field)
    {
        if (!Text(area).isEmpty()) {
            field = FieldName(area);
            QString error;
            Ring ring = ParseArea(Text(area), error);
            if (!ring.empty())
                return {std::move(ring)};
            Add(field, error);
            return {};
        }
        if (!Text(longitude).isEmpty() && !Text(latitude).isEmpty()) {
            field = FieldName(longitude) + QStringLiteral(", ") + FieldName(latitude);
            double x = 0.0;
            double y = 0.0;
            if (!Number(longitude, x) || !Number(latitude, y))
                return {};
            return {{QPointF(x, y)}};
        }
        OGRGeometry* const geometry = feature->GetGeometryRef();
        if (!geometry || geometry->IsEmpty()) {
            Add({}, ToolText::tr("There is no shape."));
            return {};
        }
        const std::unique_ptr<OGRGeometry> flat(geometry->getLinearGeometry());
        if (toDegrees && flat->transform(toDegrees.get()) != OGRERR_NONE) {
            Add({}, ToolText::tr("The coordinates cannot be converted to degrees."));
            return {};
        }
        std::vector<Ring> rings;
        Take(*flat, rings);
        return rings;
    }

    void Take(const OGRGeometry& geometry, std::vector<Ring>& rings)
    {
        switch (wkbFlatten(geometry.getGeometryType())) {
        case wkbPoint:
            rings.push_back({QPointF(geometry.toPoint()->getX(), geometry.toPoint()->getY())});
            break;
        case wkbPolygon: {
            const OGRPolygon& polygon = *geometry.toPolygon();
            if (polygon.getNumInteriorRings() > 0)
                Add({}, ToolText::tr("The holes of the shape are filled."));
            Ring ring;
            if (const OGRLinearRing* const outer = polygon.getExteriorRing())
                for (int i = 0; i < outer->getNumPoints(); ++i)
                    ring.emplace_back(outer->getX(i), outer->getY(i));
            if (ring.size() > 1 && ring.front() == ring.back())
                ring.pop_back();
            if (ring.size() < 3)
                Add({}, ToolText::tr("The outline has fewer than three points."));
            else
                rings.push_back(std::move(ring));
            break;
        }
        case wkbMultiPoint:
        case wkbMultiPolygon:
        case wkbGeometryCollection:
            for (const OGRGeometry* const part : geometry.toGeometryCollection())
                Take(*part, rings);
            break;
        default:
            Add({}, ToolText::tr("The shape is neither a point nor a polygon (%1).")
                        .arg(QString::fromUtf8(geometry.getGeometryName())));
        }
    }

    const OgrSource& source;
    OGRLayer* layer;
    Notes& notes;
    int area;
    int longitude;
    int latitude;
    int radius;
    std::unique_ptr<OGRCoordinateTransformation> toDegrees;
    OGRFeature* feature = nullptr;
    qint64 ordinal = 0;
};

using Take = std::function<void(FeatureReader&)>;

bool ReadFeatures(const QString& path, Notes& notes, Progress& progress, QString& error,
                  const std::function<Take(OGRLayer*)>& prepare)
{
    OgrSource source;
    if (!source.Open(path, error))
        return false;
    for (int i = 0; i < source.LayerCount(); ++i) {
        OGRLayer* const layer = source.Layer(i);
        const Take take = prepare(layer);
        FeatureReader reader(source, layer, notes);
        progress.Begin(ToolText::tr("Reading %1").arg(QFileInfo(path).fileName()), layer->GetFeatureCount());
        layer->ResetReading();
        CPLErrorReset();
        CPLPushErrorHandler(CPLQuietErrorHandler);
        while (const OGRFeatureUniquePtr feature{layer->GetNextFeature()}) {
            reader.Begin(*feature);
            take(reader);
            progress.Step(reader.Ordinal());
        }
        CPLPopErrorHandler();
        // A broken file ends where it breaks.
        if (CPLGetLastErrorType() >= CE_Failure)
            notes << Note{QFileInfo(path).fileName(),
                          {},
                          ToolText::tr("Reading ended after feature %1: %2")
                              .arg(reader.Ordinal())
                              .arg(QString::fromUtf8(CPLGetLastErrorMsg()))};
    }
    return true;
}

/// False when a text says neither yes nor no.
bool ReadSwitch(const QString& text, bool& on)
{
    static const QStringList yes{QStringLiteral("1"), QStringLiteral("true"), QStringLiteral("yes")};
    static const QStringList no{QStringLiteral("0"), QStringLiteral("false"), QStringLiteral("no")};
    on = yes.contains(text, Qt::CaseInsensitive);
    return on || no.contains(text, Qt::CaseInsensitive);
}
} // namespace

bool ImportZones(const QString& path, std::vector<Zone>& zones, Notes& notes, Progress& progress,
                 QString& error)
{
    return ReadFeatures(path, notes, progress, error, [&](OGRLayer* layer) -> Take {
        const int id = OgrSource::FieldOf(layer, IdFields());
        const int enable = OgrSource::FieldOf(layer, {QStringLiteral("enable"), QStringLiteral("enabled")});
        return [&zones, id, enable](FeatureReader& feature) {
            Zone zone;
            zone.id = feature.Text(id);
            if (zone.id.isEmpty()) {
                feature.Add(id < 0 ? IdFields().first() : feature.FieldName(id),
                            ToolText::tr("The zone has no id."));
                return;
            }
            if (zone.id.contains(QLatin1Char(','))) {
                feature.Add(feature.FieldName(id),
                            ToolText::tr("The id \"%1\" holds a comma, which separates the ids of lifts.")
                                .arg(zone.id));
                return;
            }
            const QString isOn = feature.Text(enable);
            if (!isOn.isEmpty() && !ReadSwitch(isOn, zone.isEnabled)) {
                feature.Add(feature.FieldName(enable),
                            ToolText::tr("\"%1\" is neither 1 nor 0.").arg(isOn.left(40)));
                return;
            }
            int piece = 0;
            for (Ring& ring : feature.Outlines(true)) {
                zones.push_back(zone);
                zones.back().ring = std::move(ring);
                if (++piece > 1)
                    zones.back().id += QStringLiteral(" (%1)").arg(piece);
            }
        };
    });
}

bool ImportLifts(const QString& path, std::vector<Lift>& lifts, Notes& notes, Progress& progress,
                 QString& error)
{
    return ReadFeatures(path, notes, progress, error, [&](OGRLayer* layer) -> Take {
        const int ids = OgrSource::FieldOf(layer, {QStringLiteral("local_ids"), QStringLiteral("zones")});
        const int begin = OgrSource::FieldOf(layer, {QStringLiteral("begin_at"), QStringLiteral("begin")});
        const int expiry =
            OgrSource::FieldOf(layer, {QStringLiteral("expired_at"), QStringLiteral("expiry")});
        const int user = OgrSource::FieldOf(layer, {QStringLiteral("user_id"), QStringLiteral("user")});
        const int status = OgrSource::FieldOf(layer, {QStringLiteral("status")});
        return [&lifts, ids, begin, expiry, user, status](FeatureReader& feature) {
            Lift lift;
            lift.zoneIds = feature.Texts(ids);
            lift.zoneIds.removeAll(QString());
            if (lift.zoneIds.isEmpty()) {
                feature.Add(ids < 0 ? QStringLiteral("local_ids") : feature.FieldName(ids),
                            ToolText::tr("The lift names no zone."));
                return;
            }
            double number = Lift::granted;
            if (!feature.Number(status, number))
                return;
            lift.status = int(qBound(-1000000.0, number, 1000000.0));
            lift.begin = feature.Text(begin);
            lift.expiry = feature.Text(expiry);
            lift.user = feature.Text(user);
            for (const int field : {begin, expiry})
                if (feature.Text(field).contains(QLatin1Char(';'))) {
                    feature.Add(feature.FieldName(field), ToolText::tr("A date with a semicolon."));
                    return;
                }
            for (Ring& ring : feature.Outlines(false)) {
                lifts.push_back(lift);
                lifts.back().ring = std::move(ring);
            }
        };
    });
}
