#pragma once

#include <osg/CoordinateSystemNode>
#include <osg/MatrixTransform>

namespace osgEarth::Util {
/// The nodes of which a sky is made. They are drawn before all else, at no
/// distance: only the direction of the view counts, and for the atmosphere the
/// place of the eye, which the shaders take from the view matrix themselves.
osg::Group* makeBackground();

/// About 1800 points; turn it by the sidereal angle.
osg::MatrixTransform* makeStars(const osg::EllipsoidModel& ellipsoid);
/// A disc in the direction of its z axis.
osg::MatrixTransform* makeSun();
osg::MatrixTransform* makeMoon();
/// The rim seen from space, and the daylight dome seen from near the ground.
osg::Node* makeAtmosphere(const osg::EllipsoidModel& ellipsoid);
} // namespace osgEarth::Util
