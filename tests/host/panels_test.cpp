// The window's panels but for the list of zones.
#include "host/BlockListModel.h"
#include "host/BlockPanel.h"
#include "host/HistoryView.h"
#include "host/LogPanel.h"
#include "host/PanelExtents.h"
#include "interaction/CAxHandleAdapter.h"
#include "ModalBox.h"
#include "SuiteViewer.h"

#include <AxData/CAxBlockManager.h>

#include <QDockWidget>
#include <QMainWindow>
#include <QSignalSpy>
#include <QUndoStack>

TEST(PanelExtents, ComeBackWhenASmallWindowGrowsAgain)
{
    const auto build = [](QMainWindow& window) {
        window.setCentralWidget(new QWidget);
        auto* extents = new PanelExtents(&window);
        for (const auto& [name, area] :
             {std::pair{"Side", Qt::LeftDockWidgetArea}, {"Below", Qt::BottomDockWidgetArea}}) {
            auto* panel = new QDockWidget(&window);
            panel->setObjectName(QLatin1String(name));
            panel->setWidget(new QWidget);
            window.addDockWidget(area, panel);
            extents->Add(panel);
            extents->Want(area, 300);
        }
        window.resize(1200, 900);
        window.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&window));
        return extents;
    };
    const auto extentsOf = [](const QMainWindow& window) {
        QCoreApplication::processEvents();
        return QSize(window.findChild<QDockWidget*>("Side")->width(),
                     window.findChild<QDockWidget*>("Below")->height());
    };
    QByteArray saved;
    {
        QMainWindow window;
        const PanelExtents* extents = build(window);
        EXPECT_EQ(extentsOf(window), QSize(300, 300));
        window.resizeDocks({window.findChild<QDockWidget*>("Side")}, {400}, Qt::Horizontal);
        EXPECT_EQ(extentsOf(window).width(), 400);
        window.resize(640, 480);
        EXPECT_LE(extentsOf(window).width(), 270) << "the map keeps most of it";
        saved = extents->Save();
        window.resize(1200, 900);
        EXPECT_EQ(extentsOf(window), QSize(400, 300)) << "as the operator left them";
    }
    QMainWindow window;
    PanelExtents* extents = build(window);
    for (const QByteArray& bytes : {QByteArray(), saved.chopped(3), saved})
        extents->Restore(bytes);
    window.resize(1201, 900);
    EXPECT_EQ(extentsOf(window), QSize(400, 300));
}

TEST(LogPanel, CountsWhatRepeatsInsteadOfFillingUp)
{
    LogPanel log;
    log.AppendLine(QStringLiteral("first"));
    for (int i = 1; i <= 2000; ++i) {
        log.AppendOfKind(QStringLiteral("added"), QStringLiteral("added(%1)").arg(i));
        log.AppendOfKind(QStringLiteral("state"), QStringLiteral("state(%1)\nof two lines").arg(i));
    }
    log.AppendLine(QStringLiteral("last"));
    QStringList lines = log.toPlainText().split('\n');
    for (QString& line : lines)
        line = line.section(QStringLiteral("  "), 1); // behind the time
    EXPECT_EQ(
        lines.join('|').toStdString(),
        QString::fromUtf8("first|added(2000)  ×2000|state(2000) of two lines  ×2000|last").toStdString());
    for (int i = 0; i < 6; ++i)
        log.AppendLine(QString::number(i));
    log.AppendLine(QStringLiteral("last"));
    EXPECT_EQ(log.blockCount(), 11) << "what repeats after long is news";
}

namespace {
class BlockPanelOnMap : public SuiteViewer
{
protected:
    void TearDown() override { viewer->RemoveAllHanderAdapter(true); }

