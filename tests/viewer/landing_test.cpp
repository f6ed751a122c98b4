// The landing area, the point of interest, the approach and control points.
#include "ShapeFixture.h"

#include "interaction/marks/CAxOsgDrawPointSet.h"
#include "mission/landing/CAxDownhillAnglenode.h"
#include "mission/landing/CAxInterestPointNode.h"

#include <osgEarthAnnotation/CircleNode>

using osgEarth::Annotation::CircleNode;

class Landing : public ShapeFixture
{
protected:
    void SetUp() override
    {
        ShapeFixture::SetUp();
        manipulator->setViewpoint(Straight(20.0, 10.0, 4000.0));
        ASSERT_TRUE(WaitForPicture());
    }
    void TearDown() override
    {
        viewer->SetToolType(ToolNavigate);
        viewer->RemoveInterestPoint();
        ShapeFixture::TearDown();
    }

    static osg::Node* Named(const std::string& name)
    {
        osg::Group& drawn = *viewer->GetDrawNodeGroup();
        for (unsigned i = 0; i < drawn.getNumChildren(); ++i)
            if (drawn.getChild(i)->getName() == name)
                return drawn.getChild(i);
        return nullptr;
    }
    static CircleNode* Disc()
    {
        osg::Group& drawn = *viewer->GetDrawNodeGroup();
        for (unsigned i = 0; i < drawn.getNumChildren(); ++i)
            if (auto* disc = dynamic_cast<CircleNode*>(drawn.getChild(i)))
                return disc;
        return nullptr;
    }
    void DragFromTo(const osg::Vec2f& first, const osg::Vec2f& last)
    {
        Push(first.x(), first.y());
        Drag((first.x() + last.x()) / 2.0f, (first.y() + last.y()) / 2.0f);
        Drag(last.x(), last.y());
        Release(last.x(), last.y());
    }
};

TEST_F(Landing, ShowsItsAreaAroundTheCurrentObjectWhileItsPlaceIsPicked)
{
    CAx3DGeometry* one = Import("one", {{19.99, 9.99}, {20.01, 9.99}, {20.01, 10.01}, {19.99, 10.01}});
    CAx3DGeometry* two = Import("two", {{20.03, 9.99}, {20.05, 9.99}, {20.05, 10.01}});
    viewer->SetNodeSelected(nullptr, false, false);
    viewer->SetLandingAreaVisible(true);
    viewer->SetLandingAreaRadius(1.0);
    viewer->SetLandingAreaPosition(CAxVector3D(10.0, 20.0, 0.0));
    // The viewer keeps one that an earlier test has shown.
    EXPECT_FALSE(Disc() && Disc()->getNodeMask() != 0) << "nothing is current";
    viewer->SetNodeSelected(one->GetFeatureNode(), false, false);
    viewer->SetToolType(ToolLandingPosition);
    viewer->SetLandingAreaVisible(true);
    CircleNode* disc = Disc();
    ASSERT_TRUE(disc);
    EXPECT_EQ(disc->getNodeMask(), 1u);
    EXPECT_NEAR(disc->getPosition().x(), 20.0, 1e-9) << "its x is the longitude";
    EXPECT_NEAR(disc->getPosition().y(), 10.0, 1e-9);
    viewer->SetLandingAreaRadius(2.5);
    EXPECT_NEAR(disc->getRadius().as(osgEarth::Units::METERS), 2500.0, 1e-6);
    for (const double wrong : {0.0, -1.0, std::nan("")})
        viewer->SetLandingAreaRadius(wrong);
    EXPECT_NEAR(disc->getRadius().as(osgEarth::Units::METERS), 2500.0, 1e-6);
    viewer->SetNodeSelected(two->GetFeatureNode(), false, false);
    EXPECT_NEAR(disc->getPosition().x(), 20.04, 1e-9);
    CAxOsgDrawPointSet* marks = CAxOsgDrawPointSet::OfViewer(viewer);
    marks->SelectMark(marks->AddMark(20.0, 10.02));
    ASSERT_EQ(viewer->GetCurHandleAdapter(), marks);
    EXPECT_EQ(disc->getNodeMask(), 0u) << "marks have no landing";
    viewer->SetNodeSelected(two->GetFeatureNode(), false, false);
    viewer->SetLandingAreaVisible(true);
    EXPECT_EQ(disc->getNodeMask(), 1u);
    viewer->SetToolType(ToolNavigate);
    EXPECT_EQ(disc->getNodeMask(), 0u);
    viewer->SetLandingAreaVisible(true);
    viewer->RemoveHanderAdapter(two, true);
    EXPECT_EQ(disc->getNodeMask(), 0u) << "its block is gone";
}

