#include <AxData/geofiles/AxGeoMapPicture.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gdal_priv.h>
#include <gtest/gtest.h>
#include <ogr_spatialref.h>

#include <cmath>
#include <vector>

TEST(MapPicture, ItsPixelsLieWhereTheyWereSeenAndNothingUnfinishedStays)
{
    const QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("map.tif"));
    const AxGeoMapPlace place{{-105.0, 37.4}, 3000.0, 5.0, 400, 300};
    const std::vector<unsigned char> part(200 * 100 * 3, 77);
    {
        AxGeoMapPicture broken(file, place);
        EXPECT_EQ(broken.Write(0, 0, 200, 100, part.data(), 600), QString());
    }
    EXPECT_TRUE(QDir(folder.path()).isEmpty(QDir::Files));
    {
        AxGeoMapPicture picture(file, place);
        EXPECT_EQ(picture.Write(200, 200, 200, 100, part.data(), 600), QString());
        EXPECT_EQ(picture.Finish(), QString());
    }
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files), QStringList{QStringLiteral("map.tif")});

    GDALAllRegister();
    GDALDatasetUniquePtr data(GDALDataset::Open(file.toUtf8().constData()));
    ASSERT_TRUE(data && data->GetRasterCount() == 3);
    unsigned char pixels[2] = {};
    ASSERT_EQ(
        data->GetRasterBand(2)->RasterIO(GF_Read, 199, 250, 2, 1, pixels, 2, 1, GDT_Byte, 0, 0, nullptr),
        CE_None);
    EXPECT_EQ(pixels[0], 0);
    EXPECT_EQ(pixels[1], 77);
    // The lower right corner, 1000 m to the east and 750 m to the south at 3000 m: geocentric, and back.
    double to[6];
    ASSERT_EQ(data->GetGeoTransform(to), CE_None);
    double x = to[0] + 400 * to[1];
    double y = to[3] + 300 * to[5];
    OGRSpatialReference globe;
    globe.SetWellKnownGeogCS("WGS84");
    globe.SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
    OGRSpatialReference own(*data->GetSpatialRef());
    own.SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
    const std::unique_ptr<OGRCoordinateTransformation> back(OGRCreateCoordinateTransformation(&own, &globe));
    ASSERT_TRUE(back && back->Transform(1, &x, &y));
    // Radii of the meridian and of the normal at 37.4 degrees, Torge, Geodesy, 2001, and 3000 m on top.
    const double degrees = 180.0 / std::acos(-1.0);
    EXPECT_NEAR(x, -105.0 + 1000.0 / ((6386040.0 + 3000.0) * std::cos(37.4 / degrees)) * degrees, 2e-6);
    EXPECT_NEAR(y, 37.4 - 750.0 / (6358956.0 + 3000.0) * degrees, 2e-6);

    struct Row
    {
        QString path;
        AxGeoMapPlace at;
    };
    AxGeoMapPlace nowhere = place;
    nowhere.middle = {std::nan(""), 0.0};
    const Row wrong[] = {{folder.filePath(QStringLiteral("not/there.tif")), place}, {file, nowhere}};
    for (const Row& row : wrong) {
        AxGeoMapPicture picture(row.path, row.at);
        EXPECT_FALSE(picture.Begin().isEmpty());
        EXPECT_FALSE(picture.Finish().isEmpty());
    }
    EXPECT_TRUE(QFile::exists(file));
}
