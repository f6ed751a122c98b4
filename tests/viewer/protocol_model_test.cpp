// Model layers under the mouse, and navigation around models.
#include "ProtocolFixture.h"

#include "interaction/models/AxModelLayers.h"

#include <osg/Shape>
#include <osg/ShapeDrawable>

#include <cmath>

using osgGA::GUIEventAdapter;

class ProtocolModel : public ProtocolFixture
{
protected:
    // A box around a place, 400 km wide and high, in the group that is searched.
    void SetUp() override
    {
        ProtocolFixture::SetUp();
        osg::ref_ptr<osg::Geode> geode = new osg::Geode;
        geode->addDrawable(new osg::ShapeDrawable(new osg::Box(osg::Vec3(), 400000.0f)));
        model = new osg::MatrixTransform(FrameAt(20.0, 10.0));
        model->setName("tower");
        model->setNodeMask(AxModelLayerMask);
        model->addChild(geode);
        layer = new osg::Group;
        layer->setName("city");
        layer->addChild(model);
        viewer->getMapNode()->getModelLayerGroup()->addChild(layer);
        modelRoot = new osg::Group;
        modelRoot->setName("ModelRoot");
        root = Root()->asGroup();
    }
    void TearDown() override
    {
        viewer->getMapNode()->getModelLayerGroup()->removeChild(layer);
        root->removeChild(modelRoot);
        ProtocolFixture::TearDown();
    }
    // The branch that model mode works in.
    void EnterModelMode()
    {
        modelRoot->addChild(layer);
        root->addChild(modelRoot);
        manipulator->setOperateMode(CAxEarthManipulator::OperateModel);
    }

    osg::ref_ptr<osg::MatrixTransform> model;
    osg::ref_ptr<osg::Group> layer;
    osg::ref_ptr<osg::Group> modelRoot;
    osg::Group* root = nullptr;
};

TEST_F(ProtocolModel, PicksTheModelButTheGroundsWorldPoint)
{
    Move(400, 300);
    EXPECT_NEAR(lngLatPos.z(), 200000.0, 500.0);
    EXPECT_LT(worldCoordPos.length(), 6400000.0);
    Push(400, 300);
    Heard();
    Release(400, 300);
    EXPECT_EQ(Heard(), (QStringList{"click model", "release", "click"}));
    EXPECT_EQ(names, (QStringList{"tower", "city"}));
    layer->setName("");
    Push(400, 300);
    Heard();
    Release(400, 300);
    EXPECT_EQ(Heard(), (QStringList{"release", "click"})) << "one of the names is empty";
}

TEST_F(ProtocolModel, ScrollsTowardsTheModelUnderTheCursor)
{
    const osg::Vec3d hit = FrameAt(20.0, 10.0, 200000.0).getTrans();
    const auto center = [this] {
        osg::Vec3d world;
        manipulator->getViewpoint().focalPoint()->toWorld(world);
        return world;
    };
    const osg::Vec3d before = center();
    const double range = manipulator->getViewpoint().getRange();
    const osg::Vec2f place = WindowOf(hit);
    EXPECT_TRUE(Scroll(GUIEventAdapter::SCROLL_DOWN, place.x(), place.y()));
    const double share = ((center() - hit).length()) / (before - hit).length();
    EXPECT_NEAR(share, 0.9, 1e-3);
    EXPECT_NEAR(manipulator->getViewpoint().getRange() / range, 0.9, 1e-3);
    for (int i = 0; i < 300; ++i)
        Scroll(GUIEventAdapter::SCROLL_DOWN, place.x(), place.y());
    EXPECT_NEAR((center() - hit).length(), 5.0, 0.5);
    EXPECT_TRUE(std::isfinite(manipulator->getViewpoint().getRange()));

    const osg::Vec2f beside = WindowOf(30.0, 10.0);
    manipulator->setViewpoint(Straight(20.0, 10.0, 1.5e7));
    EXPECT_FALSE(Scroll(GUIEventAdapter::SCROLL_DOWN, beside.x(), beside.y()));
}

TEST_F(ProtocolModel, FliesToAModelThatIsDoubleClicked)
{
    EXPECT_TRUE(DoubleClick(400, 300));
    EXPECT_TRUE(manipulator->isSettingViewpoint());
    ASSERT_TRUE(waitFor([this] { return !manipulator->isSettingViewpoint(); }));
    EXPECT_NEAR(manipulator->getViewpoint().getRange(), 0.4 * 1.5e7, 1000.0);
}

TEST_F(ProtocolModel, MovesFreelyInModelMode)
{
    EnterModelMode();
    Push(400, 300);
    Drag(400, 300);
    const osgEarth::Viewpoint before = manipulator->getViewpoint();
    EXPECT_TRUE(Drag(440, 300));
    EXPECT_LT(manipulator->getViewpoint().focalPoint()->x(), before.focalPoint()->x());
    Release(440, 300);

    EXPECT_TRUE(Push(400, 300, GUIEventAdapter::RIGHT_MOUSE_BUTTON));
    Drag(400, 300, GUIEventAdapter::RIGHT_MOUSE_BUTTON);
    EXPECT_TRUE(Drag(400, 390, GUIEventAdapter::RIGHT_MOUSE_BUTTON));
    EXPECT_NE(manipulator->getViewpoint().getPitch(), before.getPitch());
    Release(400, 390, GUIEventAdapter::RIGHT_MOUSE_BUTTON);

    const double range = manipulator->getDistance();
    EXPECT_TRUE(Scroll(GUIEventAdapter::SCROLL_UP, 400, 300));
    EXPECT_NEAR(manipulator->getDistance(), 1.1 * range, 1.0);
    EXPECT_TRUE(Scroll(GUIEventAdapter::SCROLL_DOWN, 400, 300));
    EXPECT_NEAR(manipulator->getDistance(), 0.99 * range, 1.0);
}

