// Where a text goes that would leave the window.
#include "scene/shape/AxLabelInside.h"

#include <gtest/gtest.h>

TEST(LabelInside, StaysWithItsPlaceAndInTheWindow)
{
    const osg::Vec2d window(800.0, 600.0);
    const osg::Vec2d aside(16.0, 8.0);
    const osg::Vec2d centred;
    const osg::BoundingBox text(0.0f, 0.0f, 0.0f, 200.0f, 40.0f, 0.0f);
    const osg::BoundingBox middle(-50.0f, -10.0f, 0.0f, 50.0f, 10.0f, 0.0f);
    const osg::BoundingBox wide(0.0f, 0.0f, 0.0f, 790.0f, 40.0f, 0.0f);
    const struct
    {
        const char* what;
        osg::Vec2d place;
        osg::BoundingBox box;
        osg::Vec2d offset, expected;
    } rows[] = {
        {"room", {400.0, 300.0}, text, aside, {16.0, 8.0}},
        {"right border", {700.0, 300.0}, text, aside, {-216.0, 8.0}},
        {"upper right corner", {790.0, 590.0}, text, aside, {-216.0, -48.0}},
        {"too wide for either side", {400.0, 300.0}, wide, aside, {-390.0, 8.0}},
        {"centred at the left border", {20.0, 5.0}, middle, centred, {30.0, 5.0}},
        {"its place beside the window", {801.0, 590.0}, text, aside, {16.0, 8.0}},
    };
    for (const auto& row : rows)
        EXPECT_EQ(AxOffsetInside(row.place, row.box, row.offset, window), row.expected) << row.what;
    EXPECT_EQ(AxOffsetInside({790.0, 300.0}, text, aside, window, 50.0), osg::Vec2d(-240.0, 8.0))
        << "by the bar";
}
