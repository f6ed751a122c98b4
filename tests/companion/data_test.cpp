#include <AxData/CAxBlockManager.h>
#include <AxData/CAxControl.h>
#include <AxData/CAxTask.h>

#include <QSignalSpy>

#include <gtest/gtest.h>

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

    block->SetAnchor({QPointF(1, 2)});
    QSignalSpy added(&manager, &CAxBlockManager::blockAdded);
    EXPECT_EQ(manager.AddBlock(QStringLiteral("a"), CAxBlock::VideoBlock), nullptr);
    EXPECT_EQ(manager.AddBlock(QString(), CAxBlock::VideoBlock), nullptr);
    EXPECT_EQ(added.size(), 0);
    EXPECT_EQ(manager.GetBlock(QStringLiteral("a"))->GetAnchor().size(), 1);
    EXPECT_EQ(manager.GetBlockList().size(), 1);

    EXPECT_FALSE(manager.DeleteBlock(QStringLiteral("b")));
    EXPECT_TRUE(manager.DeleteBlock(QStringLiteral("a")));
    EXPECT_FALSE(manager.DeleteBlock(QStringLiteral("a")));
    EXPECT_EQ(manager.GetBlock(QStringLiteral("a")), nullptr);
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
    EXPECT_TRUE(manager._exist(QStringLiteral("Quarry")));
    EXPECT_FALSE(manager._exist(QStringLiteral("quarry")));
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
    for (int twice = 0; twice < 2; ++twice)
        block->SetBlockName(QStringLiteral("Quarry"));
    EXPECT_EQ(changes.size(), 1);
    // The third is a hundredth of a millimetre away.
    int told = 1;
    for (const double longitude : {100.0, 100.0, 100.0 + 1e-11}) {
        const bool isOther = block->GetAnchor().isEmpty() || block->GetAnchor()[0].x() != longitude;
        told += isOther ? 1 : 0;
        block->SetAnchor({QPointF(longitude, 30), QPointF(101, 30)});
        EXPECT_EQ(changes.size(), told) << longitude;
    }
    block->SetAnchor({QPointF(100, 30)});
    EXPECT_EQ(changes.size(), 4);
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

TEST_F(Blocks, EachTaskShowsASubRouteOfItsOwn)
{
    CAxBlock* const block = manager.AddBlock(QStringLiteral("a"), CAxBlock::PolygonBlock);
    block->GetTaskPara()->GetExtendedTaskParam()->direction = 2;
    const auto task = [](const char* id, CAxTaskPara* para) {
        return std::make_unique<CAxTask>(QLatin1String(id), QString(), para);
    };
    CAxTask* const first = block->AddTask(task("1", block->GetTaskPara()));
    CAxTask* const second = block->AddTask(task("2", block->GetTaskPara()));
    first->direction = 1;
    EXPECT_EQ(second->direction, 2);
    EXPECT_EQ(task("3", nullptr)->direction, 0);
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
