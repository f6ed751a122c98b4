#include "viewer/AxViewerPrivate.h"
#include "analysis/CAxAncillaryProcess.h"
#include "analysis/sight/AxSightAnalysis.h"
#include "analysis/volume/AxVolumeAnalysis.h"
#include "interaction/editing/CAxHandleAdapterEditor.h"
#include "interaction/input/CAxEarthManipulator.h"
#include "interaction/magnifier/AxMagnifier.h"
#include "interaction/magnifier/CAxOsgDrawMagnifyRectange.h"
#include "interaction/marks/CAxOsgDrawPointSet.h"
#include "interaction/measure/AxMeasurements.h"
#include "interaction/measure/CAxMeasurePlane.h"
#include "interaction/models/AxModelLayers.h"
#include "mission/landing/CAxDownhillAnglenode.h"
#include "mission/landing/CAxInterestPointNode.h"
#include "mission/landing/CAxLandingAreaNode.h"
#include "scene/base/AxNotice.h"
#include "scene/base/AxProcessLocale.h"
#include "scene/base/AxWgs84.h"
#include "viewer/AxControlPoints.h"
#include "viewer/AxFrame.h"
#include "viewer/AxFrameCapture.h"
#include "viewer/AxGlViewport.h"
#include "viewer/AxGroundRequests.h"
#include "viewer/AxInputRouter.h"
#include "viewer/AxLensPicture.h"
#include "viewer/AxMapFile.h"
#include "viewer/AxMapLayers.h"
#include "viewer/AxModelOutlines.h"
#include "viewer/AxOverlayScene.h"
#include "viewer/AxPlaceNames.h"
#include "viewer/AxSceneStartup.h"
#include "viewer/AxVolumeDesk.h"
#include "viewer/capture/AxPictureCapture.h"
#include "viewer/overlay/AxGridWidget.h"
#include "viewer/overlay/AxHeadUpText.h"
#include "viewer/overlay/AxReadOut.h"
#include "viewer/overlay/CAxCoordinateWidget.h"
#include "viewer/overlay/CAxGraphicsCompassItem.h"
#include "viewer/overlay/CAxMapToolsWidget.h"

#include <AxData/CAxControl.h>

#include <osgGA/StateSetManipulator>
#include <osgViewer/ViewerEventHandlers>

#include <QCoreApplication>
#include <QEvent>
#include <QFileInfo>
#include <QGraphicsProxyWidget>
#include <QOpenGLContext>
#include <QPointer>
#include <QSplashScreen>
#include <QWindow>

#include <algorithm>
#include <cstdlib>
#include <typeinfo>
#include <utility>

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

