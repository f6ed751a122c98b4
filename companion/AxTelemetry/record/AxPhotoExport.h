#pragma once

#include <AxTelemetry/AxAircraftState.h>

#include <AxData/exchange/AxMission.h>

#include <vector>

// Where photos were taken, of a live flight or of a recorded one, for programs that place them.
// AxSaveExport() writes the result. Photos that are not on the globe are left out, and a note says how many;
// a file without photos is a fault. Any thread.

/// CSV by RFC 4180 with a line of column names. Heights are metres above the ellipsoid and above mean sea
/// level, times ISO 8601 in UTC, angles degrees (right wing down, nose up, clockwise from north). What is not
/// known is empty.
AXTELEMETRY_EXPORT AxExported AxWritePhotoCsv(const std::vector<AxPhotoRecord>& photos);

/// KML 2.2: a point for each photo with its time. Heights are above mean sea level, as KML has them; that
/// above the ellipsoid and the attitude are among the data of the point. The name is that of the document.
AXTELEMETRY_EXPORT AxExported AxWritePhotoKml(const std::vector<AxPhotoRecord>& photos, const QString& name);
