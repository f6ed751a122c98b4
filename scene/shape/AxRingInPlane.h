#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <osg/Vec3d>

#include <QPointF>

#include <optional>
#include <vector>

/// A ring of vertices (degrees, degrees) as a ring of a plane, for plane tests
/// such as isSelfIntersection(). That plane is longitude and latitude, with
/// longitudes carried on past 180 where the ring crosses the antimeridian; for
/// a ring around a pole it is the colatitude in degrees in the direction of the
/// longitude. Point i belongs to vertex i; one that is not finite stays so.
AXEARTHVIEWER_EXPORT std::vector<QPointF> AxRingInPlane(const std::vector<osg::Vec3d>& lngLat);

/// Where a name is put on a ring of vertices (degrees, degrees), longitude from
/// -180 to 180: the middle of the box around it when that lies within, else a
/// place that does. Of fewer than three vertices the middle of the box; nothing
/// without usable vertices.
AXEARTHVIEWER_EXPORT std::optional<osg::Vec3d> AxLabelPlace(const std::vector<osg::Vec3d>& lngLat);

/// Half-way along a line of vertices (degrees, degrees), longitude from -180 to 180; nothing without usable
/// vertices.
AXEARTHVIEWER_EXPORT std::optional<osg::Vec3d> AxMiddleOfLine(const std::vector<osg::Vec3d>& lngLat);
