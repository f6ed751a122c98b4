#include <AxData/geofiles/AxGeoFields.h>
#include <AxData/geofiles/AxGeoText.h>

#include <ogr_feature.h>

#include <cmath>
#include <limits>

namespace {
/// Of how a program draws a feature, which KML adds to each.
const QStringList& drawingFields()
{
    static const QStringList names{
        QStringLiteral("tessellate"), QStringLiteral("extrude"), QStringLiteral("visibility"),
        QStringLiteral("draworder"),  QStringLiteral("icon"),    QStringLiteral("altitudemode"),
        QStringLiteral("timestamp"),  QStringLiteral("begin"),   QStringLiteral("end")};
    return names;
}

/// The less likely a field is a name, the later it stands here.
int RankOf(const QString& key, OGRFieldType type)
{
    static const QStringList names{
        QStringLiteral("name"),   QString::fromUtf8("名称"), QStringLiteral("title"),
        QStringLiteral("label"),  QStringLiteral("block"),   QStringLiteral("area_name"),
        QStringLiteral("nombre"), QStringLiteral("nom"),     QStringLiteral("layer")};
    const int at = names.indexOf(key.toLower());
    if (at >= 0)
        return at;
    if (type != OFTString)
        return -1;
    return key.startsWith(QLatin1String("name"), Qt::CaseInsensitive) ||
                   key.startsWith(QLatin1String("nm_"), Qt::CaseInsensitive) ||
                   key.endsWith(QLatin1String("name"), Qt::CaseInsensitive)
               ? int(names.size())
               : -1;
}

AxGeoFeature::Heights HeightsOf(const QByteArray& mode)
{
    if (mode == "absolute")
        return AxGeoFeature::Heights::OfDatum;
    if (mode == "relativeToGround" || mode == "relativeToSeaFloor")
        return AxGeoFeature::Heights::OverGround;
    return mode.startsWith("clampTo") ? AxGeoFeature::Heights::Unused : AxGeoFeature::Heights::Unsaid;
}

/// The height that a field tells; NaN when none does.
double AltitudeOf(const QMap<QString, QString>& fields)
{
    const QStringList names{QStringLiteral("altitude"),  QStringLiteral("alt"), QStringLiteral("height"),
                            QStringLiteral("elevation"), QStringLiteral("z"),   QString::fromUtf8("高程")};
    for (const QString& wanted : names)
        for (auto field = fields.begin(); field != fields.end(); ++field) {
            bool isNumber = false;
            const double value =
                QString(field.value()).replace(QLatin1Char(','), QLatin1Char('.')).toDouble(&isNumber);
            if (isNumber && std::isfinite(value) &&
                field.key().trimmed().compare(wanted, Qt::CaseInsensitive) == 0)
                return value;
        }
    return std::numeric_limits<double>::quiet_NaN();
}
} // namespace

AxGeoFields::AxGeoFields(const OGRFeatureDefn& layer, const QByteArray& codecOfTexts,
                         const QSet<int>& geometry)
    : codec(codecOfTexts)
{
    constexpr int mostKept = 20;
    int best = -1;
    for (int i = 0; i < layer.GetFieldCount(); ++i) {
        const OGRFieldDefn* field = layer.GetFieldDefn(i);
        bool isCut = false;
        const QString key = AxGeoOneLine(AxGeoDecoded(field->GetNameRef(), codec, isForeign), isCut);
        if (key.compare(QLatin1String("altitudeMode"), Qt::CaseInsensitive) == 0)
            heights = i;
        if (geometry.contains(i) || drawingFields().contains(key.toLower()))
            continue;
        const int rank = RankOf(key, field->GetType());
        if (rank >= 0 && (best < 0 || rank < best)) {
            best = rank;
            name = i;
        }
        const bool isOurs = key.endsWith(QLatin1String("_m")) || key == QLatin1String("kind");
        if (isOurs || kept.size() < mostKept)
            kept += {i, key};
    }
}

AxGeoFeature AxGeoFields::Of(const OGRFeature& feature)
{
    AxGeoFeature told;
    auto& read = const_cast<OGRFeature&>(feature); // GDAL keeps the text of a number in the feature
    if (name >= 0 && feature.IsFieldSetAndNotNull(name))
        told.name = AxGeoDecoded(read.GetFieldAsString(name), codec, isForeign);
    if (told.name == QLatin1String("0")) // the layer of a drawing that nobody has named
        told.name.clear();
    for (const Field& field : qAsConst(kept))
        if (field.index != name && feature.IsFieldSetAndNotNull(field.index)) {
            bool isCut = false;
            const QString text =
                AxGeoOneLine(AxGeoDecoded(read.GetFieldAsString(field.index), codec, isForeign), isCut);
            if (!text.isEmpty())
                told.attributes[field.key] = text;
        }
    if (heights >= 0 && feature.IsFieldSetAndNotNull(heights))
        told.heights = HeightsOf(read.GetFieldAsString(heights));
    told.altitude = AltitudeOf(told.attributes);
    return told;
}
