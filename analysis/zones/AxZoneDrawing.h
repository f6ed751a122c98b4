#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <osg/Node>
#include <osg/ref_ptr>
#include <osg/Vec3d>
#include <osg/Vec4f>
#include <osgEarth/SpatialReference>
#include <osgEarthSymbology/Geometry>

#include <string>

// Nodes for an osgEarth::DrapeableNode, which lays them on the ground. Areas are
// in degrees, longitude and latitude; longitudes of a ring go on past 180 where
// it crosses the antimeridian. Points that are not on the globe are left out.
// Pure functions: any thread may make a node, and hangs it into the scene where
// scenes are changed.

struct AxAreaColors
{
    osg::Vec4f fill;
    osg::Vec4f outline;
    float outlineWidth = 2.0f; ///< pixels
};

/// Translucent yellow with an opaque red outline.
AXEARTHVIEWER_EXPORT AxAreaColors AxZoneColors();

/// A polygon or several, holes left free: filled and outlined. Shapes of equal colours below one
/// DrapeableNode are drawn as one, so that their overlap is tinted once. Without points: an empty node.
AXEARTHVIEWER_EXPORT osg::ref_ptr<osg::Node> AxDrawArea(const osgEarth::Symbology::Geometry& area,
                                                        const osgEarth::SpatialReference& srs,
                                                        const AxAreaColors& colors);

/// A line through points. Without two different points: an empty node.
AXEARTHVIEWER_EXPORT osg::ref_ptr<osg::Node> AxDrawLine(const osgEarth::Symbology::Geometry& line,
                                                        const osgEarth::SpatialReference& srs,
                                                        const osg::Vec4f& color, float width);

/// A zone as a fan from its centre through its polygon's points, if it is a
/// shape that can be drawn so; otherwise as DrawNoflyZone() does. The node is
/// named `id`.
AXEARTHVIEWER_EXPORT osg::ref_ptr<osg::Node> DrawNoflyZonerCircle(const std::string& id,
                                                                  const osg::Vec3d& centre,
                                                                  const osgEarth::Symbology::Polygon& polygon,
                                                                  const osgEarth::SpatialReference& srs);

/// A zone in as many pieces as it has. The node is named `id`.
AXEARTHVIEWER_EXPORT osg::ref_ptr<osg::Node> DrawNoflyZone(const std::string& id,
                                                           const osgEarth::Symbology::Geometry& pieces,
                                                           const osgEarth::SpatialReference& srs);

/// A zone by what is known of it. `pieces` is what lifts leave of its polygon:
/// null or without components when it has none, one component without points
/// when nothing is left. Whole zones of fewer than 74 points are fans.
AXEARTHVIEWER_EXPORT osg::ref_ptr<osg::Node> AxDrawZone(const std::string& id, const osg::Vec3d& centre,
                                                        const osgEarth::Symbology::Polygon& polygon,
                                                        const osgEarth::Symbology::MultiGeometry* pieces,
                                                        const osgEarth::SpatialReference& srs);
