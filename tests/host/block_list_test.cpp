// The table behind the list of blocks, on a real viewer.
#include "SuiteViewer.h"

#include "host/BlockListModel.h"
#include "interaction/objects/CAxHandleAdapter.h"

#include <AxData/CAxBlockManager.h>

#include <QAbstractItemModelTester>
#include <QFont>
#include <QSignalSpy>
#include <QUndoStack>

#include <memory>

namespace {
using Model = BlockListModel;

class BlockList : public SuiteViewer
{
protected:
    void SetUp() override
    {
        model = std::make_unique<Model>(viewer, nullptr);
        // Ends the program with a word when the model breaks the rules of its kind.
        new QAbstractItemModelTester(model.get(), QAbstractItemModelTester::FailureReportingMode::Fatal,
                                     model.get());
    }
    void TearDown() override
    {
        viewer->RemoveAllHanderAdapter(true);
        CAxBlockManager::instance().DeleteAllBlocks();
        EXPECT_EQ(model->rowCount(), 0);
    }

    // A square near the equator, its south-west corner at 10 degrees east.
    static QList<QPointF> Square(double degrees)
    {
        return {{10.0, 0.0}, {10.0 + degrees, 0.0}, {10.0 + degrees, degrees}, {10.0, degrees}};
    }
    static CAxBlock* Record(const char* id, const char* name, double degrees = 0.01)
    {
        CAxBlock* block = CAxBlockManager::instance().AddBlock(QLatin1String(id), CAxBlock::PolygonBlock);
        block->SetBlockName(QLatin1String(name));
        block->SetAnchor(Square(degrees));
        return block;
    }
    QModelIndex At(const char* id, int column) const
    {
        return model->index(model->RowOf(QLatin1String(id)), column);
    }
    QString Text(const char* id, int column) const { return At(id, column).data().toString(); }
    QVariant Check(const char* id, int column) const { return At(id, column).data(Qt::CheckStateRole); }

    std::unique_ptr<Model> model;
};
} // namespace

TEST_F(BlockList, FollowsTheRecordsRowByRow)
{
    QSignalSpy resets(model.get(), &Model::modelReset);
    QSignalSpy changes(model.get(), &Model::dataChanged);
    Record("m", "Middle");
    Record("z", "Last");
    Record("a", "First");
    ASSERT_EQ(model->rowCount(), 3);
    EXPECT_EQ(Text("a", Model::NameColumn), QStringLiteral("First"));
    EXPECT_EQ(Text("m", Model::KindColumn), QStringLiteral("Polygon"));
    QCoreApplication::processEvents();

    changes.clear();
    CAxBlockManager::instance().GetBlock(QStringLiteral("m"))->SetBlockName(QStringLiteral("Quarry"));
    ASSERT_TRUE(waitFor([&changes] { return !changes.isEmpty(); }));
    EXPECT_EQ(changes.size(), 1);
    EXPECT_EQ(changes.first().at(0).toModelIndex().row(), model->RowOf(QStringLiteral("m")));
    EXPECT_EQ(changes.first().at(1).toModelIndex().row(), model->RowOf(QStringLiteral("m")));
    EXPECT_EQ(Text("m", Model::NameColumn), QStringLiteral("Quarry"));

    CAxBlockManager::instance().DeleteBlock(QStringLiteral("a"));
    EXPECT_EQ(model->rowCount(), 2);
    EXPECT_EQ(model->RowOf(QStringLiteral("a")), -1);
    EXPECT_EQ(Text("z", Model::NameColumn), QStringLiteral("Last"));
    EXPECT_EQ(resets.size(), 0);

    // A list that is opened later shows what is there.
    EXPECT_EQ(Model(viewer, nullptr).rowCount(), 2);
}

TEST_F(BlockList, LocksAndHidesTheDrawnBlockAndSeesWhenOthersDo)
{
    const struct
    {
        int column;
        bool (CAxHandleAdapter::*state)() const;
        void (CAxEarthViewer::*set)(QString, bool);
        bool atFirst;
    } rows[] = {
        {Model::LockColumn, &CAxHandleAdapter::IsLock, &CAxEarthViewer::slotBlockLock, false},
        {Model::VisibleColumn, &CAxHandleAdapter::IsVisible, &CAxEarthViewer::slotBlockVisible, true},
    };
    Record("a", "A");
    for (const auto& row : rows) {
        EXPECT_FALSE(Check("a", row.column).isValid()) << "not drawn yet";
        EXPECT_FALSE(model->setData(At("a", row.column), Qt::Checked, Qt::CheckStateRole));
    }
    CAxHandleAdapter* drawn = viewer->ImportShapeNode(QStringLiteral("a"));
    ASSERT_TRUE(drawn);
    for (const auto& row : rows) {
        const QModelIndex place = At("a", row.column);
        const Qt::CheckState first = row.atFirst ? Qt::Checked : Qt::Unchecked;
        const Qt::CheckState second = row.atFirst ? Qt::Unchecked : Qt::Checked;
        EXPECT_EQ(Check("a", row.column), first);
        EXPECT_TRUE(model->setData(place, second, Qt::CheckStateRole));
        EXPECT_EQ((drawn->*row.state)(), !row.atFirst);
        QCoreApplication::processEvents();
        QSignalSpy changes(model.get(), &Model::dataChanged);
        (viewer->*row.set)(QStringLiteral("a"), row.atFirst);
        EXPECT_TRUE(waitFor([&changes] { return !changes.isEmpty(); }, 5000));
        EXPECT_EQ(Check("a", row.column), first);
    }
}
