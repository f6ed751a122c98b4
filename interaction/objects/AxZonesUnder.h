#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <osg/Vec3d>

#include <QStringList>

#include <vector>

class AxViewerParts;
class CAxEarthViewer;

/// The no-fly zones that a ring of vertices (longitude and latitude in degrees, the
/// first not repeated) meets, also across the antimeridian. None before the zones
/// are loaded. GUI thread only.
AXEARTHVIEWER_EXPORT QStringList AxZonesUnder(const CAxEarthViewer& viewer,
                                              const std::vector<osg::Vec3d>& ring);
AXEARTHVIEWER_EXPORT QStringList AxZonesUnder(AxViewerParts& viewer, const std::vector<osg::Vec3d>& ring);

/// Zone ids as the details of a message: the first twenty, and how many more there are.
AXEARTHVIEWER_EXPORT QString AxZoneDetails(const QStringList& zoneIDs);
