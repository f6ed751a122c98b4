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

WindowCaptureCallback::WindowCaptureCallback(Take hears, const QRect& wanted)
    : take(std::move(hears)), part(wanted)
{
}

void WindowCaptureCallback::operator()(osg::RenderInfo& info) const
{
    const osg::Camera* camera = info.getCurrentCamera();
    const osg::Viewport* port = camera ? camera->getViewport() : nullptr;
    QRect read = part;
    if (read.isNull() && port)
        read = QRect(static_cast<int>(port->x()), static_cast<int>(port->y()),
                     static_cast<int>(port->width()), static_cast<int>(port->height()));
    if (!take || read.isEmpty())
        return;
    // As frame buffers have it: read in three bytes a pixel it would be converted one by one.
    QImage upsideDown(read.size(), QImage::Format_RGB32);
    if (upsideDown.isNull())
        return;
    GLint packing = 4;
    glGetIntegerv(GL_PACK_ALIGNMENT, &packing);
    glPixelStorei(GL_PACK_ALIGNMENT, 4);
    glReadPixels(read.x(), read.y(), read.width(), read.height(), GL_BGRA, GL_UNSIGNED_INT_8_8_8_8_REV,
                 upsideDown.bits());
    glPixelStorei(GL_PACK_ALIGNMENT, packing);
    take(upsideDown.convertToFormat(QImage::Format_RGB888).mirrored());
}
