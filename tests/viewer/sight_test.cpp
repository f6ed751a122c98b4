// What the viewer keeps and draws of lines of sight and viewsheds; what they are is tested in the suite of
// analysis.
#include "ShapeFixture.h"

#include "analysis/sight/AxSightAnalysis.h"
#include "viewer/AxMapLayers.h"
#include "viewer/CAxEarthViewer.h"

#include <osgEarth/Map>
#include <osgEarth/MapNode>

TEST_F(ShapeFixture, AToolThatTakesPlacesChoosesAndHoldsNothing)
{
    const CAx3DGeometry* block = Import("block", {{19, 9}, {21, 9}, {21, 11}, {19, 11}});
    ASSERT_TRUE(block);
    int places = 0;
    const int steps = viewer->GetUndoStack()->count();
    QObject context;
    QObject::connect(manipulator,
                     QOverload<osg::Vec3d, osg::Vec3d>::of(&CAxEarthManipulator::mouseLeftBtnClick), &context,
                     [&] { ++places; });
    for (const bool isChosen : {false, true}) {
        viewer->SetNodeSelected(isChosen ? block->GetFeatureNode() : nullptr, false, false);
        const CAxHandleAdapter* current = viewer->GetCurHandleAdapter();
        viewer->SetToolType(ToolHost21);
        places = 0;
        for (const osg::Vec2d& at : {osg::Vec2d(20, 10), osg::Vec2d(19, 10), osg::Vec2d(21, 11)})
            Click(at.x(), at.y());
        EXPECT_EQ(places, 3) << "within, on an edge, and on a corner with its handle";
        EXPECT_EQ(viewer->GetCurHandleAdapter(), current);
        EXPECT_EQ(viewer->GetUndoStack()->count(), steps);
        viewer->SetToolType(ToolNavigate);
    }
}

TEST_F(ShapeFixture, SightAnswersTheLatestQuestionAndDrawsItUntilItIsRemoved)
{
    AxSightAnalysis* sight = viewer->GetSightAnalysis();
    ASSERT_TRUE(sight);
    QList<int> added, removed;
    QStringList failures;
    QObject context;
    QObject::connect(sight, &AxSightAnalysis::added, &context, [&](int number) { added += number; });
    QObject::connect(sight, &AxSightAnalysis::removed, &context, [&](int number) { removed += number; });
    QObject::connect(sight, &AxSightAnalysis::failed, &context, [&](const QString& why) { failures += why; });
    const auto answered = [&](int so) {
        return QTest::qWaitFor([&] { return added.size() + failures.size() >= so && !sight->IsBusy(); },
                               20000);
    };
    const osgEarth::Map* map = viewer->getMapNode()->getMap();
    const int layers = map->getNumImageLayers();
    const int nodes = Scenery();

    QString why;
    EXPECT_FALSE(sight->LookAlong({{20.0, 10.0}, 2.0}, {{40.0, 10.0}, 2.0}, {}, &why));
    EXPECT_FALSE(why.isEmpty());
    AxViewshedQuestion question;
    question.observer = {20.0, 10.0};
    question.radius = 3000.0;
    question.cell = 0.0;
    EXPECT_FALSE(sight->LookAround(question, &why));
    EXPECT_FALSE(sight->IsBusy());

    question.cell = 30.0;
    ASSERT_TRUE(sight->LookAround(question, &why)) << qPrintable(why);
    ASSERT_TRUE(sight->LookAlong({{20.0, 10.0}, 2.0}, {{20.01, 10.0}, 2.0}));
    ASSERT_TRUE(answered(1));
    ASSERT_EQ(added.size(), 1) << "of two questions";
    ASSERT_TRUE(sight->GetResult(added[0]).line);
    EXPECT_EQ(Scenery(), nodes + 1);
    EXPECT_EQ(map->getNumImageLayers(), layers);

    ASSERT_TRUE(sight->LookAround(question));
    ASSERT_TRUE(answered(2));
    ASSERT_EQ(failures, QStringList());
    const int viewshed = added.last();
    ASSERT_TRUE(sight->GetResult(viewshed).viewshed);
    ASSERT_EQ(map->getNumImageLayers(), layers + 1);
    EXPECT_TRUE(map->getImageLayerAt(layers)->isOpen());
    EXPECT_TRUE(sight->SetVisible(viewshed, false));
    EXPECT_FALSE(map->getImageLayerAt(layers)->getVisible());
    viewer->GetMapLayers()->SetVisible(map->getImageLayerAt(layers)->getUID(), true);
    EXPECT_TRUE(sight->GetResult(viewshed).isVisible) << "a list of layers has shown it";
    EXPECT_FALSE(sight->SetVisible(viewshed + 1, false));

    ASSERT_TRUE(sight->LookAround(question));
    sight->CallOff();
    EXPECT_FALSE(sight->IsBusy());
    EXPECT_FALSE(sight->Remove(viewshed + 1));
    sight->Clear();
    EXPECT_EQ(removed.size(), 2);
    EXPECT_EQ(map->getNumImageLayers(), layers);
    EXPECT_EQ(Scenery(), nodes);

    sight->Preview({{20.0, 10.0}, 2.0}, {{20.01, 10.0}, 2.0});
    sight->Preview({{20.0, 10.0}, 2.0}, {{20.02, 10.0}, 2.0});
    EXPECT_FALSE(sight->IsBusy());
    EXPECT_TRUE(QTest::qWaitFor([&] { return Scenery() == nodes + 1; }, 20000));
    sight->EndPreview();
    EXPECT_EQ(Scenery(), nodes);
    EXPECT_EQ(added.size(), 2) << "what was called off or is a preview is no result";
    EXPECT_TRUE(sight->GetResults().isEmpty());
}
