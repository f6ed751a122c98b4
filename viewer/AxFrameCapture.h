#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <QImage>

namespace osgViewer {
class GraphicsWindowEmbedded;
}

/// The picture of a frame buffer's rows as OpenGL hands them over (three bytes
/// a pixel, no padding, bottom row first), turned the right way up. The image
/// owns its bytes. A null image when width or height is below 1.
AXEARTHVIEWER_EXPORT QImage AxImageFromBottomUpRows(const unsigned char* rows, int width, int height);

/// Reads a colour buffer (GL_FRONT or GL_BACK), as large as the window's traits
/// say. The OpenGL context must be current.
QImage AxCaptureBuffer(osgViewer::GraphicsWindowEmbedded& window, unsigned buffer);

/// True for a picture without a single lit pixel, and for none at all.
bool AxIsBlack(const QImage& image);
