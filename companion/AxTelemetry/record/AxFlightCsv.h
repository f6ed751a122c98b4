#pragma once

#include <AxTelemetry/record/AxFlightRecord.h>
#include <AxTelemetry/record/AxReadProgress.h>

#include <AxData/exchange/AxMission.h>

class QIODevice;

/// Flights from a table of text with a line of column names: times, latitude and longitude in degrees, an
/// altitude above the sea or above the ellipsoid; heights above home, heading, roll, pitch, yaw and the
/// number of the aircraft where there are any. Columns may come in any order and under the usual names
/// ("lat", "Latitude [deg]"); others are passed over. Commas, semicolons or tabs part them; decimal commas
/// are a fault. Altitudes above the sea become altitudes above the ellipsoid by the geoid (AxGeoid.h).
///
/// A column that is missing is a fault that names it, a cell that is no number one that names its line. Lines
/// without a place, a time or an altitude are left out; a last line that is cut, too; notes say so. Lines
/// that come late are put in order. Where times without a date start anew, another flight begins. Reads the
/// device in pieces; any thread.
AXTELEMETRY_EXPORT AxFlightRead AxReadFlightCsv(QIODevice& device, const AxReadProgress& progress = {});

/// The samples of a flight as such a table: t_ms,lat,lon,alt_amsl,alt_rel,hdg and, behind these,
/// alt_ellipsoid,roll_deg,pitch_deg. Degrees and metres; what is not known is empty. A flight without samples
/// is a fault. Any thread.
AXTELEMETRY_EXPORT AxExported AxWriteFlightCsv(const AxFlightRecord& flight);
