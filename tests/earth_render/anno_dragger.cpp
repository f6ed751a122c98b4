// Draggers on drawn ground: what the mouse takes, where it leads, how it looks.
#include "NavigatedGlobe.h"

#include <cmath>
#include <gtest/gtest.h>
#include <osgEarth/ElevationLayer>
#include <osgEarth/Map>
#include <osgEarth/MapNode>
#include <osgEarth/SpatialReference>
#include <osgEarth/Terrain>
#include <osgEarthAnnotation/AnnotationEditing>
#include <osgEarthAnnotation/Draggers>
#include <osgGA/EventVisitor>

using namespace osgEarth;
using namespace osgEarth::Annotation;
using Event = osgGA::GUIEventAdapter;

namespace {
const osg::Vec4f kGreen(0.0f, 1.0f, 0.0f, 1.0f);
const osg::Vec4f kYellow(1.0f, 1.0f, 0.0f, 1.0f);

bool isGreen(const osg::Vec3i& c)
{
    return c.x() < 40 && c.y() > 215 && c.z() < 40;
}
bool isYellow(const osg::Vec3i& c)
{
    return c.x() > 215 && c.y() > 215 && c.z() < 40;
}
} // namespace

/// A dragger on the side of Blanca Peak and a camera that looks at it.
class DraggerOnGround : public testing::Test
{
protected:
    static constexpr double kLongitude = -105.46;
    static constexpr double kLatitude = 37.55;

    void look(double range, double pitch = -50.0)
    {
        globe.lookAt(kLongitude, kLatitude, 3600.0, 20.0, pitch, range);
        ASSERT_TRUE(globe.drawUntilComplete());
        double height = 0.0;
        ASSERT_TRUE(terrain().getHeight(srs, kLongitude, kLatitude, &height));
        dragger->setPosition(GeoPoint(srs, kLongitude, kLatitude, height), false);
        globe.frame();
    }

    Terrain& terrain() { return *globe.mapNode().getTerrain(); }

    osg::Vec3d worldOf(const Dragger& which) const { return which.getGeoTransform()->getMatrix().getTrans(); }
    osg::Vec2d windowOf(const osg::Vec3d& world)
    {
        const osg::Camera& camera = *globe.viewer().getCamera();
        const osg::Vec3d pixel = world * camera.getViewMatrix() * camera.getProjectionMatrix() *
                                 camera.getViewport()->computeWindowMatrix();
        return {pixel.x(), pixel.y()};
    }
    osg::Vec2d place() { return windowOf(worldOf(*dragger)); }

    /// Sends an event through the scene; whether the scene took it.
    bool send(Event::EventType type, const osg::Vec2d& at, int key = 0)
    {
        osg::ref_ptr<Event> ea = new Event;
        ea->setEventType(type);
        ea->setInputRange(0, 0, OffscreenGlobe::kWidth, OffscreenGlobe::kHeight);
        ea->setMouseYOrientation(Event::Y_INCREASING_UPWARDS);
        ea->setX(static_cast<float>(at.x()));
        ea->setY(static_cast<float>(at.y()));
        const bool held = type == Event::PUSH || type == Event::DRAG;
        ea->setButton(type == Event::PUSH || type == Event::RELEASE ? Event::LEFT_MOUSE_BUTTON : 0);
        ea->setButtonMask(held ? Event::LEFT_MOUSE_BUTTON : 0);
        ea->setKey(key);
        osg::ref_ptr<osgGA::EventVisitor> visitor = new osgGA::EventVisitor;
        visitor->setActionAdapter(&globe.viewer());
        visitor->addEvent(ea);
        globe.mapNode().accept(*visitor);
        return ea->getHandled();
    }

