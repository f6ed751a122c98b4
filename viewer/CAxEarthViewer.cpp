#include "viewer/CAxEarthViewer.h"
#include "analysis/CAxAncillaryProcess.h"
#include "interaction/CAxEarthManipulator.h"
#include "viewer/AxFrame.h"
#include "viewer/AxFrameCapture.h"
#include "viewer/AxGlViewport.h"
#include "viewer/AxGridWidget.h"
#include "viewer/AxHeadUpText.h"
#include "viewer/AxInputRouter.h"
#include "viewer/AxMapFile.h"
#include "viewer/AxSceneStartup.h"
#include "viewer/AxViewerLog.h"
#include "viewer/CAxCoordinateWidget.h"
#include "viewer/CAxGraphicsCompassItem.h"
#include "viewer/CAxMapToolsWidget.h"

#include <AxBaseUI/CAxMessageBox.h>
#include <AxData/CAxControl.h>

#include <osgEarth/Capabilities>
#include <osgEarth/Registry>
#include <osgGA/StateSetManipulator>
#include <osgViewer/ViewerEventHandlers>

#include <QCoreApplication>
#include <QCursor>
#include <QGraphicsProxyWidget>
#include <QKeyEvent>
#include <QMoveEvent>
#include <QPaintEngine>
#include <QResizeEvent>
#include <QScopedValueRollback>
#include <QSplashScreen>
#include <QUndoStack>

#include <cstdlib>

namespace {
constexpr int frameIntervalMs = 25;
constexpr unsigned requiredGlsl = 330;
constexpr double fieldOfViewDegrees = 30.0;
constexpr double nearPlane = 1.0;
constexpr double farPlane = 10000.0;
// Lets the camera come within metres of the ground without clipping it.
constexpr double nearFarRatio = 1e-10;
constexpr double minPitchDegrees = -90.0;
constexpr double maxPitchDegrees = -10.0;
constexpr unsigned samplesWanted = 16;
constexpr int overlayTop = 60;
constexpr int compassRightMargin = 9;
// The tools bar stands partly beyond the right edge.
constexpr int toolsBeyondEdge = 20;

const QString exclamationIcon = QStringLiteral(":/images/Normal/Exclamation_mark.png");

void ShowProblem(QWidget* parent, const QString& title, const QString& text)
{
    CAxMessageBox box(parent);
    box.SetMsgText(text);
    box.SetIcon(exclamationIcon);
    box.SetWindowTitle(title);
    box.SetBtnHidden(true, false, false);
    box.exec();
}
} // namespace

CAxEarthViewer::CAxEarthViewer(QWidget* parent) : QGraphicsView(parent)
{
    initParameters();
}

CAxEarthViewer::~CAxEarthViewer()
{
    ReleaseAll();
    // While there is still everything that a map object is part of.
    destroyAllObjects();
    // Clearing itself it tells the actions, which belong to this widget.
    delete undoStack;
    undoStack = nullptr;
    // The overlays are deleted with the scene, while this widget is still whole.
    QGraphicsScene* overlays = scene();
    setScene(nullptr);
    delete overlays;
    // Textures and buffers can only be given back while Qt's context lives.
    glWidget->makeCurrent();
    frame->Release();
    if (sceneData)
        sceneData->removeChild(AxHeadUpText::Instance().GetCamera());
    viewer->setSceneData(nullptr);
    viewer->setCameraManipulator(nullptr);
    // From here on only references keep it, so Qt must not delete it as a child.
    manipulator->setParent(nullptr);
    glWidget->doneCurrent();
}

void CAxEarthViewer::initParameters()
{
    // The scene covers the widget pixel by pixel: no frame, no scrolling.
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);

    setScene(new QGraphicsScene);

    glWidget = new AxGlViewport;
    glWidget->setMouseTracking(true);
    glWidget->setMaximumSize(maximumSize());
    setViewport(glWidget);
    setViewportUpdateMode(QGraphicsView::FullViewportUpdate);

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

    initShapes();
    initUndo();

    manipulator = new CAxEarthManipulator(this);
    manipulator->getSettings()->setMinMaxPitch(minPitchDegrees, maxPitchDegrees);
    viewer->setCameraManipulator(manipulator, true);

    initOverlays();
    setUpViewerInWindow(0, 0, width(), height());

    viewer->addEventHandler(new osgViewer::StatsHandler);
    viewer->addEventHandler(new osgGA::StateSetManipulator(viewer->getCamera()->getOrCreateStateSet()));
    viewer->setSceneData(root);
    graphicsWindow =
        dynamic_cast<osgViewer::GraphicsWindowEmbedded*>(viewer->getCamera()->getGraphicsContext());
    frame = std::make_unique<AxFrame>(viewer, graphicsWindow);
    input = std::make_unique<AxInputRouter>(graphicsWindow);
    setMouseTracking(true);
}

