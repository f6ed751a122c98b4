// Aircraft on the globe: what their telemetry does to the picture, and who may go away when.
#include "ViewerFixture.h"

#include "LogLines.h"
#include "mission/aircraft/AxVideoFootprint.h"
#include "mission/aircraft/CAxUavNode.h"
#include "scene/base/AxGlobePoint.h"
#include "scene/shape/AxDrawnGround.h"
#include "viewer/AxSceneWalk.h"

#include <AxAlgorthm/AxGeoid.h>

#include <osg/AutoTransform>
#include <osg/Geometry>
#include <osgEarth/MapNode>
#include <osgEarthAnnotation/FeatureNode>
#include <osgText/Text>

#include <QPointer>
#include <QPushButton>
#include <QSignalSpy>

#include <cmath>
#include <limits>
#include <memory>

namespace {
/// What a host's telemetry tells.
class Telemetry : public QObject
{
    Q_OBJECT
signals:
    void globalPositionChanged(double longitude, double latitude, double altitude, quint64 time);
    void attitudeChanged(double roll, double pitch, double yaw, quint64 time);
    void picture_Idx(int index, double longitude, double latitude);
    void VideoData(quint16 angle, qint8 zoom, quint8 reserved, quint8 flag);
};

class AircraftOnMap : public ViewerFixture
{
protected:
    static constexpr double lng = -105.0;
    static constexpr double lat = 37.4;
    static constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
    static constexpr double infinite = std::numeric_limits<double>::infinity();

    void SetUp() override
    {
        Look(20000.0);
        viewer->SetMapHeightsAboveEllipsoid(true);
        ground = AxLoadedHeight(*viewer->getMapNode(), lng, lat).value_or(notANumber);
        aircraft = viewer->CreateUavMarker(telemetry.get(), PlaneQuadPlane);
        ASSERT_TRUE(aircraft);
        aircraft->SetFlightMode(true);
    }
    void TearDown() override
    {
        viewer->SetAircraftView(CAxEarthViewer::AircraftViewFree);
        viewer->ClearUavMarker();
        viewer->SetDisplayShootPoint(false);
        viewer->SetMapHeightsAboveEllipsoid(false);
    }
    void Look(double range, double height = 3027.0)
    {
        viewer->getManipulator()->setViewpoint(osgEarth::Viewpoint("", lng, lat, height, 0.0, -60.0, range));
        ASSERT_TRUE(WaitForPicture());
    }
    void Fly(double east, double up = 100.0)
    {
        emit telemetry->globalPositionChanged(lng + east, lat, ground + up, 0);
    }
    osg::Node* Of(CAxUavNode* one, const char* suffix) const
    {
        return findNode(Root(), one->GetNode()->getName() + suffix);
    }
    static QString TextOf(CAxUavNode* one)
    {
        auto* panel = findNode(one->GetNode(), "UavPanel")->asGroup()->getChild(0)->asGeode();
        return QString::fromStdString(
            dynamic_cast<osgText::Text*>(panel->getDrawable(2))->getText().createUTF8EncodedString());
    }
    static osg::Vec3d ModelPlace(CAxUavNode* one)
    {
        return osg::computeLocalToWorld(findNode(one->GetNode(), "UavModel")->getParentalNodePaths()[0])
            .getTrans();
    }
    static void PassFrames(unsigned frames)
    {
        const auto number = [] { return viewer->getOSGViewer()->getFrameStamp()->getFrameNumber(); };
        const unsigned first = number();
        EXPECT_TRUE(waitFor([&] { return number() >= first + frames; }));
    }

    std::unique_ptr<Telemetry> telemetry = std::make_unique<Telemetry>();
    QPointer<CAxUavNode> aircraft;
    double ground = 0.0;
};
} // namespace

