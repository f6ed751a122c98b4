// What the viewer does around volumes; what they are is tested in the suite of analysis.
#include "ShapeFixture.h"

#include "analysis/volume/AxVolumeAnalysis.h"
#include "interaction/measure/AxMeasurements.h"
#include "viewer/AxMapLayers.h"
#include "viewer/overlay/AxColorLegend.h"
#include "viewer/overlay/AxGridWidget.h"
#include "viewer/overlay/CAxCoordinateWidget.h"

#include <QComboBox>
#include <QDoubleSpinBox>
#include <QLabel>
#include <QLineEdit>

namespace {
template <typename Panel> Panel* OverMap()
{
    for (QWidget* widget : QApplication::allWidgets())
        if (auto* panel = qobject_cast<Panel*>(widget))
            return panel;
    return nullptr;
}
} // namespace

TEST_F(ShapeFixture, AVolumeIsMeasuredAgainstWhatTheGridPanelSaysAndGoesWithItsMeasurement)
{
    AxMeasurements* measured = viewer->GetMeasurements();
    AxVolumeAnalysis* volumes = viewer->GetVolumeAnalysis();
    const osgEarth::Map* map = viewer->getMapNode()->getMap();
    measured->Clear();
    manipulator->setViewpoint(Straight(-104.99, 37.38, 40000.0));
    ASSERT_TRUE(WaitForPicture());
    const int layers = map->getNumImageLayers();
    auto* panel = OverMap<AxGridWidget>();
    auto* legend = OverMap<AxColorLegend>();
    ASSERT_TRUE(panel && legend);
    EXPECT_FALSE(panel->isVisible());
    viewer->SetToolType(ToolMeasureVolume);
    EXPECT_TRUE(panel->isVisible());
    auto* base = panel->findChild<QComboBox*>("m_pBase");
    base->setCurrentIndex(base->findData(static_cast<int>(AxVolumeBase::Height)));
    panel->findChild<QDoubleSpinBox*>("m_pHeight")->setValue(2500.0);
    panel->findChild<QDoubleSpinBox*>("m_pCell")->setValue(40.0);
    Click(-105.02, 37.36);
    Click(-104.96, 37.36);
    DoubleClickAt(-104.99, 37.40);
    ASSERT_EQ(measured->All().size(), 1);
    const QString id = measured->All().first().id;
    const auto answered = [&] { return !volumes->GetResult(id).isPending && !volumes->IsBusy(); };
    ASSERT_TRUE(waitFor(answered));
    const AxVolumeResult first = volumes->GetResult(id);
    ASSERT_TRUE(first.volume);
    EXPECT_EQ(first.volume->baseLow, 2500.0);
    EXPECT_GT(first.volume->cut, 1e9);
    EXPECT_EQ(measured->Find(id)->values.Of(AxQuantity::Cut), first.volume->cut);
    EXPECT_FALSE(measured->Find(id)->isPending);
    EXPECT_EQ(map->getNumImageLayers(), layers + 1);
    EXPECT_EQ(panel->HandleID(), id);

    // What the colours mean, beside the panel; not of a picture that is hidden.
    EXPECT_TRUE(legend->isVisible());
    const QSize size = viewer->size();
    auto* readOut = OverMap<CAxCoordinateWidget>();
    ASSERT_TRUE(readOut);
    for (const int width : {1000, 400}) {
        viewer->resize(width, 500);
        EXPECT_FALSE(legend->geometry().intersects(panel->geometry())) << width;
        EXPECT_FALSE(legend->geometry().intersects(readOut->geometry())) << width;
        EXPECT_TRUE(viewer->rect().contains(legend->geometry())) << width;
    }
    viewer->resize(size);
    EXPECT_GE(legend->Shown().size(), 2);
    volumes->SetVisible(id, false);
    EXPECT_FALSE(legend->isVisible());
    volumes->SetVisible(id, true);

    // Refused: what stands is seen, the reason goes when something else is filled in, and nothing inherits
    // it.
    auto* cell = panel->findChild<QDoubleSpinBox*>("m_pCell");
    auto* note = panel->findChild<QLabel*>("m_pNote");
    const QString answer = note->text();
    cell->setValue(0.01);
    EXPECT_EQ(cell->value(), 40.0);
    EXPECT_EQ(volumes->Next().cell, 40.0);
    EXPECT_EQ(note->text(), volumes->GetResult(id).refusal);
    EXPECT_TRUE(note->text().contains("0.01")) << qPrintable(note->text());
    emit cell->findChild<QLineEdit*>()->textEdited("4");
    EXPECT_EQ(note->text(), answer);

    base->setCurrentIndex(base->findData(static_cast<int>(AxVolumeBase::SurfaceOfRim)));
    EXPECT_TRUE(measured->Find(id)->isPending);
    ASSERT_TRUE(waitFor(answered));
    const AxVolumeResult second = volumes->GetResult(id);
    EXPECT_EQ(second.volume->grid, first.volume->grid) << "no height is read again";
    EXPECT_NE(second.volume->cut, first.volume->cut);
    EXPECT_EQ(map->getNumImageLayers(), layers + 1);

    // More than is computed without a question, which is declined; and one that is called off.
    AxVolumeQuestion question = second.question;
    question.cell = 2.0;
    {
        ModalBox box;
        box.answers += ModalBox::Press("Cancel");
        EXPECT_FALSE(volumes->Ask(id, second.name, question));
        ASSERT_TRUE(waitFor([&] { return box.count == 1; }));
    }
    // Agreed to, it is of the ring that was asked, be it another one; each of several is asked about.
    {
        AxVolumeQuestion moved = question;
        moved.ring[0].rx() -= 0.01;
        ModalBox box;
        box.answers = {ModalBox::Press("Compute"), ModalBox::Press("Cancel")};
        EXPECT_FALSE(volumes->Ask(id, second.name, moved));
        EXPECT_FALSE(volumes->Ask("other", "other", question));
        ASSERT_TRUE(waitFor([&] { return box.count == 2; }));
        EXPECT_EQ(volumes->GetResult(id).question.ring, moved.ring);
        EXPECT_TRUE(volumes->GetResult(id).isPending);
        volumes->CallOff(id);
        volumes->Remove("other");
        volumes->SetNext(second.question);
    }
    question.cell = 20.0;
    ASSERT_TRUE(volumes->Ask(id, second.name, question));
    volumes->CallOff(id);
    EXPECT_EQ(volumes->GetResult(id).volume, second.volume);
    EXPECT_EQ(volumes->GetResult(id).fault, AxVolumeFault::Interrupted);
    ASSERT_TRUE(volumes->Ask(id, second.name, second.question));
    ASSERT_TRUE(waitFor(answered));

    const AxVolumeResult third = volumes->GetResult(id);
    const auto showHeights = [&](bool shown) {
        for (const AxMapLayer& layer : viewer->GetMapLayers()->All())
            if (layer.kind == AxMapLayer::Kind::Elevation)
                viewer->GetMapLayers()->SetVisible(layer.id, shown);
        return waitFor(answered);
    };
    ASSERT_TRUE(showHeights(false));
    EXPECT_TRUE(volumes->GetResult(id).isStale);
    EXPECT_EQ(volumes->GetResult(id).fault, AxVolumeFault::NoRim);
    EXPECT_EQ(volumes->GetResult(id).volume, third.volume) << "what was known is still told";
    EXPECT_FALSE(measured->Find(id)->values.note.isEmpty());
    ASSERT_TRUE(showHeights(true));
    EXPECT_FALSE(volumes->GetResult(id).isStale);
    EXPECT_NE(volumes->GetResult(id).volume->grid, third.volume->grid) << "heights are read anew";
    viewer->SetToolType(ToolNavigate);
    EXPECT_FALSE(panel->isVisible());
    EXPECT_FALSE(legend->isVisible());
    volumes->SetChosen(id);
    EXPECT_TRUE(legend->isVisible());
    measured->Remove(id);
    EXPECT_FALSE(legend->isVisible());
    EXPECT_TRUE(volumes->GetResults().isEmpty());
    EXPECT_EQ(map->getNumImageLayers(), layers);
}
