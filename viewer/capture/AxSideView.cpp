#include "viewer/capture/AxSideView.h"
#include "viewer/overlay/AxHeadUpText.h"

#include <osg/DisplaySettings>
#include <osg/LineWidth>
#include <osg/LOD>
#include <osg/Polytope>
#include <osgDB/DatabasePager>
#include <osgDB/ImagePager>
#if __has_include(<osgEarth/PartOfView>)
#include <osgEarth/PartOfView>
#endif
#include <osgUtil/CullVisitor>
#include <osgUtil/RenderStage>
#include <osgUtil/StateGraph>

#include <map>

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

/// Culls in a viewport of fewer pixels than are drawn, which makes larger what is laid out in pixels, and
/// looks for the detail of those that are drawn.
class AxSideView::Visitor : public osgUtil::CullVisitor
{
public:
    void apply(osg::LOD& levels) override
    {
        const bool isByPixels = levels.getRangeMode() == osg::LOD::PIXEL_SIZE_ON_SCREEN;
        if (isByPixels && !isNeeded(levels))
            return;
        const float ofPixels = getLODScale();
        // What is to be seen from how far away does not depend on a picture's size.
        if (!isByPixels)
            setLODScale(ofDistance);
        CullVisitor::apply(levels);
        setLODScale(ofPixels);
    }

    float ofDistance = 1.0f;
    QRectF needed;

private:
    bool isNeeded(const osg::Node& node)
    {
        osg::Polytope sight;
        sight.setToUnitFrustum(false, false);
        sight.transformProvidingInverse(*getModelViewMatrix() *
                                        AxPartOfProjection(*getProjectionMatrix(), needed));
        return !node.isCullingActive() || sight.contains(node.getBound());
    }
};

namespace {
/// Widens lines of which OpenGL alone knows how wide they are, while they are drawn.
class WiderLines
{
public:
    WiderLines(const osgUtil::StateGraph& drawn, float scale)
    {
        if (scale != 1.0f)
            look(drawn);
        for (const auto& [line, width] : widths)
            line->setWidth(width * scale);
    }
    ~WiderLines()
    {
        for (const auto& [line, width] : widths)
            line->setWidth(width);
    }
    WiderLines(const WiderLines&) = delete;
    WiderLines& operator=(const WiderLines&) = delete;

private:
    void look(const osgUtil::StateGraph& drawn)
    {
        const osg::StateSet* state = drawn.getStateSet();
        const osg::StateAttribute* own =
            state ? state->getAttribute(osg::StateAttribute::LINEWIDTH) : nullptr;
        if (auto* line = dynamic_cast<osg::LineWidth*>(const_cast<osg::StateAttribute*>(own)))
            widths.emplace(line, line->getWidth());
        for (const auto& [of, below] : drawn._children)
            look(*below);
    }

    std::map<osg::ref_ptr<osg::LineWidth>, float> widths;
};
} // namespace

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
    culling = new Visitor;
    sceneView->setCullVisitor(culling);
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

bool AxSideView::cull(const AxSidePicture& picture)
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
    const osg::ref_ptr<osg::Viewport> drawn =
        new osg::Viewport(picture.port.x(), picture.port.y(), picture.port.width(), picture.port.height());
    const float scale = static_cast<float>(picture.scale);
    camera->setCullSettings(own);
    culling->ofDistance = own.getLODScale();
    culling->needed = picture.needed;
#if __has_include(<osgEarth/PartOfView>) // osgEarth 2.8 itself draws the ground of all parts each time
    osgEarth::setPartOfView(*camera, osg::Vec4d(picture.needed.left(), picture.needed.top(),
                                                picture.needed.right(), picture.needed.bottom()));
#endif
    camera->setLODScale(own.getLODScale() / scale);
    camera->setClearColor(own.getClearColor());
    camera->setClearMask(own.getClearMask() | GL_STENCIL_BUFFER_BIT);
    camera->setCullCallback(own.getCullCallback());
    camera->setViewport(new osg::Viewport(drawn->x(), drawn->y(), drawn->width() / picture.scale,
                                          drawn->height() / picture.scale));
    camera->setViewMatrix(picture.view);
    camera->setProjectionMatrix(picture.projection);
    camera->scene = viewer.getSceneData();

    sceneView->setState(window->getState());
    sceneView->setGlobalStateSet(own.getOrCreateStateSet());
    osg::ref_ptr<osg::StateSet> local = sceneView->getLocalStateSet();
    if (!local)
        sceneView->setLocalStateSet(local = new osg::StateSet);
    local->setAttribute(new osg::LineWidth(1.0f));
    local->addUniform(new osg::Uniform("ax_pixelScale", scale),
                      osg::StateAttribute::ON | osg::StateAttribute::OVERRIDE);
    sceneView->setLight(viewer.getLight());
    sceneView->setFrameStamp(viewer.getViewerFrameStamp());
    sceneView->setDisplaySettings(viewer.getDisplaySettings() ? viewer.getDisplaySettings()
                                                              : osg::DisplaySettings::instance().get());
    culling->setDatabaseRequestHandler(pager);
    culling->setImageRequestHandler(viewer.getImagePager());
    sceneView->inheritCullSettings(*camera);
    sceneView->cull();
    camera->scene = nullptr;
    camera->setViewport(drawn);
    sceneView->getRenderStage()->setViewport(drawn);
    return true;
}

// What was culled is kept for the next time: nodes, and textures of them.
void AxSideView::Drop()
{
    sceneView = nullptr;
    culling = nullptr;
}

void AxSideView::Look(const AxSidePicture& picture)
{
    cull(picture);
}

void AxSideView::Draw(const AxSidePicture& picture)
{
    if (!cull(picture))
        return;
    const WiderLines wider(*sceneView->getStateGraph(), static_cast<float>(picture.scale));
    sceneView->draw();
}