    /// Columns and rows that a colour covers around a place, pixels.
    osg::Vec2i extentOf(bool (*isColour)(const osg::Vec3i&), const osg::Vec2d& at)
    {
        osg::Vec2i low(999, 999), high(-999, -999);
        for (int dx = -30; dx <= 30; ++dx)
            for (int dy = -30; dy <= 30; ++dy)
                if (isColour(globe.pixel(int(std::lround(at.x())) + dx, int(std::lround(at.y())) + dy))) {
                    low.set(std::min(low.x(), dx), std::min(low.y(), dy));
                    high.set(std::max(high.x(), dx), std::max(high.y(), dy));
                }
        return high.x() < low.x() ? osg::Vec2i() : high - low + osg::Vec2i(1, 1);
    }

    OffscreenGlobe globe{mapOfMountains()};
    osg::ref_ptr<const SpatialReference> srs = globe.mapNode().getMapSRS()->getGeographicSRS();
    osg::ref_ptr<SphereDragger> dragger = [this] {
        osg::ref_ptr<SphereDragger> made = new SphereDragger(&globe.mapNode());
        globe.mapNode().addChild(made);
        return made;
    }();
};

TEST_F(DraggerOnGround, HasOneSizeOnTheScreenAndOneReachOfTheMouse)
{
    for (const double range : {20.0, 2000.0, 200e3, 2e6}) {
        SCOPED_TRACE(range);
        send(Event::MOVE, osg::Vec2d());
        look(range);
        const osg::Vec2i size = extentOf(isGreen, place());
        EXPECT_NEAR(size.x(), 10, 2);
        EXPECT_NEAR(size.y(), 10, 2);
        for (const osg::Vec2d side : {osg::Vec2d(1, 0), osg::Vec2d(0, -1), osg::Vec2d(-0.6, 0.8)}) {
            EXPECT_TRUE(send(Event::PUSH, place() + side * 7.5));
            EXPECT_FALSE(send(Event::RELEASE, place() + side * 7.5));
            EXPECT_FALSE(send(Event::PUSH, place() + side * 8.5));
            EXPECT_FALSE(dragger->getDragging());
        }
    }
}

TEST_F(DraggerOnGround, FollowsTheGroundUnderTheMouseWithoutAJump)
{
    for (const double range : {20.0, 2000.0, 200e3}) {
        SCOPED_TRACE(range);
        look(range);
        const osg::Vec3d before = worldOf(*dragger);
        const osg::Vec2d grip(4.0, -3.0);
        const osg::Vec2d from = place();
        ASSERT_TRUE(send(Event::PUSH, from + grip));
        EXPECT_EQ(worldOf(*dragger), before) << "a push alone moves nothing";
        EXPECT_TRUE(dragger->getDragging());
        const osg::Vec2d to(from.x() + 90.0, from.y() - 60.0);
        EXPECT_TRUE(send(Event::DRAG, to + grip));
        EXPECT_LT((place() - to).length(), 0.3);
        osg::Vec3d ground;
        ASSERT_TRUE(
            terrain().getWorldCoordsUnderMouse(&globe.viewer(), float(to.x()), float(to.y()), ground));
        EXPECT_LT((worldOf(*dragger) - ground).length(), 1e-3 * range);
        EXPECT_TRUE(dragger->getPosition().isAbsolute());
        EXPECT_FALSE(send(Event::RELEASE, to + grip));
        EXPECT_FALSE(dragger->getDragging());
        EXPECT_FALSE(send(Event::DRAG, from));
        EXPECT_LT((place() - to).length(), 0.3) << "let go";
    }
}

TEST_F(DraggerOnGround, WaitsWhereItIsOverSpace)
{
    look(1.5e7, -90.0);
    ASSERT_TRUE(send(Event::PUSH, place()));
    ASSERT_TRUE(send(Event::DRAG, place() + osg::Vec2d(20, 10)));
    const osg::Vec3d last = worldOf(*dragger);
    EXPECT_TRUE(send(Event::DRAG, osg::Vec2d(5, 5))) << "the camera must not take the drag over";
    EXPECT_EQ(worldOf(*dragger), last);
}

