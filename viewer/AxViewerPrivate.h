#pragma once
#include "interaction/editing/AxEditHistory.h"
#include "interaction/objects/AxObjects.h"
#include "interaction/tools/AxToolBox.h"
#include "scene/AxScene.h"
#include "scene/AxViewerParts.h"
#include "viewer/AxAircraftFleet.h"
#include "viewer/AxBlockFlight.h"
#include "viewer/CAxEarthViewer.h"

#include <AxAlgorthm/AxCoordinateSystem.h>

#include <osg/Group>
#include <osg/Matrixd>
#include <osg/ref_ptr>
#include <osgEarth/Map>
#include <osgEarth/MapNode>
#include <osgEarth/Viewpoint>
#include <osgEarthUtil/GeodeticGraticule>
#include <osgEarthUtil/Sky>
#include <osgViewer/Viewer>

#include <QHash>
#include <QPointer>
#include <QRectF>
#include <QSet>

#include <array>

class AxControlPoints;
class AxFrame;
class AxGlViewport;
class AxGridWidget;
class AxGroundRequests;
class AxInputRouter;
class AxLensPicture;
class AxMagnifier;
class AxMapLayers;
class AxMeasurements;
class AxModelLayers;
class AxModelOutlines;
class AxOverlayScene;
class AxPictureCapture;
class AxSightAnalysis;
class AxVolumeAnalysis;
class AxVolumeDesk;
class CAxGraphicsCompassItem;
class CAxLandingAreaNode;
class QKeyEvent;
class QMouseEvent;

/**
 * What the viewer is made of: the scene and its start-up, the objects, the tools, the overlays, the frame
 * and the input. It is the viewer as the rooms below know it.
 */
class AxViewerPrivate : public AxViewerParts, public AxScene
{
public:
    explicit AxViewerPrivate(CAxEarthViewer* viewer);
    ~AxViewerPrivate() override;

    // As the rooms below see it

    AxScene& Scene() override { return *this; }
    AxObjectBook& Objects() override { return objects; }
    AxToolInHand& Tools() override { return tools; }
    AxZoneAnswers* Zones() override;
    QGraphicsView* Widget() override { return q; }
    QObject* Mouse() override;
    std::optional<bool> AngleHandlesShown() const override;
    void SwitchVoice(bool off) override { emit q->signalTextSpeechEnabled(!off); }
    void ShowShootPoints(bool shown) override { q->SetDisplayShootPoint(shown); }
    void ShowAllBlocks() override { q->SetAllBlockView(0.0); }
    void SwitchAircraftView() override { q->SetAircraftView(); }

    osgViewer::Viewer* View() const override { return viewer; }
    osgEarth::MapNode* MapNode() const override { return mapNode; }
    const osgEarth::SpatialReference* MapSRS() const override { return mapSRS; }
    osg::Group* DrawGroup() const override { return drawGroup; }
    osg::Group* ObjectGroup() const override { return geomAdapterGroup; }
    void GetElevations(QList<osg::Vec3d>& points) const override;
    double GetHAE(double longitude, double latitude, double altitude) const override;
    const AxCoordinateSystem& CoordinateSystem() const override { return coordSystem; }
    QImage Picture() override;

    /// Tells the handles that are there whether they are put on models.
    void clampToModels();
    /// Lays what is drawn near a model anew; of one that has gone, where it was.
    void layNearModel(const QString& layer);

    // Construction and start-up, in their order (AxViewerStartup.cpp)

    void initParameters();
    void initOverlays();
    void embed(QWidget* overlay);
    void setUpViewerInWindow(int x, int y, int width, int height);
    /// Reads the map and completes the scene; the splash screen lets events run meanwhile. False when one of
    /// them ended the viewer.
    bool startUp();
    void initManipulator();
    void initOther();
    void initEventHandler();
    void initBoundaries(osgEarth::Map* targetMap, const QString& file);
    void addGroups();
    [[noreturn]] void endWithoutMap(const QString& path, const QString& reason);
    /// Everything that needs the OpenGL context, and what would outlive the widget otherwise.
    void shutDown();

    // What happens with every tick of the timer (AxViewerTick.cpp)

    void tick();
    /// Whether everything over the map asks for a repaint when it has changed.
    bool areOverlaysStill() const;
    /// Takes a paint event as a frame in which nothing has to be painted; false when something has.
    bool passBy();
    bool eventFilter(QObject* watched, QEvent* event) override;
    QSize pixels() const;
    void takeInput();
    void followView(const osgEarth::Viewpoint& viewpoint, bool byEvent);
    void showReadOut(double longitude, double latitude, double altitude, double range);
    /// Shows the same place once more, as after a change of the coordinate system.
    void showReadOutAgain();
    void setCoordinate(const QStringList& texts);
    /// Has the bar's buttons stand between the compass and the read-out.
    void keepBarWithin();
    /// Puts the disc of the landing area around the current object, or hides it when there is none.
    void followLandingArea();
    /// Ends a drag of the point of interest, or of the approach, with where it was; true when there was one.
    bool giveUpHandleDrag();
    /// Takes a place that the mouse has chosen for the point of interest; degrees, degrees, metres.
    void pickInterestPoint(double longitude, double latitude, double altitude);
    /// Paints the frame once more and reads it, without showing it.
    QImage paintedPicture();
    /// Lets go of all keys and buttons.
    void letGoOfInput();

