#pragma once
#include "analysis/sight/AxLineOfSight.h"
#include "analysis/sight/AxViewshed.h"

#include <AxData/geofiles/AxGeoRaster.h>

#include <osg/Group>
#include <osg/ref_ptr>
#include <osgEarth/ImageLayer>

#include <QString>

#include <memory>

class AxScene;

/// Draws a line of sight below a node, in place of the one that it shows: over the ground, green, and red
/// from where it is hidden on, grey where that is not known, with a dark rim; a mast at each end, an eye with
/// the name at the first one, and the finding beside the second. GUI thread, with a map.
void AxDrawSightLine(osg::Group& node, const AxScene& scene, const AxSightLine& line, const QString& name);

/// Draws the observer of a viewshed below an empty node: a mast, and an eye with the name. GUI thread, with a
/// map.
void AxDrawObserver(osg::Group& node, const AxScene& scene, const AxViewshed& viewshed, const QString& name);

/// The picture of a viewshed for the map. Any thread.
std::shared_ptr<const AxGeoPicture> AxViewshedPicture(const AxViewshed& viewshed);

/// A layer that lays such a picture on the ground of a map (analysis/AxPictureLayer.h). Null without one.
osg::ref_ptr<osgEarth::ImageLayer> AxViewshedLayer(const std::shared_ptr<const AxGeoPicture>& picture,
                                                   const QString& name);