TEST_F(AircraftOnMap, ShowsWhatIsToldAndNothingThatIsNoPlace)
{
    osg::Node* const model = findNode(aircraft->GetNode(), "UavModel");
    ASSERT_TRUE(model);
    EXPECT_FALSE(aircraft->HasPosition());
    emit telemetry->attitudeChanged(0.1, 0.2, 1.0, 0);
    emit telemetry->picture_Idx(1, lng, lat); // before any place: at altitude 0
    const osg::Geometry* photos = Of(aircraft, "-PicPoints")->asGeode()->getDrawable(0)->asGeometry();
    const osg::Vec3f photo = static_cast<const osg::Vec3Array&>(*photos->getVertexArray())[0];
    EXPECT_LT((osg::Vec3d(photo) - AxGlobe::WorldOf({lng, lat, 0.0})).length(), 1.0);

    Fly(0.0);
    const CAxVector3D told = aircraft->GetPosition();
    EXPECT_EQ(told, CAxVector3D(lng, lat, ground + 100.0));
    EXPECT_NEAR(aircraft->GetDrawnHeading(), 57.296, 0.01);
    EXPECT_TRUE(TextOf(aircraft).contains("-105.000000")) << TextOf(aircraft).toStdString();
    EXPECT_LT((ModelPlace(aircraft) - AxGlobe::WorldOf({lng, lat, told.z()})).length(), 0.1);
    ASSERT_TRUE(Of(aircraft, "-Traj"));
    Fly(0.0);
    EXPECT_EQ(aircraft->GetTrailVertexCount(), 1);

    for (const auto& bad :
         {CAxVector3D(notANumber, lat, 0.0), CAxVector3D(lng, 91.0, 0.0), CAxVector3D(lng, lat, infinite),
          CAxVector3D(infinite, lat, 0.0), CAxVector3D(lng, notANumber, 0.0)}) {
        emit telemetry->globalPositionChanged(bad.x(), bad.y(), bad.z(), 1);
        emit telemetry->picture_Idx(2, bad.x(), bad.y() + bad.z());
    }
    emit telemetry->attitudeChanged(notANumber, infinite, notANumber, 1);
    EXPECT_EQ(aircraft->GetPosition(), told);
    EXPECT_EQ(aircraft->GetTrailVertexCount(), 1);
    EXPECT_EQ(aircraft->GetPicPointCount(), 1);
    EXPECT_NEAR(aircraft->GetDrawnHeading(), 57.296, 0.01);

    aircraft->SetLinkLost(true, 12.7);
    aircraft->SetPositionLost(true, 5.2);
    EXPECT_TRUE(TextOf(aircraft).contains("no link for 12 s"));
    aircraft->SetLinkLost(false, 0.0);
    EXPECT_TRUE(TextOf(aircraft).contains("no position for 5 s"));
    aircraft->SetPositionLost(false, 0.0);
    EXPECT_EQ(TextOf(aircraft).count('\n'), 1);
}

TEST_F(AircraftOnMap, MovesSmoothlyAndThenRests)
{
    viewer->SetDisplayShootPoint(true);
    aircraft->CreateReplayFlightLine({{lng, lat, ground + 50.0}, {lng, lat + 0.01, ground + 50.0}});
    aircraft->SetPathIndexMask(2);
    emit telemetry->VideoData(2000, 2, 0, 1);
    aircraft->SetBlockType(CAxBlock::VideoBlock);
    Fly(0.0);
    emit telemetry->picture_Idx(1, lng, lat);
    QTest::qWait(200); // the time between two messages
    Fly(0.001);
    EXPECT_EQ(aircraft->GetPosition().x(), lng + 0.001);
    PassFrames(2);
    const osg::Vec3d end = AxGlobe::WorldOf({lng + 0.001, lat, ground + 100.0});
    EXPECT_GT((ModelPlace(aircraft) - end).length(), 5.0) << "on its way";
    EXPECT_TRUE(waitFor([&] { return (ModelPlace(aircraft) - end).length() < 0.01; }));

    ASSERT_TRUE(WaitForPicture());
    AxSceneWalk walk;
    walk.Look(*viewer->getOSGViewer());
    const osg::Object* changing = walk.Changeable();
    EXPECT_FALSE(changing) << changing->className() << ' ' << changing->getName();
    const std::size_t before = walk.Fingerprint();
    PassFrames(3);
    walk.Look(*viewer->getOSGViewer());
    EXPECT_EQ(walk.Fingerprint(), before);
    emit telemetry->attitudeChanged(0.0, 0.0, 2.0, 2);
    walk.Look(*viewer->getOSGViewer());
    EXPECT_NE(walk.Fingerprint(), before);
}

