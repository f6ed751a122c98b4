// A tool that a host adds: the example of the documents.
#include "ModalBox.h"
#include "SmallBlock.h"
#include "ViewerFixture.h"

#include <AxData/CAxBlockManager.h>

#include <QFile>
#include <QSignalSpy>

namespace {
class HostTool : public ViewerFixture
{
protected:
    static void SetUpTestSuite()
    {
        Open();
        ASSERT_TRUE(viewer->getMapNode());
        viewer->SetShapeFactory(ToolPolygonBlock, [](CAxEarthViewer* earthViewer, QObject* parent) {
            return new SmallBlock(earthViewer, parent);
        });
    }
    static void TearDownTestSuite() { Close(); }
    void TearDown() override
    {
        viewer->SetToolType(ToolNavigate);
        viewer->RemoveAllHanderAdapter(true);
    }

    // Draws a square with the corners' clicks and a double click on the last one.
    static void DrawSquare(double degrees)
    {
        viewer->SetToolType(ToolPolygonBlock);
        CAxHandleAdapter* drawing = viewer->createShapeNode();
        ASSERT_TRUE(dynamic_cast<SmallBlock*>(drawing));
        const osg::Vec3d corners[] = {{10.0, 0.0, 0.0},
                                      {10.0 + degrees, 0.0, 0.0},
                                      {10.0 + degrees, degrees, 0.0},
                                      {10.0, degrees, 0.0}};
        const osg::Vec3d somewhere(1.0, 1.0, 1.0);
        for (const osg::Vec3d& corner : corners)
            drawing->slotPicked(corner, somewhere);
        drawing->slotDoubleClicked(corners[3], somewhere);
    }
};

QString ReadAll(const char* path)
{
    QFile file(QString::fromLatin1(path));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path;
    return QString::fromUtf8(file.readAll());
}
} // namespace

TEST_F(HostTool, AddsAJudgementOfItsOwn)
{
    ModalBox box;
    QSignalSpy ended(viewer, &CAxEarthViewer::signalHandleEnd);
    DrawSquare(0.05);
    ASSERT_EQ(ended.size(), 1);
    EXPECT_TRUE(viewer->FindExistNode(ended.first().first().toString()));
    EXPECT_EQ(box.count, 0);

    DrawSquare(0.2);
    ASSERT_EQ(ended.size(), 2);
    EXPECT_EQ(ended.last().at(0).toString(), QString());
    EXPECT_TRUE(ended.last().at(1).toBool());
    EXPECT_EQ(box.count, 1);
    EXPECT_TRUE(box.texts.contains(QStringLiteral("The block is larger than 100 square kilometres.")));
    EXPECT_EQ(CAxBlockManager::instance().GetBlockList().size(), 1);
}

TEST(HostToolDocument, ShowsTheProgramThatIsTested)
{
    const QString example = ReadAll(AX_RESOURCES "/../tests/host/SmallBlock.h").section("#pragma once\n", 1);
    EXPECT_TRUE(ReadAll(AX_RESOURCES "/../docs/blocks.md").contains(example));
}
