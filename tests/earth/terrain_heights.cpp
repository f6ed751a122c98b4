#include "sources/HeightWindow.h"
#include "terrain/HeightStack.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <osgEarth/SpatialReference>
#include <random>

using namespace osgEarth;

namespace {

constexpr float kHole = std::numeric_limits<float>::quiet_NaN();

/// A plane of one height over a rectangle of whole degrees, cells of `cell` degrees.
HeightStack::Source plane(const TileBounds& extent, double cell, float height, double blendWidth,
                          float hole = 0.0f)
{
    const int columns = static_cast<int>(std::lround(extent.width() / cell));
    const int rows = static_cast<int>(std::lround(extent.height() / cell));
    std::vector<float> samples(static_cast<std::size_t>(columns) * static_cast<std::size_t>(rows), height);
    if (std::isnan(hole))
        samples[samples.size() / 2 + static_cast<std::size_t>(columns) / 2] = hole;
    const double toSource[6] = {extent.west, cell, 0.0, extent.north, 0.0, -cell};
    return {std::make_shared<HeightWindow>(std::move(samples), columns, rows, toSource,
                                           SpatialReference::get("wgs84"), cell),
            extent, blendWidth};
}

class HeightStackTest : public testing::Test
{
protected:
    void SetUp() override
    {
        stack.add(plane({10.0, 40.0, 11.0, 41.0}, 0.01, 1000.0f, 0.0, kHole));
        stack.add(plane({0.0, 30.0, 20.0, 50.0}, 0.1, 400.0f, 0.2));
    }
    HeightStack stack;
};

} // namespace

TEST_F(HeightStackTest, TheFinestSourceWithAValueAnswers)
{
    EXPECT_DOUBLE_EQ(stack.heightAt(10.3, 40.3).value(), 1000.0);
    EXPECT_DOUBLE_EQ(stack.heightAt(15.0, 45.0).value(), 400.0);
    EXPECT_FALSE(stack.heightAt(25.0, 45.0).has_value());
    EXPECT_DOUBLE_EQ(stack.heightAt(10.505, 40.495).value(), 400.0) << "in the hole of the finer one";
}

TEST_F(HeightStackTest, TheCoarseSourceMeetsTheFineOneAtItsEdge)
{
    EXPECT_DOUBLE_EQ(stack.heightAt(10.999, 40.5).value(), 1000.0) << "the finer source keeps its own values";
    double last = stack.heightAt(11.0001, 40.5).value();
    EXPECT_NEAR(last, 1000.0, 1.0);
    for (double longitude = 11.005; longitude < 11.2; longitude += 0.005) {
        const double height = stack.heightAt(longitude, 40.5).value();
        EXPECT_LE(height, last);
        EXPECT_LT(last - height, 50.0) << "no wall at " << longitude;
        last = height;
    }
    EXPECT_DOUBLE_EQ(stack.heightAt(11.21, 40.5).value(), 400.0);
    EXPECT_NEAR(stack.heightAt(9.9, 39.9).value(), 400.0 + 600.0 * (1.0 - 0.7928932), 60.0)
        << "round a corner";
}

TEST(HeightStackEdge, ACragAtTheEdgeDoesNotBecomeARidge)
{
    constexpr int kSide = 100;
    std::vector<float> samples(kSide * kSide, 1000.0f);
    samples[50 * kSide + kSide - 1] = 2000.0f;
    const double toSource[6] = {10.0, 0.01, 0.0, 41.0, 0.0, -0.01};
    HeightStack stack;
    stack.add({std::make_shared<HeightWindow>(samples, kSide, kSide, toSource, SpatialReference::get("wgs84"),
                                              0.01),
               {10.0, 40.0, 11.0, 41.0},
               0.0});
    stack.add(plane({0.0, 30.0, 20.0, 50.0}, 0.1, 400.0f, 0.2));
    const double cragLatitude = 40.495;
    EXPECT_NEAR(stack.heightAt(11.0001, cragLatitude).value(), 2000.0, 20.0)
        << "but it meets the crag itself";
    const double behind = stack.heightAt(11.1, cragLatitude).value();
    const double beside = stack.heightAt(11.1, cragLatitude + 0.02).value();
    EXPECT_LT(behind - beside, 150.0);
}

namespace {

/// Hilly samples of the part of `data` that covers `wanted` and one cell beyond.
HeightStack::Source hills(const TileBounds& data, const TileBounds& wanted, double cell, double scale,
                          double blendWidth)
{
    const auto cells = [cell](double degrees) { return static_cast<int>(std::lround(degrees / cell)); };
    const auto clampedFloor = [&](double from, double value, int count) {
        return std::clamp(static_cast<int>(std::floor((value - from) / cell)), 0, count);
    };
    const int columns = cells(data.width());
    const int rows = cells(data.height());
    const int west = clampedFloor(data.west, wanted.west - cell, columns - 1);
    const int east = clampedFloor(data.west, wanted.east + 2.0 * cell, columns);
    const int south = clampedFloor(data.south, wanted.south - cell, rows - 1);
    const int north = clampedFloor(data.south, wanted.north + 2.0 * cell, rows);
    std::vector<float> samples;
    for (int row = north - 1; row >= south; --row)
        for (int column = west; column < east; ++column)
            samples.push_back(static_cast<float>(
                scale * (2.0 + std::sin(40.0 * cell * column) + std::cos(55.0 * cell * row))));
    const double toSource[6] = {data.west + west * cell, cell, 0.0, data.south + north * cell, 0.0, -cell};
    return {std::make_shared<HeightWindow>(std::move(samples), east - west, north - south, toSource,
                                           SpatialReference::get("wgs84"), cell),
            data, blendWidth};
}

} // namespace

TEST(HeightStackEdge, ItsReachHoldsAllThatBendingLooksAt)
{
    const TileBounds fine{10.0, 40.0, 11.0, 41.0};
    const TileBounds coarse{0.0, 30.0, 20.0, 50.0};
    const double width = 0.2;
    HeightStack whole;
    whole.add(hills(fine, fine, 0.01, 500.0, 0.0));
    whole.add(hills(coarse, coarse, 0.1, 300.0, width));
    std::mt19937 random(7);
    std::uniform_real_distribution<double> longitudes(9.6, 11.3);
    std::uniform_real_distribution<double> latitudes(39.6, 41.3);
    std::uniform_real_distribution<double> sizes(0.02, 0.4);
    std::uniform_real_distribution<double> inside(0.0, 1.0);
    int beyond = 0;
    for (int tile = 0; tile < 300; ++tile) {
        TileBounds place;
        place.west = longitudes(random);
        place.south = latitudes(random);
        place.east = place.west + sizes(random);
        place.north = place.south + place.east - place.west;
        HeightStack part;
        const auto reach = reachInto(fine, place, width);
        if (reach) {
            EXPECT_LE(reach->width(), place.width() + 2.0 * width);
            part.add(hills(fine, *reach, 0.01, 500.0, 0.0));
        } else
            ++beyond;
        part.add(hills(coarse, coarse, 0.1, 300.0, width));
        for (int i = 0; i < 20; ++i) {
            const double longitude = place.west + place.width() * inside(random);
            const double latitude = place.south + place.height() * inside(random);
            ASSERT_NEAR(part.heightAt(longitude, latitude).value(),
                        whole.heightAt(longitude, latitude).value(), 1e-6)
                << longitude << ", " << latitude << " of a tile from " << place.west << ", " << place.south;
        }
    }
    EXPECT_GT(beyond, 0);
}
