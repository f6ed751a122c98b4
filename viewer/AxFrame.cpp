#include "viewer/AxFrame.h"
#include "scene/base/AxViewerLog.h"
#include "viewer/AxLensPicture.h"
#include "viewer/AxSpareMemory.h"
#include "viewer/AxWaitRule.h"

#include <osg/GLExtensions>
#include <osg/State>
#include <osgDB/DatabasePager>
#include <osgGA/CameraManipulator>

#include <cmath>
#include <limits>

#ifndef GL_VERTEX_ARRAY_BINDING
#define GL_VERTEX_ARRAY_BINDING 0x85B5
#endif

namespace {
// A merged tile asks for its children in the next frame and they are requested
// in the one after: three quiet frames in a row mean that nobody asks any more.
constexpr int framesToSettle = 3;
// Spare memory is given back so many seconds apart: tiles of a slow network come one by one.
constexpr double secondsBetweenGivings = 1.0;

// What Qt's painter does not restore by itself after native painting.
class SavedGlState
{
public:
    explicit SavedGlState(osg::State& osgState) : state(osgState)
    {
        if (!state.get<osg::GLExtensions>())
            state.initializeExtensionProcs();
        glGetIntegerv(GL_CURRENT_PROGRAM, &program);
        glGetIntegerv(GL_VERTEX_ARRAY_BINDING, &vertexArray);
        glGetIntegerv(GL_ARRAY_BUFFER_BINDING_ARB, &arrayBuffer);
        glGetIntegerv(GL_ELEMENT_ARRAY_BUFFER_BINDING_ARB, &elementBuffer);
        glPushAttrib(GL_ALL_ATTRIB_BITS);
        glPushClientAttrib(GL_CLIENT_ALL_ATTRIB_BITS);
        glMatrixMode(GL_PROJECTION);
        glPushMatrix();
        glMatrixMode(GL_MODELVIEW);
        glPushMatrix();

        auto* gl = state.get<osg::GLExtensions>();
        gl->glUseProgram(0);
        gl->glBindVertexArray(0);
        gl->glBindBuffer(GL_ARRAY_BUFFER_ARB, 0);
        gl->glBindBuffer(GL_ELEMENT_ARRAY_BUFFER_ARB, 0);
        gl->glActiveTexture(GL_TEXTURE0);
        gl->glClientActiveTexture(GL_TEXTURE0);
        state.dirtyAllModes();
        state.dirtyAllAttributes();
        state.dirtyAllVertexArrays();
        state.setLastAppliedProgramObject(nullptr);
    }

    ~SavedGlState()
    {
        state.disableAllVertexArrays();
        state.unbindVertexBufferObject();
        state.unbindElementBufferObject();
        state.unbindPixelBufferObject();
        state.setActiveTextureUnit(0);
        state.setClientActiveTextureUnit(0);

        auto* gl = state.get<osg::GLExtensions>();
        gl->glUseProgram(static_cast<GLuint>(program));
        gl->glBindVertexArray(static_cast<GLuint>(vertexArray));
        gl->glBindBuffer(GL_ARRAY_BUFFER_ARB, static_cast<GLuint>(arrayBuffer));
        gl->glBindBuffer(GL_ELEMENT_ARRAY_BUFFER_ARB, static_cast<GLuint>(elementBuffer));
        glMatrixMode(GL_PROJECTION);
        glPopMatrix();
        glMatrixMode(GL_MODELVIEW);
        glPopMatrix();
        glPopClientAttrib();
        glPopAttrib();
    }

    SavedGlState(const SavedGlState&) = delete;
    SavedGlState& operator=(const SavedGlState&) = delete;

private:
    osg::State& state;
    GLint program = 0;
    GLint vertexArray = 0;
    GLint arrayBuffer = 0;
    GLint elementBuffer = 0;
};
} // namespace

AxFrame::AxFrame(osgViewer::Viewer* osgViewer, osgViewer::GraphicsWindowEmbedded* graphicsWindow)
    : viewer(osgViewer), window(graphicsWindow)
{
}

osgGA::EventQueue::Events AxFrame::TakeWaiting()
{
    osgGA::EventQueue::Events waiting;
    window->getEventQueue()->takeEvents(waiting, std::numeric_limits<double>::max());
    return waiting;
}

