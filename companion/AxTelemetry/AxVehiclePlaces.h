#pragma once

#include <AxTelemetry/AxAircraftState.h>

#include <optional>

/// A place as MAVLink tells it: 1e-7 degrees, 1e-7 degrees, millimetres above the sea. Nothing for what is
/// off the globe, and for altitudes that nobody flies at and that stand for "not known".
std::optional<AxPlace> AxPlaceAboveSea(qint32 latitude, qint32 longitude, qint32 altitude);

/// The same place with its altitude above the ellipsoid; without the geoid's grid the altitude stays.
AxPlace AxAboveEllipsoid(const AxPlace& aboveSea);

/// Whether a place is where the equator meets the prime meridian: what is sent when nothing is known.
bool AxIsNowhere(qint32 latitude, qint32 longitude);

/// In 0 to 360 degrees.
double AxCompassDegrees(double degrees);
