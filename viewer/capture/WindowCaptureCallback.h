#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <osg/Camera>

#include <QImage>
#include <QRect>

#include <functional>

/**
 * Reads what a camera has drawn, as its final draw callback, and hands the picture over: three bytes a pixel,
 * the upper row first, as large as the camera's viewport. Set on the camera of a viewer it is called with
 * every frame that is drawn, and has every frame drawn; what Qt paints over the map is not in it.
 *
 * Called on the thread that draws, with the context current.
 */
class AXEARTHVIEWER_EXPORT WindowCaptureCallback : public osg::Camera::DrawCallback
{
public:
    /// Given each frame.
    using Take = std::function<void(const QImage& picture)>;
    /// Hands the frames to that function, or of each only a part: pixels from the lower left one of what is
    /// drawn into, y upwards (top() is the lower edge).
    explicit WindowCaptureCallback(Take take, const QRect& part = {});

    void operator()(osg::RenderInfo& info) const override;

private:
    const Take take;
    const QRect part;
};
