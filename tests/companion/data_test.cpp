#include <AxData/CAxBlockManager.h>
#include <AxData/CAxControl.h>
#include <AxData/CAxTask.h>

#include <QNetworkInterface>
#include <QSignalSpy>

#include <gtest/gtest.h>

#include <functional>

namespace {
class Blocks : public testing::Test
{
protected:
    void TearDown() override { CAxBlockManager::instance().DeleteAllBlocks(); }
    CAxBlockManager& manager = CAxBlockManager::instance();
};
} // namespace

TEST_F(Blocks, AreFoundByTheirIdUntilDeleted)
{
    CAxBlock* const block = manager.AddBlock(QStringLiteral("a"), CAxBlock::StripBlock);
    ASSERT_TRUE(block);
    EXPECT_EQ(manager.GetBlock(QStringLiteral("a")), block);
    EXPECT_EQ(block->GetBlockID(), QStringLiteral("a"));
    EXPECT_EQ(block->GetBlockType(), CAxBlock::StripBlock);
    EXPECT_TRUE(block->GetAnchor().isEmpty());
    EXPECT_TRUE(block->GetHomePosition().isNull());

    EXPECT_FALSE(manager.DeleteBlock(QStringLiteral("b")));
    EXPECT_TRUE(manager.DeleteBlock(QStringLiteral("a")));
    EXPECT_FALSE(manager.DeleteBlock(QStringLiteral("a")));
    EXPECT_EQ(manager.GetBlock(QStringLiteral("a")), nullptr);
}

TEST_F(Blocks, ATakenOrEmptyIdAddsNothing)
{
    CAxBlock* const block = manager.AddBlock(QStringLiteral("a"), CAxBlock::PolygonBlock);
    block->SetAnchor({QPointF(1, 2)});
    QSignalSpy added(&manager, &CAxBlockManager::blockAdded);
    EXPECT_EQ(manager.AddBlock(QStringLiteral("a"), CAxBlock::VideoBlock), nullptr);
    EXPECT_EQ(manager.AddBlock(QString(), CAxBlock::VideoBlock), nullptr);
    EXPECT_EQ(added.size(), 0);
    EXPECT_EQ(manager.GetBlock(QStringLiteral("a"))->GetAnchor().size(), 1);
    EXPECT_EQ(manager.GetBlockList().size(), 1);
}

TEST_F(Blocks, GetNamesThatNoOtherBlockHas)
{
    CAxBlock* const first = manager.AddBlock(QStringLiteral("a"), CAxBlock::PolygonBlock);
    CAxBlock* const second = manager.AddBlock(QStringLiteral("b"), CAxBlock::PolygonBlock);
    EXPECT_NE(first->GetBlockName(), second->GetBlockName());
    EXPECT_TRUE(manager._exist(first->GetBlockName()));
    const QString freed = first->GetBlockName();
    first->SetBlockName(QStringLiteral("Quarry"));
    EXPECT_TRUE(manager._exist(QStringLiteral("Quarry")));
    EXPECT_FALSE(manager._exist(QStringLiteral("quarry")));
    EXPECT_FALSE(manager._exist(freed));
    EXPECT_EQ(manager.AddBlock(QStringLiteral("c"), CAxBlock::PolygonBlock)->GetBlockName(), freed);
}

TEST_F(Blocks, TheLowestFreeNumberIsTakenWhateverFreedIt)
{
    for (const char* id : {"1", "2", "3", "4", "5"})
        manager.AddBlock(QLatin1String(id), CAxBlock::PolygonBlock);
    const QString second = manager.GetBlock(QStringLiteral("2"))->GetBlockName();
    const QString fourth = manager.GetBlock(QStringLiteral("4"))->GetBlockName();
    const auto nextName = [this](const char* id) {
        return manager.AddBlock(QLatin1String(id), CAxBlock::PolygonBlock)->GetBlockName();
    };
    manager.DeleteBlock(QStringLiteral("4"));
    manager.GetBlock(QStringLiteral("2"))->SetBlockName(QStringLiteral("Quarry"));
    EXPECT_EQ(nextName("6"), second);
    // Given back by the manager's own block, but taken again by hand, and by two blocks.
    manager.GetBlock(QStringLiteral("1"))->SetBlockName(fourth);
    manager.GetBlock(QStringLiteral("3"))->SetBlockName(fourth);
    manager.DeleteBlock(QStringLiteral("1"));
    EXPECT_TRUE(manager._exist(fourth));
    const QString first = nextName("7");
    const QString third = nextName("8");
    EXPECT_LT(first, second);
    EXPECT_LT(second, third);
    EXPECT_LT(third, fourth);
    manager.DeleteBlock(QStringLiteral("3"));
    EXPECT_FALSE(manager._exist(fourth));
    EXPECT_EQ(nextName("9"), fourth);
}

