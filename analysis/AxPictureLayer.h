#pragma once
#include <AxData/geofiles/AxGeoRaster.h>

#include <osg/ref_ptr>
#include <osgEarth/ImageLayer>

#include <QString>

#include <functional>
#include <memory>

/// A layer that lays a picture on the ground of a map, in the ground's own pictures: as sharp as they are
/// from anywhere, and without cost in a frame. It keeps the picture. Null without one. Opacity is 0 to 1.
osg::ref_ptr<osgEarth::ImageLayer> AxPictureLayer(const std::shared_ptr<const AxGeoPicture>& picture,
                                                  const QString& name, float opacity);

/// How many pixels wide a cell of a picture is best: between pixels the map blends, so cells are made of
/// several as long as that is not too much.
int AxPixelsOfCell(int columns, int rows);
