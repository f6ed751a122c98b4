#pragma once
#include "ViewerFixture.h"

#include "interaction/editing/CAxHandleAdapterEditor.h"
#include "interaction/objects/AxHandleAdapterState.h"
#include "interaction/objects/CAxHandleAdapter.h"

#include <AxData/CAxBlockManager.h>

#include <osg/Geometry>
#include <osg/MatrixTransform>
#include <osgEarth/GeoData>
#include <osgEarth/MapNode>
#include <osgEarth/SpatialReference>
#include <osgEarth/Viewpoint>
#include <osgGA/GUIEventAdapter>

#include <string>
#include <utility>
#include <vector>

/// A block drawn as one level square, whose verdict and state tests decide.
class TestBlock : public CAxHandleAdapter
{
public:
    TestBlock(CAxEarthViewer* earthViewer, const QString& id,
              CAxBlock::EBlockType type = CAxBlock::PolygonBlock)
        : CAxHandleAdapter(earthViewer, nullptr)
    {
        d->handleID = id;
        d->blockType = type;
        JoinScene();
        CreateEditor();
    }
    ~TestBlock() override
    {
        if (place && place->getNumParents() > 0)
            place->getParent(0)->removeChild(place);
        CAxBlockManager::instance().DeleteBlock(d->handleID);
    }

    void SetAdapterVisible(bool shown, QString) override { d->visible = shown; }
    void ClearPoints() override { d->anchors.clear(); }
    int CheckGeometry() override { return ++checks, verdict; }
    void ResponseDoubleClickOnPoint(int index, osg::Vec3d) override { doubleClicked += index; }
    void slotHandleMoved(double dLng, double dLat, double dAlt) override
    {
        CAxHandleAdapter::slotHandleMoved(dLng, dLat, dAlt);
        moved += osg::Vec3d(dLng, dLat, dAlt);
    }

    void SetLock(bool locked) { d->lock = locked; }
    void SetOperation(EHandleOperation wanted) { d->operation = wanted; }
    void AddRoute() { d->tasks += nullptr; }

    /// Draws the square, 2 * halfSide metres wide, around a place.
    void Draw(const osg::Matrixd& toWorld, float halfSide)
    {
        osg::ref_ptr<osg::Geometry> square = new osg::Geometry;
        const std::vector<osg::Vec3> corners{{-halfSide, -halfSide, 0.0f},
                                             {halfSide, -halfSide, 0.0f},
                                             {halfSide, halfSide, 0.0f},
                                             {-halfSide, halfSide, 0.0f}};
        square->setVertexArray(new osg::Vec3Array(4, corners.data()));
        square->addPrimitiveSet(new osg::DrawArrays(GL_TRIANGLE_FAN, 0, 4));
        drawable = square;
        d->featureNode->addDrawable(square);
        place = new osg::MatrixTransform(toWorld);
        place->addChild(d->featureNode);
        GetViewer()->GetDrawNodeGroup()->addChild(place);
    }

    int verdict = 1;
    int checks = 0;
    QList<int> doubleClicked;
    QList<osg::Vec3d> moved;
    osg::ref_ptr<osg::Drawable> drawable;
    osg::ref_ptr<osg::MatrixTransform> place;
};

/**
 * Sends events straight to the manipulator of the shared viewer, which looks
 * at the whole globe from above, and keeps the signals that they caused.
 */
class ProtocolFixture : public ViewerFixture
{
protected:
    using Event = osgGA::GUIEventAdapter;

    static void SetUpTestSuite()
    {
        // How the window counts its pixels is known from its first event on.
        static int moves = 0;
        if (moves > 0)
            return;
        const auto counting = QObject::connect(
            viewer->getManipulator(), &CAxEarthManipulator::mouseLeftBtnMove, viewer, [] { ++moves; });
        QTest::mouseMove(viewer->viewport(), {200, 200});
        QTest::mouseMove(viewer->viewport(), {201, 201});
        ASSERT_TRUE(waitFor([] { return moves > 0; }));
        QObject::disconnect(counting);
    }

    void SetUp() override
    {
        manipulator = viewer->getManipulator();
        manipulator->setViewpoint(Straight(20.0, 10.0, 1.5e7));
        ASSERT_TRUE(WaitForPicture());
        Listen();
    }

    void TearDown() override
    {
        for (const auto& connection : connections)
            QObject::disconnect(connection);
        viewer->SetToolType(ToolNavigate);
        viewer->SetMultiSelect(false);
        viewer->EnabledPickHandle(true);
        viewer->ClearMultiSelectAdapter();
        viewer->SetNodeSelected(nullptr, false, false);
        manipulator->setOperateMode(CAxEarthManipulator::OperateGlobe);
        manipulator->setProjMode(CAxEarthManipulator::ProjNone);
        manipulator->slotResetMouse();
        manipulator->home(0.0);
    }

    static osgEarth::Viewpoint Straight(double lng, double lat, double range)
    {
        return osgEarth::Viewpoint("", lng, lat, 0.0, 0.0, -90.0, range);
    }

    /// An event as the viewer hands it on; x and y in pixels of the widget, y downwards.
    static osg::ref_ptr<Event> Make(Event::EventType type, float x, float y, int button = 0)
    {
        osg::ref_ptr<Event> event = new Event;
        event->setEventType(type);
        event->setMouseYOrientation(Event::Y_INCREASING_UPWARDS);
        event->setInputRange(0.0f, 0.0f, 799.0f, 599.0f);
        event->setX(x);
        event->setY(599.0f - y);
        event->setButton(button);
        event->setTime(viewer->getOSGViewer()->getFrameStamp()->getReferenceTime());
        return event;
    }

