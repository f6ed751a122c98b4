#include "NavigatedGlobe.h"

#include <cmath>
#include <cpl_vsi.h>
#include <gtest/gtest.h>
#include <osgEarth/ElevationLayer>
#include <osgEarth/Map>
#include <osgEarthDrivers/gdal/GDALOptions>
#include <sstream>

using namespace osgEarth;
using EA = osgGA::GUIEventAdapter;

namespace {

/// South of 47 N lies a plain at 100 m, north of it a plateau at 400 m; the
/// cliff between them is one sample of 22 m wide.
class Cliff
{
public:
    Cliff()
    {
        constexpr int kSize = 200;
        std::ostringstream grid;
        grid.imbue(std::locale::classic());
        grid << "ncols " << kSize << "\nnrows " << kSize
             << "\nxllcorner 7.98\nyllcorner 46.98\ncellsize 0.0002\nNODATA_value -9999\n";
        for (int row = 0; row < kSize; ++row) {
            for (int column = 0; column < kSize; ++column)
                grid << (row < kSize / 2 ? "400 " : "100 ");
            grid << '\n';
        }
        _text = grid.str();
        VSIFCloseL(VSIFileFromMemBuffer(kFile, reinterpret_cast<GByte*>(&_text[0]), _text.size(), FALSE));
    }
    ~Cliff() { VSIUnlink(kFile); }

    static osg::ref_ptr<Map> map()
    {
        Drivers::GDALOptions options;
        options.url() = std::string(kFile);
        osg::ref_ptr<Map> map = new Map;
        map->addElevationLayer(new ElevationLayer("cliff", options));
        return map;
    }

private:
    static constexpr const char* kFile = "/vsimem/nav_cliff.asc";
    std::string _text;
};

class MovesAtACliff : public testing::Test
{
protected:
    void expectClear()
    {
        EXPECT_GE(nav.eyeAboveGround(), 1.0 - 1e-3);
        EXPECT_TRUE(nav.isSound());
    }

    Cliff cliff;
    NavigatedGlobe nav{Cliff::map()};
};

constexpr double kFoot = 46.9996;
constexpr double kTop = 47.0004;

} // namespace

TEST_F(MovesAtACliff, TheEyeStaysClearAtFiveMetresRange)
{
    // At the foot looking away from the wall, the eye would be in it; on the
    // edge looking down, there is nothing below but the plain.
    const struct
    {
        double latitude, height, heading, pitch;
    } rows[] = {{kFoot, 100, 180, -10}, {46.99995, 100, 180, -10}, {46.99995, 100, 180, -60},
                {47.0, 250, 0, -45},    {47.0001, 400, 0, -10},    {47.0001, 400, 180, -80},
                {kTop, 400, 90, -30},   {47.00005, 400, 90, -10}};
    for (const auto& row : rows) {
        for (double range : {1.0, 5.0, 40.0}) {
            nav.showAt(8.0, row.latitude, row.height, row.heading, row.pitch, range);
            expectClear();
            for (int i = 0; i < 60; ++i) {
                nav.manipulator->rotate(0.11, 0.05);
                expectClear();
                nav.manipulator->zoom(0.0, i % 2 ? 0.2 : -0.2);
                expectClear();
            }
        }
    }
}

TEST_F(MovesAtACliff, PanningIntoTheWallEndsUpOnTopOfIt)
{
    for (int way : {+EA::KEY_Up, +EA::KEY_Down}) {
        nav.showAt(8.0, way == EA::KEY_Up ? 46.9994 : 47.0006, 250.0, 0.0, -30.0, 20.0);
        for (int i = 0; i < 1200; ++i) {
            if (i % 20 == 0)
                nav.key(EA::KEYDOWN, way);
            nav.tick();
            expectClear();
            if (i % 100 == 0)
                nav.draw();
        }
        nav.key(EA::KEYUP, way);
        const Viewpoint now = nav.manipulator->getViewpoint();
        if (way == EA::KEY_Up) {
            EXPECT_GT(now.focalPoint()->y(), 47.0001);
        } else {
            EXPECT_LT(now.focalPoint()->y(), 46.9999);
        }
    }
}

TEST_F(MovesAtACliff, ZoomingAtTheWallStopsBeforeIt)
{
    nav.showAt(8.0, kFoot, 100.0, 0.0, -12.0, 300.0);
    // Whatever the middle of the window shows, the upper half shows the wall or what is on top of it.
    for (double y : {205.0, 260.0}) {
        nav.showAt(8.0, kFoot, 100.0, 0.0, -12.0, 300.0);
        for (int i = 0; i < 60; ++i) {
            nav.scroll(EA::SCROLL_DOWN, 330, y);
            for (int frame = 0; frame < 3; ++frame) {
                nav.tick();
                expectClear();
            }
        }
        for (int i = 0; i < 40; ++i)
            nav.tick();
        const osg::Matrixd rest = nav.manipulator->getMatrix();
        nav.tick();
        EXPECT_EQ(nav.manipulator->getMatrix(), rest);
    }
}

TEST_F(MovesAtACliff, DraggingAcrossTheEdgeHoldsThePoint)
{
    nav.showAt(8.0, kTop, 400.0, 200.0, -50.0, 300.0);
    for (const osg::Vec2d& from : {osg::Vec2d(320, 200), osg::Vec2d(320, 330), osg::Vec2d(200, 120)}) {
        const auto point = nav.surfaceAt(from.x(), from.y());
        ASSERT_TRUE(point);
        nav.mouse(EA::PUSH, from.x(), from.y());
        for (int i = 1; i <= 40; ++i) {
            const osg::Vec2d cursor = from + osg::Vec2d(2.0, -2.0) * i;
            nav.mouse(EA::DRAG, cursor.x(), cursor.y());
            const osg::Vec3d seen = nav.pixelOf(*point);
            EXPECT_NEAR(seen.x(), cursor.x(), 1.0) << i;
            EXPECT_NEAR(seen.y(), cursor.y(), 1.0) << i;
            expectClear();
        }
        nav.mouse(EA::RELEASE, from.x(), from.y());
    }
}