void CAxEarthViewer::initOverlays()
{
    compassItem = new CAxGraphicsCompassItem(nullptr);
    scene()->addItem(compassItem);
    compassItem->ConnectEvent(this);

    mapToolsWidget = new CAxMapToolsWidget(this);
    mapToolsWidget->ConnectEvent();
    coordinateWidget = new CAxCoordinateWidget(this);
    embed(mapToolsWidget);
    embed(coordinateWidget);

    gridWidget = new AxGridWidget(this);
    connect(gridWidget, SIGNAL(signalGridWidget(QString, bool)), this, SLOT(slotGridWidget(QString, bool)));
    embed(gridWidget);
    gridWidget->hide();
}

void CAxEarthViewer::embed(QWidget* overlay)
{
    // The graphics scene only takes windows, even such that have a parent.
    overlay->setWindowFlags(overlay->windowFlags() | Qt::Window | Qt::FramelessWindowHint);
    // Every frame repaints the scene; an overlay's own painting runs only when it changed.
    scene()->addWidget(overlay)->setCacheMode(QGraphicsItem::DeviceCoordinateCache);
}

void CAxEarthViewer::setUpViewerInWindow(int x, int y, int width, int height)
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

bool CAxEarthViewer::CheckAdapterGLSupport()
{
    if (!graphicsWindow)
        return false;
    if (osgEarth::Registry::capabilities().supportsGLSL(requiredGlsl))
        return true;
    ShowProblem(
        this, tr("Video adapter tips"),
        tr("Unable to run application,the video adapter not support GLSL 330 .Please check you adapter "
           "driver version or hardware supported."));
    return false;
}

void CAxEarthViewer::InitEarthViewer()
{
    _SetCurHandleAdapter(nullptr);
    multiSelect = false;
    emptyMultiSelection();
    multiSelectMarkPoints.clear();
    // The splash screen lets events through, so a host's second call can come in the middle.
    if (earthLoaded || starting)
        return;
    starting = true;

    QPixmap transparent(300, 200);
    transparent.fill(QColor(255, 255, 255, 0));
    auto* splash = new QSplashScreen(transparent);
    splash->setParent(this, splash->windowFlags());
    splash->setAttribute(Qt::WA_DeleteOnClose);
    splash->move(mapToGlobal(rect().center()) - splash->rect().center());
    splash->show();
    const auto progress = [splash](const QString& text) {
        splash->showMessage(text, Qt::AlignHCenter | Qt::AlignBottom, Qt::white);
    };

    progress(tr("Create tile map service..."));
    AxSceneStartup::SetProcessLocale();
    const osg::ref_ptr<osg::Node> loaded =
        AxSceneStartup::ReadMap(mapFile.isEmpty() ? mapFileForNetwork() : mapFile);
    mapNode = loaded ? osgEarth::MapNode::findMapNode(loaded) : nullptr;
    if (!mapNode)
        endWithoutMap();
    map = mapNode->getMap();
    mapNode->setName("MapNode");
    mapSRS = mapNode->getMapSRS();
    mapNode->getOrCreateStateSet()->setMode(GL_LIGHTING, osg::StateAttribute::ON);

    progress(tr("Loading Sky..."));
    skyNode = AxSceneStartup::CreateSky(mapNode);
    initManipulator();
    initOther();
    initEventHandler();

    drawGroup = new osg::Group;
    drawGroup->setName("Draw Group");
    geomAdapterGroup = new osg::Group;
    geomAdapterGroup->setName("GeomAdapter");
    drawGroup->addChild(geomAdapterGroup);
    boundGroup = new osg::Group;
    boundGroup->setName("Bound Group");
    sceneData->addChild(drawGroup);
    sceneData->addChild(boundGroup);

    progress(tr("Loading prohibited area..."));
    ancillaryProcess = new CAxAncillaryProcess(this, this);

    AxSceneStartup::AttachSky(skyNode, mapNode, *viewer, root);
    root->addChild(AxSceneStartup::CreateDrapedDisc(mapNode));
    ancillaryProcess->SetNoFlyZoneMask(false);

    earthLoaded = true;
    starting = false;
    startTimer(frameIntervalMs, Qt::CoarseTimer);
    // finish() waits up to a second for a window that is not shown at all.
    splash->finish(isVisible() ? this : nullptr);
    emit signalLoadEarth();
    manipulator->setViewpoint(AxSceneStartup::HomeViewpoint(*map), 0.0);
}