TEST_F(AircraftOnMap, CanBeSeenFromNearAndFar)
{
    Fly(0.0);
    emit telemetry->attitudeChanged(0.2, 0.0, 0.5, 0);
    aircraft->SetPanelVisible(false);
    aircraft->SetTrailVisible(false);
    for (const double range : {20.0, 1000.0, 100000.0, 2000000.0}) {
        aircraft->SetPlaneVisbled(true);
        Look(range, ground + 100.0);
        const QImage with = viewer->GetCurrViewerImg();
        aircraft->SetPlaneVisbled(false);
        ASSERT_TRUE(WaitForPicture());
        PassFrames(3);
        const QImage without = viewer->GetCurrViewerImg();
        int pixels = 0, bright = 0, redder = 0;
        for (int y = 0; y < with.height(); ++y)
            for (int x = 0; x < with.width(); ++x) {
                const QColor is(with.pixel(x, y)), was(without.pixel(x, y));
                if (std::abs(is.red() - was.red()) + std::abs(is.blue() - was.blue()) < 30)
                    continue;
                ++pixels;
                bright += is.lightness() > 150;
                redder += is.red() > is.blue() + 80;
            }
        EXPECT_GT(pixels, 200) << range;
        EXPECT_GT(bright, 60) << range;
        EXPECT_GT(redder, 8) << range << ": its nose";
    }
}

TEST_F(AircraftOnMap, StandsOnTheGroundWhenLanded)
{
    for (const double off : {-40.0, 40.0}) {
        Fly(0.0, off);
        aircraft->SetLanded(true);
        PassFrames(3);
        const double above = (ModelPlace(aircraft) - AxGlobe::WorldOf({lng, lat, ground})).length();
        EXPECT_LT(above, 1.0) << off;
        EXPECT_GT(above, 0.05) << off << ": its middle";
        aircraft->SetLanded(false);
    }
    EXPECT_TRUE(waitFor([&] {
        return (ModelPlace(aircraft) - AxGlobe::WorldOf({lng, lat, ground})).length() > 39.0;
    }));
    // In the air it may be below ground that is coarse: the model alone is drawn higher.
    Fly(0.0, -40.0);
    EXPECT_EQ(aircraft->GetPosition().z(), ground - 40.0);
    EXPECT_TRUE(waitFor([&] { return std::abs(aircraft->GetDrawnPosition().z() - ground) < 1e-6; }));
    EXPECT_TRUE(waitFor([&] {
        return (ModelPlace(aircraft) - AxGlobe::WorldOf({lng, lat, ground})).length() < 0.1;
    }));
}

TEST_F(AircraftOnMap, HeightsAreThoseOfTheMap)
{
    EXPECT_EQ(viewer->GetHAE(lng, lat, ground + 10.0), ground + 10.0);
    EXPECT_EQ(viewer->GetHAE(lng, lat, ground - 10.0), ground - 10.0);
    viewer->SetMapHeightsAboveEllipsoid(false);
    EXPECT_NEAR(viewer->GetHAE(lng, lat, ground + 500.0),
                ground + 500.0 - AxGeoidHeight(lat, lng).value_or(0.0), 1e-9);
    for (const double bad : {notANumber, infinite})
        EXPECT_TRUE(std::isnan(viewer->GetHAE(lng, lat, bad)));
    EXPECT_TRUE(std::isnan(viewer->GetHAE(lng, 91.0, 0.0)));
}

