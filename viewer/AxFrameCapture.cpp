#include "viewer/AxFrameCapture.h"

#include <osg/GL>
#include <osg/Image>
#include <osgViewer/GraphicsWindow>

#include <algorithm>
#include <cstring>

QImage AxImageFromBottomUpRows(const unsigned char* rows, int width, int height)
{
    if (!rows || width < 1 || height < 1)
        return {};
    const std::size_t rowBytes = static_cast<std::size_t>(width) * 3;
    const std::size_t rowCount = static_cast<std::size_t>(height);
    auto* flipped = new uchar[rowBytes * rowCount];
    for (std::size_t row = 0; row < rowCount; ++row)
        std::memcpy(flipped + row * rowBytes, rows + (rowCount - 1 - row) * rowBytes, rowBytes);
    return QImage(
        flipped, width, height, width * 3, QImage::Format_RGB888,
        [](void* buffer) { delete[] static_cast<uchar*>(buffer); }, flipped);
}

QImage AxCaptureBuffer(osgViewer::GraphicsWindowEmbedded& window, unsigned buffer)
{
    const osg::GraphicsContext::Traits* traits = window.getTraits();
    if (!traits || traits->width < 1 || traits->height < 1)
        return {};
    GLint readBuffer = GL_BACK;
    glGetIntegerv(GL_READ_BUFFER, &readBuffer);
    glReadBuffer(buffer);
    osg::ref_ptr<osg::Image> image = new osg::Image;
    image->readPixels(0, 0, traits->width, traits->height, GL_RGB, GL_UNSIGNED_BYTE, 1);
    glReadBuffer(static_cast<GLenum>(readBuffer));
    return AxImageFromBottomUpRows(image->data(), image->s(), image->t());
}

bool AxIsBlack(const QImage& image)
{
    return std::all_of(image.constBits(), image.constBits() + image.sizeInBytes(),
                       [](uchar byte) { return byte == 0; });
}
