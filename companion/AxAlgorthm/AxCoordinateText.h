#pragma once

#include <AxAlgorthm/AxAlgorthmExport.h>
#include <AxAlgorthm/PointLatLng.h>

#include <QString>

#include <array>
#include <optional>

/// Places as people write and type them. All are WGS84, and the same whatever the language of the program;
/// only the reasons are translated. Any thread.
namespace AxCoordinateText {

/// The ways of writing.
enum class Form
{
    Decimal, ///< 37.403194, -105.016667: latitude, longitude in degrees
    Dms,     ///< 37°24'11.50"N 105°01'00.00"W
    Utm,     ///< 13N 498524.7 4139619.2; beyond its latitudes UPS N 2000000.0 1444542.6
    Mgrs,    ///< 13S DB 98524 39619
};

/// What was typed, as it is understood.
struct AXALGORTHM_EXPORT Typed
{
    std::optional<PointLatLng> place; ///< degrees; nothing where `fault` has the reason
    Form form = Form::Decimal;        ///< Decimal for degrees, Dms where there are minutes
    double side = 0.0;                ///< metres: of the MGRS square, of which `place` is the middle; else 0
    QString fault;                    ///< for people: what is missing, wrong or could mean two things
};

/// Reads a place.
///
/// Degrees: latitude before longitude, or in either order where each has N, S, E or W. Degrees, minutes and
/// seconds with their marks (° ' " and what looks like them, d, colons, hyphens, Chinese ones) or with
/// blanks; only the last of them may have decimals. Between the two a comma, a semicolon or a blank. A
/// decimal comma is taken where the text cannot be read in another way.
///
/// UTM: zone, hemisphere or latitude band, easting, northing. Beyond its latitudes "UPS N" or "UPS S" stands
/// for the zone. S is taken as hemisphere or as band as the northing allows; where it allows both, it is
/// refused, and "south" or "N" has to be written.
///
/// MGRS: zone, band, square, and at least one digit each of easting and northing.
///
/// A place that is incomplete or has a part that cannot be is refused.
AXALGORTHM_EXPORT Typed Parse(const QString& text);

/// Two plain numbers with a comma, a semicolon or a blank between, as of a system whose units the text does
/// not tell; nothing for any other text.
AXALGORTHM_EXPORT std::optional<std::array<double, 2>> TwoNumbers(const QString& text);

/// Writes a place, degrees: to about 0.1 m, 0.3 m, 0.1 m and 1 m. Parse() reads all of them back. An empty
/// text for what is no place. Longitudes may be any.
AXALGORTHM_EXPORT QString Write(double latitude, double longitude, Form form);

/// One coordinate as Form::Dms has it: 105°01'00.00"W.
AXALGORTHM_EXPORT QString WriteDms(double degrees, bool isLatitude);

/// The parts of Form::Utm and of UPS.
struct AXALGORTHM_EXPORT Grid
{
    QString zone;    ///< "13N", "21 south", "UPS N"
    double easting;  ///< metres
    double northing; ///< metres
};
/// Nothing for what is no place.
AXALGORTHM_EXPORT std::optional<Grid> ToGrid(double latitude, double longitude);

} // namespace AxCoordinateText
