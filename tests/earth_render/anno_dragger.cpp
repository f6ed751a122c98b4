// Draggers on drawn ground: what the mouse takes, and where it leads.
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

    OffscreenGlobe globe{mapOfMountains()};
    osg::ref_ptr<const SpatialReference> srs = globe.mapNode().getMapSRS()->getGeographicSRS();
    osg::ref_ptr<SphereDragger> dragger = [this] {
        osg::ref_ptr<SphereDragger> made = new SphereDragger(&globe.mapNode());
        globe.mapNode().addChild(made);
        return made;
    }();
};

TEST_F(DraggerOnGround, FollowsTheGroundUnderTheMouseWithoutAJump)
{
    for (const double range : {20.0, 2000.0, 200e3}) {
        SCOPED_TRACE(range);
        look(range);
        const osg::Vec3d before = worldOf(*dragger);
        const osg::Vec2d grip(4.0, -3.0);
        const osg::Vec2d from = place();
        EXPECT_FALSE(send(Event::PUSH, from + osg::Vec2d(0.0, 8.5))) << "out of reach";
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
