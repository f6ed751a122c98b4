#pragma once
#include <osg/Geode>
#include <osgEarthSymbology/Geometry>
#include <osgEarthSymbology/Style>

namespace osgEarth::Features {
/// Fill and outline of a shape as the style says, points taken as they are in
/// single precision: keep them near the origin. Null when the style draws
/// nothing of it that could be seen. Lines without a line symbol and fills
/// without a polygon symbol are not drawn.
osg::ref_ptr<osg::Node> makeShape(const Symbology::Geometry& shape, const Symbology::Style& style);
} // namespace osgEarth::Features
