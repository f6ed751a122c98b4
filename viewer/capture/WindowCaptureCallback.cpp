#include "viewer/capture/WindowCaptureCallback.h"

#include <osg/GL>
#include <osg/RenderInfo>
#include <osg/Viewport>

#include <utility>

#ifndef GL_BGRA
#define GL_BGRA 0x80E1
#endif
#ifndef GL_UNSIGNED_INT_8_8_8_8_REV
#define GL_UNSIGNED_INT_8_8_8_8_REV 0x8367
#endif

WindowCaptureCallback::WindowCaptureCallback(Take hears) : take(std::move(hears)) {}

void WindowCaptureCallback::operator()(osg::RenderInfo& info) const
{
    const osg::Camera* camera = info.getCurrentCamera();
    const osg::Viewport* port = camera ? camera->getViewport() : nullptr;
    const int width = port ? static_cast<int>(port->width()) : 0;
    const int height = port ? static_cast<int>(port->height()) : 0;
    if (!take || width < 1 || height < 1)
        return;
    // As frame buffers have it: read in three bytes a pixel it would be converted one by one.
    QImage upsideDown(width, height, QImage::Format_RGB32);
    if (upsideDown.isNull())
        return;
    GLint packing = 4;
    glGetIntegerv(GL_PACK_ALIGNMENT, &packing);
    glPixelStorei(GL_PACK_ALIGNMENT, 4);
    glReadPixels(static_cast<GLint>(port->x()), static_cast<GLint>(port->y()), width, height, GL_BGRA,
                 GL_UNSIGNED_INT_8_8_8_8_REV, upsideDown.bits());
    glPixelStorei(GL_PACK_ALIGNMENT, packing);
    take(upsideDown.convertToFormat(QImage::Format_RGB888).mirrored());
}