// The first frame makes the viewer ready, which nothing else does.
void AxFrame::Begin()
{
    isBegun = true;
    osgGA::EventQueue::Events waiting = TakeWaiting();
    viewer->frame(USE_REFERENCE_TIME);
    window->getEventQueue()->appendEvents(waiting);
    drawnFrame = viewer->getFrameStamp()->getFrameNumber();
}

// All of a frame but the drawing.
void AxFrame::Advance()
{
    osgGA::EventQueue::Events waiting = TakeWaiting();
    viewer->advance(USE_REFERENCE_TIME);
    viewer->eventTraversal();
    // Tiles that were not looked at in the last frame are dropped when there are
    // many. Those of a picture that is only kept were not looked at, but are shown.
    osgDB::DatabasePager* pager = viewer->getDatabasePager();
    const bool wasDrawn = viewer->getFrameStamp()->getFrameNumber() == drawnFrame + 1;
    const unsigned most = pager ? pager->getTargetMaximumNumberOfPageLOD() : 0;
    if (pager && !wasDrawn)
        pager->setTargetMaximumNumberOfPageLOD(std::numeric_limits<int>::max());
    viewer->updateTraversal();
    if (pager && !wasDrawn)
        pager->setTargetMaximumNumberOfPageLOD(most);
    window->getEventQueue()->appendEvents(waiting);
}

AxStillRule::Facts AxFrame::Look(const QSize& pixels)
{
    AxStillRule::Facts facts;
    facts.seconds = viewer->elapsedTime();
    facts.isAsked = isAsked || viewer->getRequestRedraw() || viewer->getRequestContinousUpdate();
    // A camera that moves is known without looking at every node.
    facts.isLoading = !IsPagerIdle() || viewer->getCamera()->getViewMatrix() != drawnView;
    if (!rule.IsSaving() || facts.isLoading)
        return facts;
    walk.Look(*viewer);
    facts.mayChange = walk.Changeable() != nullptr;
    facts.fingerprint = walk.Fingerprint() ^ (static_cast<std::size_t>(pixels.width()) << 16) ^
                        static_cast<std::size_t>(pixels.height()) ^ (lens ? lens->Fingerprint() : 0);
    TellWhy(walk.Changeable());
    return facts;
}

// Whoever wonders why a globe at rest costs so much is told what it is waiting for.
void AxFrame::TellWhy(const osg::Object* changeable)
{
    if (changeable == told)
        return;
    told = changeable;
    if (changeable)
        qCDebug(axViewerLog) << "every frame is drawn, because this may change without being seen:"
                             << changeable->libraryName() << changeable->className()
                             << changeable->getName().c_str();
}

void AxFrame::Draw(const AxStillRule::Facts& facts)
{
    if (lens)
        lens->DrawBefore();
    viewer->renderingTraversals();
    if (lens)
        lens->ShowAfter();
    drawnFrame = viewer->getFrameStamp()->getFrameNumber();
    drawnAt = viewer->elapsedTime();
    hadInput = false;
    rule.Drawn(facts);
    isAsked = false;
}

void AxFrame::CountQuiet(bool idleBefore)
{
    const osg::Matrixd view = viewer->getCamera()->getViewMatrix();
    const bool idle = idleBefore && IsPagerIdle();
    const osgDB::DatabasePager* pager = viewer->getDatabasePager();
    if (idle || (pager && pager->getDataToMergeListSize() > 0))
        tileAt = viewer->elapsedTime();
    hasRested = view == drawnView;
    quietFrames = idle && hasRested ? quietFrames + 1 : 0;
    drawnView = view;
    hasLoaded = hasLoaded || !idle;
    // Making tiles and reading zones needs 30 MB for a while, in pieces all over the heap.
    const double now = viewer->elapsedTime();
    if (quietFrames >= framesToSettle && hasLoaded && std::abs(now - givenBack) > secondsBetweenGivings) {
        hasLoaded = false;
        givenBack = now;
        AxGiveBackSpareMemory();
    }
}

