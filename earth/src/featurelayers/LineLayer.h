#pragma once
#include "featurelayers/LineWork.h"
#include <osg/Group>
#include <osg/observer_ptr>
#include <osgEarth/Map>
#include <osgEarthSymbology/Style>

namespace osgEarth::Features {
/// Thin lines all over the globe, drawn as coarse as their distance allows:
/// squares of four sizes, the finer ones made in the background when they
/// come near. The lines follow the heights of the map's elevation data where
/// the style clamps them, and are drawn a little nearer to the eye than they
/// are, so that they neither fight with nor sink below the ground.
///
/// Builds the coarsest squares; for a background thread.
osg::ref_ptr<osg::Node> makeLineLayer(const FeatureList& lonLatFeatures, const Symbology::Style& style,
                                      const osg::observer_ptr<const Map>& map);
} // namespace osgEarth::Features
