#include "StaticScene.h"

#include "BenchGlobe.h"

#include <osg/Geode>
#include <osg/Geometry>
#include <osg/MatrixTransform>
#include <osg/Texture2D>
#include <osg/Timer>
#include <osgUtil/RenderLeaf>
#include <osgUtil/RenderStage>
#include <osgUtil/SceneView>
#include <osgUtil/StateGraph>
#include <osgViewer/Renderer>

#include <map>
#include <random>

namespace bench {
namespace {

constexpr int kTextureSize = 256;

osg::ref_ptr<osg::StateSet> noiseTexture(unsigned seed)
{
    std::mt19937 random(seed);
    osg::ref_ptr<osg::Image> image = new osg::Image;
    image->allocateImage(kTextureSize, kTextureSize, 1, GL_RGBA, GL_UNSIGNED_BYTE);
    for (unsigned i = 0; i < image->getTotalSizeInBytes(); ++i)
        image->data()[i] = static_cast<unsigned char>(random());
    osg::ref_ptr<osg::Texture2D> texture = new osg::Texture2D(image);
    texture->setWrap(osg::Texture::WRAP_S, osg::Texture::CLAMP_TO_EDGE);
    texture->setWrap(osg::Texture::WRAP_T, osg::Texture::CLAMP_TO_EDGE);
    texture->setFilter(osg::Texture::MIN_FILTER, osg::Texture::LINEAR_MIPMAP_LINEAR);
    texture->setFilter(osg::Texture::MAG_FILTER, osg::Texture::LINEAR);
    osg::ref_ptr<osg::StateSet> state = new osg::StateSet;
    state->setTextureAttributeAndModes(0, texture);
    return state;
}

const osg::StateSet* pictureOf(const osg::Geometry& geometry)
{
    const osg::StateSet* state = geometry.getStateSet();
    return state && state->getTextureAttribute(0, osg::StateAttribute::TEXTURE) ? state : nullptr;
}

class Collector
{
public:
    Collector(const osg::Matrixd& viewToWorld, StaticScene& scene) : _viewToWorld(viewToWorld), _scene(scene)
    {
    }

    void visit(osgUtil::RenderBin& bin)
    {
        for (auto& [number, child] : bin.getRenderBinList())
            visit(*child);
        for (osgUtil::StateGraph* graph : bin.getStateGraphList())
            for (auto& leaf : graph->_leaves)
                visit(*leaf);
        for (osgUtil::RenderLeaf* leaf : bin.getRenderLeafList())
            visit(*leaf);
    }

private:
    void visit(const osgUtil::RenderLeaf& leaf)
    {
        const osg::Geometry* drawn = leaf.getDrawable()->asGeometry();
        const osg::StateSet* picture = drawn ? pictureOf(*drawn) : nullptr;
        if (!picture || drawn->getNumPrimitiveSets() != 1 ||
            drawn->getPrimitiveSet(0)->getMode() != GL_TRIANGLES)
            return;
        osg::ref_ptr<osg::StateSet>& state = _states[picture];
        if (!state)
            state = noiseTexture(static_cast<unsigned>(_states.size()));

        osg::ref_ptr<osg::Geometry> copy =
            new osg::Geometry(*drawn, osg::CopyOp::DEEP_COPY_ARRAYS | osg::CopyOp::DEEP_COPY_PRIMITIVES);
        copy->setStateSet(state);
        copy->setUseDisplayList(false);
        copy->setUseVertexBufferObjects(true);
        osg::ref_ptr<osg::Geode> geode = new osg::Geode;
        geode->addDrawable(copy);
        osg::ref_ptr<osg::MatrixTransform> place =
            new osg::MatrixTransform(osg::Matrixd(*leaf._modelview) * _viewToWorld);
        place->addChild(geode);
        _scene.root->addChild(place);
        _scene.triangles += drawn->getPrimitiveSet(0)->getNumIndices() / 3;
        _scene.textures = static_cast<unsigned>(_states.size());
    }

    const osg::Matrixd _viewToWorld;
    StaticScene& _scene;
    std::map<const osg::StateSet*, osg::ref_ptr<osg::StateSet>> _states;
};

} // namespace

StaticScene copyDrawnTerrain(osgViewer::Viewer& viewer)
{
    StaticScene scene;
    scene.root = new osg::Group;
    osg::StateSet* state = scene.root->getOrCreateStateSet();
    state->setMode(GL_LIGHTING, osg::StateAttribute::OFF);
    state->setMode(GL_CULL_FACE, osg::StateAttribute::ON);
    auto* renderer = dynamic_cast<osgViewer::Renderer*>(viewer.getCamera()->getRenderer());
    const osg::Matrixd viewToWorld = osg::Matrixd::inverse(viewer.getCamera()->getViewMatrix());
    if (renderer)
        for (unsigned i = 0; i < 2; ++i)
            if (osgUtil::SceneView* sceneView = renderer->getSceneView(i)) {
                if (sceneView->getRenderStage() && scene.triangles == 0)
                    Collector(viewToWorld, scene).visit(*sceneView->getRenderStage());
            }
    return scene;
}

double staticFrameMilliseconds(const StaticScene& scene, const osg::Camera& camera, int frames)
{
    // One window for all scenes: a second one in the same process draws at half the speed.
    static osg::ref_ptr<osgViewer::Viewer> viewer;
    if (!viewer) {
        viewer = new osgViewer::Viewer;
        viewer->setThreadingModel(osgViewer::ViewerBase::SingleThreaded);
        viewer->setUpViewInWindow(0, 0, kWidth, kHeight);
        viewer->getCamera()->setComputeNearFarMode(osg::CullSettings::DO_NOT_COMPUTE_NEAR_FAR);
        viewer->realize();
    }
    viewer->setSceneData(scene.root);
    const osg::Timer& timer = *osg::Timer::instance();
    const auto frame = [&] {
        const osg::Timer_t start = timer.tick();
        viewer->getCamera()->setViewMatrix(camera.getViewMatrix());
        viewer->getCamera()->setProjectionMatrix(camera.getProjectionMatrix());
        viewer->frame();
        return timer.delta_m(start, timer.tick());
    };
    for (int warmUp = 0; warmUp < 5; ++warmUp)
        frame();
    return median(frames, frame);
}

} // namespace bench