void AxFrame::Render(const QSize& pixels, Target target)
{
    const bool idleBefore = IsPagerIdle();
    const SavedGlState saved(*window->getState());
    if (!isBegun) {
        Begin();
        return CountQuiet(idleBefore);
    }
    if (!begun)
        Advance();
    const AxStillRule::Facts facts = begun ? *begun : Look(pixels);
    begun.reset();
    if (target == Target::Elsewhere) {
        // The window does not show what was drawn there.
        Draw(facts);
        return Request();
    }
    isStill = !rule.MustDraw(facts);
    const bool isKept = picture.IsFor(pixels);
    if (isStill && isKept) {
        picture.Show();
    } else {
        const bool isSame = !rule.IsChange(facts);
        Draw(facts);
        // What is drawn although nothing has changed is wanted again soon.
        if (isSame && (isStill || isKept))
            picture.Take(pixels);
        else
            picture.Forget();
    }
    CountQuiet(idleBefore);
}

void AxFrame::Aside(const std::function<void()>& draw)
{
    const SavedGlState saved(*window->getState());
    if (!isBegun)
        Begin();
    Advance();
    begun.reset();
    draw();
    // What this has looked at counts as looked at.
    drawnFrame = viewer->getFrameStamp()->getFrameNumber();
    Request();
}

bool AxFrame::isWaiting() const
{
    const osgDB::DatabasePager* pager = viewer->getDatabasePager();
    if (!pager || !isBegun || !rule.IsSaving())
        return false;
    const osgGA::CameraManipulator* manipulator = viewer->getCameraManipulator();
    AxWaitFacts facts;
    facts.isResting = hasRested && (!manipulator || manipulator->getInverseMatrix() == drawnView);
    facts.hadInput = hadInput;
    facts.isAsked = isAsked || viewer->getRequestRedraw() || viewer->getRequestContinousUpdate();
    facts.wanted = pager->getFileRequestListSize();
    facts.isUnderWay = pager->getRequestsInProgress();
    facts.made = pager->getDataToCompileListSize() + pager->getDataToMergeListSize();
    facts.now = viewer->elapsedTime();
    facts.drawnAt = drawnAt;
    facts.lastTileAt = tileAt;
    return AxMayWaitForTiles(facts);
}

bool AxFrame::PassBy(const QSize& pixels)
{
    if (!isBegun)
        return false;
    // Nothing advances: a request that the pager finds to be of an older frame is dropped.
    if (isWaiting())
        return true;
    const bool idleBefore = IsPagerIdle();
    Advance();
    const AxStillRule::Facts facts = Look(pixels);
    isStill = !rule.MustDraw(facts);
    if (isStill)
        CountQuiet(idleBefore);
    else
        begun = facts;
    return isStill;
}

bool AxFrame::HasInput() const
{
    return !window->getEventQueue()->empty();
}

void AxFrame::TakeInput()
{
    if (viewer->done())
        return;
    // Events newer than the frame's time would be left for the next one.
    viewer->getViewerFrameStamp()->setReferenceTime(viewer->elapsedTime());
    hadInput = true;
    const osg::ref_ptr<osgViewer::Viewer> kept = viewer;
    kept->eventTraversal();
}

bool AxFrame::IsPagerIdle() const
{
    const osgDB::DatabasePager* pager = viewer->getDatabasePager();
    return !pager || !(pager->getRequestsInProgress() || pager->getFileRequestListSize() > 0 ||
                       pager->getDataToCompileListSize() > 0 || pager->getDataToMergeListSize() > 0);
}

bool AxFrame::IsPictureComplete() const
{
    if (quietFrames < framesToSettle || !IsPagerIdle())
        return false;
    const osgGA::CameraManipulator* manipulator = viewer->getCameraManipulator();
    return !manipulator || manipulator->getInverseMatrix() == drawnView;
}

void AxFrame::Release()
{
    picture.Release();
    if (osgDB::DatabasePager* pager = viewer->getDatabasePager())
        pager->cancel();
    viewer->stopThreading();
    if (osg::Node* scene = viewer->getSceneData())
        scene->releaseGLObjects(window->getState());
    viewer->getCamera()->releaseGLObjects(window->getState());
    // Deletes what was released while this context can still do it.
    window->close();
}
