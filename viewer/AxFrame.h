#pragma once
#include "viewer/AxKeptPicture.h"
#include "viewer/AxSceneWalk.h"
#include "viewer/AxStillRule.h"

#include <osg/Matrixd>
#include <osg/ref_ptr>
#include <osgViewer/Viewer>

#include <QSize>

#include <functional>
#include <optional>

class AxLensPicture;

/**
 * Draws the viewer's frames into an OpenGL context that Qt owns and paints
 * with as well, and knows when the picture has everything it is going to get.
 *
 * A frame has everything that osgViewer's has: its number and time, events, the
 * update traversal. What it may lack is the drawing: where AxStillRule finds that
 * nothing has changed, the picture of the last one is shown again. While tiles are
 * made for a camera that rests, some frames are left out as a whole.
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

    /// Where a frame is painted.
    enum class Target
    {
        Window,
        Elsewhere ///< a picture of the host's: always drawn anew
    };

    /// A frame of this many pixels. Context current, native painting begun. Input
    /// that waits goes on waiting: what an event sets off may open a modal box,
    /// and boxes do not open inside of a paint event.
    void Render(const QSize& pixels, Target target);
    /// A frame whose drawing can be left out, because the window shows it already.
    /// False when it has to be drawn after all: Render(), called at once, then draws
    /// this very frame. Context current.
    bool PassBy(const QSize& pixels);
    /// Whether the drawing of the next frame may be left out: that of the last one was, or the frame lacks
    /// tiles that are being made, and what its drawing costs would be taken from their making.
    bool MayPassBy() const { return isStill || isWaiting(); }
    /// Has the next frame drawn.
    void Request() { isAsked = true; }
    /// While off, every frame is drawn.
    void SetSaving(bool on) { rule.SetSaving(on); }
    bool IsSaving() const { return rule.IsSaving(); }

    /// Updates the scene and calls `draw`, which draws something else than the frame, with OpenGL's state
    /// kept for whoever has it. Context current. The next frame is drawn anew.
    void Aside(const std::function<void()>& draw);
    /// Draws this along with every frame; null for nothing. Not taken over.
    void SetLens(AxLensPicture* drawn) { lens = drawn; }

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
    bool isWaiting() const;
    osgGA::EventQueue::Events TakeWaiting();
    void Begin();
    void Advance();
    AxStillRule::Facts Look(const QSize& pixels);
    void Draw(const AxStillRule::Facts& facts);
    void TellWhy(const osg::Object* changeable);
    void CountQuiet(bool idleBefore);

    osg::ref_ptr<osgViewer::Viewer> viewer;
    osg::ref_ptr<osgViewer::GraphicsWindowEmbedded> window;
    osg::Matrixd drawnView;
    int quietFrames = 0;

    AxLensPicture* lens = nullptr;
    std::optional<AxStillRule::Facts> begun; // of a frame that is to be drawn
    AxStillRule rule;
    AxSceneWalk walk;
    AxKeptPicture picture;
    unsigned drawnFrame = 0; // its number
    double drawnAt = 0.0;    // at this time of the viewer, seconds
    bool hasRested = false;  // the camera, over the last two frames
    double tileAt = 0.0;     // the pager handed one over
    bool hadInput = false;   // since a frame was drawn
    bool isBegun = false;
    bool hasLoaded = true;  // since spare memory was given back
    double givenBack = 0.0; // at this time of the viewer, seconds
    bool isStill = false;
    bool isAsked = false;
    const osg::Object* told = nullptr; // compared, never followed
};