    // While pictures are taken (CAxEarthViewerCapture.cpp)

    /// Holds the picture on the screen as it is, and takes no input, or lets both go on.
    void hold(bool held);
    /// Whether that is input for a map that is held, which is for nobody then.
    bool swallow(QEvent& event);
    bool swallowKey(QKeyEvent& event);
    bool swallowMouse(const QMouseEvent& event);

    CAxEarthViewer* const q;

    osg::ref_ptr<osg::Group> root;
    osg::ref_ptr<osgViewer::GraphicsWindowEmbedded> graphicsWindow;
    osg::ref_ptr<osgEarth::Map> map;
    osg::ref_ptr<osg::Group> sceneData;
    osg::ref_ptr<osg::StateSet> rootStateSet;
    osg::ref_ptr<osgViewer::Viewer> viewer;
    osg::ref_ptr<osgEarth::MapNode> mapNode;
    osg::ref_ptr<osgEarth::Util::SkyNode> skyNode;
    osg::ref_ptr<const osgEarth::SpatialReference> mapSRS;
    osg::ref_ptr<CAxEarthManipulator> manipulator;
    osg::ref_ptr<osg::Group> drawGroup;
    osg::ref_ptr<osg::Group> geomAdapterGroup;
    osg::ref_ptr<osg::Group> boundGroup;
    osg::ref_ptr<osgEarth::Util::GeodeticGraticule> graticule;

    AxObjects objects;
    AxEditHistory history;
    AxToolBox tools;
    AxAircraftFleet aircraft;
    AxBlockFlight blockFlight;
    CAxAncillaryProcess* ancillaryProcess = nullptr;
    std::unique_ptr<AxGroundRequests> groundRequests;
    std::unique_ptr<AxSightAnalysis> sightAnalysis;
    std::unique_ptr<AxVolumeAnalysis> volumeAnalysis;
    std::unique_ptr<AxVolumeDesk> volumeDesk;
    std::unique_ptr<AxMeasurements> measurements;
    QPointer<CAxDownhillAnglenode> downhillAngleNode;
    QPointer<CAxInterestPointNode> interestPointNode;
    QPointer<CAxLandingAreaNode> landingArea;
    std::unique_ptr<AxControlPoints> controlPoints;
    std::unique_ptr<AxMapLayers> layers;
    std::unique_ptr<AxModelLayers> modelLayers;
    QHash<QString, QRectF> modelExtents; ///< as objects were last laid on them
    std::unique_ptr<AxModelOutlines> modelOutlines;

    CAxGraphicsCompassItem* compassItem = nullptr;
    CAxMapToolsWidget* mapToolsWidget = nullptr;
    CAxCoordinateWidget* coordinateWidget = nullptr;
    AxGridWidget* gridWidget = nullptr;
    QSet<const QGraphicsItem*> ownOverlays;
    AxOverlayScene* overlayScene = nullptr;

    QString mapFile;
    osg::Vec3d projPlaneCenter;
    osg::Matrixd projPlaneMatrix;
    AxCoordinateSystem coordSystem;
    std::optional<std::array<double, 4>> pointed; ///< what the read-out shows, as the manipulator told it

    AxGlViewport* glWidget = nullptr;
    std::unique_ptr<AxFrame> frame;
    std::unique_ptr<AxMagnifier> magnifier;
    std::unique_ptr<AxLensPicture> lensPicture;
    std::unique_ptr<AxPictureCapture> capture;
    std::unique_ptr<AxInputRouter> input;
    QStringList nextReadOut;
    bool earthLoaded = false;
    bool starting = false;
    bool painting = false;
    /// While pictures are taken the window shows this one, and nothing else is drawn.
    QImage heldPicture;
    bool isHeld = false;
    // What was pressed while it was held is nobody's afterwards either.
    QSet<int> keysOfHold;
    Qt::MouseButtons buttonsOfHold;
    bool askedByTimer = false; // for the next paint event, whoever else asks for it
    bool isShown = false;      // what is in the window is what was painted last
    bool inputPosted = false;
    /// The key event that the widget is handing to the scene.
    const QEvent* passedKey = nullptr;
    bool deleteKeyTaken = false;
};
