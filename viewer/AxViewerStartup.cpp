#include "analysis/CAxAncillaryProcess.h"
#include "analysis/sight/AxSightAnalysis.h"
#include "analysis/volume/AxVolumeAnalysis.h"
#include "interaction/input/CAxEarthManipulator.h"
#include "interaction/magnifier/AxMagnifier.h"
#include "interaction/measure/AxMeasurements.h"
#include "interaction/models/AxModelLayers.h"
#include "mission/landing/CAxInterestPointNode.h"
#include "mission/landing/CAxLandingAreaNode.h"
#include "scene/base/AxNotice.h"
#include "scene/base/AxProcessLocale.h"
#include "scene/base/AxWgs84.h"
#include "viewer/AxControlPoints.h"
#include "viewer/AxFrame.h"
#include "viewer/AxGlViewport.h"
#include "viewer/AxGroundRequests.h"
#include "viewer/AxInputRouter.h"
#include "viewer/AxLensPicture.h"
#include "viewer/AxMapFile.h"
#include "viewer/AxMapLayers.h"
#include "viewer/AxModelOutlines.h"
#include "viewer/AxOverlayScene.h"
#include "viewer/AxSceneStartup.h"
#include "viewer/AxViewerPrivate.h"
#include "viewer/AxVolumeDesk.h"
#include "viewer/capture/AxPictureCapture.h"
#include "viewer/overlay/AxColorLegend.h"
#include "viewer/overlay/AxGridWidget.h"
#include "viewer/overlay/AxHeadUpText.h"
#include "viewer/overlay/CAxCoordinateWidget.h"
#include "viewer/overlay/CAxGraphicsCompassItem.h"
#include "viewer/overlay/CAxMapToolsWidget.h"

#include <AxData/CAxControl.h>

#include <osgGA/StateSetManipulator>
#include <osgViewer/ViewerEventHandlers>

#include <QCoreApplication>
#include <QFileInfo>
#include <QGraphicsProxyWidget>
#include <QOpenGLContext>
#include <QPointer>
#include <QSplashScreen>

#include <cstdlib>

namespace {
constexpr int frameIntervalMs = 25;
constexpr double fieldOfViewDegrees = 30.0;
constexpr double nearPlane = 1.0;
constexpr double farPlane = 10000.0;
// Lets the camera come within metres of the ground without clipping it.
constexpr double nearFarRatio = 1e-10;
constexpr double minPitchDegrees = -90.0;
constexpr double maxPitchDegrees = -10.0;
// From farther away the globe is a dot in the window.
constexpr double farthestInRadii = 10.0;
constexpr unsigned samplesWanted = 16;
constexpr int overlayMargin = 10;

QString MapFileForNetwork()
{
    return AxMapFilePath(QCoreApplication::applicationDirPath(),
                         CAxControl::GetInstance()->IsNetWorkConnected());
}
} // namespace

void AxViewerPrivate::initParameters()
{
    // The scene covers the widget pixel by pixel: no frame, no scrolling.
    q->setFrameShape(QFrame::NoFrame);
    q->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    q->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);

    overlayScene = new AxOverlayScene;
    q->setScene(overlayScene);

    glWidget = new AxGlViewport;
    glWidget->setMouseTracking(true);
    glWidget->installEventFilter(this);
    glWidget->setMaximumSize(q->maximumSize());
    q->setViewport(glWidget);
    q->setViewportUpdateMode(QGraphicsView::FullViewportUpdate);

    root = new osg::Group;
    root->setName("root");
    sceneData = new osg::Group;
    sceneData->setName("SceneData");
    rootStateSet = new osg::StateSet;
    rootStateSet->setMode(GL_DEPTH_TEST, osg::StateAttribute::ON);
    rootStateSet->setMode(GL_LIGHTING, osg::StateAttribute::ON);
    root->setStateSet(rootStateSet);
    root->addChild(sceneData);

    viewer = new osgViewer::Viewer;
    // Escape is the host's; it must not stop the globe for good.
    viewer->setKeyEventSetsDone(0);

    manipulator = new CAxEarthManipulator(q);
    manipulator->getSettings()->setMinMaxPitch(minPitchDegrees, maxPitchDegrees);
    manipulator->getSettings()->setMinMaxDistance(manipulator->getSettings()->getMinDistance(),
                                                  farthestInRadii * AxWgs84::semiMajorAxis);
    viewer->setCameraManipulator(manipulator, true);
    connect(manipulator.get(), &CAxEarthManipulator::signalViewMoved, this, &AxViewerPrivate::followView);
    connect(manipulator.get(), &CAxEarthManipulator::signalPointed, this, &AxViewerPrivate::showReadOut);

    initOverlays();
    setUpViewerInWindow(0, 0, q->width(), q->height());

    viewer->addEventHandler(new osgViewer::StatsHandler);
    viewer->addEventHandler(new osgGA::StateSetManipulator(viewer->getCamera()->getOrCreateStateSet()));
    viewer->setSceneData(root);
    graphicsWindow =
        dynamic_cast<osgViewer::GraphicsWindowEmbedded*>(viewer->getCamera()->getGraphicsContext());
    frame = std::make_unique<AxFrame>(viewer, graphicsWindow);
    lensPicture = std::make_unique<AxLensPicture>(*magnifier, *viewer, *graphicsWindow);
    frame->SetLens(lensPicture.get());
    AxCaptureStage stage;
    stage.viewer = viewer;
    stage.aside = [this](const std::function<void()>& draw) { frame->Aside(draw); };
    stage.ready = [this] {
        glWidget->makeCurrent();
        return earthLoaded && !viewer->done() && QOpenGLContext::currentContext();
    };
    stage.hold = [this](bool held) { hold(held); };
    capture = std::make_unique<AxPictureCapture>(stage);
    input = std::make_unique<AxInputRouter>(graphicsWindow);
    q->setMouseTracking(true);
}

