#pragma once

#include "Notes.h"
#include "ZoneRecords.h"

#include <QString>

#include <vector>

class Progress;

struct Airport
{
    QString id;
    QString type; ///< "heliport", "small_airport", "medium_airport" or "large_airport"; others get no zone
    QPointF position;
    QString runways; ///< "lng,lat,lng,lat" from end to end, several joined by "|"
};

/// The zone of an airport: an outline around its runways, 3 km away from those of small fields, 4 km from
/// medium and 5 km from large ones; the circle of zoneCircleMetres for heliports and for fields without
/// runways. None for other types. Runways that are longer or farther away than any are noted and left out.
std::vector<Zone> AirportZones(const Airport& airport, const QString& place, Notes& notes);

/// The airports of a table with the columns icao (ident, id), type, lat, lon (lng) and runways; see
/// ImportZones for the rest.
bool ImportAirports(const QString& path, std::vector<Zone>& zones, Notes& notes, Progress& progress,
                    QString& error);