AxViewerPrivate::AxViewerPrivate(CAxEarthViewer* earthViewer)
    : q(earthViewer), objects(*this, earthViewer), history(earthViewer, objects), tools(*this, objects),
      aircraft(*this, earthViewer), blockFlight(*this)
{
    objects.SetHistory(&history);
    connect(&objects, &AxObjects::currentChanged, q, &CAxEarthViewer::signalCurrentBlock);
    connect(&objects, &AxObjects::selectedChanged, q, &CAxEarthViewer::signalMultiSelectBlock);
    connect(&objects, &AxObjects::taskChanged, q, &CAxEarthViewer::signalCurrentTask);
    connect(&objects, &AxObjects::imported, q, &CAxEarthViewer::signalBlockState);
    connect(&objects, &AxObjects::moveGivenUp, q, [this] { manipulator->CancelBlockMove(); });
    connect(&tools, &AxToolBox::barLeft, q, [this] { mapToolsWidget->ResetToolType(); });
    connect(&tools, &AxToolBox::barTaken, q, [this](EToolType tool) { mapToolsWidget->ShowTool(tool); });
    connect(&tools, &AxToolBox::taken, q, [this](EToolType tool) { emit mapToolsWidget->ToolInHand(tool); });
    connect(&tools, &AxToolBox::placePicked, q, [this](EToolType tool, double lon, double lat, double alt) {
        if (tool == ToolLandingPosition)
            emit q->LandingPosPicked(lon, lat, alt, true);
        else
            pickInterestPoint(lon, lat, alt);
    });
    connect(&tools, &AxToolBox::landingLeft, q, [this] { q->SetLandingAreaVisible(false); });
    connect(&objects, &AxObjects::currentChanged, q, [this] { followLandingArea(); });
    controlPoints = std::make_unique<AxControlPoints>(*this);
    connect(controlPoints.get(), &AxControlPoints::added, q, &CAxEarthViewer::signalAddControlPoint);
    layers = std::make_unique<AxMapLayers>();
    connect(layers.get(), &AxMapLayers::changed, q, &CAxEarthViewer::RequestRedraw);
    connect(layers.get(), &AxMapLayers::elevationAdded, q, &CAxEarthViewer::signalElevationLayer);
    measurements = std::make_unique<AxMeasurements>(*this, objects);
    volumeAnalysis = std::make_unique<AxVolumeAnalysis>(*this);
    AxAddMeasureTools(objects.Factories(), *measurements, *volumeAnalysis);
    connect(&tools, &AxToolBox::taken, q,
            [this](EToolType tool) { q->slotGridWidget(QString(), tool == ToolMeasureVolume); });
    connect(layers.get(), &AxMapLayers::groundChanged, measurements.get(), &AxMeasurements::MeasureAgain);
    connect(layers.get(), &AxMapLayers::groundChanged, volumeAnalysis.get(), &AxVolumeAnalysis::ForgetGround);
    connect(layers.get(), &AxMapLayers::groundChanged, q, [this] {
        if (CAxOsgDrawPointSet* marks = CAxOsgDrawPointSet::FindOfViewer(q))
            marks->ReadHeightsAgain();
    });
    // Not given again: of several viewers that would make this the one that gives them.
    connect(layers.get(), &AxMapLayers::groundChanged, CAxControl::GetInstance(),
            &CAxControl::planBasisChanged);
    objects.Factories().SetOwn(ToolMeasurePlane,
                               [this](CAxEarthViewer* earth, QObject* parent) -> CAxHandleAdapter* {
                                   auto* plane = new CAxMeasurePlane(earth, parent, *measurements);
                                   plane->SetPlane(projPlaneCenter, projPlaneMatrix);
                                   return plane;
                               });
    groundRequests = std::make_unique<AxGroundRequests>();
    connect(groundRequests.get(), &AxGroundRequests::answered, q,
            &CAxEarthViewer::signalRequestElevationReturn);
    sightAnalysis = std::make_unique<AxSightAnalysis>(*this);
    magnifier = std::make_unique<AxMagnifier>(*this);
    connect(magnifier.get(), &AxMagnifier::changed, q, &CAxEarthViewer::RequestRedraw);
    objects.Factories().SetOwn(ToolMagnifier,
                               [this](CAxEarthViewer* earth, QObject* parent) -> CAxHandleAdapter* {
                                   return new CAxOsgDrawMagnifyRectange(earth, parent, *magnifier);
                               });
    modelLayers = std::make_unique<AxModelLayers>(*this);
    connect(modelLayers.get(), &AxModelLayers::loaded, q, [this](const QString& id) {
        if (const auto layer = modelLayers->Find(id))
            emit q->signalAddModelLayer(id, layer->name, layer->files, layer->options.isVisible, layer->path,
                                        layer->options.coordinateSystem);
    });
    connect(modelLayers.get(), &AxModelLayers::added, q, [this] { clampToModels(); });
    connect(modelLayers.get(), &AxModelLayers::removed, q, [this] { clampToModels(); });
    modelOutlines = std::make_unique<AxModelOutlines>(*this, *modelLayers);
    connect(modelOutlines.get(), &AxModelOutlines::answered, q,
            &CAxEarthViewer::signalRequestIntersectionReturn);
    connect(layers.get(), &AxMapLayers::groundChanged, q, [this] {
        if (ancillaryProcess)
            ancillaryProcess->FollowGround();
    });
}

