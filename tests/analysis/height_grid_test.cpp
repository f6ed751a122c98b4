// Heights of an area on a grid, over ground that was written as a file.
#include "analysis/AxMeanAltitude.h"
#include "analysis/elevation/AxHeightGrid.h"

#include <AxData/geofiles/AxGeoHeights.h>

#include <osgEarth/ElevationLayer>
#include <osgEarthDrivers/gdal/GDALOptions>

#include <gtest/gtest.h>

#include <QTemporaryDir>

#include <cmath>

namespace {
/// A slope to the north-east, 0.02 degrees wide, in cells of about 11 m; its western quarter has no heights.
osg::ref_ptr<osgEarth::Map> Slope(const QTemporaryDir& folder, double longitude)
{
    AxGeoHeights ground;
    ground.columns = ground.rows = 200;
    ground.stepLng = ground.stepLat = 1e-4;
    ground.west = longitude - 0.01;
    ground.south = 44.99;
    for (int row = 0; row < ground.rows; ++row)
        for (int column = 0; column < ground.columns; ++column)
            ground.heights.push_back(column < 50 ? std::nanf("")
                                                 : static_cast<float>(100 + column + 2 * row));
    const QString file = folder.filePath(QStringLiteral("slope.tif"));
    EXPECT_EQ(AxWriteGeoHeights(file, ground), QString());
    osgEarth::Drivers::GDALOptions options;
    options.url() = file.toStdString();
    osg::ref_ptr<osgEarth::Map> map = new osgEarth::Map;
    map->addElevationLayer(new osgEarth::ElevationLayer("slope", options));
    return map;
}

std::vector<QPointF> Box(double west, double south, double east, double north)
{
    return {{west, south}, {east, south}, {east, north}, {west, north}};
}
} // namespace

TEST(HeightGrid, HasTheHeightsOfTheDataAndTellsWhatIsNotKnown)
{
    const QTemporaryDir folder;
    const auto map = Slope(folder, 10.0);
    const auto heightAt = [](const QPointF& place) {
        return 100.0 + (place.x() - 9.99005) * 1e4 + 2.0 * (place.y() - 44.99005) * 1e4;
    };
    AxHeightsQuestion question{Box(9.996, 44.995, 10.004, 45.005)};
    const AxHeightGrid grid = AxHeightGridOf(question, map);
    EXPECT_NEAR(grid.cellOfData, 11.1, 0.2);
    EXPECT_EQ(grid.cell, grid.cellOfData);
    ASSERT_GT(grid.inside, 5000u);
    EXPECT_EQ(grid.known, grid.inside);
    EXPECT_NEAR(grid.mean, heightAt({10.0, 45.0}), 0.5);
    EXPECT_NEAR(grid.lowest, heightAt({9.996, 44.995}), 3.0);
    EXPECT_NEAR(grid.highest, heightAt({10.004, 45.005}), 3.0);
    EXPECT_NEAR(heightAt(grid.highestPlace), grid.highest, 0.5);
    for (const int cell : {0, grid.columns * grid.rows / 2, grid.columns * grid.rows - 1})
        EXPECT_NEAR(grid.heights[static_cast<std::size_t>(cell)],
                    heightAt(grid.PlaceOf(cell % grid.columns, cell / grid.columns)), 0.5);

    // Half of it lies where nothing is known; what is outside of a triangle does not count.
    question.ring = {{9.992, 44.995}, {9.998, 44.995}, {9.992, 45.005}, {9.998, 45.005}};
    const AxHeightGrid gap = AxHeightGridOf(question, map);
    EXPECT_NEAR(static_cast<double>(gap.inside) / (gap.columns * gap.rows), 0.5, 0.02) << "a bow tie";
    EXPECT_NEAR(static_cast<double>(gap.known) / static_cast<double>(gap.inside), 0.5, 0.03);
    EXPECT_GT(gap.lowest, 140.0);
    question.ring = Box(50.0, 44.995, 50.01, 45.005);
    const AxHeightGrid nowhere = AxHeightGridOf(question, map);
    EXPECT_GT(nowhere.inside, 100u);
    EXPECT_EQ(nowhere.known, 0u);

    question.ring = Box(9.996, 44.995, 10.004, 45.005);
    question.mostCells = 100;
    const AxHeightGrid coarse = AxHeightGridOf(question, map);
    EXPECT_LE(coarse.columns * coarse.rows, 100);
    EXPECT_NEAR(coarse.mean, grid.mean, 3.0);
    EXPECT_EQ(AxHeightGridOf(question, map, [](double) { return false; }).columns, 0);
    EXPECT_EQ(AxHeightGridOf(question, nullptr).columns, 0);
    for (const std::vector<QPointF>& none : {std::vector<QPointF>{},
                                             {{10, 45}, {11, 45}},
                                             {{10, 45}, {11, 45}, {std::nan(""), 46}},
                                             {{10, 45}, {11, 45}, {12, 45}}})
        EXPECT_EQ(AxHeightGridOf({none}, map).columns, 0);
    EXPECT_EQ(AxHeightGridOf({Box(10.0, 45.0, 10.00000001, 45.00000001)}, map).known, 1u);
}

TEST(HeightGrid, MeansOfBlocksComeFromIt)
{
    const QTemporaryDir folder;
    const auto map = Slope(folder, -179.99);
    const std::atomic<bool> goesOn{false}, isOff{true};
    // Across the antimeridian, in either count of longitudes; west of -179.995 nothing is known.
    for (const double east : {-179.985, 180.015}) {
        AxMeanAltitudeJob job;
        job.map = map;
        job.vertices = {{179.999, 44.995}, {east, 44.995}, {east, 45.005}, {179.999, 45.005}};
        const auto mean = AxMeanAltitude(job, goesOn);
        ASSERT_TRUE(mean) << east;
        EXPECT_NEAR(*mean, 100.0 + 100.0 + 2.0 * 100.0, 2.0) << east;
        EXPECT_FALSE(AxMeanAltitude(job, isOff)) << east;
    }
}
