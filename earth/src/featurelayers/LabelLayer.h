#pragma once
#include <osg/Node>
#include <osg/observer_ptr>
#include <osgEarth/Map>
#include <osgEarthFeatures/Feature>
#include <osgEarthSymbology/Style>

namespace osgEarth::Features {
/// Names of places, written on the screen beside a dot: one drawable a layer,
/// only its most important labels, none that the globe hides or another label
/// overlaps. Safe on a background thread.
osg::ref_ptr<osg::Node> makeLabelLayer(const FeatureList& lonLatFeatures, const Symbology::Style& style,
                                       const osg::observer_ptr<const Map>& map);
} // namespace osgEarth::Features
