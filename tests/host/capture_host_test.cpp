// What becomes files of the pictures that are taken.
#include "host/capture/CaptureRun.h"
#include "host/capture/MapPictureBox.h"
#include "host/capture/PictureBox.h"
#include "host/capture/SeriesTaker.h"
#include "host/tasks/LimitedNumber.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QTemporaryDir>

#include <gtest/gtest.h>

TEST(CapturedFiles, OfASeriesAreNumberedAndWholeAndAFullFolderIsTold)
{
    const QTemporaryDir folder;
    const AxShot shot{{}, {}, {8, 6}};
    const auto written = std::make_shared<int>(0);
    SeriesTaker taker(folder.filePath(QStringLiteral("Field 1.2.png")), {shot, shot, shot}, written);
    QImage part(8, 6, QImage::Format_RGB888);
    part.fill(Qt::red);
    const QString second = folder.filePath(QStringLiteral("Field 1.2_0002.png"));
    // A folder of that name stands in the way.
    ASSERT_TRUE(QDir().mkpath(second));
    EXPECT_EQ(taker.CountThere(), 1);
    EXPECT_EQ(taker.Take(0, {}, part), QString());
    EXPECT_EQ(taker.Finish(0), QString());
    EXPECT_EQ(taker.Take(1, {}, part), QString());
    QString fault = taker.Finish(1);
    EXPECT_EQ(taker.Take(2, {}, part), QString());
    fault += taker.Finish(2);
    EXPECT_TRUE(fault.contains(QStringLiteral("0002"))) << "the file is named";
    EXPECT_EQ(*written, 1);
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files), QStringList{QStringLiteral("Field 1.2_0001.png")});
    EXPECT_EQ(QImage(folder.filePath(QStringLiteral("Field 1.2_0001.png"))).pixelColor(3, 3),
              QColor(Qt::red));
    EXPECT_FALSE(WritePictureNow(part, folder.filePath(QStringLiteral("a.nokind"))).isEmpty());
    EXPECT_FALSE(QFile::exists(folder.filePath(QStringLiteral("a.nokind"))));
}

TEST(CapturedFiles, OfAMapHaveWholePixelsOverAllOfTheirArea)
{
    const AxShotGround wide{{10.0, 50.0, 100.0}, 90000.0, 10.0};
    const AxShotGround small{{10.0, 50.0, 100.0}, 100.5, 80.0};
    MapPictureBox box({{QStringLiteral("a"), small, 0.25}, {QStringLiteral("b"), wide, 0.001}}, nullptr);
    EXPECT_EQ(box.Size(), QSize(402, 320));
    box.findChild<LimitedNumber*>(QStringLiteral("pixel"))->setValue(0.4);
    EXPECT_EQ(box.Size(), QSize(252, 200));
    EXPECT_NEAR(box.Ground().width, 100.8, 1e-9);
    box.findChild<QComboBox*>(QStringLiteral("area"))->setCurrentIndex(1);
    EXPECT_LE(box.Size().width(), AxPictureCapture::mostPixels);
    EXPECT_GE(box.Ground().width, 90000.0);
}

TEST(PictureOfTheMap, KeepsTheShapeOfTheMapUnlessASizeIsChosen)
{
    PictureBox box({1200, 800}, nullptr);
    auto* width = box.findChild<LimitedNumber*>(QStringLiteral("width"));
    auto* height = box.findChild<LimitedNumber*>(QStringLiteral("height"));
    const struct
    {
        LimitedNumber* typed;
        double value;
        QSize size;
    } rows[] = {
        {width, 3000.0, {3000, 2000}}, {height, 400.0, {600, 400}}, {height, 16384.0, {16384, 10923}}};
    for (const auto& row : rows) {
        row.typed->setValue(row.value);
        EXPECT_EQ(box.Size(), row.size);
    }
    auto* usual = box.findChild<QComboBox*>(QStringLiteral("usual"));
    EXPECT_EQ(usual->currentIndex(), -1) << "it is none of the usual ones";
    usual->setCurrentIndex(usual->count() - 1);
    emit usual->activated(usual->currentIndex());
    EXPECT_EQ(box.Size(), QSize(8192, 8192)) << "a poster has a shape of its own";
    box.findChild<QCheckBox*>(QStringLiteral("keepsShape"))->setChecked(false);
    width->setValue(1000.0);
    EXPECT_EQ(box.Size(), QSize(1000, 8192));
}
