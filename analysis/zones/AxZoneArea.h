#pragma once
#include "analysis/zones/AxZoneShape.h"
#include "scene/base/AxEarthViewerExport.h"

#include <osg/Vec3d>
#include <osgEarth/Bounds>

#include <QString>

#include <vector>

/// What an area text of the zone file says: points "longitude,latitude[,altitude]" in degrees, joined by "|".
struct AxZoneArea
{
    /// Longitude, latitude, 0. A ring goes on across the antimeridian, with longitudes beyond 180 degrees, so
    /// that neighbours are never half the globe apart.
    std::vector<osg::Vec3d> points;
    int parts = 0;    ///< between the "|"; empty ones do not count
    int unusable = 0; ///< of these: without two numbers, or not on the globe
    int misread = 0;  ///< of the unusable: with two fields or more
};

/// Reads an area text. Parts that are no points are left out; altitudes are not looked at.
AXEARTHVIEWER_EXPORT AxZoneArea AxReadArea(const QString& area);

/// 73 points at 8000 m around a centre (degrees), clockwise from the north, the last on the first:
/// great-circle destinations on a sphere of the equator's radius, by the formula of
/// osgEarth::GeoMath::destination() with what all points share worked out once. Centre and points pass
/// through single precision.
AXEARTHVIEWER_EXPORT std::vector<osg::Vec3d> AxZoneCircle(double longitude, double latitude);

/// The box around the points of the circle, to the bit, by a few of them.
AXEARTHVIEWER_EXPORT osgEarth::Bounds AxZoneCircleBox(double longitude, double latitude);

/// The shape of a zone: the circle around the point of an area with fewer than two parts, else the polygon of
/// its points.
AXEARTHVIEWER_EXPORT AxZoneShape AxZoneShapeOf(AxZoneArea&& area);