void AxViewerPrivate::initOverlays()
{
    compassItem = new CAxGraphicsCompassItem(nullptr);
    // The bar of tools reaches up to its row, and would take the hovering that the dial's ring shows.
    compassItem->setZValue(1.0);
    q->scene()->addItem(compassItem);
    ownOverlays += compassItem;
    compassItem->ConnectEvent(q);

    mapToolsWidget = new CAxMapToolsWidget(q);
    mapToolsWidget->ConnectEvent();
    coordinateWidget = new CAxCoordinateWidget(q);
    embed(mapToolsWidget);
    embed(coordinateWidget);

    // Below the panel where a small map has no room for both.
    auto* legend = new AxColorLegend(q);
    embed(legend);
    legend->hide();
    gridWidget = new AxGridWidget(q);
    connect(gridWidget, SIGNAL(signalGridWidget(QString, bool)), q, SLOT(slotGridWidget(QString, bool)));
    embed(gridWidget);
    gridWidget->move(overlayMargin, overlayMargin);
    gridWidget->hide();

    q->scene()->addItem(magnifier->Item());
    ownOverlays += magnifier->Item();
    volumeDesk = std::make_unique<AxVolumeDesk>(*volumeAnalysis, *gridWidget, *legend, *coordinateWidget, q);
}

void AxViewerPrivate::embed(QWidget* overlay)
{
    // The graphics scene only takes windows, even such that have a parent.
    overlay->setWindowFlags(overlay->windowFlags() | Qt::Window | Qt::FramelessWindowHint);
    // Every frame repaints the scene; an overlay's own painting runs only when it changed.
    QGraphicsProxyWidget* item = q->scene()->addWidget(overlay);
    item->setCacheMode(QGraphicsItem::DeviceCoordinateCache);
    ownOverlays += item;
}

void AxViewerPrivate::setUpViewerInWindow(int x, int y, int width, int height)
{
    const osg::DisplaySettings* display = osg::DisplaySettings::instance();
    osg::ref_ptr<osg::GraphicsContext::Traits> traits = new osg::GraphicsContext::Traits;
    traits->x = x;
    traits->y = y;
    traits->width = width;
    traits->height = height;
    traits->windowDecoration = false;
    traits->doubleBuffer = true;
    traits->sharedContext = nullptr;
    traits->alpha = display->getMinimumNumAlphaBits();
    traits->stencil = display->getMinimumNumStencilBits();
    traits->sampleBuffers = display->getMultiSamples() ? 1 : 0;
    traits->samples = samplesWanted;
    traits->vsync = false;

    // The model comes first: osg starts its drawing threads when the model
    // changes while a graphics context exists, and a thread of osg's own can
    // never make a context current that Qt owns.
    viewer->setThreadingModel(osgViewer::ViewerBase::DrawThreadPerContext);
    osg::Camera* camera = viewer->getCamera();
    camera->setViewport(new osg::Viewport(x, y, width, height));
    camera->setProjectionMatrixAsPerspective(fieldOfViewDegrees, static_cast<double>(width) / qMax(1, height),
                                             nearPlane, farPlane);
    camera->setGraphicsContext(new osgViewer::GraphicsWindowEmbedded(traits));
    camera->setClearColor(osg::Vec4(0.0f, 0.0f, 0.0f, 1.0f));
    viewer->setName("MainView");
    camera->setNearFarRatio(nearFarRatio);
    camera->setComputeNearFarMode(osg::CullSettings::COMPUTE_NEAR_FAR_USING_PRIMITIVES);
}

