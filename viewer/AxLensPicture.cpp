#include "viewer/AxLensPicture.h"
#include "interaction/magnifier/AxMagnifier.h"

#include <osg/GLExtensions>
#include <osg/State>

#include <QHash>

AxLensPicture::AxLensPicture(const AxMagnifier& lens, osgViewer::Viewer& of,
                             osgViewer::GraphicsWindowEmbedded& in)
    : magnifier(lens), viewer(of), window(in), eye(of)
{
}

std::size_t AxLensPicture::Fingerprint() const
{
    if (!magnifier.IsOpen())
        return 0;
    const QRectF at = magnifier.Frame();
    std::size_t hash = 1;
    for (const double value : {at.x(), at.y(), at.width(), at.height(), magnifier.Factor()})
        hash = hash * 31 + qHash(value);
    return hash;
}

// In the pixels of the camera's viewport, y upwards.
QRect AxLensPicture::frame() const
{
    const osg::Viewport* port = viewer.getCamera()->getViewport();
    const QRectF lens = magnifier.Frame();
    const QSizeF map = magnifier.MapSize();
    if (!port || map.isEmpty())
        return {};
    const double x = port->width() / map.width();
    const double y = port->height() / map.height();
    return {qRound(port->x() + lens.left() * x), qRound(port->y() + (map.height() - lens.bottom()) * y),
            qRound(lens.width() * x), qRound(lens.height() * y)};
}

void AxLensPicture::DrawBefore()
{
    if (!magnifier.IsOpen())
        return Release();
    const auto part = magnifier.Part();
    const QRect at = frame();
    if (!part || at.isEmpty())
        return picture.Forget();
    const osg::Camera& camera = *viewer.getCamera();
    eye.Draw({camera.getViewMatrix(), AxPartOfProjection(camera.getProjectionMatrix(), *part),
              QRect(QPoint(), at.size())});
    picture.Take(at.size());
    // It has bound a texture of its own.
    window.getState()->dirtyAllAttributes();
}

void AxLensPicture::Release()
{
    picture.Release();
    eye.Drop();
}

void AxLensPicture::ShowAfter()
{
    const QRect at = frame();
    if (!magnifier.IsOpen() || !picture.IsFor(at.size()))
        return;
    osg::State& state = *window.getState();
    state.disableAllVertexArrays();
    state.unbindVertexBufferObject();
    state.unbindElementBufferObject();
    state.setActiveTextureUnit(0);
    state.setClientActiveTextureUnit(0);
    state.get<osg::GLExtensions>()->glUseProgram(0);
    picture.Show(at.topLeft());
}
