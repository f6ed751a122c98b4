#pragma once
#include "WindowEvents.h"

#include <camera/CameraPose.h>

#include <globe/Wgs84.h>
#include <gtest/gtest.h>
#include <osgEarth/SpatialReference>
#include <osgEarthUtil/EarthManipulator>
#include <osgViewer/View>

#include <cmath>
#include <limits>

using namespace osgEarth;
using namespace osgEarth::Util;
using EA = osgGA::GUIEventAdapter;

inline constexpr int kWidth = 1280;
inline constexpr int kHeight = 800;
using osgEarth::wgs84::kEquatorialRadius;

class SpyManipulator : public EarthManipulator
{
public:
    void pan(double dx, double dy) override
    {
        ++pans;
        if (!replacePan)
            EarthManipulator::pan(dx, dy);
    }
    void handleMovementAction(const ActionType& type, double dx, double dy, osg::View* view) override
    {
        lastAction = type;
        EarthManipulator::handleMovementAction(type, dx, dy, view);
    }
    int pans = 0;
    bool replacePan = false;
    ActionType lastAction = ACTION_NULL;
};

/** A view on a smooth globe that gets its events by hand. */
class ManipulatorFixture : public testing::Test, public WindowEvents
{
protected:
    ManipulatorFixture() : WindowEvents(kWidth, kHeight)
    {
        view->getCamera()->setProjectionMatrixAsPerspective(30.0, double(kWidth) / kHeight, 1.0, 1e8);
        view->getCamera()->setViewport(0, 0, kWidth, kHeight);
        manipulator->setNode(root);
    }

    void showGlobe()
    {
        osg::ref_ptr<osg::CoordinateSystemNode> globe = new osg::CoordinateSystemNode;
        globe->setEllipsoidModel(new osg::EllipsoidModel);
        root->addChild(globe);
        frame();
    }

    /** A globe and a viewpoint on it. */
    void showAt(double longitude, double latitude, double heading, double pitch, double range)
    {
        showGlobe();
        manipulator->setViewpoint(Viewpoint("test", longitude, latitude, 0.0, heading, pitch, range));
    }

    bool send(EA* ea) override { return manipulator->handle(*ea, *view); }

    void frame(double seconds = 0.025)
    {
        time += seconds;
        send(event(EA::FRAME));
    }

    void frames(double seconds)
    {
        for (double spent = 0.0; spent < seconds; spent += 0.025)
            frame();
    }

    /** Pixel at which a world point is drawn. */
    osg::Vec3d pixelOf(const osg::Vec3d& point)
    {
        return point * manipulator->getInverseMatrix() * view->getCamera()->getProjectionMatrix() *
               view->getCamera()->getViewport()->computeWindowMatrix();
    }

    osg::Vec3d groundAt(double x, double y)
    {
        const Ray ray = transformed(cursorRay(view->getCamera()->getProjectionMatrix(),
                                              2.0 * x / kWidth - 1.0, 2.0 * y / kHeight - 1.0),
                                    manipulator->getMatrix());
        const auto distance = groundAlong(osg::EllipsoidModel(), ray, [](double, double) { return 0.0; });
        return distance ? ray.origin + ray.direction * *distance : osg::Vec3d();
    }

    void expectAt(double longitude, double latitude, double heading, double pitch, double range)
    {
        const Viewpoint now = manipulator->getViewpoint();
        ASSERT_TRUE(now.isValid());
        EXPECT_NEAR(std::remainder(now.focalPoint()->x() - longitude, 360.0), 0.0, 1e-6);
        EXPECT_NEAR(now.focalPoint()->y(), latitude, 1e-6);
        EXPECT_NEAR(std::remainder(now.getHeading() - heading, 360.0), 0.0, 1e-6);
        EXPECT_NEAR(now.getPitch(), pitch, 1e-6);
        EXPECT_NEAR(now.getRange(), range, 1e-6 * range);
    }

    osg::ref_ptr<osg::Group> root = new osg::Group;
    osg::ref_ptr<osgViewer::View> view = new osgViewer::View;
    osg::ref_ptr<SpyManipulator> manipulator = new SpyManipulator;
};
