#include "viewer/AxFrame.h"

#include <osg/GLExtensions>
#include <osg/State>
#include <osgDB/DatabasePager>
#include <osgGA/CameraManipulator>

#include <limits>

#ifndef GL_VERTEX_ARRAY_BINDING
#define GL_VERTEX_ARRAY_BINDING 0x85B5
#endif

namespace {
// A merged tile asks for its children in the next frame and they are requested
// in the one after: three quiet frames in a row mean that nobody asks any more.
constexpr int framesToSettle = 3;

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

void AxFrame::Render()
{
    const bool idleBefore = IsPagerIdle();
    {
        SavedGlState saved(*window->getState());
        osgGA::EventQueue::Events waiting;
        window->getEventQueue()->takeEvents(waiting, std::numeric_limits<double>::max());
        viewer->frame(USE_REFERENCE_TIME);
        window->getEventQueue()->appendEvents(waiting);
    }
    const osg::Matrixd view = viewer->getCamera()->getViewMatrix();
    const bool quiet = idleBefore && IsPagerIdle() && view == drawnView;
    quietFrames = quiet ? quietFrames + 1 : 0;
    drawnView = view;
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
    if (osgDB::DatabasePager* pager = viewer->getDatabasePager())
        pager->cancel();
    viewer->stopThreading();
    if (osg::Node* scene = viewer->getSceneData())
        scene->releaseGLObjects(window->getState());
    viewer->getCamera()->releaseGLObjects(window->getState());
    // Deletes what was released while this context can still do it.
    window->close();
}
