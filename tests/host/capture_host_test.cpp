// What becomes files of the pictures that are taken.
#include "SuiteViewer.h"

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
#include <QTimer>

#include <gdal_priv.h>
#include <gtest/gtest.h>
#include <ogr_spatialref.h>
#include <osg/MatrixTransform>
#include <osg/Shape>
#include <osg/ShapeDrawable>
#include <osgEarth/GeoData>
#include <osgEarth/SpatialReference>

using CapturedMap = SuiteViewer;

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

TEST(CapturedFiles, AreWrittenToTheirEndWhenTheProgramIsEndedMeanwhile)
{
    const QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("a%1.png"));
    QImage picture(800, 600, QImage::Format_RGB888);
    picture.fill(Qt::red);
    QTimer::singleShot(0, qApp, [&] {
        QCoreApplication::exit();
        EXPECT_EQ(WritePicture(picture, file, QString(), nullptr), QString());
    });
    QCoreApplication::exec();
    EXPECT_EQ(QImage(file).size(), picture.size());
    const QString nowhere = folder.filePath(QStringLiteral("not/a%1.png"));
    EXPECT_EQ(TryFile(nowhere).count(QStringLiteral("a%1.png")), 1);
    EXPECT_EQ(TryFile(file), QString());
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files), QStringList{QStringLiteral("a%1.png")});
}

TEST_F(CapturedMap, HasItsColoursWhereTheyAreOnTheGround)
{
    constexpr double half = 150.0;
    const osgEarth::SpatialReference* degrees = viewer->getSRS()->getGeographicSRS();
    osg::Matrixd toWorld;
    osgEarth::GeoPoint(degrees, -104.999, 37.401, 3000.0).createLocalToWorld(toWorld);
    const osg::ref_ptr<osg::ShapeDrawable> square =
        new osg::ShapeDrawable(new osg::Box({}, 2.0f * half, 2.0f * half, 1.0f));
    square->setColor({1.0f, 0.0f, 1.0f, 1.0f});
    osg::StateSet& state = *square->getOrCreateStateSet();
    state.setMode(GL_LIGHTING, osg::StateAttribute::OFF);
    state.setMode(GL_DEPTH_TEST, osg::StateAttribute::OFF);
    state.setRenderBinDetails(1000, "RenderBin");
    const osg::ref_ptr<osg::MatrixTransform> place = new osg::MatrixTransform(toWorld);
    place->addChild(square);
    viewer->GetDrawNodeGroup()->addChild(place);
    const QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("map.tif"));
    const AxShotGround ground{{-105.0, 37.4, 3000.0}, 1200.0, 1000.0};
    const QSize size(600, 500); // of 2 m
    const CaptureEnd end =
        RunCapture(*viewer, {AxShots::FromAbove(ground, size)},
                   std::make_unique<MapPictureTaker>(file, ground, size), QString(), nullptr);
    viewer->GetDrawNodeGroup()->removeChild(place);
    ASSERT_TRUE(end.isWhole) << end.fault.toStdString();

    const GDALDatasetUniquePtr data(GDALDataset::Open(file.toUtf8().constData()));
    ASSERT_TRUE(data && data->GetRasterXSize() == size.width() && data->GetRasterYSize() == size.height());
    double to[6];
    double from[6];
    ASSERT_TRUE(data->GetGeoTransform(to) == CE_None && GDALInvGeoTransform(to, from));
    OGRSpatialReference globe;
    globe.SetWellKnownGeogCS("WGS84");
    globe.SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
    const std::unique_ptr<OGRCoordinateTransformation> onto(
        OGRCreateCoordinateTransformation(&globe, data->GetSpatialRef()));
    const auto isOfSquare = [&](double east, double north) {
        osgEarth::GeoPoint at;
        at.fromWorld(degrees, osg::Vec3d(east, north, 0.0) * toWorld);
        EXPECT_TRUE(onto && onto->Transform(1, &at.x(), &at.y()));
        unsigned char seen[3] = {};
        EXPECT_EQ(data->RasterIO(GF_Read, static_cast<int>(from[0] + at.x() * from[1]),
                                 static_cast<int>(from[3] + at.y() * from[5]), 1, 1, seen, 1, 1, GDT_Byte, 3,
                                 nullptr, 1, 1, 1, nullptr),
                  CE_None);
        return seen[0] > 220 && seen[1] < 40 && seen[2] > 220;
    };
    for (const double off : {-3.0, 3.0}) {
        EXPECT_EQ(isOfSquare(half + off, half + off), off < 0.0);
        EXPECT_EQ(isOfSquare(-half - off, half - 50.0), off < 0.0);
    }
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
    const PictureBox large({5000, 2500}, nullptr);
    EXPECT_EQ(large.findChild<QComboBox*>(QStringLiteral("usual"))->itemData(2).toSize(), QSize(16384, 8192));
    auto* usual = box.findChild<QComboBox*>(QStringLiteral("usual"));
    EXPECT_EQ(usual->currentIndex(), -1) << "it is none of the usual ones";
    usual->setCurrentIndex(usual->count() - 1);
    emit usual->activated(usual->currentIndex());
    EXPECT_EQ(box.Size(), QSize(8192, 8192)) << "a poster has a shape of its own";
    box.findChild<QCheckBox*>(QStringLiteral("keepsShape"))->setChecked(false);
    width->setValue(1000.0);
    EXPECT_EQ(box.Size(), QSize(1000, 8192));
}
