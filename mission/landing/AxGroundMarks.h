#pragma once
#include <AxAlgorthm/CAxVector3D.h>

#include <osg/ref_ptr>
#include <osgEarth/GeoData>
#include <osgEarthAnnotation/LabelNode>
#include <osgEarthSymbology/Style>

#include <QString>

class AxScene;

// What the marks on the ground of this room share. GUI thread.

/// A place (latitude, longitude, altitude; degrees, degrees, metres) in the map's reference system. Invalid
/// without a map, and for what is no place on the globe.
osgEarth::GeoPoint AxPlaceOnMap(const AxScene& scene, const CAxVector3D& latLngAlt);

/// Painted onto the terrain, filled and outlined in a colour.
osgEarth::Symbology::Style AxDrapedStyle(const osgEarth::Symbology::Color& color, float fillAlpha);

/// A text that stands at a place of the ground in a size in pixels and is never left out for another.
osg::ref_ptr<osgEarth::Annotation::LabelNode> AxGroundLabel(const AxScene& scene,
                                                            const osgEarth::GeoPoint& place,
                                                            const QString& text,
                                                            const osgEarth::Symbology::Color& fill);

/// Takes a node out of every group that it is in.
void AxLeaveGroups(osg::Node* node);