bool AxViewerPrivate::startUp()
{
    starting = true;
    const QPointer<AxViewerPrivate> self(this);

    QPixmap transparent(300, 200);
    transparent.fill(QColor(255, 255, 255, 0));
    // Whoever closes the window by a key meets the splash screen first, which then is deleted.
    const QPointer<QSplashScreen> splash = new QSplashScreen(transparent);
    splash->setParent(q, splash->windowFlags());
    splash->setAttribute(Qt::WA_DeleteOnClose);
    splash->move(q->mapToGlobal(q->rect().center()) - splash->rect().center());
    splash->show();
    // Events run meanwhile, so a host may end the viewer.
    const auto progress = [&splash, &self](const QString& text) {
        if (splash)
            splash->showMessage(text, Qt::AlignHCenter | Qt::AlignBottom, Qt::white);
        return !self.isNull();
    };

    if (!progress(CAxEarthViewer::tr("Create tile map service...")))
        return false;
    AxSetProcessLocale();
    const QString path = mapFile.isEmpty() ? MapFileForNetwork() : mapFile;
    QString reason;
    mapNode = AxSceneStartup::ReadMap(path, reason);
    if (!mapNode)
        endWithoutMap(QFileInfo(path).absoluteFilePath(), reason);
    map = mapNode->getMap();
    mapNode->setName("MapNode");
    mapSRS = mapNode->getMapSRS();
    mapNode->getOrCreateStateSet()->setMode(GL_LIGHTING, osg::StateAttribute::ON);

    if (!progress(CAxEarthViewer::tr("Loading Sky...")))
        return false;
    skyNode = AxSceneStartup::CreateSky(mapNode);
    initManipulator();
    initOther();
    initEventHandler();
    addGroups();

    if (!progress(CAxEarthViewer::tr("Loading prohibited area...")))
        return false;
    ancillaryProcess = new CAxAncillaryProcess(q, q);

    AxSceneStartup::AttachSky(skyNode, mapNode, *viewer, root);
    root->addChild(AxSceneStartup::CreateDrapedDisc(mapNode));
    ancillaryProcess->SetNoFlyZoneMask(false);

    layers->SetMap(map);
    earthLoaded = true;
    starting = false;
    q->startTimer(frameIntervalMs, Qt::CoarseTimer);
    // finish() waits up to a second for a window that is not shown at all.
    if (splash)
        splash->finish(q->isVisible() ? q : nullptr);
    return !self.isNull();
}

void AxViewerPrivate::endWithoutMap(const QString& path, const QString& reason)
{
    AxShowProblem(q, CAxEarthViewer::tr("Route Information"),
                  CAxEarthViewer::tr("Create tile map service error."), path + QLatin1Char('\n') + reason);
    std::exit(EXIT_SUCCESS);
}

void AxViewerPrivate::initManipulator()
{
    manipulator->setHomeViewpoint(AxSceneStartup::HomeViewpoint(*map), 0.0);
}

void AxViewerPrivate::initOther()
{
    AxSceneStartup::PrepareView(*viewer, mapNode);
    graticule = AxSceneStartup::CreateGraticule(mapNode);
    sceneData->addChild(graticule);
}

void AxViewerPrivate::initEventHandler()
{
    AxHeadUpText::Instance().SetSize(q->width(), q->height());
    sceneData->addChild(AxHeadUpText::Instance().GetCamera());
    connect(manipulator.get(), SIGNAL(mouseLeftBtnClick(osg::Vec3d, osg::Vec3d)), q,
            SLOT(slotMouseLeftBtnClick(osg::Vec3d, osg::Vec3d)));
    connect(manipulator.get(), SIGNAL(mouseLeftBtnClickSignal(osg::Drawable*)), q,
            SLOT(slotDrawableClicked(osg::Drawable*)));
}

void AxViewerPrivate::initBoundaries(osgEarth::Map* targetMap, const QString& file)
{
    AxSceneStartup::AddBoundaries(targetMap, file);
}

void AxViewerPrivate::addGroups()
{
    drawGroup = new osg::Group;
    drawGroup->setName("Draw Group");
    geomAdapterGroup = new osg::Group;
    geomAdapterGroup->setName("GeomAdapter");
    drawGroup->addChild(geomAdapterGroup);
    boundGroup = new osg::Group;
    boundGroup->setName("Bound Group");
    sceneData->addChild(drawGroup);
    sceneData->addChild(boundGroup);
}

void AxViewerPrivate::shutDown()
{
    // Viewsheds are layers, and go below.
    layers->blockSignals(true);
    capture.reset();
    groundRequests.reset();
    sightAnalysis.reset();
    volumeDesk.reset();
    volumeAnalysis.reset();
    modelOutlines.reset();
    modelLayers.reset();
    measurements->Close();
    controlPoints.reset();
    delete landingArea;
    delete interestPointNode;
    // While there is still everything that a map object is part of.
    aircraft.RemoveAll();
    objects.DestroyAll();
    history.Delete();
    glWidget->makeCurrent();
    frame->SetLens(nullptr);
    lensPicture->Release();
    lensPicture.reset();
    magnifier.reset();
    // The overlays are deleted with the scene, while the widget is still whole.
    QGraphicsScene* overlays = q->scene();
    q->setScene(nullptr);
    delete overlays;
    // Textures and buffers can only be given back while Qt's context lives.
    glWidget->makeCurrent();
    frame->Release();
    if (sceneData)
        sceneData->removeChild(AxHeadUpText::Instance().GetCamera());
    AxHeadUpText::Instance().Release();
    viewer->setSceneData(nullptr);
    viewer->setCameraManipulator(nullptr);
    // From here on only references keep it, so Qt must not delete it as a child.
    manipulator->setParent(nullptr);
    glWidget->doneCurrent();
}
