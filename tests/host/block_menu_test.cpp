// What the menu of blocks asks and tells.
#include "host/BlockMenu.h"
#include "host/BlockPanel.h"
#include "host/heights/HeightsFile.h"
#include "host/ToolActions.h"
#include "interaction/CAxHandleAdapter.h"
#include "ModalBox.h"
#include "SuiteViewer.h"

#include <AxData/CAxBlockManager.h>

#include <QPlainTextEdit>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QUndoStack>

#include <limits>

namespace {
class BlockMenuOnMap : public SuiteViewer
{
protected:
    void SetUp() override
    {
        CAxBlock* block =
            CAxBlockManager::instance().AddBlock(QStringLiteral("field"), CAxBlock::PolygonBlock);
        block->SetBlockName(QStringLiteral("Field"));
        block->SetAnchor(ring);
        CAxHandleAdapter* object = viewer->ImportShapeNode(QStringLiteral("field"));
        ASSERT_TRUE(object);
        viewer->SetNodeSelected(object->GetFeatureNode(), false, false);
        viewer->GetUndoStack()->clear();
    }
    void TearDown() override
    {
        viewer->RemoveAllHanderAdapter(true);
        viewer->GetUndoStack()->clear();
    }
    static QList<QPointF> Ring() { return CAxBlockManager::instance().GetBlock("field")->GetAnchor(); }
    static ModalBox::Answer Type(const QString& text)
    {
        return [text](QDialog& prompt) {
            prompt.findChild<QLineEdit*>()->setText(text);
            prompt.accept();
        };
    }
    QAction* Find(const char* text)
    {
        for (QAction* action : menu.actions())
            if (action->text() == QLatin1String(text))
                return action;
        ADD_FAILURE() << "no action " << text;
        return nullptr;
    }

    const QList<QPointF> ring{{10.0, 0.0}, {10.004, 0.0}, {10.004, 0.004}, {10.0, 0.004}};
    QWidget window;
    BlockPanel panel{viewer};
    ToolActions tools{viewer, nullptr};
    BlockMenu menu{viewer, &panel, &window};
};
} // namespace

TEST_F(BlockMenuOnMap, PromptsTakeNumbersAndTellWhatIsNone)
{
    for (const char* prompt : {"&Grow or shrink...", "Si&mplify...", "&Turn...", "&Change size..."})
        for (const char* typed : {"", "abc", "3,5", "1e308", "nan", "-20000", "1 0"}) {
            SCOPED_TRACE(std::string(prompt) + " \"" + typed + '"');
            ModalBox box;
            QString told;
            QString left;
            box.answers = {Type(QLatin1String(typed)),
                           [&](QDialog& message) {
                               for (const QLabel* label : message.findChildren<QLabel*>())
                                   told += label->text();
                               message.accept();
                           },
                           [&](QDialog& again) {
                               left = again.findChild<QLineEdit*>()->text();
                               again.reject();
                           }};
            Find(prompt)->trigger();
            EXPECT_TRUE(box.answers.isEmpty());
            EXPECT_TRUE(told.contains(QStringLiteral("\"%1\" is not a number").arg(QLatin1String(typed))))
                << told.toStdString();
            EXPECT_EQ(left, QLatin1String(typed)) << "what was typed stays";
            EXPECT_EQ(viewer->GetUndoStack()->count(), 0);
        }
    ModalBox box;
    box.answers = {Type(QStringLiteral(" 50 "))};
    Find("&Change size...")->trigger();
    EXPECT_NEAR(Ring()[0].x(), 10.001, 1e-6);
    EXPECT_EQ(box.titles, QStringList{"Change size: Field"});
    box.titles.clear();
    Find("&Properties...")->trigger();
    EXPECT_EQ(box.titles, QStringList{"Polygon Info"});
}

