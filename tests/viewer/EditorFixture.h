#pragma once
#include "ProtocolFixture.h"

#include "interaction/editing/AxEditRules.h"

#include <osgGA/EventVisitor>
#include <osgViewer/Viewer>

#include <memory>

/// An object without a shape of its own, whose vertices tests set and watch.
class EditedObject : public CAxHandleAdapter
{
public:
    EditedObject(CAxEarthViewer* earthViewer, CAxBlock::EBlockType type = CAxBlock::PolygonBlock)
        : CAxHandleAdapter(earthViewer, nullptr)
    {
        d->blockType = type;
        if (earthViewer)
            ConnectMouseEvent();
    }
    ~EditedObject() override { Show(nullptr); }

    void SetAdapterVisible(bool shown, QString) override { d->visible = shown; }
    void ClearPoints() override { d->anchors.clear(); }
    int CheckGeometry() override { return 1; }
    void slotPointMoved(double lng, double lat, double alt, int index) override
    {
        CAxHandleAdapter::slotPointMoved(lng, lat, alt, index);
        ++moves;
        moved = index;
    }
    void ResponseHandlePointMoved(osg::Vec3d, osg::Vec3d) override { ++ends; }

    void SetLock(bool locked) { d->lock = locked; }
    void SetOperation(EHandleOperation wanted) { d->operation = wanted; }

    /// The handles of the present vertices, in the scene.
    CAxHandleAdapterEditor& Edit(CAxDragger::DragType type = CAxDragger::DragSphere)
    {
        Show(new CAxHandleAdapterEditor(this, GetViewer()->getMapNode(), 1, true, type, osg::Vec3d()));
        return *d->anchorEditor;
    }

    int moves = 0;
    int moved = -1; ///< vertex of the last move
    int ends = 0;   ///< ended drags

protected:
    void updateAdapter() override {}

private:
    void Show(CAxHandleAdapterEditor* editor)
    {
        if (d->anchorEditor && GetViewer())
            GetViewer()->GetDrawNodeGroup()->removeChild(d->anchorEditor);
        d->anchorEditor = editor;
        if (!editor)
            return;
        connect(editor, &CAxHandleAdapterEditor::PositionChanged, this, &EditedObject::slotPointMoved);
        GetViewer()->GetDrawNodeGroup()->addChild(editor);
    }
};

/**
 * An object with handles on the mountains, seen aslant from 20 km. Events go
 * to the scene and then to the manipulator, as the viewer leads them.
 */
class EditorFixture : public ProtocolFixture
{
protected:
    static constexpr double longitude = -105.0;
    static constexpr double latitude = 37.4;

    void SetUp() override
    {
        ProtocolFixture::SetUp();
        manipulator->setViewpoint(osgEarth::Viewpoint("", longitude, latitude, 3027.0, 20.0, -50.0, 20000.0));
        ASSERT_TRUE(WaitForPicture());
        viewer->SetEditAids(AxEditAids());
        object = std::make_unique<EditedObject>(viewer);
        object->GetAnchor() = Square(0.012);
    }
    void TearDown() override
    {
        object.reset();
        viewer->SetEditAids(AxEditAids());
        ProtocolFixture::TearDown();
    }

    /// On the ground, degrees east and north of the view's middle.
    static osg::Vec3d Ground(double east, double north)
    {
        QList<osg::Vec3d> place{{longitude + east, latitude + north, 0.0}};
        viewer->getManipulator()->GetElevations(place, false);
        return place.front();
    }
    static std::vector<osg::Vec3d> Square(double half)
    {
        return {Ground(-half, -half), Ground(half, -half), Ground(half, half), Ground(-half, half)};
    }

    static osg::Vec3d WorldOf(const osg::Vec3d& place)
    {
        return FrameAt(place.x(), place.y(), place.z()).getTrans();
    }
    static osg::Vec2f PixelOf(const osg::Vec3d& place) { return WindowOf(WorldOf(place)); }
    osg::Vec2f Vertex(int index) { return PixelOf(object->GetAnchor()[std::size_t(index)]); }

    /// Whether the scene took the event.
    bool Give(Event::EventType type, const osg::Vec2f& at, int key = 0)
    {
        const bool isButton = type == Event::PUSH || type == Event::RELEASE || type == Event::DOUBLECLICK;
        const auto event = Make(type, at.x(), at.y(), isButton ? Event::LEFT_MOUSE_BUTTON : 0);
        event->setButtonMask(type == Event::PUSH || type == Event::DRAG ? Event::LEFT_MOUSE_BUTTON : 0);
        event->setKey(key);
        osg::ref_ptr<osgGA::EventVisitor> visitor = new osgGA::EventVisitor;
        visitor->setActionAdapter(viewer->getOSGViewer());
        visitor->addEvent(event);
        Root()->accept(*visitor);
        Send(event);
        return event->getHandled();
    }
    /// A whole drag; true when the scene took the push.
    bool DragFromTo(const osg::Vec2f& from, const osg::Vec2f& to)
    {
        const bool taken = Give(Event::PUSH, from);
        Give(Event::DRAG, (from + to) * 0.5f);
        Give(Event::DRAG, to);
        Give(Event::RELEASE, to);
        return taken;
    }

    std::unique_ptr<EditedObject> object;
};
