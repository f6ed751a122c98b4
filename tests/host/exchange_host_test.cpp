// Areas and lines of files as blocks of a real viewer, and back.
#include "ModalBox.h"
#include "SuiteViewer.h"

#include "host/exchange/GeoBlocks.h"
#include "host/exchange/GeoExchange.h"
#include "interaction/objects/CAxHandleAdapter.h"

#include <AxData/CAxBlockManager.h>

#include <QDoubleSpinBox>
#include <QFile>
#include <QFileDialog>
#include <QMenu>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTreeWidget>
#include <QUndoStack>

namespace {
const char* const fields = R"({"type":"FeatureCollection","features":[
{"type":"Feature","properties":{"name":"Pit"},"geometry":{"type":"Polygon","coordinates":[
 [[-105,37.4],[-104.99,37.4],[-104.99,37.41],[-105,37.4]],[[-104.995,37.402],[-104.992,37.402],[-104.992,37.404],[-104.995,37.402]]]}},
{"type":"Feature","properties":{"name":"Pit"},"geometry":{"type":"Polygon","coordinates":[
 [[-105.02,37.4],[-105.01,37.4],[-105.01,37.41],[-105.02,37.4]]]}},
{"type":"Feature","properties":{"name":"Road","left_m":20},"geometry":{"type":"LineString","coordinates":[
 [-105,37.42],[-104.99,37.43],[-104.98,37.42]]}},
{"type":"Feature","properties":{"name":"Tower","radius_m":120},"geometry":{"type":"Point","coordinates":[-105,37.44]}},
{"type":"Feature","properties":{"name":"Stone"},"geometry":{"type":"Point","coordinates":[-105,37.45]}},
{"type":"Feature","properties":{"name":"Ditch","left_m":1,"right_m":1},"geometry":{"type":"LineString","coordinates":[
 [-105,37.46],[-104.99,37.46]]}}]})";

class Exchange : public SuiteViewer
{
protected:
    void SetUp() override
    {
        exchange = std::make_unique<GeoExchange>(viewer, &window, [](const QString&) { return QString(); });
        viewer->GetUndoStack()->clear();
    }
    void TearDown() override
    {
        exchange.reset();
        viewer->GetUndoStack()->clear();
        viewer->RemoveAllHanderAdapter(true);
        CAxBlockManager::instance().DeleteAllBlocks();
    }
    QString Put(const char* name, const QByteArray& contents)
    {
        QFile file(folder.filePath(QLatin1String(name)));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(contents);
        return file.fileName();
    }
    template <typename Kind> static Kind* Button(const QDialog& dialog, const char* text)
    {
        for (Kind* button : dialog.findChildren<Kind*>())
            if (button->text() == QLatin1String(text))
                return button;
        ADD_FAILURE() << "no button " << text;
        return nullptr;
    }
    /// Fills the holes of areas.
    static ModalBox::Answer ImportFilled()
    {
        return [](QDialog& dialog) {
            Button<QRadioButton>(dialog, "&Fill the holes")->click();
            ModalBox::Press(QStringLiteral("Import"))(dialog);
        };
    }
    static QStringList Names()
    {
        QStringList names;
        for (const CAxBlock* block : CAxBlockManager::instance().GetBlockList())
            names += block->GetBlockName();
        names.sort();
        return names;
    }
    static CAxBlock* BlockOf(const char* name)
    {
        for (CAxBlock* block : CAxBlockManager::instance().GetBlockList())
            if (block->GetBlockName() == QLatin1String(name))
                return block;
        return nullptr;
    }

    QTemporaryDir folder;
    QWidget window;
    std::unique_ptr<GeoExchange> exchange;
};
} // namespace

