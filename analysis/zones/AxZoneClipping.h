#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <osg/ref_ptr>
#include <osg/Vec3d>
#include <osgEarthSymbology/Geometry>

#include <QPolygonF>

#include <vector>

/// A ring of longitude (x) and latitude (y), degrees.
using AxRing = std::vector<osg::Vec3d>;

/// What is left of a zone when its lifted areas are taken away.
struct AxClippedZone
{
    /// Polygons with holes, in as many pieces as it takes. One piece without points when nothing is left.
    osg::ref_ptr<osgEarth::Symbology::MultiGeometry> display;
    /// The same as one outline, for testing areas against it. Pieces and holes hang together by lines
    /// without width.
    QPolygonF outline;
    /// Lifts that were left out, each of them whole: their ring, or the zone's, crosses itself in thousands
    /// of places or the others in tens of thousands, or could not be cut.
    int unusable = 0;
};

/// Takes lifted areas out of a zone. A ring that crosses itself encloses what the even-odd rule says.
/// Thread-safe.
AXEARTHVIEWER_EXPORT AxClippedZone AxClipZone(const AxRing& zone, const std::vector<AxRing>& lifts);

AXEARTHVIEWER_EXPORT QPolygonF AxOutline(const AxRing& ring);

/// Turns a ring counter-clockwise, or clockwise; its first point stays the first.
void AxTurnRing(osgEarth::Symbology::Ring& ring, bool isCounterClockwise);
