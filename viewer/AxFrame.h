#pragma once
#include <osg/Matrixd>
#include <osg/ref_ptr>
#include <osgViewer/Viewer>

/**
 * Draws the viewer's frames into an OpenGL context that Qt owns and paints
 * with as well, and knows when the picture has everything it is going to get.
 *
 * Both sides of the shared context keep a private picture of its state. Qt
 * resynchronises with what QPainter::beginNativePainting documents and no
 * more, so whatever else a frame touches is put back behind it: attributes,
 * client arrays and pixel storage, matrices, program, vertex array and buffer
 * bindings. osg in turn applies only what differs from what it set last, so
 * before a frame its memory of modes, attributes, arrays and program is
 * declared stale; otherwise it skips settings that Qt changed in between (the
 * visible symptoms are overlay texts that vanish and untextured terrain).
 *
 * GUI thread only; every call that says so needs the context current.
 */
class AxFrame
{
public:
    AxFrame(osgViewer::Viewer* viewer, osgViewer::GraphicsWindowEmbedded* window);

    /// Renders one frame. Context current, native painting begun. Input that
    /// waits goes on waiting: what an event sets off may open a modal box, and
    /// boxes do not open inside of a paint event.
    void Render();

    /// Whether mouse or key events wait to be handed to the scene.
    bool HasInput() const;
    /// Hands them to the scene, as the event traversal of a frame would. Not from
    /// within Render(); frames may be rendered while it runs.
    void TakeInput();

    /// Stops the loading threads and gives back every OpenGL object. Context
    /// current. Nothing may be rendered afterwards.
    void Release();

    /// True when the last frames were drawn from the present camera position
    /// and nothing was waiting to be loaded, compiled or merged meanwhile.
    bool IsPictureComplete() const;

private:
    bool IsPagerIdle() const;

    osg::ref_ptr<osgViewer::Viewer> viewer;
    osg::ref_ptr<osgViewer::GraphicsWindowEmbedded> window;
    osg::Matrixd drawnView;
    int quietFrames = 0;
};