    bool Send(const osg::ref_ptr<Event>& event)
    {
        return manipulator->handle(*event, *viewer->getOSGViewer());
    }

    bool Move(float x, float y) { return Send(Make(Event::MOVE, x, y)); }
    bool Push(float x, float y, int button = Event::LEFT_MOUSE_BUTTON)
    {
        const auto event = Make(Event::PUSH, x, y, button);
        event->setButtonMask(button);
        return Send(event);
    }
    bool Drag(float x, float y, int mask = Event::LEFT_MOUSE_BUTTON)
    {
        const auto event = Make(Event::DRAG, x, y);
        event->setButtonMask(mask);
        return Send(event);
    }
    bool Release(float x, float y, int button = Event::LEFT_MOUSE_BUTTON)
    {
        return Send(Make(Event::RELEASE, x, y, button));
    }
    bool DoubleClick(float x, float y)
    {
        return Send(Make(Event::DOUBLECLICK, x, y, Event::LEFT_MOUSE_BUTTON));
    }
    bool Key(Event::EventType type, int key, int mask = 0)
    {
        const auto event = Make(type, 400, 300);
        event->setKey(key);
        event->setModKeyMask(mask);
        return Send(event);
    }
    bool Scroll(Event::ScrollingMotion motion, float x, float y)
    {
        const auto event = Make(Event::SCROLL, x, y);
        event->setScrollingMotion(motion);
        return Send(event);
    }

    /// East-north-up frame of a place, metres.
    static osg::Matrixd FrameAt(double lng, double lat, double alt = 0.0)
    {
        osg::Matrixd frame;
        osgEarth::GeoPoint(viewer->getSRS(), lng, lat, alt, osgEarth::ALTMODE_ABSOLUTE)
            .createLocalToWorld(frame);
        return frame;
    }

    /// Where a world point is in the window, pixels with y downwards.
    static osg::Vec2f WindowOf(const osg::Vec3d& world)
    {
        const osg::Camera* camera = viewer->getOSGViewer()->getCamera();
        const osg::Vec3d ndc = world * camera->getViewMatrix() * camera->getProjectionMatrix();
        return osg::Vec2f(static_cast<float>(399.5 + 399.5 * ndc.x()),
                          static_cast<float>(299.5 - 299.5 * ndc.y()));
    }
    static osg::Vec2f WindowOf(double lng, double lat) { return WindowOf(FrameAt(lng, lat).getTrans()); }

    /// Names of the signals since the last call, in their order.
    QStringList Heard() { return std::exchange(heard, {}); }

    CAxEarthManipulator* manipulator = nullptr;
    osg::Vec3d lngLatPos;     ///< of the last signal that carries one
    osg::Vec3d worldCoordPos; ///< of the last signal that carries one
    osg::Drawable* drawable = nullptr;
    osg::Vec3d movedBy;
    QStringList names;

private:
    template <typename... Arguments>
    void On(void (CAxEarthManipulator::*signal)(Arguments...), const char* name)
    {
        connections += QObject::connect(manipulator, signal, viewer, [this, name](Arguments... arguments) {
            heard += QString::fromLatin1(name);
            Keep(arguments...);
        });
    }
    void Keep() {}
    void Keep(const osg::Vec3d& lngLat) { lngLatPos = lngLat; }
    void Keep(const osg::Vec3d& lngLat, const osg::Vec3d& world)
    {
        lngLatPos = lngLat;
        worldCoordPos = world;
    }
    void Keep(float, float) {}
    void Keep(osg::Drawable* under) { drawable = under; }
    void Keep(const QString& node, const QString& parent) { names = QStringList{node, parent}; }
    void Keep(double lng, double lat, double alt) { movedBy.set(lng, lat, alt); }

    void Listen()
    {
        using M = CAxEarthManipulator;
        using Point = void (M::*)(osg::Vec3d, osg::Vec3d);
        using Window = void (M::*)(float, float);
        using Under = void (M::*)(osg::Drawable*);
        On(static_cast<Point>(&M::mouseLeftBtnPress), "press");
        On(static_cast<Window>(&M::mouseLeftBtnPress), "press window");
        On(static_cast<Under>(&M::mouseLeftBtnPress), "press drawable");
        On(&M::mouseLeftBtnMove, "move");
        On(&M::mouseMoveSignal, "move drawable");
        On(static_cast<Point>(&M::mouseLeftBtnRelease), "release");
        On(static_cast<Window>(&M::mouseLeftBtnRelease), "release window");
        On(&M::mouseLeftBtnClick, "click");
        On(&M::mouseLeftBtnClickSignal, "click drawable");
        On(&M::mouseLeftBtnDoubleClick, "double click");
        On(static_cast<Point>(&M::mouseLeftBtnDrag), "drag");
        On(static_cast<Window>(&M::mouseLeftBtnDrag), "drag window");
        On(&M::mouseLeftBtnDragAngleComputer, "drag angle");
        On(&M::mouseLeftBtnDragGrid, "drag grid");
        On(&M::signalRightBtnPicked, "right click");
        On(&M::signalMouseLeftBtnClickModelLayer, "click model");
        On(&M::ObjectMoved, "object moved");
        On(&M::signalHandleKeyDelete, "delete");
    }

    QStringList heard;
    QVector<QMetaObject::Connection> connections;
};
