#include "viewer/capture/AxSideView.h"
#include "viewer/overlay/AxHeadUpText.h"

#include <osg/DisplaySettings>
#include <osgDB/DatabasePager>
#include <osgDB/ImagePager>
#include <osgUtil/CullVisitor>

osg::Matrixd AxPartOfProjection(const osg::Matrixd& projection, const QRectF& part)
{
    const QPointF middle = part.center();
    return projection * osg::Matrixd::translate(-middle.x(), -middle.y(), 0.0) *
           osg::Matrixd::scale(2.0 / part.width(), 2.0 / part.height(), 1.0);
}

/// A camera that sees a scene without being its parent: a node with two parents has two places, and who looks
/// for that of a node would find this one as well.
class AxSideView::Eye : public osg::Camera
{
public:
    void traverse(osg::NodeVisitor& visitor) override
    {
        if (!scene || visitor.getVisitorType() != osg::NodeVisitor::CULL_VISITOR)
            return;
        // Texts of the window are none of what it looks at.
        osg::Camera& headUp = *AxHeadUpText::Instance().GetCamera();
        const osg::Node::NodeMask former = headUp.getNodeMask();
        headUp.setNodeMask(0);
        scene->accept(visitor);
        headUp.setNodeMask(former);
    }

    osg::ref_ptr<osg::Node> scene; ///< while it is drawn
};

AxSideView::AxSideView(osgViewer::Viewer& of) : viewer(of), camera(new Eye) {}

AxSideView::~AxSideView() = default;

void AxSideView::SetFinalDrawCallback(osg::Camera::DrawCallback* callback)
{
    camera->setFinalDrawCallback(callback);
}

// As osgViewer makes ready what draws its cameras. The state that all of them start from is the viewer's.
void AxSideView::begin()
{
    sceneView = new osgUtil::SceneView;
    sceneView->setDefaults(0);
    sceneView->setCamera(camera.get(), false);
    switch (viewer.getLightingMode()) {
    case osg::View::NO_LIGHT:
        sceneView->setLightingMode(osgUtil::SceneView::NO_SCENEVIEW_LIGHT);
        break;
    case osg::View::SKY_LIGHT:
        sceneView->setLightingMode(osgUtil::SceneView::SKY_LIGHT);
        break;
    case osg::View::HEADLIGHT:
        sceneView->setLightingMode(osgUtil::SceneView::HEADLIGHT);
        break;
    }
}

bool AxSideView::cull(const osg::Matrixd& view, const osg::Matrixd& projection, const QRect& port)
{
    osg::Camera& own = *viewer.getCamera();
    osg::GraphicsContext* window = own.getGraphicsContext();
    if (!window || !window->getState() || !viewer.getSceneData())
        return false;
    if (!sceneView)
        begin();
    osgDB::DatabasePager* pager = viewer.getDatabasePager();
    // A request of a later frame than the pager knows of would be dropped as one that nobody repeats.
    if (pager)
        pager->signalBeginFrame(viewer.getFrameStamp());
    camera->setCullSettings(own);
    camera->setClearColor(own.getClearColor());
    camera->setClearMask(own.getClearMask() | GL_STENCIL_BUFFER_BIT);
    camera->setCullCallback(own.getCullCallback());
    camera->setViewport(new osg::Viewport(port.x(), port.y(), port.width(), port.height()));
    camera->setViewMatrix(view);
    camera->setProjectionMatrix(projection);
    camera->scene = viewer.getSceneData();

    sceneView->setState(window->getState());
    sceneView->setGlobalStateSet(own.getOrCreateStateSet());
    sceneView->setLight(viewer.getLight());
    sceneView->setFrameStamp(viewer.getViewerFrameStamp());
    sceneView->setDisplaySettings(viewer.getDisplaySettings() ? viewer.getDisplaySettings()
                                                              : osg::DisplaySettings::instance().get());
    osgUtil::CullVisitor& visitor = *sceneView->getCullVisitor();
    visitor.setDatabaseRequestHandler(pager);
    visitor.setImageRequestHandler(viewer.getImagePager());
    sceneView->inheritCullSettings(*camera);
    sceneView->cull();
    camera->scene = nullptr;
    return true;
}

void AxSideView::Look(const osg::Matrixd& view, const osg::Matrixd& projection, const QRect& port)
{
    cull(view, projection, port);
}

void AxSideView::Draw(const osg::Matrixd& view, const osg::Matrixd& projection, const QRect& port)
{
    if (cull(view, projection, port))
        sceneView->draw();
}