TEST_F(Exchange, AnImportIsOneStepThatUndoTakesBack)
{
    ModalBox box;
    box.answers = {ImportFilled()};
    exchange->Import({Put("fields.geojson", fields)});
    EXPECT_EQ(box.titles, QStringList{QStringLiteral("Import areas and lines")});
    ASSERT_EQ(CAxBlockManager::instance().GetBlockList().size(), 5) << Names().join(", ").toStdString();
    const CAxBlock* pit = BlockOf("Pit");
    CAxBlock* road = BlockOf("Road");
    const CAxBlock* tower = BlockOf("Tower");
    ASSERT_TRUE(pit && road && tower);
    EXPECT_TRUE(pit->GetBlockType() == CAxBlock::PolygonBlock && pit->GetAnchor().size() == 3);
    double left = 0.0;
    double right = 0.0;
    road->GetTaskPara()->GetBandingOffset(left, right);
    EXPECT_TRUE(road->GetBlockType() == CAxBlock::StripBlock && left == 20.0 && right == 50.0);
    EXPECT_TRUE(tower->GetBlockType() == CAxBlock::VideoBlock && tower->GetVideoRadius() == 120);
    for (const CAxBlock* block : CAxBlockManager::instance().GetBlockList())
        EXPECT_TRUE(viewer->FindExistNode(block->GetBlockID())) << block->GetBlockName().toStdString();
    QStringList names = Names();
    EXPECT_EQ(names.removeDuplicates(), 0);

    const QVector<AxGeoShape> written =
        GeoBlocks::ShapesOf({pit->GetBlockID(), road->GetBlockID(), tower->GetBlockID()});
    const QString file = folder.filePath(QStringLiteral("again.gpkg"));
    ASSERT_TRUE(AxWriteGeoFile(file, AxGeoFormat::GeoPackage, written).fault.isEmpty());
    const std::vector<std::unique_ptr<CAxBlock>> again =
        GeoBlocks::RecordsOf(AxReadGeoFile(file).shapes, GeoChoice());
    ASSERT_EQ(again.size(), 3u);
    for (std::size_t i = 0; i < again.size(); ++i) {
        const CAxBlock* meant = BlockOf(written[int(i)].name.toUtf8().constData());
        EXPECT_TRUE(meant && again[i]->GetBlockType() == meant->GetBlockType() &&
                    again[i]->GetAnchor().size() == meant->GetAnchor().size());
    }
    again[1]->GetTaskPara()->GetBandingOffset(left, right);
    EXPECT_TRUE(left == 20.0 && right == 50.0 && again[2]->GetVideoRadius() == 120);

    ASSERT_EQ(viewer->GetUndoStack()->count(), 1);
    viewer->GetUndoStack()->undo();
    EXPECT_TRUE(CAxBlockManager::instance().GetBlockList().isEmpty());
    viewer->GetUndoStack()->redo();
    EXPECT_EQ(Names(), names);
}

TEST_F(Exchange, ThePilotChoosesWhatBecomesABlock)
{
    ModalBox box;
    box.answers = {[](QDialog& dialog) {
        auto* list = dialog.findChild<QTreeWidget*>(QStringLiteral("FoundShapes"));
        ASSERT_TRUE(list && list->topLevelItemCount() == 6);
        EXPECT_EQ(list->topLevelItem(4)->checkState(0), Qt::Unchecked) << "a mere point";
        QPushButton* import = Button<QPushButton>(dialog, "Import");
        EXPECT_FALSE(import->isEnabled()) << "holes are filled, or areas lost, without a question";
        list->topLevelItem(0)->setCheckState(0, Qt::Unchecked);
        EXPECT_TRUE(import->isEnabled());
        list->topLevelItem(0)->setCheckState(0, Qt::Checked);
        Button<QRadioButton>(dialog, "&Leave these areas out")->click();
        EXPECT_TRUE(list->topLevelItem(5)->text(6).contains(QStringLiteral("1.0 m and 1.0 m")));
        const auto widths = dialog.findChildren<QDoubleSpinBox*>(); // left, right
        widths[0]->setValue(0.0);
        widths[1]->setValue(2.9);
        EXPECT_FALSE(import->isEnabled()) << "no strip";
        widths[1]->setValue(3.0);
        EXPECT_TRUE(import->isEnabled());
        list->topLevelItem(2)->setCheckState(0, Qt::Unchecked);
        ModalBox::Press(QStringLiteral("Import"))(dialog);
    }};
    exchange->Import({Put("fields.geojson", fields)});
    EXPECT_EQ(Names(),
              (QStringList{QStringLiteral("Ditch"), QStringLiteral("Pit"), QStringLiteral("Tower")}));
    double left = 0.0;
    double right = 0.0;
    BlockOf("Ditch")->GetTaskPara()->GetBandingOffset(left, right);
    EXPECT_TRUE(left == 0.0 && right == 3.0);
}