    static void Draw(const char* id, double longitude)
    {
        CAxBlock* block = CAxBlockManager::instance().AddBlock(QLatin1String(id), CAxBlock::PolygonBlock);
        block->SetBlockName(QLatin1String(id));
        block->SetAnchor({{longitude, 0.0}, {longitude + 0.1, 0.0}, {longitude, 0.1}});
        ASSERT_TRUE(viewer->ImportShapeNode(QLatin1String(id)));
    }
    static std::string Current()
    {
        const CAxHandleAdapter* current = viewer->GetCurHandleAdapter();
        return current ? current->GetHandleID().toStdString() : std::string();
    }
    static std::string Highlighted(const BlockPanel& panel)
    {
        const QModelIndexList rows = panel.selectionModel()->selectedRows(BlockListModel::NameColumn);
        return rows.isEmpty() ? std::string() : rows.first().data().toString().toStdString();
    }
};
} // namespace

TEST_F(BlockPanelOnMap, TheHistoryGoesNoStepInTheMiddleOfADrawing)
{
    Draw("A", 10.0);
    for (const char* name : {"B", "C"})
        ASSERT_TRUE(viewer->RenameBlock("A", name));
    const QUndoStack& stack = *viewer->GetUndoStack();
    HistoryView view(viewer);
    view.show();
    const auto click = [&](int row) {
        QTest::mouseClick(view.viewport(), Qt::LeftButton, {},
                          view.visualRect(view.model()->index(row, 0)).center());
    };
    click(0);
    EXPECT_EQ(stack.index(), 0);
    QTest::keyClick(&view, Qt::Key_Down);
    EXPECT_EQ(stack.index(), 1);
    viewer->SetToolType(ToolPolygonBlock);
    viewer->createShapeNode();
    ASSERT_TRUE(viewer->GetCurHandleAdapter());
    viewer->GetCurHandleAdapter()->slotPicked({20.0, 10.0, 0.0}, {6.0e6, 2.0e6, 1.1e6});
    click(2);
    QTest::keyClick(&view, Qt::Key_Home);
    EXPECT_EQ(stack.index(), 1);
    EXPECT_EQ(view.currentIndex().row(), 1);
    viewer->GetCurHandleAdapter()->CancelHandle();
    viewer->SetToolType(ToolNavigate);
    click(2);
    EXPECT_EQ(stack.index(), 2);
    viewer->GetUndoStack()->clear();
}

TEST_F(BlockPanelOnMap, SortsBlocksThatAreNamedAfterTheyCame)
{
    const BlockPanel panel(viewer);
    // In the order of their IDs, which is not that of their names.
    for (const auto& [id, name] :
         {std::pair{"1", "Alpha"}, {"5", "Zinc"}, {"4", "A"}, {"3", "D"}, {"2", "Q"}})
        CAxBlockManager::instance()
            .AddBlock(QLatin1String(id), CAxBlock::PolygonBlock)
            ->SetBlockName(QLatin1String(name));
    QStringList names;
    const auto isSorted = [&] {
        names.clear();
        for (int row = 0; row < panel.model()->rowCount(); ++row)
            names += panel.model()->index(row, BlockListModel::NameColumn).data().toString();
        return names == QStringList{"A", "Alpha", "D", "Q", "Zinc"};
    };
    EXPECT_TRUE(waitFor(isSorted, 2000)) << names.join(' ').toStdString();
    CAxBlockManager::instance().DeleteAllBlocks();
}

TEST_F(BlockPanelOnMap, TheHighlightedRowIsTheCurrentBlockAndTabLeavesTheList)
{
    for (const auto& [id, longitude] : {std::pair{"a", 10.0}, {"b", 11.0}, {"c", 12.0}})
        Draw(id, longitude);
    BlockPanel panel(viewer);
    panel.resize(400, 300);
    panel.show();
    EXPECT_EQ(Highlighted(panel), "");
    const auto expect = [&panel](const char* id) {
        EXPECT_EQ(Current(), id);
        EXPECT_EQ(Highlighted(panel), id);
        EXPECT_EQ(panel.currentIndex().isValid(), *id != 0);
    };
    for (const char* id : {"a", "b"}) {
        QTest::keyClick(&panel, Qt::Key_Down);
        expect(id);
    }
    QTest::mouseClick(panel.viewport(), Qt::LeftButton, Qt::NoModifier,
                      panel.visualRect(panel.model()->index(2, BlockListModel::LockColumn)).topLeft() +
                          QPoint(1, 1));
    expect("c");
    viewer->slotFocusBlock(QStringLiteral("a"));
    expect("a");
    viewer->RemoveHanderAdapter(QStringLiteral("a"), true);
    expect("");
    EXPECT_FALSE(panel.tabKeyNavigation());

    // A drawing is not left for a row.
    viewer->SetToolType(ToolPolygonBlock);
    viewer->createShapeNode();
    const std::string drawing = Current();
    QTest::keyClick(&panel, Qt::Key_Down);
    QCoreApplication::processEvents();
    EXPECT_EQ(Current(), drawing);
    EXPECT_EQ(Highlighted(panel), "");
    const ModalBox tooFewCorners;
    viewer->SetToolType(ToolNavigate);
}

