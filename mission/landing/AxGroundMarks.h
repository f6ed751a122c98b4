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

/// The look of a text in a size in pixels that is never left out for another, centred on its place.
osgEarth::Symbology::Style AxGroundTextStyle(const osgEarth::Symbology::Color& fill,
                                             const osgEarth::Symbology::Color& halo);

/// A text at a place, dynamic.
osg::ref_ptr<osgEarth::Annotation::LabelNode> AxGroundLabel(const AxScene& scene,
                                                            const osgEarth::GeoPoint& place,
                                                            const QString& text,
                                                            const osgEarth::Symbology::Style& style);

/// Takes a node out of every group that it is in.
void AxLeaveGroups(osg::Node* node);
