#include "NavigatedGlobe.h"

#include <cmath>
#include <globe/Wgs84.h>
#include <gtest/gtest.h>
#include <osgEarth/Map>

using namespace osgEarth;
using EA = osgGA::GUIEventAdapter;

namespace {

using osgEarth::wgs84::kEquatorialRadius;

struct View
{
    const char* name;
    double longitude, latitude, height, heading, pitch, range;
};

void PrintTo(const View& view, std::ostream* out)
{
    *out << view.name;
}

std::string nameOf(const testing::TestParamInfo<View>& info)
{
    return info.param.name;
}

} // namespace

/// Real mountains around 105 W, 37.4 N: valleys at 2400 m, Blanca Peak at 4370 m.
class NavigationOverMountains : public testing::TestWithParam<View>
{
protected:
    static void SetUpTestSuite() { nav = new NavigatedGlobe(mapOfMountains()); }
    static void TearDownTestSuite()
    {
        delete nav;
        nav = nullptr;
    }

    void showAt(const View& view)
    {
        nav->showAt(view.longitude, view.latitude, view.height, view.heading, view.pitch, view.range);
    }

    void expectClear(double clearance = 1.0)
    {
        EXPECT_GE(nav->eyeAboveGround(), clearance - 1e-3);
        EXPECT_TRUE(nav->isSound());
    }

    static NavigatedGlobe* nav;
};

NavigatedGlobe* NavigationOverMountains::nav = nullptr;

TEST_P(NavigationOverMountains, ADraggedPointStaysUnderTheCursor)
{
    const struct
    {
        osg::Vec2d from, to;
    } drags[] = {{{320, 200}, {420, 150}},
                 {{250, 150}, {350, 90}},
                 {{420, 170}, {250, 140}},
                 {{300, 110}, {330, 200}}};
    for (const auto& drag : drags) {
        showAt(GetParam());
        const auto point = nav->surfaceAt(drag.from.x(), drag.from.y());
        ASSERT_TRUE(point);
        nav->mouse(EA::PUSH, drag.from.x(), drag.from.y());
        constexpr int kEvents = 20;
        for (int i = 1; i <= kEvents; ++i) {
            const osg::Vec2d cursor = drag.from + (drag.to - drag.from) * (double(i) / kEvents);
            nav->mouse(EA::DRAG, cursor.x(), cursor.y());
            const osg::Vec3d seen = nav->pixelOf(*point);
            EXPECT_NEAR(seen.x(), cursor.x(), 1.0) << "event " << i;
            EXPECT_NEAR(seen.y(), cursor.y(), 1.0) << "event " << i;
            expectClear();
        }
        nav->mouse(EA::RELEASE, drag.to.x(), drag.to.y());
        const osg::Matrixd released = nav->manipulator->getMatrix();
        nav->tick();
        EXPECT_EQ(nav->manipulator->getMatrix(), released);
    }
}

TEST_P(NavigationOverMountains, TheWheelKeepsThePointUnderTheCursorInAndOut)
{
    for (const osg::Vec2d& cursor :
         {osg::Vec2d(320, 200), osg::Vec2d(480, 120), osg::Vec2d(200, 230), osg::Vec2d(320, 360)}) {
        showAt(GetParam());
        const auto point = nav->surfaceAt(cursor.x(), cursor.y());
        if (!point)
            continue; // that place of the window shows the sky
        const double start = (*point - nav->eye()).length();
        const double pitch = nav->pitch();
        // From close by there is only the way out, and back in.
        const bool close = GetParam().range < 20.0;
        const EA::ScrollingMotion ways[] = {close ? EA::SCROLL_UP : EA::SCROLL_DOWN,
                                            close ? EA::SCROLL_DOWN : EA::SCROLL_UP};
        for (EA::ScrollingMotion way : ways) {
            for (int notch = 0; notch < 12; ++notch) {
                nav->scroll(way, cursor.x(), cursor.y());
                for (int frame = 0; frame < 6; ++frame) {
                    nav->tick();
                    const osg::Vec3d seen = nav->pixelOf(*point);
                    EXPECT_NEAR(seen.x(), cursor.x(), 2.0) << "notch " << notch;
                    EXPECT_NEAR(seen.y(), cursor.y(), 2.0) << "notch " << notch;
                    expectClear();
                }
            }
            for (int frame = 0; frame < 40; ++frame)
                nav->tick();
            const osg::Matrixd rest = nav->manipulator->getMatrix();
            nav->tick();
            EXPECT_EQ(nav->manipulator->getMatrix(), rest) << "comes to rest";
            if (std::string(GetParam().name) == "BackToTheSlope")
                continue; // the slope behind decides how far out it goes
            const double away = (*point - nav->eye()).length();
            const double expected = way != ways[0] ? 1.0
                                    : close        ? 8.0
                                                   : 0.125; // twelve notches, three octaves
            EXPECT_NEAR(std::log2(away / start), std::log2(expected), 0.3);
            EXPECT_NEAR(nav->pitch(), pitch, 1.0);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Views, NavigationOverMountains,
                         testing::Values(View{"Space", -105.0, 37.4, 0, 0, -90, 4 * kEquatorialRadius},
                                         View{"SpaceOblique", -105.0, 37.4, 0, 40, -50,
                                              2 * kEquatorialRadius},
                                         View{"Region", -105.0, 37.4, 2500, 200, -60, 350e3},
                                         View{"Range", -105.3, 37.4, 2500, 60, -20, 40e3},
                                         View{"Valley", -105.6, 37.5, 2300, 80, -15, 8e3},
                                         View{"Peak", -105.49, 37.58, 4300, 0, -30, 3e3},
                                         View{"Slope", -105.45, 37.56, 3500, 300, -45, 500},
                                         View{"Ground", -105.45, 37.56, 3500, 120, -35, 50},
                                         View{"BackToTheSlope", -105.504, 37.565, 3844, 270, -12, 300},
                                         View{"UpTheMountain", -105.60, 37.565, 2363, 90, -10, 300},
                                         View{"Feet", -105.3, 37.4, 2500, 10, -60, 5},
                                         View{"NorthPole", 20.0, 89.9, 0, 10, -60, 100e3},
                                         View{"OverTheSouthPole", 20.0, -88.0, 0, 180, -90, 2e6},
                                         View{"Antimeridian", 179.99, -17.0, 0, 70, -40, 20e3}),
                         nameOf);
