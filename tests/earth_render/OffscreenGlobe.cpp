#include "OffscreenGlobe.h"

#include <camera/CameraPose.h>
#include <chrono>
#include <ctime>
#include <osg/Math>
#include <osgDB/DatabasePager>
#include <osgEarth/Map>
#include <osgEarth/MapNode>
#include <terrain/QuadtreeTerrain.h>
#include <thread>

class OffscreenGlobe::Capture : public osg::Camera::DrawCallback
{
public:
    explicit Capture(osg::Image* picture) : _picture(picture) {}
    void operator()(osg::RenderInfo&) const override
    {
        _picture->readPixels(0, 0, kWidth, kHeight, GL_RGB, GL_UNSIGNED_BYTE);
    }

private:
    osg::ref_ptr<osg::Image> _picture;
};

OffscreenGlobe::OffscreenGlobe(osgEarth::Map* map)
    : _mapNode(new osgEarth::MapNode(map)), _viewer(new osgViewer::Viewer), _picture(new osg::Image)
{
    osg::ref_ptr<osg::GraphicsContext::Traits> traits = new osg::GraphicsContext::Traits;
    traits->width = kWidth;
    traits->height = kHeight;
    traits->windowDecoration = false;
    traits->doubleBuffer = true;
    traits->alpha = 8;
    traits->stencil = 8;
    traits->readDISPLAY();
    osg::Camera* camera = _viewer->getCamera();
    camera->setGraphicsContext(osg::GraphicsContext::createGraphicsContext(traits));
    camera->setViewport(0, 0, kWidth, kHeight);
    camera->setClearColor({1.0f, 0.0f, 1.0f, 1.0f});
    camera->setProjectionMatrixAsPerspective(30.0, double(kWidth) / kHeight, 1.0, 1e8);
    camera->setNearFarRatio(1e-6);
    camera->setFinalDrawCallback(new Capture(_picture));
    _viewer->setThreadingModel(osgViewer::ViewerBase::SingleThreaded);
    _viewer->setSceneData(_mapNode);
    _viewer->realize();
}

OffscreenGlobe::~OffscreenGlobe()
{
    _viewer->getDatabasePager()->cancel();
    _viewer->setSceneData(nullptr);
}

void OffscreenGlobe::lookAt(double longitude, double latitude, double height, double heading, double pitch,
                            double range)
{
    using namespace osgEarth::Util;
    const osg::EllipsoidModel ellipsoid;
    const osg::Vec3d centre =
        toWorld(ellipsoid, {osg::DegreesToRadians(latitude), osg::DegreesToRadians(longitude), height});
    _viewer->getCamera()->setViewMatrix(viewMatrix(
        makePose(ellipsoid, centre, osg::DegreesToRadians(heading), osg::DegreesToRadians(pitch), range)));
}

void OffscreenGlobe::frame()
{
    _viewer->frame();
}

bool OffscreenGlobe::drawUntilComplete()
{
    // Time of the processor: tiles are made at a low priority, and other programs may hold them up for long.
    const std::clock_t start = std::clock();
    for (int quiet = 0; quiet < 5;) {
        frame();
        // Frames one upon the other would leave the thread that makes tiles a tenth of what they take.
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
        quiet = _viewer->getDatabasePager()->getRequestsInProgress() ||
                        osgEarth::QuadtreeTerrain::of(*_mapNode)->isRefreshing()
                    ? 0
                    : quiet + 1;
        if (std::clock() - start > 120 * CLOCKS_PER_SEC)
            return false;
    }
    return true;
}

osg::Vec3i OffscreenGlobe::pixel(int x, int y) const
{
    const unsigned char* p = _picture->data(static_cast<unsigned>(x), static_cast<unsigned>(y));
    return {p[0], p[1], p[2]};
}

std::string shippedMapFile(const std::string& name)
{
    return std::string(AX_RESOURCES) + "/map/" + name;
}
