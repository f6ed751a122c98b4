// Approaches and points of interest as the menu keeps them.
#include "host/LandingMenu.h"
#include "interaction/CAxEarthManipulator.h"
#include "interaction/CAxHandleAdapter.h"
#include "mission/CAxDownhillAnglenode.h"
#include "mission/CAxInterestPointNode.h"
#include "SuiteViewer.h"

#include <AxData/CAxBlockManager.h>

#include <QMenu>
#include <QSignalSpy>
#include <QUndoStack>

#include <cmath>

class LandingEdits : public SuiteViewer
{
};

TEST_F(LandingEdits, AreUndoneAndApproachesGoWithTheProject)
{
    CAxBlock* block = CAxBlockManager::instance().AddBlock(QStringLiteral("landing"), CAxBlock::PolygonBlock);
    ASSERT_TRUE(block);
    block->SetAnchor({{-105.0, 37.4}, {-104.99, 37.4}, {-104.99, 37.41}});
    block->SetHomePosition(CAxVector3D(-105.0, 37.4, 2500.0), false);
    CAxHandleAdapter* object = viewer->ImportShapeNode(block->GetBlockID());
    ASSERT_TRUE(object);
    LandingMenu landing(viewer, nullptr);
    QMenu menu;
    landing.AddTo(&menu);
    menu.actions().at(1)->setChecked(true);
    viewer->SetNodeSelected(object->GetFeatureNode(), false, false);
    QUndoStack& history = *viewer->GetUndoStack();
    const int before = history.count();
    const auto release = [] {
        emit viewer->getManipulator()->mouseLeftBtnRelease(osg::Vec3d(), osg::Vec3d());
    };
    emit viewer->signalDownhillAngle(20.0);
    emit viewer->signalDownhillAngle(30.0);
    release();
    release();
    const QString text = QStringLiteral("{\"%1\":30}").arg(block->GetBlockID());
    EXPECT_EQ(history.count(), before + 1) << "one step for a drag";
    EXPECT_EQ(landing.Text(), text);
    history.undo();
    EXPECT_EQ(landing.Text(), QString());
    EXPECT_EQ(viewer->GetDownhillAngleNode()->GetAngle(), 0.0);
    history.redo();
    EXPECT_EQ(viewer->GetDownhillAngleNode()->GetAngle(), 30.0);

    QSignalSpy told(&landing, &LandingMenu::Told);
    landing.SetText(QStringLiteral("{\"other\":400,\"gone\":20}"));
    EXPECT_EQ(told.count(), 1);
    EXPECT_EQ(landing.Text(), QString()) << "of a block that is not there";
    landing.SetText(text);
    EXPECT_EQ(viewer->GetDownhillAngleNode()->GetAngle(), 30.0);

    CAxBlock* other = CAxBlockManager::instance().AddBlock(QStringLiteral("other"), CAxBlock::PolygonBlock);
    other->SetAnchor({{-105.02, 37.4}, {-105.01, 37.4}, {-105.01, 37.41}});
    other->SetHomePosition(CAxVector3D(-105.02, 37.41, std::nan("")), false);
    CAxHandleAdapter* another = viewer->ImportShapeNode(other->GetBlockID());
    ASSERT_TRUE(another);
    viewer->SetNodeSelected(another->GetFeatureNode(), false, false);
    const CAxVector3D place = viewer->GetDownhillAngleNode()->GetLandingPoint();
    EXPECT_EQ(place.y(), -105.02) << "at a home of unknown height";
    EXPECT_TRUE(std::isfinite(place.z()));

    ASSERT_TRUE(viewer->SetInterestPoint(CAxVector3D(37.4, -105.0, 2500.0)));
    emit viewer->InterestPointPicked(-105.0, 37.4, 2500.0);
    history.undo();
    EXPECT_FALSE(viewer->GetInterestPointNode());
    history.redo();
    EXPECT_TRUE(viewer->GetInterestPointNode());
    const QString kept = landing.InterestText();
    for (const char* project : {"", "[37.4,null,2500]", "[97,-105,2500]"}) {
        landing.SetInterestText(QLatin1String(project));
        EXPECT_FALSE(viewer->GetInterestPointNode()) << project;
    }
    EXPECT_EQ(told.count(), 1 + 3) << "once as it was picked, and what cannot be read";
    landing.SetInterestText(kept);
    EXPECT_EQ(landing.InterestText(), kept);
    ASSERT_TRUE(viewer->GetInterestPointNode());
    EXPECT_EQ(viewer->GetInterestPointNode()->GetPosition(), CAxVector3D(37.4, -105.0, 2500.0));
    viewer->RemoveInterestPoint();
    viewer->RemoveAllHanderAdapter(true);
    history.clear();
}
