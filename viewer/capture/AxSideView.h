#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <osg/Camera>
#include <osg/Matrixd>
#include <osg/ref_ptr>
#include <osgUtil/SceneView>
#include <osgViewer/Viewer>

#include <QRect>

/// The projection that shows a part of what another one shows, from -1 to 1, y upwards (top() is the lower
/// edge), in a whole viewport. The part may reach beyond; it is not empty.
AXEARTHVIEWER_EXPORT osg::Matrixd AxPartOfProjection(const osg::Matrixd& projection, const QRectF& part);

/// What a further camera sees, and where it is drawn.
struct AxSidePicture
{
    osg::Matrixd view;       ///< as of osg::Camera
    osg::Matrixd projection; ///< of the whole viewport
    QRect port;              ///< pixels from the lower left one; it may reach beyond what is drawn into
    /// The part of which the ground and models are needed, from -1 to 1, y upwards (top() is the lower edge);
    /// texts are placed as in the whole.
    QRectF needed{-1.0, -1.0, 2.0, 2.0};
    /// How many times as large as on the screen texts, marks and lines are; the map's detail is that of the
    /// pixels all the same.
    double scale = 1.0;
};

/**
 * Draws a viewer's scene as a further camera sees it, into what is bound: the same nodes, the same pager, the
 * same frame number, and a camera of its own, so that what is kept for each camera (which labels have room)
 * is kept for it, too. Nothing of the viewer's own camera changes. Tiles that it lacks are asked for.
 *
 * Drawn before the viewer's own camera in a frame, it leaves the picks as that one sees the ground. It does
 * not run the update traversal. GUI thread, between the update traversal and the viewer's own drawing, with
 * the context current and OpenGL as OSG's State believes it to be.
 */
class AXEARTHVIEWER_EXPORT AxSideView
{
public:
    explicit AxSideView(osgViewer::Viewer& viewer);
    ~AxSideView();
    AxSideView(const AxSideView&) = delete;
    AxSideView& operator=(const AxSideView&) = delete;

    /// What is in the viewport, and nothing beside it, is cleared and drawn.
    void Draw(const AxSidePicture& picture);
    /// The same without drawing: what it lacks is asked for, and what is made while it is looked at is made.
    void Look(const AxSidePicture& picture);
    /// Lets go of the scene that was drawn last, until the next time.
    void Drop();
    /// Called with the picture drawn, before its context is used for anything else; null for nobody.
    void SetFinalDrawCallback(osg::Camera::DrawCallback* callback);

private:
    class Eye;
    class Visitor;

    void begin();
    bool cull(const AxSidePicture& picture);

    osgViewer::Viewer& viewer;
    osg::ref_ptr<Eye> camera;
    osg::ref_ptr<Visitor> culling;
    osg::ref_ptr<osgUtil::SceneView> sceneView;
};
