#include "sources/HeightWindow.h"
#include "terrain/HeightStack.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <osgEarth/SpatialReference>

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
