#include "AirportImport.h"

#include "OgrSource.h"
#include "Progress.h"
#include "ToolText.h"
#include "ZoneShapes.h"

#include <QFileInfo>
#include <QMap>

#include <ogrsf_frmts.h>

#include <cmath>

namespace {
constexpr double longestRunwayMetres = 6000.0;
constexpr double farthestRunwayMetres = 15000.0;
/// Beyond it an outline in degrees may go around the pole.
constexpr double highestLatitude = 89.0;

/// Distance of the outline from the runways, metres; 0 for types whose zone is always the circle.
const QMap<QString, double>& Margins()
{
    static const QMap<QString, double> margins{{QStringLiteral("heliport"), 0.0},
                                               {QStringLiteral("small_airport"), 3000.0},
                                               {QStringLiteral("medium_airport"), 4000.0},
                                               {QStringLiteral("large_airport"), 5000.0}};
    return margins;
}

std::vector<Runway> Runways(const Airport& airport, const QString& place, Notes& notes)
{
    std::vector<Runway> runways;
    int number = 0;
    for (const QString& text : airport.runways.split(QLatin1Char('|'), Qt::SkipEmptyParts)) {
        ++number;
        const auto add = [&](const QString& reason) {
            notes << Note{place, QStringLiteral("runways"), reason};
        };
        const QStringList parts = text.split(QLatin1Char(','));
        std::vector<double> numbers;
        for (const QString& part : parts) {
            bool isNumber = false;
            const double value = part.trimmed().toDouble(&isNumber);
            if (isNumber)
                numbers.push_back(value);
        }
        if (parts.size() != 4 || numbers.size() != 4) {
            add(ToolText::tr("Runway %1 is not two points: \"%2\".").arg(number).arg(text.left(60)));
            continue;
        }
        const Runway runway{{numbers[0], numbers[1]}, {numbers[2], numbers[3]}};
        if (!IsOnGlobe({runway.begin, runway.end})) {
            add(ToolText::tr("Runway %1 leaves the globe.").arg(number));
            continue;
        }
        const double length = RunwayMetres(runway);
        const double away =
            qMax(Distance(airport.position, runway.begin), Distance(airport.position, runway.end));
        if (length > longestRunwayMetres)
            add(ToolText::tr("Runway %1 would be %2 km long.").arg(number).arg(length / 1000.0, 0, 'f', 1));
        else if (away > farthestRunwayMetres)
            add(ToolText::tr("Runway %1 would reach %2 km from the airport.")
                    .arg(number)
                    .arg(away / 1000.0, 0, 'f', 1));
        else
            runways.push_back(runway);
    }
    return runways;
}
} // namespace

std::vector<Zone> AirportZones(const Airport& airport, const QString& place, Notes& notes)
{
    const auto margin = Margins().constFind(airport.type);
    if (margin == Margins().constEnd())
        return {};
    const Zone circle{airport.id, true, {airport.position}};
    if (*margin <= 0.0 || std::abs(airport.position.y()) > highestLatitude)
        return {circle};
    const std::vector<Runway> runways = Runways(airport, place, notes);
    std::vector<Zone> zones;
    for (Ring& ring : OnMap(RunwayOutline(runways, *margin))) {
        if (ring.empty())
            continue;
        zones.push_back({airport.id, true, std::move(ring)});
        if (zones.size() > 1)
            zones.back().id += QStringLiteral(" (%1)").arg(zones.size());
    }
    return zones.empty() ? std::vector<Zone>{circle} : zones;
}

bool ImportAirports(const QString& path, std::vector<Zone>& zones, Notes& notes, Progress& progress,
                    QString& error)
{
    OgrSource source;
    if (!source.Open(path, error))
        return false;
    OGRLayer* const layer = source.Layer(0);
    if (!layer) {
        error = ToolText::tr("\"%1\" holds nothing.").arg(path);
        return false;
    }
    const int id =
        OgrSource::FieldOf(layer, {QStringLiteral("icao"), QStringLiteral("ident"), QStringLiteral("id")});
    const int type = OgrSource::FieldOf(layer, {QStringLiteral("type")});
    const int latitude = OgrSource::FieldOf(layer, {QStringLiteral("lat")});
    const int longitude = OgrSource::FieldOf(layer, {QStringLiteral("lon"), QStringLiteral("lng")});
    const int runways = OgrSource::FieldOf(layer, {QStringLiteral("runways")});
    if (id < 0 || type < 0 || latitude < 0 || longitude < 0 || runways < 0) {
        error = ToolText::tr("\"%1\" is no table of airports: it needs the columns icao, type, lat, lon and "
                             "runways.")
                    .arg(path);
        return false;
    }
    progress.Begin(ToolText::tr("Reading %1").arg(QFileInfo(path).fileName()), layer->GetFeatureCount());
    qint64 ordinal = 0;
    while (const OGRFeatureUniquePtr feature{layer->GetNextFeature()}) {
        progress.Step(++ordinal);
        const auto text = [&](int field) {
            return QString::fromUtf8(feature->GetFieldAsString(field)).trimmed();
        };
        const QString place = source.PlaceOf(layer, *feature, ordinal);
        bool isLongitude = false;
        bool isLatitude = false;
        const QPointF position(text(longitude).toDouble(&isLongitude), text(latitude).toDouble(&isLatitude));
        if (text(id).isEmpty() || text(id).contains(QLatin1Char(','))) {
            notes << Note{place, QStringLiteral("icao"), ToolText::tr("\"%1\" is no id.").arg(text(id))};
        } else if (!isLongitude || !isLatitude || !IsOnGlobe({position})) {
            notes << Note{place, QStringLiteral("lat, lon"),
                          ToolText::tr("\"%1\", \"%2\" is no place.").arg(text(latitude), text(longitude))};
        } else {
            for (Zone& zone : AirportZones({text(id), text(type), position, text(runways)}, place, notes))
                zones.push_back(std::move(zone));
        }
    }
    return true;
}