TEST_F(AircraftOnMap, DisconnectingLeavesTheVideo)
{
    Fly(0.0);
    viewer->DisconnectUavSignals(aircraft);
    Fly(0.01);
    emit telemetry->attitudeChanged(0.0, 0.0, 1.0, 1);
    emit telemetry->picture_Idx(1, lng, lat);
    EXPECT_EQ(aircraft->GetPosition().x(), lng);
    EXPECT_EQ(aircraft->GetDrawnHeading(), 0.0);
    EXPECT_EQ(aircraft->GetPicPointCount(), 0);
    EXPECT_FALSE(Of(aircraft, "-Footprint"));
    emit telemetry->VideoData(0, 1, 0, 1);
    EXPECT_TRUE(Of(aircraft, "-Footprint"));
    viewer->ConnectUavSignals(aircraft);
    aircraft->SetBlockType(CAxBlock::VideoBlock);
    Fly(0.02);
    const auto* footprint = dynamic_cast<AxVideoFootprint*>(Of(aircraft, "-Footprint"));
    EXPECT_TRUE(footprint->Outline().meetsRelief);
    EXPECT_GT(footprint->Width(), 50.0);
    // Messages come faster than outlines are worked out; the last one counts.
    const double before = footprint->Outline().corners[0].x();
    Fly(0.03);
    EXPECT_EQ(footprint->Outline().corners[0].x(), before);
    EXPECT_TRUE(waitFor([&] { return footprint->Outline().corners[0].x() > before + 0.005; }));
    EXPECT_GT(footprint->Outline().corners[0].y(), footprint->Outline().corners[3].y()) << "ahead is north";
    aircraft->SetCameraHeading(180.0);
    EXPECT_TRUE(
        waitFor([&] { return footprint->Outline().corners[0].y() < footprint->Outline().corners[3].y(); }));
}

TEST_F(AircraftOnMap, KeepsSeveralApartAndGoesWhenItsTimeHasCome)
{
    Telemetry other;
    QPointer<CAxUavNode> second = viewer->AddAircraft(&other, PlaneHexacopter);
    second->SetFlightMode(true);
    Fly(0.0);
    emit other.globalPositionChanged(lng + 0.5, lat, 9000.0, 0);
    emit other.globalPositionChanged(lng + 0.6, lat, 9000.0, 0);
    EXPECT_EQ(aircraft->GetTrailVertexCount(), 1);
    EXPECT_EQ(second->GetTrailVertexCount(), 2);
    EXPECT_NE(aircraft->GetNode()->getName(), second->GetNode()->getName());
    EXPECT_EQ(viewer->GetUavNode(), aircraft);

    // One whose telemetry goes stays as it was told; one that a host deletes leaves nothing on the map.
    telemetry.reset();
    EXPECT_FALSE(aircraft->GetSignalObject());
    viewer->DisconnectUavSignals(aircraft);
    const std::string name = aircraft->GetNode()->getName();
    emit other.picture_Idx(1, lng, lat);
    delete aircraft.data();
    EXPECT_FALSE(findNode(Root(), name));
    EXPECT_FALSE(findNode(Root(), name + "-Traj"));
    EXPECT_EQ(viewer->GetUavNode(), second) << "the next one comes into focus";

    // All are cleared in answer to a message, and to the signal of an index.
    const auto clearing =
        QObject::connect(&other, &Telemetry::globalPositionChanged, viewer, [] { viewer->ClearUavMarker(); });
    emit other.globalPositionChanged(lng, lat, 9000.0, 0);
    EXPECT_FALSE(second);
    EXPECT_TRUE(viewer->Aircraft().isEmpty());
    QObject::disconnect(clearing);
    second = viewer->CreateUavMarker(&other, PlaneQuadcopter);
    second->CreateReplayFlightLine({{lng, lat, 1.0}, {lng, lat, 2.0}});
    QObject::connect(second, &CAxUavNode::CurIndexChanged, viewer, [] { viewer->ClearUavMarker(); });
    second->SetPathIndexMask(1);
    EXPECT_FALSE(second);

    // Who hears that it is no longer followed removes it too.
    second = viewer->CreateUavMarker(&other, PlaneQuadcopter);
    second->SetPosition(lng, lat, 9000.0);
    viewer->SetAircraftView(CAxEarthViewer::AircraftViewFollow);
    const auto removing = QObject::connect(viewer, &CAxEarthViewer::signalAircraftView, viewer,
                                           [&] { viewer->RemoveAircraft(second); });
    EXPECT_TRUE(viewer->RemoveAircraft(second));
    EXPECT_FALSE(second);
    QObject::disconnect(removing);

    // A viewer may go before an aircraft that was made for it.
    auto gone = std::make_unique<CAxEarthViewer>(nullptr);
    CAxUavNode left(gone.get(), &other, true);
    const osg::ref_ptr<osg::Node> node =
        left.CreatePlane(PlaneFixedWing, osgEarth::GeoPoint(), viewer->getMapNode());
    gone.reset();
    left.SetFlightMode(true);
    left.SetPosition(lng, lat, 100.0);
    left.SetPathIndexMask(3);
    EXPECT_EQ(left.GetTrailVertexCount(), 1);
}