TEST_F(Blocks, TellWhenTheirNameOrVerticesBecomeDifferent)
{
    QSignalSpy changes(&manager, &CAxBlockManager::blockChanged);
    CAxBlock* const block = manager.AddBlock(QStringLiteral("a"), CAxBlock::PolygonBlock);
    EXPECT_TRUE(changes.isEmpty());
    const struct
    {
        std::function<void()> change;
        int told;
    } rows[] = {
        {[block] { block->SetBlockName(QStringLiteral("Quarry")); }, 1},
        {[block] { block->SetBlockName(QStringLiteral("Quarry")); }, 1},
        {[block] {
             block->SetAnchor({QPointF(100, 30), QPointF(101, 30)});
         },
         2},
        {[block] {
             block->SetAnchor({QPointF(100, 30), QPointF(101, 30)});
         },
         2},
        // A hundredth of a millimetre.
        {[block] {
             block->SetAnchor({QPointF(100 + 1e-11, 30), QPointF(101, 30)});
         },
         3},
        {[block] { block->SetAnchor({QPointF(100, 30)}); }, 4},
    };
    for (const auto& row : rows) {
        row.change();
        EXPECT_EQ(changes.size(), row.told) << &row - rows;
    }
    EXPECT_EQ(changes.last().first().toString(), QStringLiteral("a"));

    CAxBlock outside(QStringLiteral("b"), CAxBlock::PolygonBlock);
    outside.SetBlockName(QStringLiteral("Outside"));
    outside.SetAnchor({QPointF(1, 2)});
    EXPECT_EQ(changes.size(), 4);
    EXPECT_FALSE(manager._exist(QStringLiteral("Outside")));
}

TEST_F(Blocks, AListenerMayDeleteTheBlockItHearsOf)
{
    const auto connection =
        QObject::connect(&manager, &CAxBlockManager::blockDeleted, [this](const QString& id) {
            EXPECT_EQ(manager.GetBlock(id), nullptr);
            EXPECT_FALSE(manager.DeleteBlock(id));
        });
    const auto deleteChanged = QObject::connect(&manager, &CAxBlockManager::blockChanged,
                                                [this](const QString& id) { manager.DeleteBlock(id); });
    manager.AddBlock(QStringLiteral("c"), CAxBlock::PolygonBlock)->SetBlockName(QStringLiteral("Quarry"));
    manager.AddBlock(QStringLiteral("d"), CAxBlock::PolygonBlock)->SetAnchor({QPointF(1, 2)});
    EXPECT_TRUE(manager.GetBlockList().isEmpty());
    QObject::disconnect(deleteChanged);
    manager.AddBlock(QStringLiteral("a"), CAxBlock::PolygonBlock);
    manager.AddBlock(QStringLiteral("b"), CAxBlock::PolygonBlock);
    manager.DeleteAllBlocks();
    EXPECT_TRUE(manager.GetBlockList().isEmpty());
    QObject::disconnect(connection);
}

