#include "viewer/capture/WindowCaptureCallback.h"

#include <osg/GL>
#include <osg/RenderInfo>
#include <osg/Viewport>

#include <utility>

WindowCaptureCallback::WindowCaptureCallback(Take hears) : take(std::move(hears)) {}

void WindowCaptureCallback::operator()(osg::RenderInfo& info) const
{
    const osg::Camera* camera = info.getCurrentCamera();
    const osg::Viewport* port = camera ? camera->getViewport() : nullptr;
    const int width = port ? static_cast<int>(port->width()) : 0;
    const int height = port ? static_cast<int>(port->height()) : 0;
    if (!take || width < 1 || height < 1)
        return;
    // Rows of a QImage begin at multiples of four bytes, as OpenGL's do unless it is told otherwise.
    QImage upsideDown(width, height, QImage::Format_RGB888);
    if (upsideDown.isNull())
        return;
    GLint packing = 4;
    glGetIntegerv(GL_PACK_ALIGNMENT, &packing);
    glPixelStorei(GL_PACK_ALIGNMENT, 4);
    glReadPixels(static_cast<GLint>(port->x()), static_cast<GLint>(port->y()), width, height, GL_RGB,
                 GL_UNSIGNED_BYTE, upsideDown.bits());
    glPixelStorei(GL_PACK_ALIGNMENT, packing);
    take(upsideDown.mirrored());
}