TEST_F(AircraftOnMap, AModelThatIsMissingIsAPlainMarker)
{
    const LogLines log;
    CAxUavNode* marked = viewer->AddAircraft(nullptr, static_cast<EPlaneType>(7));
    ASSERT_TRUE(marked);
    EXPECT_EQ(LogLines::lines.filter("plain marker").size(), 1);
    EXPECT_TRUE(findNode(marked->GetNode(), "UavModel")->getBound().valid());
    EXPECT_TRUE(findNode(marked->GetNode(), "UavPanel"));
}

TEST_F(AircraftOnMap, TheCameraFollowsUntilThePilotPans)
{
    QSignalSpy views(viewer, &CAxEarthViewer::signalAircraftView);
    auto* button = viewer->findChild<QPushButton*>("m_pMapCtrlFollowAircraftBtn");
    if (!button)
        for (QWidget* widget : qApp->allWidgets())
            if (widget->objectName() == "m_pMapCtrlFollowAircraftBtn")
                button = qobject_cast<QPushButton*>(widget);
    ASSERT_TRUE(button);
    button->click();
    EXPECT_EQ(viewer->GetAircraftView(), CAxEarthViewer::AircraftViewFree) << "no place is known";
    Fly(0.0);
    button->click();
    EXPECT_EQ(viewer->GetAircraftView(), CAxEarthViewer::AircraftViewFollow);
    CAxEarthManipulator* camera = viewer->getManipulator();
    EXPECT_TRUE(waitFor([&] { return !camera->isSettingViewpoint(); }));
    aircraft->CreatePlane(PlaneHexacopter, osgEarth::GeoPoint(), viewer->getMapNode());
    PassFrames(2); // it is of another kind, and still followed
    Fly(0.01);
    EXPECT_TRUE(waitFor([&] { return std::abs(camera->centerMap().x() - lng - 0.01) < 1e-6; }));
    PassFrames(3);
    EXPECT_FALSE(viewer->getOSGViewer()->getRequestContinousUpdate())
        << "what stands still is not drawn anew";
    camera->rotate(0.3, 0.1);
    PassFrames(2);
    EXPECT_EQ(viewer->GetAircraftView(), CAxEarthViewer::AircraftViewFollow) << "the pilot may orbit";

    viewer->SetAircraftView(CAxEarthViewer::AircraftViewChase);
    EXPECT_TRUE(waitFor([&] { return !camera->isSettingViewpoint(); }));
    emit telemetry->attitudeChanged(0.0, 0.0, 1.0, 0);
    double heading = 0.0;
    EXPECT_TRUE(waitFor([&] {
        camera->getCompositeEulerAngles(&heading);
        return std::abs(std::remainder(heading - 1.0, 2.0 * AxGlobe::pi)) < 0.01;
    })) << heading;
    camera->pan(0.1, 0.0);
    EXPECT_TRUE(waitFor([&] { return viewer->GetAircraftView() == CAxEarthViewer::AircraftViewFree; }));
    EXPECT_EQ(views.size(), 3);
}

TEST_F(AircraftOnMap, IsInTheMiddleOfTheViewFromHome)
{
    const CAxVector3D home(lng, lat, ground);
    const auto inPicture = [](const osg::Vec3d& world) {
        const osg::Camera& camera = *viewer->getOSGViewer()->getCamera();
        return world * camera.getViewMatrix() * camera.getProjectionMatrix();
    };
    const struct
    {
        double east, up;
    } rows[] = {{0.02, 300.0}, {0.002, 1500.0}, {0.0, 4000.0}, {-0.05, 100.0}};
    aircraft->SetInterpolation(false);
    for (const auto& row : rows) {
        Fly(row.east, row.up);
        PassFrames(2);
        viewer->SetHomeView(home);
        EXPECT_TRUE(waitFor([] { return !viewer->getManipulator()->isSettingViewpoint(); }));
        PassFrames(2);
        const osg::Vec3d middle = inPicture(ModelPlace(aircraft));
        EXPECT_LT(std::hypot(middle.x(), middle.y()), 0.02) << row.east << ' ' << row.up;
        const osg::Vec3d there = inPicture(AxGlobe::WorldOf({lng, lat, ground}));
        EXPECT_LT(std::max(std::abs(there.x()), std::abs(there.y())), 1.0) << row.east << ' ' << row.up;
    }
}