TEST_F(Exchange, AFileWithoutACoordinateSystemIsAskedForAndABadOneIsTold)
{
    const QByteArray drawing =
        "0\nSECTION\n2\nENTITIES\n0\nLWPOLYLINE\n8\nPit\n90\n3\n70\n1\n10\n500000\n20\n5205266\n"
        "10\n501000\n20\n5205266\n10\n501000\n20\n5206266\n0\nENDSEC\n0\nEOF\n";
    ModalBox box;
    box.answers = {ModalBox::Fill({QStringLiteral("nonsense")}), ModalBox::Fill({QStringLiteral("32632")}),
                   ModalBox::Press(QStringLiteral("Import"))};
    exchange->Import({Put("pit.dxf", drawing)});
    ASSERT_TRUE(BlockOf("Pit"));
    EXPECT_NEAR(BlockOf("Pit")->GetAnchor()[0].x(), 9.0, 1e-6);
    exchange->Import({Put("bad.kml", "<kml>")});
    EXPECT_TRUE(box.texts.join(' ').contains(QStringLiteral("bad.kml")))
        << box.texts.join('\n').toStdString();
    EXPECT_EQ(CAxBlockManager::instance().GetBlockList().size(), 1);
}

TEST_F(Exchange, AnExportBeginsWhereTheLastOneEndedAndNamesItsFormat)
{
    CAxBlock* block = CAxBlockManager::instance().AddBlock(QStringLiteral("id"), CAxBlock::PolygonBlock);
    block->SetBlockName(QStringLiteral("Field 1.2: north"));
    block->SetAnchor({{10.0, 0.0}, {10.01, 0.0}, {10.01, 0.01}});
    const QString file = folder.filePath(QStringLiteral("Field 1.2_ north.kml"));
    exchange->SetFolder(folder.path());
    QSignalSpy told(exchange.get(), &GeoExchange::Told);
    QMenu menu;
    exchange->FillMenu(&menu);
    ModalBox box;
    const auto save = [](QDialog& dialog) { dialog.accept(); };
    box.answers = {save, save, ModalBox::Press(QStringLiteral("Cancel"))};
    menu.actions()[1]->trigger();
    EXPECT_EQ(AxReadGeoFile(file).shapes.size(), 1);
    EXPECT_TRUE(told.size() == 1 &&
                told[0][0].toString().contains(QStringLiteral("Field 1.2_ north.kml: 1")));
    menu.actions()[1]->trigger();
    EXPECT_EQ(box.count, 3) << "replaced without a question";
    EXPECT_EQ(told.size(), 1);
}

TEST_F(Exchange, AnExportKeepsTheKindsOfBlocksAndTellsWhatItLeavesOut)
{
    CAxBlockManager& blocks = CAxBlockManager::instance();
    blocks.AddBlock(QStringLiteral("empty"), CAxBlock::PolygonBlock)
        ->SetBlockName(QStringLiteral("<b>Empty"));
    CAxBlock* area = blocks.AddBlock(QStringLiteral("area"), CAxBlock::ProhibitedAreaBlock);
    area->SetBlockName(QStringLiteral("Area"));
    area->SetAnchor({{10.0, 0.0}, {10.01, 0.0}, {10.01, 0.01}, {10.0, 0.01}});
    exchange->SetFolder(folder.path());
    for (const char* suffix : {"kml", "dxf"}) {
        SCOPED_TRACE(suffix);
        const QString file = folder.filePath(QStringLiteral("Area.") + QLatin1String(suffix));
        QMenu menu;
        exchange->FillBlockMenu(&menu, {QStringLiteral("area"), QStringLiteral("empty")});
        QString told;
        ModalBox box;
        box.answers = {[&](QDialog& dialog) {
                           dynamic_cast<QFileDialog&>(dialog).selectFile(file);
                           dialog.accept();
                       },
                       [&](QDialog& notes) {
                           for (const QLabel* label : notes.findChildren<QLabel*>())
                               told += label->text();
                           notes.accept();
                       }};
        menu.actions()[0]->trigger();
        EXPECT_TRUE(box.answers.isEmpty());
        EXPECT_TRUE(told.contains(QStringLiteral("\"<b>Empty\" has no vertices"))) << told.toStdString();
        const bool isDrawing = suffix == std::string("dxf");
        EXPECT_EQ(told.contains(QStringLiteral("\"Area\" is the area of an application")), isDrawing);
        EXPECT_EQ(QFile::exists(file), !isDrawing);
        if (isDrawing)
            continue;
        const auto again = GeoBlocks::RecordsOf(AxReadGeoFile(file).shapes, GeoChoice());
        ASSERT_EQ(again.size(), 1u);
        EXPECT_EQ(again[0]->GetBlockType(), CAxBlock::ProhibitedAreaBlock);
    }
}
