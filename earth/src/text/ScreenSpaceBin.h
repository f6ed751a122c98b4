#pragma once
#include <optional>
#include <osg/Matrixd>
#include <osg/Vec2d>

namespace osgEarth {
/// Where the origin comes to lie on the screen, -1 to 1 across and upwards;
/// nothing when even something large that is drawn around it is not in view.
std::optional<osg::Vec2d> originOnScreen(const osg::Matrixd& modelview, const osg::Matrixd& projection);

/// Makes the render bin OSGEARTH_SCREEN_SPACE_LAYOUT_BIN known to the renderer.
/// The library does so when it is loaded; calling it again changes nothing.
void registerScreenSpaceBin();
} // namespace osgEarth