AxViewerPrivate::~AxViewerPrivate() = default;

void AxViewerPrivate::clampToModels()
{
    const bool isOn = history.Aids().clampToModels && !modelLayers->All().isEmpty();
    for (const CAxHandleAdapter* object : objects.All())
        if (CAxHandleAdapterEditor* const editor = object->GetAnchorEditor())
            editor->SetIntersectModelLayer(isOn);
}

AxZoneAnswers* AxViewerPrivate::Zones()
{
    return ancillaryProcess;
}

QObject* AxViewerPrivate::Mouse()
{
    return manipulator.get();
}

std::optional<bool> AxViewerPrivate::AngleHandlesShown() const
{
    return downhillAngleNode ? std::make_optional(downhillAngleNode->IsHandlesVisible()) : std::nullopt;
}

void AxViewerPrivate::GetElevations(QList<osg::Vec3d>& points) const
{
    manipulator->GetElevations(points, history.Aids().clampToModels);
}

QImage AxViewerPrivate::paintedPicture()
{
    glWidget->setAutoBufferSwap(false);
    askedByTimer = false;
    glWidget->repaint();
    glWidget->makeCurrent();
    const QImage painted = AxCaptureBuffer(*graphicsWindow, GL_BACK);
    glWidget->setAutoBufferSwap(true);
    return painted;
}

void AxViewerPrivate::hold(bool held)
{
    isHeld = held;
    heldPicture = QImage();
    // Painted once more, when the first frame behind the overlays is kept.
    if (held && q->isVisible())
        paintedPicture();
    frame->Request();
    if (q->scene())
        q->scene()->update();
}

QImage AxViewerPrivate::Picture()
{
    if (!graphicsWindow || !earthLoaded || !q->isVisible())
        return q->GetCurrViewerImg();
    // Transparent rather than hidden, because a hidden overlay loses the keyboard's focus.
    QGraphicsItem* const toolsBar = mapToolsWidget->graphicsProxyWidget();
    QGraphicsItem* const readOut = coordinateWidget->graphicsProxyWidget();
    const qreal ofToolsBar = toolsBar->opacity();
    const qreal ofReadOut = readOut->opacity();
    toolsBar->setOpacity(0.0);
    readOut->setOpacity(0.0);
    const QImage picture = paintedPicture();
    toolsBar->setOpacity(ofToolsBar);
    readOut->setOpacity(ofReadOut);
    return picture;
}

// Construction

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

    gridWidget = new AxGridWidget(q);
    connect(gridWidget, SIGNAL(signalGridWidget(QString, bool)), q, SLOT(slotGridWidget(QString, bool)));
    embed(gridWidget);
    gridWidget->move(overlayMargin, overlayMargin);
    gridWidget->hide();

    q->scene()->addItem(magnifier->Item());
    ownOverlays += magnifier->Item();
    volumeDesk = std::make_unique<AxVolumeDesk>(*volumeAnalysis, *gridWidget, q);
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

// Start-up

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

// With every tick

void AxViewerPrivate::tick()
{
    if (isHeld)
        return;
    if (!nextReadOut.isEmpty())
        setCoordinate(std::exchange(nextReadOut, {}));
    if (ancillaryProcess && ancillaryProcess->NoFlyZoneMask())
        manipulator->TellView();
    manipulator->TellPointed();
    aircraft.TellView();
    blockFlight.Look();
    // Posted, because a box that an event opens lets the timer go on.
    if (!inputPosted && frame->HasInput()) {
        inputPosted = true;
        QMetaObject::invokeMethod(this, &AxViewerPrivate::takeInput, Qt::QueuedConnection);
    }
    // Of the scene's own update nobody could tell whether an item has asked for one, too.
    askedByTimer = frame->MayPassBy() && areOverlaysStill();
    if (askedByTimer)
        q->viewport()->update();
    else
        q->scene()->update();
}

