// Views that hold places, and rectangles of the picture that meet outlines.
#include "interaction/objects/AxBlockView.h"
#include "scene/base/AxGlobePoint.h"
#include "scene/shape/AxOutlinesInFrame.h"

#include <osg/Matrixd>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

namespace {
using Places = std::vector<osg::Vec3d>;

// Where the camera of a viewpoint that looks straight down has the places, -1 to 1.
osg::Matrixd ClipOf(const osgEarth::Viewpoint& view, const osg::Vec2d& half, osg::Vec3d& eye)
{
    const osg::Vec3d focus = view.focalPoint()->vec3d();
    const osg::Vec3d up = AxGlobe::NormalAt(focus);
    const double lng = focus.x() * AxGlobe::pi / 180.0;
    const osg::Vec3d east(-std::sin(lng), std::cos(lng), 0.0);
    eye = AxGlobe::WorldOf(focus) + up * view.getRange();
    return osg::Matrixd::lookAt(eye, eye - up, up ^ east) *
           osg::Matrixd::frustum(-half.x(), half.x(), -half.y(), half.y(), 1.0, 1e8);
}

osg::Vec3d Clip(const osg::Vec3d& place, const osg::Matrixd& clip)
{
    return AxGlobe::WorldOf(place) * clip;
}
} // namespace

TEST(ViewOverPlaces, HoldsThemAllAndIsNoFartherThanThatTakes)
{
    std::mt19937 random(20);
    const auto within = [&random](double most) {
        return std::uniform_real_distribution<double>(-most, most)(random);
    };
    const struct
    {
        osg::Vec3d middle;
        double degrees;
        double relief;
    } rows[] = {
        {{10.0, 47.0, 0.0}, 0.02, 0.0},       {{179.99, -17.0, 0.0}, 0.05, 300.0},
        {{86.9, 27.9, 5000.0}, 0.01, 3000.0}, {{20.0, 89.99, 0.0}, 0.009, 100.0},
        {{-60.0, 10.0, 0.0}, 25.0, 4000.0},   {{8.0, 46.0, 2000.0}, 0.001, 20.0},
    };
    for (const auto& row : rows)
        for (const osg::Vec2d half : {osg::Vec2d(0.36, 0.27), osg::Vec2d(0.1, 0.27), osg::Vec2d(0.8, 0.2)}) {
            SCOPED_TRACE(testing::Message() << row.middle.x() << ' ' << row.degrees << ' ' << half.x());
            Places places;
            for (int i = 0; i < 12; ++i)
                places.emplace_back(std::remainder(row.middle.x() + within(row.degrees), 360.0),
                                    row.middle.y() + within(row.degrees),
                                    row.middle.z() + within(row.relief));
            const osgEarth::Viewpoint view = AxViewpointOver(places, half);
            osg::Vec3d eye;
            const osg::Matrixd clip = ClipOf(view, half, eye);
            double outermost = 0.0;
            for (const osg::Vec3d& place : places) {
                const osg::Vec3d seen = Clip(place, clip);
                outermost = std::max({outermost, std::abs(seen.x()), std::abs(seen.y())});
                EXPECT_GT((eye - AxGlobe::WorldOf(place)) * AxGlobe::NormalAt(place), 0.0) << "the horizon";
            }
            EXPECT_LT(outermost, 0.901);
            if (view.getRange() > 301.0 && row.degrees < 5.0) {
                EXPECT_GT(outermost, 0.899);
            }
            EXPECT_NEAR(AxViewpointOver(places, half, 0.5).getRange(), std::min(1.5 * view.getRange(), 2.5e7),
                        1.0);
        }
    // All around the globe: the whole of it.
    EXPECT_EQ(AxViewpointOver({{0, 0, 0}, {120, 0, 0}, {-120, 0, 0}}, {0.3, 0.3}).getRange(), 2.5e7);
    for (const Places& places : {Places(), Places{{NAN, 0, 0}}, Places{{0, 0, INFINITY}}})
        EXPECT_FALSE(AxViewpointOver(places, {0.3, 0.3}).focalPoint().isSet());
}

TEST(OutlinesInFrame, AreThoseOfWhichAPartIsSeenInIt)
{
    osg::Vec3d eye;
    const osg::Vec2d half(0.3, 0.3);
    // 0.1 degrees are 0.37 of the picture's half width.
    const osg::Matrixd clip = ClipOf(osgEarth::Viewpoint("", 180.0, 0.0, 0.0, 0.0, -90.0, 1e5), half, eye);
    const auto square = [](double lng, double lat, double size) {
        return Places{{lng, lat, 0}, {lng + size, lat, 0}, {lng + size, lat + size, 0}, {lng, lat + size, 0}};
    };
    const struct
    {
        const char* what;
        AxOutlineOnGlobe outline;
        bool isMet;
    } rows[] = {
        {"inside", {square(179.99, -0.01, 0.02), true}, true},
        {"across the date line", {square(-179.99, -0.01, 0.005), true}, true},
        {"beside", {square(180.1, -0.01, 0.02), true}, false},
        {"an edge runs through", {{{179.0, 0.0, 0}, {181.0, 0.0, 0}}, false}, true},
        {"the last edge runs through", {{{179.0, 0.0, 0}, {179.0, 1.0, 0}, {181.0, 0.0, 0}}, true}, true},
        {"that edge is missing", {{{179.0, 0.0, 0}, {179.0, 1.0, 0}, {181.0, 0.0, 0}}, false}, false},
        {"round it on all sides", {square(179.0, -1.0, 2.0), true}, false},
        {"past a corner", {{{179.8, 0.08, 0}, {180.08, -0.2, 0}}, false}, false},
        {"a point", {{{180.01, 0.01, 0}}, false}, true},
        {"a point at the far side of the globe", {{{0.0, 0.0, 0}}, false}, false},
        {"over the camera", {{{180.0, 0.0, 2e5}}, false}, false},
        {"from behind the camera into it", {{{180.0, 0.0, 0}, {180.0, 1.0, 5e5}}, false}, true},
        {"nothing", {{}, true}, false},
    };
    const AxPictureFrame frame = AxPictureFrame::Between({0.2, -0.2}, {-0.2, 0.2});
    for (const auto& row : rows)
        EXPECT_EQ(AxOutlinesInFrame({row.outline}, clip, eye, frame).size(), row.isMet ? 1u : 0u) << row.what;
}
