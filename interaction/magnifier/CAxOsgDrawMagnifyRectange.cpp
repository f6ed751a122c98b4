#include "interaction/magnifier/CAxOsgDrawMagnifyRectange.h"
#include "interaction/objects/AxHandleAdapterState.h"
#include "interaction/tools/AxRubberFrame.h"
#include "scene/AxObjectBook.h"
#include "scene/AxScene.h"

#include <osgViewer/Viewer>

CAxOsgDrawMagnifyRectange::CAxOsgDrawMagnifyRectange(CAxEarthViewer* viewer, QObject* parent,
                                                     AxMagnifier& lens)
    : CAxHandleAdapter(viewer, parent), magnifier(&lens)
{
    JoinScene();
}

CAxOsgDrawMagnifyRectange::~CAxOsgDrawMagnifyRectange() = default;

int CAxOsgDrawMagnifyRectange::CheckGeometry()
{
    return from ? 1 : 0;
}

void CAxOsgDrawMagnifyRectange::SetAdapterVisible(bool visible, QString)
{
    d->visible = visible;
}

void CAxOsgDrawMagnifyRectange::ClearPoints()
{
    from.reset();
    frame.reset();
}

std::optional<osg::Vec2d> CAxOsgDrawMagnifyRectange::inPicture(float windowX, float windowY) const
{
    const osg::Viewport* port = d->viewer ? d->viewer->Scene().View()->getCamera()->getViewport() : nullptr;
    if (!port || !(port->width() > 0.0) || !(port->height() > 0.0))
        return std::nullopt;
    return osg::Vec2d(2.0 * static_cast<double>(windowX) / port->width() - 1.0,
                      2.0 * static_cast<double>(windowY) / port->height() - 1.0);
}

void CAxOsgDrawMagnifyRectange::slotMousePressed(float windowX, float windowY)
{
    if (d->operation != OperationDrawing)
        return;
    from = inPicture(windowX, windowY);
    if (from)
        to = *from;
}

void CAxOsgDrawMagnifyRectange::drawTo(float windowX, float windowY)
{
    if (const auto place = inPicture(windowX, windowY))
        to = *place;
}

void CAxOsgDrawMagnifyRectange::slotDragging(float windowX, float windowY)
{
    if (d->operation != OperationDrawing || !from || !d->viewer)
        return;
    drawTo(windowX, windowY);
    if (!frame)
        frame = std::make_unique<AxRubberFrame>(d->viewer->Widget());
    frame->Show(*from, to);
}

// Comes at the end of a drag alone, not of a click. One that hit an overlay is told at no place.
void CAxOsgDrawMagnifyRectange::slotMouseRelease(float windowX, float windowY)
{
    if (d->operation != OperationDrawing || !from)
        return;
    if (windowX != 0.0f || windowY != 0.0f)
        drawTo(windowX, windowY);
    finish();
}

void CAxOsgDrawMagnifyRectange::slotPicked(osg::Vec3d, osg::Vec3d)
{
    if (d->operation == OperationDrawing && from)
        finish();
}

void CAxOsgDrawMagnifyRectange::finish()
{
    const Running self(this);
    EndHandle();
    if (self.IsGone())
        return;
    emit signalHandleEnd(QString(), false);
    if (!self.IsGone())
        emit signalHandlePickEnded(ToolMagnifier);
}

void CAxOsgDrawMagnifyRectange::EndHandle()
{
    if (d->operation != OperationDrawing)
        return;
    const Running self(this);
    if (from && magnifier)
        magnifier->Look(*from, to);
    if (!self.IsGone())
        leave();
}

bool CAxOsgDrawMagnifyRectange::CancelHandle()
{
    if (d->operation != OperationDrawing)
        return false;
    const Running self(this);
    leave();
    if (self.IsGone())
        return true;
    emit signalHandleEnd(QString(), false);
    if (!self.IsGone())
        emit signalHandlePickEnded(ToolMagnifier);
    return true;
}

void CAxOsgDrawMagnifyRectange::leave()
{
    d->operation = OperationIdle;
    d->mouseState = 0;
    frame.reset();
    if (d->viewer)
        d->viewer->Objects().Remove(this, false);
}
