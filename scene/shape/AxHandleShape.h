#pragma once

#include <osg/Geode>
#include <osg/Matrixd>
#include <osg/ref_ptr>
#include <osg/StateSet>
#include <osg/Vec4f>

namespace osgUtil {
class CullVisitor;
}

/**
 * The shape of a handle, measured in pixels: type 0 a sphere of radius `size`,
 * 1 a box of edge `size`, null for any other type. Handles that look alike
 * share one shape for as long as any of them shows it. GUI thread only.
 */
osg::ref_ptr<osg::Geode> AxHandleShape(int type, float size, const osg::Vec4f& color);

/// A state set of its own for what is drawn on top of the ground, below labels.
osg::ref_ptr<osg::StateSet> AxStateOnTop();

/// Draws a shape with its origin and axes at a place, its unit one pixel wide;
/// nothing for a place that is not in front of the eye.
void AxDrawInPixels(osgUtil::CullVisitor& cv, const osg::Matrixd& localToWorld, osg::Node& shape);
