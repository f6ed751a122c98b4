// The table behind the list of blocks, on a real viewer.
#include "ViewerFixture.h"

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

class BlockList : public ViewerFixture
{
protected:
    static void SetUpTestSuite()
    {
        Open();
        ASSERT_TRUE(viewer->getMapNode());
    }
    static void TearDownTestSuite() { Close(); }

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

TEST_F(BlockList, TheAreaIsThatOfTheDrawnBlockAndFollowsItsVertices)
{
    Record("a", "A", 0.01);
    EXPECT_EQ(Text("a", Model::AreaColumn), QString());
    CAxHandleAdapter* drawn = viewer->ImportShapeNode(QStringLiteral("a"));
    ASSERT_TRUE(drawn);
    // A degree on the equator is 111.32 km long, a meridian's first is 110.57 km.
    EXPECT_NEAR(Text("a", Model::AreaColumn).toDouble(), 1.1132 * 1.1057, 0.01);
    EXPECT_EQ(Text("a", Model::AreaColumn).section('.', 1).size(), 2);

    // As undo does it: the record first, then its object. A view looks in between.
    const auto view = QObject::connect(&CAxBlockManager::instance(), &CAxBlockManager::blockChanged,
                                       model.get(), [this] { Text("a", Model::AreaColumn); });
    drawn->GetContainedBlock()->SetAnchor(Square(0.02));
    drawn->ReturnLastOperate();
    EXPECT_TRUE(waitFor([this] { return Text("a", Model::AreaColumn).toDouble() > 4.5; }, 5000));
    QObject::disconnect(view);
}

TEST_F(BlockList, RenamesSoThatItCanBeUndone)
{
    Record("a", "A");
    Record("b", "B");
    ASSERT_TRUE(viewer->ImportShapeNode(QStringLiteral("a")));
    QSignalSpy refused(model.get(), &Model::Refused);
    const QModelIndex name = At("a", Model::NameColumn);
    EXPECT_TRUE(name.flags() & Qt::ItemIsEditable);
    EXPECT_TRUE(model->setData(name, QStringLiteral("Quarry"), Qt::EditRole));
    EXPECT_EQ(Text("a", Model::NameColumn), QStringLiteral("Quarry"));

    for (const char* wrong : {"B", "", " "}) {
        refused.clear();
        EXPECT_FALSE(model->setData(name, QLatin1String(wrong), Qt::EditRole)) << wrong;
        EXPECT_EQ(refused.size(), 1) << wrong;
        EXPECT_EQ(Text("a", Model::NameColumn), QStringLiteral("Quarry"));
    }
    viewer->GetUndoStack()->undo();
    EXPECT_EQ(Text("a", Model::NameColumn), QStringLiteral("A"));
    viewer->GetUndoStack()->redo();
    EXPECT_EQ(Text("a", Model::NameColumn), QStringLiteral("Quarry"));
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

TEST_F(BlockList, TheCurrentBlockIsBold)
{
    const auto isBold = [this](const char* id) {
        return At(id, Model::NameColumn).data(Qt::FontRole).value<QFont>().bold();
    };
    for (const char* id : {"a", "b"}) {
        Record(id, id);
        ASSERT_TRUE(viewer->ImportShapeNode(QLatin1String(id)));
    }
    QSignalSpy changes(model.get(), &Model::dataChanged);
    viewer->slotFocusBlock(QStringLiteral("a"));
    viewer->slotFocusBlock(QStringLiteral("b"));
    EXPECT_FALSE(isBold("a"));
    EXPECT_TRUE(isBold("b"));
    // A becomes bold; A does not stay so and B becomes it.
    EXPECT_GE(changes.size(), 3);
    viewer->RemoveHanderAdapter(QStringLiteral("b"), false);
    EXPECT_FALSE(isBold("b"));
}