TEST_F(Landing, TheMouseDragsThePointOfInterest)
{
    QVector<QPointF> picked;
    const auto listening = QObject::connect(viewer, &CAxEarthViewer::InterestPointPicked, viewer,
                                            [&picked](double lng, double lat, double) {
                                                picked += {lng, lat};
                                            });
    EXPECT_FALSE(viewer->SetInterestPoint(CAxVector3D(91.0, 20.0, 0.0)));
    ASSERT_TRUE(viewer->SetInterestPoint(CAxVector3D(10.0, 20.0, 0.0)));
    ASSERT_TRUE(WaitForPicture());
    ASSERT_TRUE(Named("InterestPoint-Circle") && Named("InterestPoint-Label"));
    const osg::Matrixd before = manipulator->getMatrix();
    DragFromTo(WindowOf(20.0, 10.0), WindowOf(20.005, 10.003));
    ASSERT_EQ(picked.size(), 1) << "once, where it is let go";
    // The hills of the map stand between the eye and the place.
    EXPECT_NEAR(picked.front().x(), 20.005, 1e-3);
    EXPECT_NEAR(viewer->GetInterestPointNode()->GetPosition().x(), 10.003, 1e-3);
    EXPECT_EQ(manipulator->getMatrix(), before) << "the camera stays";
    DragFromTo(WindowOf(19.99, 9.995), WindowOf(20.005, 10.003));
    EXPECT_EQ(picked.size(), 1) << "a drag that comes across it goes on with the map";
    const CAxVector3D there = viewer->GetInterestPointNode()->GetPosition();
    const osg::Vec2f place = WindowOf(there.y(), there.x());
    Push(place.x(), place.y());
    Drag(place.x() + 40.0f, place.y());
    PressKey(Qt::Key_Escape);
    EXPECT_TRUE(Drag(place.x() + 60.0f, place.y())) << "the camera stays all the same";
    Release(place.x() + 60.0f, place.y());
    EXPECT_EQ(picked.size(), 1) << "it was given up";
    viewer->SetToolType(ToolInterestPoint);
    PressKey(Qt::Key_Escape);
    EXPECT_EQ(viewer->GetToolType(), ToolNavigate);
    viewer->RemoveInterestPoint();
    EXPECT_FALSE(viewer->GetInterestPointNode());
    EXPECT_FALSE(Named("InterestPoint-Circle"));
    QObject::disconnect(listening);
}

TEST_F(Landing, TheMouseTurnsTheApproachByItsHandle)
{
    QVector<double> angles;
    const auto listening = QObject::connect(viewer, &CAxEarthViewer::signalDownhillAngle, viewer,
                                            [&angles](double degrees) { angles += degrees; });
    {
        CAxDownhillAnglenode approach(viewer, nullptr);
        viewer->SetDownhillAngleNode(&approach);
        approach.SetLandingPoint(CAxVector3D(10.0, 20.0, 0.0));
        approach.SetAngle(-1e-20);
        EXPECT_EQ(approach.GetAngle(), 0.0);
        approach.SetHandlesVisible(true);
        ASSERT_TRUE(WaitForPicture());
        const auto* handle =
            dynamic_cast<osgEarth::Annotation::GeoPositionNode*>(Named("AngleComputer-Handle"));
        ASSERT_TRUE(handle);
        osg::Vec3d world;
        ASSERT_TRUE(handle->getPosition().toWorld(world));
        EXPECT_LT(handle->getPosition().y(), 10.0) << "it flies northwards, so it comes from the south";
        DragFromTo(WindowOf(world), WindowOf(20.004, 10.0));
        ASSERT_FALSE(angles.isEmpty());
        EXPECT_NEAR(angles.back(), 270.0, 10.0) << "it comes from the east now";
        EXPECT_EQ(approach.GetAngle(), angles.back());
    }
    EXPECT_FALSE(viewer->GetDownhillAngleNode()) << "it is gone, and the viewer knows";
    DragFromTo(WindowOf(20.004, 10.0), WindowOf(20.0, 10.002));
    QObject::disconnect(listening);
}

TEST_F(Landing, ControlPointsHaveNamesOfTheirOwn)
{
    QStringList added;
    const auto listening = QObject::connect(viewer, &CAxEarthViewer::signalAddControlPoint, viewer,
                                            [&added](const QString& name, const QVariant& value) {
                                                added += name + ":" + value.toList().value(1).toString();
                                            });
    EXPECT_TRUE(viewer->AddControlPoint("A", {20.0, 10.0, 5.0}));
    EXPECT_FALSE(viewer->AddControlPoint("A", {21.0, 10.0, 5.0}));
    EXPECT_FALSE(viewer->AddControlPoint(" ", {21.0, 10.0, 5.0}));
    EXPECT_FALSE(viewer->AddControlPoint("B", {20.0, 90.5, 5.0}));
    EXPECT_EQ(added, QStringList{"A:10"});
    EXPECT_EQ(viewer->GetControlPoints().keys(), QStringList{"A"});
    EXPECT_TRUE(viewer->RemoveControlPoint("A"));
    EXPECT_FALSE(viewer->RemoveControlPoint("A"));
    QObject::disconnect(listening);
}

TEST_F(Landing, AControlPointShowsItsCrossAndItsName)
{
    const osg::Vec2f place = WindowOf(20.0, 10.0);
    const QImage bare = viewer->GetCurrViewerImg();
    ASSERT_TRUE(viewer->AddControlPoint("Tower", {20.0, 10.0, 0.0}));
    // What differs between two columns, pixels from the place.
    const auto drawn = [&](int from, int to) {
        const QImage now = viewer->GetCurrViewerImg();
        const int middle = now.height() - static_cast<int>(place.y());
        int pixels = 0;
        for (int y = middle - 10; y <= middle + 10; ++y)
            for (int x = from; x < to; ++x)
                pixels += now.pixel(static_cast<int>(place.x()) + x, y) !=
                          bare.pixel(static_cast<int>(place.x()) + x, y);
        return pixels;
    };
    EXPECT_TRUE(waitFor([&] { return drawn(-10, 10) > 20 && drawn(21, 60) > 60; }, 5000))
        << drawn(-10, 10) << " pixels of the cross, of the name " << drawn(21, 60);
    EXPECT_TRUE(viewer->RemoveControlPoint("Tower"));
    EXPECT_TRUE(waitFor([&] { return drawn(-10, 60) == 0; }, 5000));
}
