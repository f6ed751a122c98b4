#pragma once

namespace osgEarth {
/// Makes the render bin OSGEARTH_SCREEN_SPACE_LAYOUT_BIN known to the renderer.
/// The library does so when it is loaded; calling it again changes nothing.
void registerScreenSpaceBin();
} // namespace osgEarth
