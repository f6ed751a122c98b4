#pragma once
#include "viewer/AxEarthViewerExport.h"

#include <QImage>

namespace osgViewer {
class GraphicsWindowEmbedded;
}

/// The picture of a frame buffer's rows as OpenGL hands them over (three bytes
/// a pixel, no padding, bottom row first), turned the right way up. The image
/// owns its bytes. A null image when width or height is below 1.
AXEARTHVIEWER_EXPORT QImage AxImageFromBottomUpRows(const unsigned char* rows, int width, int height);

/// Reads the front buffer, as large as the window's traits say. The OpenGL
/// context must be current.
QImage AxCaptureFrontBuffer(osgViewer::GraphicsWindowEmbedded& window);