TEST_F(ProtocolModel, HoldsStillWhileAVertexIsDraggedOnAModel)
{
    TestBlock block(viewer, "edited");
    block.GetAnchor() = {{20.0, 10.0, 0.0}};
    ASSERT_TRUE(viewer->AddHandleAdapter(&block));
    viewer->SetNodeSelected(block.GetFeatureNode(), false, false);
    block.GetAnchorEditor()->SetDragState(true);
    EnterModelMode();
    Push(400, 300);
    const double before = manipulator->getViewpoint().focalPoint()->x();
    EXPECT_TRUE(Drag(420, 300));
    EXPECT_TRUE(Drag(460, 300));
    EXPECT_EQ(manipulator->getViewpoint().focalPoint()->x(), before);
    Release(460, 300);
}

TEST_F(ProtocolModel, PicksModelsThatStandOutOverSpaceInModelModeOnly)
{
    // Beyond the limb of the globe.
    model->setMatrix(osg::Matrixd::translate(0.0, 0.0, 3000000.0) * FrameAt(80.0, 10.0));
    const osg::Vec2f place = WindowOf(model->getMatrix().getTrans());
    Move(place.x(), place.y());
    EXPECT_EQ(worldCoordPos, osg::Vec3d());
    EnterModelMode();
    Move(place.x(), place.y());
    EXPECT_LT((worldCoordPos - model->getMatrix().getTrans()).length(), 400000.0);
    EXPECT_NEAR(lngLatPos.x(), 80.0, 5.0);
}

TEST_F(ProtocolModel, TakesElevationsFromTheTopsOfModelsWhenAsked)
{
    QList<osg::Vec3d> points{{20.0, 10.0, -1.0}, {30.0, 10.0, -1.0}};
    layer->setName("ModelLayer");
    EnterModelMode();
    manipulator->GetElevations(points, false);
    const double ground = points[0].z();
    EXPECT_LT(ground, 9000.0);
    model->setMatrix(FrameAt(20.0, 10.0, -195000.0));
    manipulator->GetElevations(points, true);
    EXPECT_NEAR(points[0].z(), 5000.0, 1.0);
    EXPECT_LT(points[1].z(), 4000.0);
    EXPECT_NE(points[1].z(), -1.0);
}

TEST_F(ProtocolModel, LooksAtAPlaneInProjectedMode)
{
    manipulator->setProjMode(CAxEarthManipulator::ProjPlaneView);
    const osgEarth::Viewpoint before = manipulator->getViewpoint();
    Push(400, 300, GUIEventAdapter::MIDDLE_MOUSE_BUTTON);
    Drag(400, 300, GUIEventAdapter::MIDDLE_MOUSE_BUTTON);
    Drag(500, 360, GUIEventAdapter::MIDDLE_MOUSE_BUTTON);
    Release(500, 360, GUIEventAdapter::MIDDLE_MOUSE_BUTTON);
    EXPECT_EQ(manipulator->getViewpoint().getPitch(), before.getPitch());
    EXPECT_EQ(manipulator->getViewpoint().getHeading(), before.getHeading());
    manipulator->zoom(0.0, 0.5);
    EXPECT_NEAR(manipulator->getDistance(), 1.5 * before.getRange(), 1.0);
    manipulator->pan(0.1, 0.0);
    EXPECT_LT(manipulator->getViewpoint().focalPoint()->x(), before.focalPoint()->x());
    EXPECT_FALSE(Scroll(GUIEventAdapter::SCROLL_DOWN, 400, 300));
}

TEST_F(ProtocolModel, LooksWhereItIsTold)
{
    const osg::Vec3d place = FrameAt(25.0, 15.0).getTrans();
    manipulator->setCameraLookAt(place, 725.0, -40.0, 50000.0);
    const osgEarth::Viewpoint view = manipulator->getViewpoint();
    EXPECT_NEAR(view.focalPoint()->x(), 25.0, 1e-6);
    EXPECT_NEAR(view.getHeading(), 5.0, 1e-6);
    EXPECT_NEAR(view.getPitch(), -40.0, 1e-6);
    EXPECT_NEAR(view.getRange(), 50000.0, 1e-3);
    manipulator->setCameraLookAt(place, 5.0, -40.0, 0.0);
    manipulator->setCameraLookAt({NAN, 0.0, 0.0}, 5.0, -40.0, 100.0);
    manipulator->setCameraLookAt(place, INFINITY, -40.0, 100.0);
    EXPECT_NEAR(manipulator->getViewpoint().getRange(), 50000.0, 1e-3);
}