TEST_F(DraggerOnGround, IsNeitherSeenNorTakenThroughTheGlobe)
{
    look(8e6, -90.0);
    const osg::Vec2d at = place();
    EXPECT_GT(extentOf(isGreen, at).x(), 0);
    dragger->setPosition(GeoPoint(srs, kLongitude + 180.0, -kLatitude, 0.0), false);
    ASSERT_LT((place() - at).length(), 8.0);
    globe.frame();
    EXPECT_EQ(extentOf(isGreen, at), osg::Vec2i());
    EXPECT_FALSE(send(Event::PUSH, place()));
}

TEST_F(DraggerOnGround, ShowsThatTheMouseIsOnIt)
{
    look(2000.0);
    EXPECT_FALSE(send(Event::MOVE, place() + osg::Vec2d(5, 0)));
    EXPECT_TRUE(dragger->getHovered());
    globe.frame();
    EXPECT_GT(extentOf(isYellow, place()).x(), 8);
    EXPECT_EQ(extentOf(isGreen, place()), osg::Vec2i());
    EXPECT_FALSE(send(Event::MOVE, place() + osg::Vec2d(50, 0)));
    EXPECT_FALSE(dragger->getHovered());
    globe.frame();
    EXPECT_GT(extentOf(isGreen, place()).x(), 8);
}

TEST_F(DraggerOnGround, EndsADragWhoseReleaseNeverCame)
{
    look(2000.0);
    ASSERT_TRUE(send(Event::PUSH, place()));
    EXPECT_FALSE(send(Event::MOVE, place() + osg::Vec2d(3, 0)));
    EXPECT_FALSE(dragger->getDragging());

    const osg::Vec3d before = worldOf(*dragger);
    ASSERT_TRUE(send(Event::PUSH, place()));
    ASSERT_TRUE(send(Event::DRAG, place() + osg::Vec2d(60, 0)));
    EXPECT_TRUE(send(Event::KEYDOWN, place(), Event::KEY_Escape));
    EXPECT_FALSE(dragger->getDragging());
    EXPECT_LT((worldOf(*dragger) - before).length(), 1e-6) << "Escape takes it back";
}

TEST_F(DraggerOnGround, CanRiseOverItsPlace)
{
    look(2000.0, -20.0);
    dragger->setDefaultDragMode(Dragger::DRAGMODE_VERTICAL);
    const GeoPoint before = dragger->getPosition();
    const osg::Vec2d from = place();
    ASSERT_TRUE(send(Event::PUSH, from));
    ASSERT_TRUE(send(Event::DRAG, from + osg::Vec2d(0, 80)));
    EXPECT_LT((place() - from - osg::Vec2d(0, 80)).length(), 2.0);
    EXPECT_DOUBLE_EQ(dragger->getPosition().x(), before.x());
    EXPECT_GT(dragger->getPosition().z(), before.z() + 50.0);
    dragger->setVerticalMinimum(before.z());
    ASSERT_TRUE(send(Event::DRAG, from - osg::Vec2d(0, 80)));
    EXPECT_DOUBLE_EQ(dragger->getPosition().z(), before.z());
}

TEST_F(DraggerOnGround, TakesAnAnnotationAlong)
{
    look(2000.0);
    dragger->setNodeMask(0);
    osg::ref_ptr<GeoPositionNode> node = new GeoPositionNode(&globe.mapNode(), dragger->getPosition());
    osg::ref_ptr<GeoPositionNodeEditor> editor = new GeoPositionNodeEditor(node);
    globe.mapNode().addChild(editor);
    const osg::Vec2d from = place();
    ASSERT_TRUE(send(Event::PUSH, from));
    ASSERT_TRUE(send(Event::DRAG, from + osg::Vec2d(40, 0)));
    EXPECT_EQ(node->getPosition(), editor->getPositionDragger()->getPosition());
    EXPECT_LT((windowOf(node->getGeoTransform()->getMatrix().getTrans()) - from - osg::Vec2d(40, 0)).length(),
              0.3);
    const GeoPoint back = dragger->getPosition();
    editor->setPosition(back);
    EXPECT_EQ(node->getPosition(), back);
    EXPECT_EQ(editor->getPositionDragger()->getPosition(), back);
}
