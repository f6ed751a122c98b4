// Areas saved for use without a network: the box, and the map that shows them from then on.
#include "host/offline/OfflineAreas.h"
#include "host/offline/OfflineBox.h"
#include "LoopbackTiles.h"
#include "SuiteViewer.h"
#include "viewer/AxMapLayers.h"

#include <osgEarth/Viewpoint>

#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QSignalSpy>
#include <QSpinBox>
#include <QTemporaryDir>

class OfflineAreasTest : public SuiteViewer
{
protected:
    static int Layers() { return viewer->GetMapLayers()->All().size(); }
    static AxMapLayer Added()
    {
        for (const AxMapLayer& layer : viewer->GetMapLayers()->All())
            if (layer.isAdded)
                return layer;
        return {};
    }
    template <typename Widget> static Widget* In(QWidget* box, const char* name)
    {
        return box->findChild<Widget*>(QLatin1String(name));
    }
    static OfflineBox* Open(OfflineAreas& areas, QWidget& window)
    {
        QMenu menu;
        areas.FillMenu(&menu);
        menu.actions().constFirst()->trigger();
        return window.findChild<OfflineBox*>();
    }
};

TEST_F(OfflineAreasTest, WhatIsSavedIsShownInItsPlaceAndKept)
{
    LoopbackTiles server;
    server.answer = [](const LoopbackTiles::Asked&) {
        return LoopbackTiles::Answer{
            "200 OK", LoopbackTiles::Picture(Qt::magenta), {}, LoopbackTiles::Manner::Whole};
    };
    const QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("peaks.mbtiles"));
    const int before = Layers();
    QByteArray kept;
    {
        QWidget window;
        OfflineAreas areas(viewer, &window);
        OfflineBox* box = Open(areas, window);
        ASSERT_TRUE(box);
        auto* save = box->findChild<QPushButton*>(QStringLiteral("m_pBtnOK"));
        ASSERT_TRUE(save);
        EXPECT_FALSE(save->isEnabled()) << "no address is given";
        In<QLineEdit>(box, "OfflineAddress")->setText(server.Address());
        QTest::keyClicks(In<QLineEdit>(box, "OfflineRectangle"), QStringLiteral("30.1,10.1,30.4,10.3"));
        In<QSpinBox>(box, "OfflineFirstLevel")->setValue(6);
        In<QSpinBox>(box, "OfflineLastLevel")->setValue(11);
        In<QLineEdit>(box, "OfflineFile")->setText(file);
        ASSERT_TRUE(waitFor([&] { return save->isEnabled(); }));
        QTest::mouseClick(In<QPushButton>(box, "OfflineEstimate"), Qt::LeftButton);
        EXPECT_TRUE(waitFor([&] {
            return In<QLabel>(box, "OfflineCount")->text().contains(QStringLiteral("MB;"));
        })) << qPrintable(In<QLabel>(box, "OfflineCount")->text());
        QSignalSpy saved(box, &OfflineBox::Saved);
        QTest::mouseClick(save, Qt::LeftButton);
        EXPECT_FALSE(In<QLineEdit>(box, "OfflineAddress")->isEnabled());
        ASSERT_TRUE(waitFor([&] { return saved.size() == 1; }));
        EXPECT_EQ(Layers(), before + 1);
        EXPECT_EQ(areas.Files(), QStringList{file});
        kept = areas.Kept();

        viewer->getManipulator()->setViewpoint(osgEarth::Viewpoint("", 30.25, 10.2, 0.0, 0.0, -90.0, 20000.0),
                                               0.0);
        ASSERT_TRUE(waitFor([] { return viewer->IsPictureComplete(); }));
        const QImage picture = viewer->GetCurrViewerImg();
        const QColor middle = picture.pixelColor(picture.width() / 2, picture.height() / 2);
        EXPECT_GT(middle.red(), 2 * middle.green() + 40) << qPrintable(middle.name());
        EXPECT_GT(middle.blue(), 2 * middle.green() + 40) << qPrintable(middle.name());

        // More ground into the file that is shown: one layer, opened anew, as it was.
        viewer->GetMapLayers()->SetOpacity(Added().id, 0.5);
        viewer->GetMapLayers()->SetVisible(Added().id, false);
        const QString upper = folder.filePath(QStringLiteral("upper.mbtiles"));
        ASSERT_TRUE(QFile::copy(file, upper));
        const int above = viewer->GetMapLayers()->AddImage(upper);
        In<QLineEdit>(box, "OfflineRectangle")->setText(QStringLiteral("30.1,10.1,30.8,10.3"));
        QTest::mouseClick(save, Qt::LeftButton);
        ASSERT_TRUE(waitFor([&] { return saved.size() == 2; }));
        EXPECT_EQ(Added().id, above) << "the upper one";
        viewer->GetMapLayers()->Remove(above);
        EXPECT_EQ(Layers(), before + 1);
        EXPECT_NEAR(Added().extent.value_or(QRectF()).width(), 0.7, 0.01);
        EXPECT_FALSE(Added().isVisible);
        EXPECT_NEAR(Added().opacity, 0.5, 0.01);
    }
    // The next run: the file is shown again, until it is removed from the map. One that is not there is kept.
    viewer->GetMapLayers()->Remove(Added().id);
    OfflineAreas next(viewer, nullptr);
    next.SetKept("no JSON");
    const QString away = folder.filePath(QStringLiteral("away.mbtiles"));
    kept.replace("[\"", QStringLiteral("[\"%1\",\"").arg(away).toUtf8());
    next.SetKept(kept);
    emit viewer->signalLoadEarth();
    ASSERT_EQ(Layers(), before + 1);
    viewer->GetMapLayers()->Remove(Added().id);
    EXPECT_EQ(next.Files(), QStringList{away});
    EXPECT_EQ(next.Missing(), QStringList{away});
    EXPECT_FALSE(next.FindAgain(away, folder.filePath(QStringLiteral("nowhere.mbtiles"))));
    EXPECT_EQ(next.Files(), QStringList{away});
    EXPECT_TRUE(next.FindAgain(away, file));
    EXPECT_EQ(next.Files(), QStringList{file});
    next.Forget(file);
    EXPECT_EQ(next.Files(), QStringList{file}) << "it is shown";
    viewer->GetMapLayers()->Remove(Added().id);
    next.SetKept(kept);
    next.Forget(away);
    EXPECT_FALSE(next.Files().contains(away));
}