TEST_F(BlockMenuOnMap, WhatIsAskedOnceIsDoneToAllThatAreSelected)
{
    for (const char* id : {"meadow", "locked"}) {
        CAxBlock* block = CAxBlockManager::instance().AddBlock(QLatin1String(id), CAxBlock::PolygonBlock);
        block->SetBlockName(QLatin1String(id));
        block->SetAnchor({{10.01, 0.0}, {10.014, 0.0}, {10.014, 0.004}, {10.01, 0.004}});
        ASSERT_TRUE(viewer->ImportShapeNode(QLatin1String(id)));
    }
    viewer->slotBlockLock(QStringLiteral("locked"), true);
    const QStringList all{QStringLiteral("field"), QStringLiteral("meadow"), QStringLiteral("locked")};
    ASSERT_TRUE(viewer->SelectBlocks(all));
    const auto meadow = [] { return CAxBlockManager::instance().GetBlock("meadow")->GetAnchor()[0].x(); };
    ModalBox box;
    box.answers = {Type(QStringLiteral("50"))};
    Find("&Change size...")->trigger();
    EXPECT_EQ(box.titles, (QStringList{"Change size: 3 blocks", "Block Information"}));
    EXPECT_TRUE(box.texts.contains("locked is locked.")) << box.texts.join('|').toStdString();
    EXPECT_NEAR(Ring()[0].x(), 10.001, 1e-6);
    EXPECT_NEAR(meadow(), 10.011, 1e-6);
    EXPECT_EQ(viewer->GetMultiSelectAdapter().size(), 3);
    ASSERT_EQ(viewer->GetUndoStack()->count(), 1);
    viewer->GetUndoStack()->undo();
    EXPECT_EQ(Ring(), ring);
    EXPECT_EQ(meadow(), 10.01);
    viewer->GetUndoStack()->clear();
    // Shrunk to nothing, they refuse one after the other, and there is no step.
    box.answers = {Type(QStringLiteral("-5000"))};
    Find("&Grow or shrink...")->trigger();
    EXPECT_TRUE(box.texts.contains("Blocks that were not changed: 3 of 3"));
    EXPECT_EQ(viewer->GetUndoStack()->count(), 0);
    box.titles.clear();
    Find("&Properties...")->trigger();
    EXPECT_EQ(box.titles, QStringList{"Properties"});
    EXPECT_TRUE(box.texts.contains("This is for one block, and 3 are selected."));
}

TEST_F(BlockMenuOnMap, ACutIsHintedAtUntilItEnds)
{
    QObject::connect(&menu, &BlockMenu::Hinted, &tools, &ToolActions::Follow);
    const QSignalSpy hints(&menu, &BlockMenu::Hinted);
    QAction* const cut = Find("&Split by a line");
    QAction* const browse = tools.actions().first();
    for (const bool isGivenUp : {true, false}) {
        SCOPED_TRACE(isGivenUp);
        ASSERT_TRUE(browse->isChecked());
        cut->trigger();
        EXPECT_TRUE(cut->isChecked());
        EXPECT_FALSE(browse->isChecked()) << "clicks do something else";
        EXPECT_FALSE(hints.last().first().toString().isEmpty());
        if (isGivenUp)
            viewer->GetCurHandleAdapter()->CancelHandle();
        else
            browse->trigger();
        EXPECT_FALSE(cut->isChecked());
        EXPECT_TRUE(browse->isChecked());
        EXPECT_TRUE(hints.last().first().toString().isEmpty());
        EXPECT_EQ(viewer->GetCurHandleAdapter(), viewer->FindExistNode(QStringLiteral("field")));
    }
    viewer->SetToolType(ToolLandingPosition);
    EXPECT_FALSE(tools.checkedAction()) << "a tool that the bar has not takes the clicks";
    viewer->SetToolType(ToolNavigate);
    EXPECT_TRUE(browse->isChecked());
    EXPECT_EQ(hints.size(), 4);
    EXPECT_EQ(Ring(), ring);
}

TEST_F(BlockMenuOnMap, HeightsBelowABlockAreReadAndShown)
{
    QString shown;
    QTimer look;
    QObject::connect(&look, &QTimer::timeout, &window, [&] {
        auto* const box = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        if (const auto* text = box ? box->findChild<QPlainTextEdit*>(QStringLiteral("heights")) : nullptr) {
            shown = text->toPlainText();
            box->reject();
        }
    });
    look.start(10);
    Find("&Heights of the ground...")->trigger();
    EXPECT_TRUE(shown.contains(QStringLiteral("Lowest: ")) && shown.contains(QStringLiteral("Mean: ")) &&
                shown.contains(QStringLiteral("heights above mean sea level")))
        << shown.toStdString();
}

TEST(HeightsFile, HasTheKnownCellsFromTheSouthWest)
{
    AxHeightGrid grid;
    grid.west = 179.5;
    grid.south = 10.0;
    grid.stepLng = grid.stepLat = 1.0;
    grid.columns = grid.rows = 2;
    grid.heights = {1.5f, std::numeric_limits<float>::quiet_NaN(), -2.25f, 1e4f};
    const QByteArray table = "longitude,latitude,alt_amsl\n180.00000000,10.50000000,1.50\n"
                             "180.00000000,11.50000000,-2.25\n-179.00000000,11.50000000,10000.00\n";
    const QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("heights.CSV"));
    EXPECT_EQ(WriteHeights(file, grid, false), QString());
    QFile written(file);
    ASSERT_TRUE(written.open(QIODevice::ReadOnly));
    EXPECT_EQ(written.readAll(), table);
    for (const char* name : {"none/heights.csv", "none/heights.tif"})
        EXPECT_FALSE(WriteHeights(folder.filePath(QLatin1String(name)), grid, false).isEmpty()) << name;
}