TEST_F(BlockPanelOnMap, RowsAndTheMapSelectSeveralTogether)
{
    for (const auto& [id, longitude] : {std::pair{"a", 10.0}, {"b", 11.0}, {"c", 12.0}})
        Draw(id, longitude);
    BlockPanel panel(viewer);
    panel.resize(400, 300);
    panel.show();
    QSignalSpy told(viewer, &CAxEarthViewer::signalMultiSelectBlock);
    const auto onMap = [] {
        QStringList ids;
        for (const CAxHandleAdapter* one : viewer->GetMultiSelectAdapter())
            ids += one->GetHandleID();
        return ids;
    };
    QTest::keyClick(&panel, Qt::Key_Down);
    QTest::keyClick(&panel, Qt::Key_Down, Qt::ShiftModifier);
    EXPECT_EQ(onMap(), (QStringList{"a", "b"}));
    EXPECT_EQ(told.size(), 1);
    const auto cell = [&panel](int row, int column) {
        return panel.visualRect(panel.model()->index(row, column)).center();
    };
    QTest::mouseClick(panel.viewport(), Qt::LeftButton, Qt::ControlModifier,
                      cell(2, BlockListModel::NameColumn));
    QTest::mouseClick(panel.viewport(), Qt::LeftButton, Qt::ControlModifier,
                      cell(0, BlockListModel::NameColumn));
    EXPECT_EQ(onMap(), (QStringList{"b", "c"}));

    ASSERT_TRUE(viewer->SelectBlocks({"c", "a"}));
    EXPECT_EQ(panel.Chosen(), (QStringList{"c", "a"})) << "in the order of the map";
    panel.model()->setData(panel.model()->index(0, BlockListModel::LockColumn), Qt::Checked,
                           Qt::CheckStateRole);
    for (const char* id : {"a", "c"})
        EXPECT_TRUE(viewer->FindExistNode(QString(id))->IsLock()) << id;
    EXPECT_FALSE(viewer->FindExistNode(QStringLiteral("b"))->IsLock());
    QTest::mouseClick(panel.viewport(), Qt::LeftButton, Qt::NoModifier,
                      cell(0, BlockListModel::VisibleColumn));
    EXPECT_EQ(panel.Chosen().size(), 2) << "a box in a chosen row is no other choice";

    viewer->slotBlockLock(QStringLiteral("a"), false);
    ModalBox box;
    box.answers += ModalBox::Press(QStringLiteral("Delete"));
    QTest::keyClick(&panel, Qt::Key_Delete);
    EXPECT_EQ(box.count, 1);
    EXPECT_TRUE(box.texts.join(' ').contains(QStringLiteral("locked")));
    EXPECT_FALSE(viewer->FindExistNode(QStringLiteral("a")));
    EXPECT_TRUE(viewer->FindExistNode(QStringLiteral("c")));

    QTest::keyClick(&panel, Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(onMap().size(), 2);
    QTest::keyClick(&panel, Qt::Key_Escape);
    EXPECT_TRUE(onMap().isEmpty());
    EXPECT_EQ(Current(), "");
    EXPECT_TRUE(panel.Chosen().isEmpty());
}