QString CAxEarthViewer::mapFileForNetwork() const
{
    return AxMapFilePath(QCoreApplication::applicationDirPath(),
                         CAxControl::GetInstance()->IsNetWorkConnected());
}

void CAxEarthViewer::endWithoutMap()
{
    ShowProblem(this, tr("Route Information"), tr("Create tile map service error."));
    std::exit(EXIT_SUCCESS);
}

void CAxEarthViewer::initManipulator()
{
    manipulator->setHomeViewpoint(AxSceneStartup::HomeViewpoint(*map), 0.0);
}

void CAxEarthViewer::initOther()
{
    AxSceneStartup::PrepareView(*viewer, mapNode);
    graticule = AxSceneStartup::CreateGraticule(mapNode);
    sceneData->addChild(graticule);
}

void CAxEarthViewer::initEventHandler()
{
    AxHeadUpText::Instance().SetSize(width(), height());
    sceneData->addChild(AxHeadUpText::Instance().GetCamera());
    connect(manipulator.get(), SIGNAL(mouseLeftBtnClick(osg::Vec3d, osg::Vec3d)), this,
            SLOT(slotMouseLeftBtnClick(osg::Vec3d, osg::Vec3d)));
    connect(manipulator.get(), SIGNAL(mouseLeftBtnClickSignal(osg::Drawable*)), this,
            SLOT(slotDrawableClicked(osg::Drawable*)));
}

void CAxEarthViewer::initBoundaries(osgEarth::Map* targetMap)
{
    AxSceneStartup::AddBoundaries(targetMap);
}

void CAxEarthViewer::ReleaseAll()
{
    delete ancillaryProcess;
    ancillaryProcess = nullptr;
}

void CAxEarthViewer::SetMapFile(const QString& file)
{
    mapFile = file;
}

QImage CAxEarthViewer::GetCurrViewerImg()
{
    if (!graphicsWindow)
        return {};
    glWidget->makeCurrent();
    const QImage shown = AxCaptureBuffer(*graphicsWindow, GL_FRONT);
    if (!AxIsBlack(shown) || !earthLoaded || !isVisible())
        return shown;
    // Software renderers keep no front buffer, and a covered window need not
    // have one either: paint the frame once more and read it before it is shown.
    glWidget->setAutoBufferSwap(false);
    viewport()->repaint();
    glWidget->makeCurrent();
    const QImage painted = AxCaptureBuffer(*graphicsWindow, GL_BACK);
    glWidget->swapBuffers();
    glWidget->setAutoBufferSwap(true);
    return painted;
}

bool CAxEarthViewer::IsPictureComplete() const
{
    return earthLoaded && frame->IsPictureComplete();
}

CAxEarthManipulator* CAxEarthViewer::getManipulator() const
{
    return manipulator.get();
}

osgViewer::Viewer* CAxEarthViewer::getOSGViewer() const
{
    return viewer.get();
}

osgEarth::MapNode* CAxEarthViewer::getMapNode() const
{
    return mapNode.get();
}

const osgEarth::SpatialReference* CAxEarthViewer::getSRS() const
{
    return mapSRS.get();
}

osg::Group* CAxEarthViewer::GetDrawNodeGroup() const
{
    return drawGroup.get();
}

osg::Group* CAxEarthViewer::GetBoundGroup() const
{
    return boundGroup.get();
}

void CAxEarthViewer::slotGridWidget(QString, bool bVisible)
{
    gridWidget->setVisible(bVisible);
}

