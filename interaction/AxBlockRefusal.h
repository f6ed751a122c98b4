#pragma once
#include "viewer/AxEarthViewerExport.h"

#include <osg/Vec3d>

#include <QStringList>

#include <vector>

class CAxEarthViewer;

/// Why a block is refused. Each is told to the operator in a modal box, which lets
/// events run meanwhile, and returns what CheckGeometry() answers then. GUI thread only.
namespace AxBlockRefusal {

int TooFewPoints(CAxEarthViewer* viewer);
int Invalid(CAxEarthViewer* viewer);
/// The box names the zones, and they blink on the map behind it.
int OverZones(CAxEarthViewer* viewer, const QStringList& zoneIDs);

} // namespace AxBlockRefusal

/// The no-fly zones that a ring of vertices (longitude and latitude in degrees, the
/// first not repeated) meets, also across the antimeridian. None before the zones
/// are loaded.
AXEARTHVIEWER_EXPORT QStringList AxZonesUnder(const CAxEarthViewer& viewer,
                                              const std::vector<osg::Vec3d>& ring);

/// Zone ids as the details of a message: the first twenty, and how many more there are.
AXEARTHVIEWER_EXPORT QString AxZoneDetails(const QStringList& zoneIDs);
