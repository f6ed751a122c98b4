// Model layers under the mouse, and navigation around models.
#include "ProtocolFixture.h"

#include "interaction/models/AxModelPick.h"

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
    const double range = manipulator->getDistance();
    EXPECT_TRUE(Scroll(GUIEventAdapter::SCROLL_DOWN, 400, 300));
    EXPECT_NEAR(manipulator->getDistance() / range, 0.9, 0.01) << "a tenth of the way to the model";
    const osg::Vec2f beside = WindowOf(30.0, 10.0);
    EXPECT_FALSE(Scroll(GUIEventAdapter::SCROLL_DOWN, beside.x(), beside.y()));
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

TEST_F(ProtocolModel, TheWheelKeepsHeadingAndPitch)
{
    for (const double pitch : {-90.0, -60.0}) {
        manipulator->setViewpoint(osgEarth::Viewpoint("", 20.0, 10.0, 0.0, 40.0, pitch, 8e6));
        ASSERT_TRUE(WaitForPicture());
        const osg::Vec2f aside = WindowOf(21.0, 11.0);
        for (int i = 0; i < 3; ++i)
            EXPECT_TRUE(Scroll(GUIEventAdapter::SCROLL_DOWN, aside.x(), aside.y()));
        EXPECT_LT(manipulator->getDistance(), 7e6);
        EXPECT_NEAR(manipulator->getViewpoint().getHeading(), 40.0, 1e-6) << pitch;
        EXPECT_NEAR(manipulator->getViewpoint().getPitch(), pitch, 1e-6);
    }
}

TEST_F(ProtocolModel, AShakyDoubleClickFliesAllTheSame)
{
    EXPECT_TRUE(DoubleClick(400, 300));
    for (const float x : {401.0f, 402.0f})
        EXPECT_TRUE(Drag(x, 300));
    EXPECT_TRUE(manipulator->isSettingViewpoint());
    Release(402, 300);
    EXPECT_TRUE(manipulator->isSettingViewpoint());
    manipulator->clearViewpoint();
}