bool AxViewerPrivate::areOverlaysStill() const
{
    // One that paints by itself, or items of a host's, may rely on the timer.
    if (q->scene() != overlayScene || overlayScene->IsHeard() || typeid(*q) != typeid(CAxEarthViewer))
        return false;
    const QList<QGraphicsItem*> items = overlayScene->items();
    return std::all_of(items.begin(), items.end(), [this](const QGraphicsItem* item) {
        return !item->isVisible() || ownOverlays.contains(item->topLevelItem());
    });
}

bool AxViewerPrivate::passBy()
{
    const bool mayPass = std::exchange(askedByTimer, false) && isShown && frame->MayPassBy();
    const bool isChanged = overlayScene && overlayScene->TakeChange();
    QWindow* window = glWidget->windowHandle();
    if (!mayPass || isChanged || !window || viewer->done())
        return false;
    window->installEventFilter(this); // a second time is the same as once
    glWidget->makeCurrent();
    painting = true;
    const bool passed = frame->PassBy(pixels());
    painting = false;
    return passed;
}

// After any of these the window may hold something else than what was painted.
bool AxViewerPrivate::eventFilter(QObject* watched, QEvent* event)
{
    switch (event->type()) {
    case QEvent::Expose:
    case QEvent::Hide:
    case QEvent::ParentChange:
    case QEvent::PlatformSurface:
    case QEvent::Resize:
    case QEvent::Show:
    case QEvent::WinIdChange:
        isShown = false;
        break;
    default:
        break;
    }
    return AxViewerParts::eventFilter(watched, event);
}

QSize AxViewerPrivate::pixels() const
{
    return glWidget->size() * glWidget->devicePixelRatioF();
}

void AxViewerPrivate::takeInput()
{
    const QPointer<AxViewerPrivate> self(this);
    if (!isHeld)
        frame->TakeInput();
    if (self)
        inputPosted = false;
}

void AxViewerPrivate::followView(const osgEarth::Viewpoint& viewpoint, bool byEvent)
{
    if (byEvent && map)
        AxPlaceNames::At(viewpoint.getRange()).Show(*map);
    if (ancillaryProcess)
        ancillaryProcess->FollowView(viewpoint, byEvent);
}

void AxViewerPrivate::showReadOut(double longitude, double latitude, double altitude, double range)
{
    pointed = {longitude, latitude, altitude, range};
    showReadOutAgain();
}

void AxViewerPrivate::showReadOutAgain()
{
    if (!pointed)
        return;
    const auto [longitude, latitude, altitude, range] = *pointed;
    const AxReadOut texts = AxReadOut::Of(longitude, latitude, altitude, range, coordSystem);
    setCoordinate({texts.longitude, texts.latitude, texts.altitude, texts.range, texts.system});
}

void AxViewerPrivate::setCoordinate(const QStringList& texts)
{
    // A change while the frame is painted would ask for a second one at once;
    // the next tick paints anyway.
    nextReadOut = painting ? texts : QStringList();
    if (painting)
        return;
    coordinateWidget->SetCoordinate(texts[0], texts[1], texts[2], texts[3]);
    const int before = coordinateWidget->height();
    coordinateWidget->SetSystem(texts.value(4));
    if (coordinateWidget->height() != before)
        keepBarWithin();
}

AxViewerParts* AxPartsOf(CAxEarthViewer* viewer)
{
    return viewer ? viewer->Parts() : nullptr;
}

AxViewerParts* AxPartsOf(QObject* viewer)
{
    return AxPartsOf(qobject_cast<CAxEarthViewer*>(viewer));
}