void CAxEarthViewer::SetSkyNodeVisible(bool visible)
{
    const osg::Node::NodeMask mask = visible ? 1u : 0u;
    if (skyNode)
        skyNode->setNodeMask(mask);
    if (graticule)
        graticule->setNodeMask(mask);
}

void CAxEarthViewer::SetCompassVisible(bool visible)
{
    compassItem->setVisible(visible);
}

void CAxEarthViewer::SetCoordinateVisible(bool visible)
{
    if (coordinateWidget)
        coordinateWidget->setVisible(visible);
}

void CAxEarthViewer::SetCoordinate(const QString& longitude, const QString& latitude, const QString& altitude,
                                   const QString& range)
{
    // A change while the frame is painted would ask for a second one at once;
    // the next tick paints anyway.
    if (painting)
        nextReadOut = QStringList{longitude, latitude, altitude, range};
    else
        coordinateWidget->SetCoordinate(longitude, latitude, altitude, range);
}

void CAxEarthViewer::SetTextToSpeechEnabled(bool enabled)
{
    emit signalTextSpeechEnabled(!enabled);
}

void CAxEarthViewer::timerEvent(QTimerEvent* event)
{
    QObject::timerEvent(event);
    if (!nextReadOut.isEmpty())
        coordinateWidget->SetCoordinate(nextReadOut[0], nextReadOut[1], nextReadOut[2], nextReadOut[3]);
    nextReadOut.clear();
    if (ancillaryProcess && ancillaryProcess->NoFlyZoneMask())
        ancillaryProcess->FollowView(manipulator->getViewpoint());
    // Posted, because a box that an event opens lets this timer go on.
    if (!inputPosted && frame->HasInput()) {
        inputPosted = true;
        QMetaObject::invokeMethod(this, &CAxEarthViewer::takeInput, Qt::QueuedConnection);
    }
    scene()->update();
}

void CAxEarthViewer::takeInput()
{
    const QPointer<CAxEarthViewer> self(this);
    frame->TakeInput();
    if (self)
        inputPosted = false;
}

void CAxEarthViewer::drawBackground(QPainter* painter, const QRectF&)
{
    if (!earthLoaded || painter->paintEngine()->type() != QPaintEngine::OpenGL2)
        return;
    painter->save();
    painter->setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    painter->beginNativePainting();
    painting = true;
    if (!viewer->done())
        frame->Render();
    painting = false;
    painter->endNativePainting();
    painter->restore();
}

bool CAxEarthViewer::event(QEvent* event)
{
    const bool isKey = event->type() == QEvent::KeyPress || event->type() == QEvent::KeyRelease;
    if (isKey && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Tab)
        return false;
    if (!isKey && event->type() != QEvent::ShortcutOverride)
        return QGraphicsView::event(event);
    // An overlay that has the focus and no use for a key hands it to its Qt
    // parent, which is this widget, which would hand it to the overlay again.
    if (passingKey)
        return false;
    const QScopedValueRollback<bool> passing(passingKey, true);
    return QGraphicsView::event(event);
}

void CAxEarthViewer::resizeEvent(QResizeEvent* event)
{
    const QSize size = event->size();
    scene()->setSceneRect(rect());
    const QRectF area = scene()->sceneRect();
    compassItem->setPos(area.right() - compassItem->boundingRect().width() - compassRightMargin,
                        area.top() + overlayTop);
    if (graphicsWindow) {
        // A size of nothing would leave the camera with a degenerate projection for good.
        input->Resize(x(), y(), qMax(1, size.width()), qMax(1, size.height()));
        AxHeadUpText::Instance().SetSize(size.width(), size.height());
    }
    if (mapToolsWidget)
        mapToolsWidget->setGeometry(rect().right() + toolsBeyondEdge - mapToolsWidget->width(),
                                    rect().top() + overlayTop, mapToolsWidget->width(), rect().height());
    if (coordinateWidget)
        coordinateWidget->setGeometry(rect().right() + 1 - coordinateWidget->width(),
                                      rect().height() - coordinateWidget->height(), coordinateWidget->width(),
                                      coordinateWidget->height());
    QGraphicsView::resizeEvent(event);
}

void CAxEarthViewer::moveEvent(QMoveEvent* event)
{
    if (graphicsWindow)
        input->Resize(event->pos().x(), event->pos().y(), qMax(1, width()), qMax(1, height()));
    QWidget::moveEvent(event);
}