TEST_F(Blocks, OwnTheirTasks)
{
    CAxBlock* const block = manager.AddBlock(QStringLiteral("a"), CAxBlock::PolygonBlock);
    const auto make = [block](const char* id) {
        return std::make_unique<CAxTask>(QString::fromLatin1(id), QStringLiteral("Task"),
                                         block->GetTaskPara());
    };
    CAxTask* const first = block->AddTask(make("2"));
    CAxTask* const second = block->AddTask(make("1"));
    EXPECT_EQ(block->AddTask(make("2")), nullptr);
    EXPECT_EQ(block->AddTask(nullptr), nullptr);
    EXPECT_EQ(block->GetMissionList(), (QList<CAxTask*>{first, second}));
    EXPECT_EQ(block->GetTask(QStringLiteral("1")), second);
    EXPECT_TRUE(block->RemoveTask(QStringLiteral("2")));
    EXPECT_FALSE(block->RemoveTask(QStringLiteral("2")));
    EXPECT_EQ(block->GetTask(QStringLiteral("2")), nullptr);
}

TEST_F(Blocks, TaskAndParametersShareTheDirection)
{
    CAxBlock* const block = manager.AddBlock(QStringLiteral("a"), CAxBlock::PolygonBlock);
    CAxTask* const task = block->AddTask(
        std::make_unique<CAxTask>(QStringLiteral("1"), QStringLiteral("Task"), block->GetTaskPara()));
    task->direction = 2;
    EXPECT_EQ(block->GetTaskPara()->GetExtendedTaskParam()->direction, 2);
}

TEST_F(Blocks, ATaskWithoutAPlannerHasNoRouteAndLeavesNoMarkers)
{
    CAxBlock* const block = manager.AddBlock(QStringLiteral("a"), CAxBlock::PolygonBlock);
    CAxTask task(QStringLiteral("1"), QStringLiteral("Task"), block->GetTaskPara());
    QList<QPair<int, CAxVector3D>> markers{{1, CAxVector3D(1, 2, 3)}};
    EXPECT_TRUE(task.ComputeRoute(0, markers, CAxBlock::PolygonBlock, 5, 1).isEmpty());
    EXPECT_TRUE(markers.isEmpty());

    task.InsertVariableHeightRoutePt(-1, {CAxVector3D(1, 1, 1)});
    EXPECT_TRUE(task.GetVariableHeightRoutePt(-1).isEmpty());
    task.InsertVariableHeightRoutePt(3, {CAxVector3D(1, 1, 1)});
    task.InsertVariableHeightRoutePt(3, {CAxVector3D(2, 2, 2)});
    EXPECT_EQ(task.GetVariableHeightRoutePt(3), (QList<CAxVector3D>{CAxVector3D(2, 2, 2)}));
}

TEST_F(Blocks, SettingHomeMarksTheProjectOnlyWhenAsked)
{
    CAxControl* const control = CAxControl::GetInstance();
    control->SetProjectModified(false);
    QSignalSpy changes(control, &CAxControl::projectModifiedChanged);
    CAxBlock* const block = manager.AddBlock(QStringLiteral("a"), CAxBlock::PolygonBlock);
    block->SetHomePosition(CAxVector3D(105, 37, 1800), false);
    EXPECT_FALSE(control->IsProjectModified());
    block->SetHomePosition(CAxVector3D(105, 37, 1801), true);
    block->SetHomePosition(CAxVector3D(105, 37, 1802), true);
    EXPECT_TRUE(control->IsProjectModified());
    EXPECT_EQ(changes.size(), 1);
    EXPECT_EQ(block->GetHomePosition().z(), 1802.0);
    control->SetProjectModified(false);
}

TEST(CAxControl, AHostMayAnswerForTheNetwork)
{
    CAxControl* const control = CAxControl::GetInstance();
    EXPECT_EQ(control, CAxControl::GetInstance());
    control->SetNetworkProbe([] { return true; });
    EXPECT_TRUE(control->IsNetWorkConnected());
    control->SetNetworkProbe([] { return false; });
    EXPECT_FALSE(control->IsNetWorkConnected());
    control->SetNetworkProbe({});
}

TEST(CAxControl, WithoutAnyAddressButLoopbackThereIsNoNetwork)
{
    bool other = false;
    for (const QHostAddress& address : QNetworkInterface::allAddresses())
        other = other || !(address.isLoopback() || address.isLinkLocal());
    EXPECT_EQ(CAxControl::GetInstance()->IsNetWorkConnected(), other);
}
