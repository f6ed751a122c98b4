// Heights of an area on a grid, over ground that was written as a file.
#include "analysis/elevation/AxHeightGrid.h"

#include <AxData/geofiles/AxGeoHeights.h>

#include <osgEarth/ElevationLayer>
#include <osgEarthDrivers/gdal/GDALOptions>

#include <gtest/gtest.h>

#include <QTemporaryDir>

#include <cmath>

namespace {
/// A slope to the north-east of (-180, 44.99), 0.02 degrees wide, in cells of about 11 m; its western quarter
/// has no heights.
osg::ref_ptr<osgEarth::Map> Slope(const QTemporaryDir& folder)
{
    AxGeoHeights ground;
    ground.columns = ground.rows = 200;
    ground.stepLng = ground.stepLat = 1e-4;
    ground.west = -180.0;
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

/// Longitudes count on from the other side of the antimeridian.
std::vector<QPointF> Box(double west, double south, double east, double north)
{
    return {{west, south}, {east, south}, {east, north}, {west, north}};
}
} // namespace

TEST(HeightGrid, HasTheHeightsOfTheDataAndTellsWhatIsNotKnown)
{
    const QTemporaryDir folder;
    const auto map = Slope(folder);
    const auto heightAt = [](const QPointF& place) {
        return 100.0 + (place.x() + 179.99995) * 1e4 + 2.0 * (place.y() - 44.99005) * 1e4;
    };
    AxHeightsQuestion question{Box(180.006, 44.995, 180.014, 45.005)};
    const AxHeightGrid grid = AxHeightGridOf(question, map);
    EXPECT_NEAR(grid.cellOfData, 11.1, 0.2);
    EXPECT_EQ(grid.cell, grid.cellOfData);
    ASSERT_GT(grid.inside, 5000u);
    EXPECT_EQ(grid.known, grid.inside);
    EXPECT_NEAR(grid.mean, heightAt({-179.99, 45.0}), 0.5);
    EXPECT_NEAR(grid.lowest, heightAt({-179.994, 44.995}), 3.0);
    EXPECT_NEAR(grid.highest, heightAt({-179.986, 45.005}), 3.0);
    EXPECT_NEAR(heightAt(grid.highestPlace), grid.highest, 0.5);
    for (const int cell : {0, grid.columns * grid.rows / 2, grid.columns * grid.rows - 1})
        EXPECT_NEAR(grid.heights[static_cast<std::size_t>(cell)],
                    heightAt(grid.PlaceOf(cell % grid.columns, cell / grid.columns)), 0.5);

    // Half of it lies where nothing is known; what is outside of a triangle does not count.
    question.ring = {{180.002, 44.995}, {180.008, 44.995}, {180.002, 45.005}, {180.008, 45.005}};
    const AxHeightGrid gap = AxHeightGridOf(question, map);
    EXPECT_NEAR(static_cast<double>(gap.inside) / (gap.columns * gap.rows), 0.5, 0.02) << "a bow tie";
    EXPECT_NEAR(static_cast<double>(gap.known) / static_cast<double>(gap.inside), 0.5, 0.03);
    EXPECT_GT(gap.lowest, 140.0);
    question.ring = Box(50.0, 44.995, 50.01, 45.005);
    const AxHeightGrid nowhere = AxHeightGridOf(question, map);
    EXPECT_GT(nowhere.inside, 100u);
    EXPECT_EQ(nowhere.known, 0u);

    question.ring = Box(180.006, 44.995, 180.014, 45.005);
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
    EXPECT_EQ(AxHeightGridOf({Box(180.01, 45.0, 180.01000001, 45.00000001)}, map).known, 1u);
}
