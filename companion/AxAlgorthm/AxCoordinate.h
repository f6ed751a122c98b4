#pragma once

#include <AxAlgorthm/AxAlgorthmExport.h>
#include <AxAlgorthm/CAxPoint2D.h>
#include <AxAlgorthm/CAxVector3D.h>

#include <optional>
#include <vector>

// Geodetic (WGS84) to UTM plane coordinates and back.
//
// Limits: latitudes from -80 up to but not including 84 degrees, longitudes from -360 to 360 degrees, and
// no point more than 30 degrees of longitude from the zone's central meridian, where the projection still
// inverts to well under a millimetre. Anything else, infinities and NaN make a call return false.

/// The plane of one UTM zone on one hemisphere, for whoever converts there and back: no other conversion in
/// between can change it. A value; any thread.
class AXALGORTHM_EXPORT AxUtmPlane
{
public:
    /// That of a place: the standard zone and the hemisphere; nothing for a place beyond the limits.
    static std::optional<AxUtmPlane> At(double lat, double lng);

    /// Points (longitude, latitude) in degrees to (easting, northing) in metres and back, longitudes in
    /// [-180, 180] then. in and out may be the same object. False, with out left empty, when in is empty or
    /// any point cannot be converted.
    bool FromLngLat(const std::vector<CAxPoint2D>& in, std::vector<CAxPoint2D>& out) const;
    bool ToLngLat(const std::vector<CAxPoint2D>& in, std::vector<CAxPoint2D>& out) const;

private:
    AxUtmPlane(double zoneMeridian, double northing) : meridian(zoneMeridian), falseNorthing(northing) {}

    double meridian;
    double falseNorthing;
};

// The same without an object. A forward call takes the zone and the hemisphere of its first point and keeps
// them for all its points, so that a ring over a zone border, over the equator or over the antimeridian stays
// in one plane. An inverse call uses those of the last successful forward call of its own kind, one point or
// ring, on the same thread; before any of its own kind those of the other kind's, and before any at all it
// fails. A failed forward call leaves the remembered zone as it was.

/// One point, degrees to metres: x is the easting (false easting 500 km), y the northing (false northing
/// 10,000 km on the southern hemisphere). On failure x and y keep their values.
AXALGORTHM_EXPORT bool LatLng2UTM(double lat, double lng, double& x, double& y);

/// The inverse; lng comes back in [-180, 180]. On failure lat and lng keep their values.
AXALGORTHM_EXPORT bool UTM2LatLng(double x, double y, double& lat, double& lng);

/// A ring, as AxUtmPlane::FromLngLat().
AXALGORTHM_EXPORT bool LatLng2UTM(const std::vector<CAxPoint2D>& in, std::vector<CAxPoint2D>& out);

/// The inverse for a ring, as AxUtmPlane::ToLngLat().
AXALGORTHM_EXPORT bool UTM2LatLng(const std::vector<CAxPoint2D>& in, std::vector<CAxPoint2D>& out);

/// Length in metres of the geodesic on the WGS84 ellipsoid between two (longitude, latitude, altitude)
/// positions in degrees; altitudes are left out of account. INVALID_DOUBLE_VALUE when a coordinate is not
/// finite or a latitude lies outside [-90, 90].
AXALGORTHM_EXPORT double DistanceBetweenTwoLatLng(const CAxVector3D& from, const CAxVector3D& to);

/// Area in square metres inside a ring of (longitude, latitude) points in degrees, the first one not
/// repeated, on the WGS84 ellipsoid with geodesic edges, whichever way round it runs; of the two sides of
/// the ring the smaller one. Rings over the antimeridian and around a pole are fine. 0 for fewer than three
/// points; INVALID_DOUBLE_VALUE under the same rule as above.
AXALGORTHM_EXPORT double GeodesicRingArea(const std::vector<CAxPoint2D>& ring);