TEST_F(AircraftOnMap, AReplayIsDrawnUpToItsIndex)
{
    Fly(0.0);
    std::vector<CAxVector3D> flight;
    for (int i = 0; i < 20000; ++i)
        flight.emplace_back(lng + 1e-5 * i, lat + 1e-3 * std::sin(0.05 * i), ground + 100.0);
    QSignalSpy indices(aircraft, &CAxUavNode::CurIndexChanged);
    aircraft->CreateReplayFlightLine({flight.begin(), flight.begin() + 5});
    EXPECT_EQ(aircraft->GetTrailVertexCount(), 0) << "the live trail has gone";
    const auto drawn = [this] {
        auto* line = dynamic_cast<osgEarth::Annotation::FeatureNode*>(Of(aircraft, "-Replay"));
        return line ? static_cast<int>(line->getFeature()->getGeometry()->size()) : -1;
    };
    for (const int index : {3, 3, 99, 0, 2}) {
        aircraft->SetPathIndexMask(index);
        EXPECT_TRUE(waitFor([&] { return drawn() == std::min(index, 5); })) << index;
    }
    EXPECT_EQ(indices.size(), 4);
    EXPECT_EQ(indices[1][0].toInt(), 5);
    aircraft->CreateReplayFlightLine(flight);
    aircraft->SetPathIndexMask(19999);
    EXPECT_TRUE(waitFor([&] { return drawn() > 500; }));
    EXPECT_LE(drawn(), 4001);

    viewer->SetDisplayShootPoint(true);
    aircraft->CreateReplayPicPoint(
        {QString("7,%1,%2,%3").arg(lng).arg(lat).arg(ground), "8,91", "x,1,2,3", "9,0,91,0"});
    EXPECT_EQ(aircraft->GetPicPointCount(), 1);
    const osg::Geometry* points = Of(aircraft, "-PicPoints")->asGeode()->getDrawable(0)->asGeometry();
    const auto shown = [points] { return points->getNumPrimitiveSets(); };
    EXPECT_TRUE(waitFor([&] { return shown() == 1; }));
    // The mouse beside it.
    const osg::Vec3d beside = AxGlobe::WorldOf({lng + 1e-5, lat, ground});
    emit viewer->getManipulator()->mouseLeftBtnMove(osg::Vec3d(), beside);
    osg::Node* label = findNode(Root(), "PicPoint-Label");
    ASSERT_TRUE(label);
    EXPECT_NE(label->getNodeMask(), 0u);
    emit viewer->getManipulator()->mouseLeftBtnMove(osg::Vec3d(), osg::Vec3d());
    EXPECT_EQ(label->getNodeMask(), 0u);
    viewer->SetDisplayShootPoint(false);
    EXPECT_TRUE(waitFor([&] { return shown() == 0; }));
    aircraft->VisibleAllPicPoint();
    EXPECT_TRUE(waitFor([&] { return shown() == 1; }));
    aircraft->SetReplayPhotos({{1, {lng, lat, ground}}, {2, {lng, 91.0, ground}}, {1, {lng, lat, ground}}});
    const auto pointsAt = [this](int count) {
        aircraft->ShowReplayPhotosTo(count);
        return aircraft->GetPicPointCount();
    };
    EXPECT_EQ(pointsAt(3), 2) << "the second is no place";
    EXPECT_EQ(pointsAt(2), 1);
    emit telemetry->picture_Idx(1, lng, lat);
    EXPECT_EQ(aircraft->GetPicPointCount(), 2) << "what the replay tells is in the scene already";
    EXPECT_EQ(pointsAt(0), 0);
    aircraft->RemovePicPoint();
    EXPECT_FALSE(Of(aircraft, "-PicPoints"));
}

#include "aircraft_test.moc"
