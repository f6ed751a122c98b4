// Handles of edges, snapping and kept angles.
#include "EditorFixture.h"

#include "interaction/models/AxModelLayers.h"

#include <osg/Geometry>
#include <osgDB/WriteFile>

#include <QTemporaryDir>

class EditorAids : public EditorFixture
{
protected:
    static osg::Vec2f Middle(const osg::Vec3d& a, const osg::Vec3d& b)
    {
        const osg::Vec3d middle = AxEditRules::MiddleOf(a, b);
        return PixelOf(Ground(middle.x() - longitude, middle.y() - latitude));
    }
};

TEST_F(EditorAids, AVertexComesOutOfTheMiddleOfAnEdge)
{
    CAxHandleAdapterEditor& editor = object->Edit();
    const std::vector<osg::Vec3d> before = object->GetAnchor();
    const osg::Vec2f from = Middle(before[1], before[2]);
    EXPECT_TRUE(Give(Event::PUSH, from));
    EXPECT_TRUE(editor.GetDrag());
    Give(Event::RELEASE, from);
    EXPECT_FALSE(editor.GetDrag());
    EXPECT_EQ(object->GetAnchor(), before) << "a push alone inserts nothing";

    const osg::Vec2f to = from + osg::Vec2f(50.0f, 10.0f);
    EXPECT_TRUE(Give(Event::PUSH, from + osg::Vec2f(3.0f, 2.0f)));
    EXPECT_TRUE(Give(Event::DRAG, to + osg::Vec2f(3.0f, 2.0f)));
    ASSERT_EQ(object->GetAnchor().size(), 5u);
    EXPECT_EQ(object->moved, 2);
    EXPECT_LT((Vertex(2) - to).length(), 0.7f) << "the grip is kept";
    EXPECT_EQ(object->GetAnchor()[1], before[1]);
    EXPECT_EQ(object->GetAnchor()[3], before[2]);
    EXPECT_EQ(object->GetHandleOperation(), OperationMovePoint);
    Give(Event::RELEASE, to);
    EXPECT_EQ(object->ends, 1);
    EXPECT_EQ(editor.GetDraggerList().size(), 5u);
    EXPECT_EQ(editor.GetDraggerList()[4]->GetPlace(), before[3]);
}

TEST_F(EditorAids, AnInsertedVertexGoesWhenItsDragIsGivenUp)
{
    CAxHandleAdapterEditor& editor = object->Edit();
    const std::vector<osg::Vec3d> before = object->GetAnchor();
    const osg::Vec2f from = Middle(before[3], before[0]);
    Give(Event::PUSH, from);
    Give(Event::DRAG, from + osg::Vec2f(-40.0f, 0.0f));
    ASSERT_EQ(object->GetAnchor().size(), 5u);
    EXPECT_EQ(object->moved, 4) << "the closing edge's vertex is the last";
    EXPECT_TRUE(editor.CancelDrag());
    EXPECT_EQ(object->GetAnchor(), before);
    EXPECT_EQ(editor.GetDraggerList().size(), 4u);
    Give(Event::RELEASE, from);
}

TEST_F(EditorAids, OnlyLongEdgesOfPolygonsAndStripsHaveHandles)
{
    struct Row
    {
        CAxBlock::EBlockType type;
        int edge;
        bool expected;
    };
    const auto isTaken = [&](int edge) {
        const auto& anchors = object->GetAnchor();
        const osg::Vec2f at =
            Middle(anchors[std::size_t(edge)], anchors[std::size_t(edge + 1) % anchors.size()]);
        const bool taken = Give(Event::PUSH, at);
        Give(Event::RELEASE, at);
        return taken;
    };
    for (const Row& row : {Row{CAxBlock::PolygonBlock, 3, true}, Row{CAxBlock::StripBlock, 2, true},
                           Row{CAxBlock::StripBlock, 3, false}, Row{CAxBlock::RectangleBlock, 0, false}}) {
        object = std::make_unique<EditedObject>(viewer, row.type);
        object->GetAnchor() = Square(0.012);
        object->Edit();
        EXPECT_EQ(isTaken(row.edge), row.expected) << "type " << row.type << ", edge " << row.edge;
    }
    object = std::make_unique<EditedObject>(viewer);
    object->GetAnchor() = Square(0.0028);
    object->Edit();
    ASSERT_LT((Vertex(0) - Vertex(1)).length(), 40.0f);
    EXPECT_FALSE(isTaken(0)) << "too short on the screen";
    object->GetAnchor() = Square(0.012);
    object->GetAnchorEditor()->Update();
    EXPECT_TRUE(isTaken(0));
    AxEditAids aids;
    aids.edgeHandles = false;
    viewer->SetEditAids(aids);
    EXPECT_FALSE(isTaken(0)) << "switched off";
}

TEST_F(EditorAids, AVertexIsPutOnAModelWhereThatIsWanted)
{
    const osg::ref_ptr<osg::Geometry> roof = new osg::Geometry;
    const std::vector<osg::Vec3> corners{{-900.0f, -900.0f, 4000.0f},
                                         {900.0f, -900.0f, 4000.0f},
                                         {900.0f, 900.0f, 4000.0f},
                                         {-900.0f, 900.0f, 4000.0f}};
    roof->setVertexArray(new osg::Vec3Array(4, corners.data()));
    roof->addPrimitiveSet(new osg::DrawArrays(GL_TRIANGLE_FAN, 0, 4));
    const QTemporaryDir folder;
    const QString file = folder.filePath("roof.osgb");
    ASSERT_TRUE(osgDB::writeNodeFile(*roof, file.toStdString()));
    AxModelOptions options;
    options.coordinateSystem = "ENU:37.4,-105";
    AxModelLayers* const models = viewer->GetModelLayers();
    const QString id = models->Add(file, options);
    ASSERT_TRUE(waitFor([&] { return !models->Find(id)->isLoading; }));
    ASSERT_TRUE(WaitForPicture());
    QList<osg::Vec3d> top{{longitude + 0.002, latitude, 0.0}};
    viewer->getManipulator()->GetElevations(top, true);
    AxEditAids aids;
    for (const bool isOn : {true, false}) {
        aids.clampToModels = isOn;
        viewer->SetEditAids(aids);
        object = std::make_unique<EditedObject>(viewer);
        object->GetAnchor() = Square(0.012);
        object->Edit();
        DragFromTo(Vertex(1), PixelOf(top[0]));
        const osg::Vec3d put = object->GetAnchor()[1];
        EXPECT_EQ(std::abs(put.z() - top[0].z()) < 5.0, isOn) << put.z() << " and not " << top[0].z();
    }
    models->Remove(id);
}

TEST_F(EditorAids, AVertexSnapsToOtherObjects)
{
    auto* other = new EditedObject(viewer);
    other->DisconnectMouseEvent();
    other->GetAnchor() = {Ground(0.03, -0.01), Ground(0.03, 0.02), Ground(0.04, 0.0)};
    const QString id = other->GetHandleID();
    ASSERT_TRUE(viewer->AddHandleAdapter(other));
    object->Edit();
    const osg::Vec3d corner = other->GetAnchor()[1];
    const osg::Vec2f near = PixelOf(corner) + osg::Vec2f(6.0f, 5.0f);
    const osg::Vec2f onEdge = Middle(other->GetAnchor()[0], other->GetAnchor()[1]) + osg::Vec2f(-7.0f, 0.0f);
    const auto distanceToEdge = [&] {
        const osg::Vec3d a = WorldOf(other->GetAnchor()[0]);
        const osg::Vec3d b = WorldOf(other->GetAnchor()[1]);
        const osg::Vec3d up = a ^ b;
        const osg::Vec3d p = WorldOf(object->GetAnchor()[1]);
        return std::abs(p * up / up.length());
    };

    DragFromTo(Vertex(1), near);
    EXPECT_EQ(osg::Vec2d(object->GetAnchor()[1].x(), object->GetAnchor()[1].y()),
              osg::Vec2d(corner.x(), corner.y()));
    DragFromTo(Vertex(1), onEdge);
    EXPECT_LT(distanceToEdge(), 1.0);

    other->SetAdapterVisible(false, QString());
    DragFromTo(Vertex(1), onEdge + osg::Vec2f(-1.0f, 0.0f));
    EXPECT_GT(distanceToEdge(), 30.0) << "to what is hidden";
    other->SetAdapterVisible(true, QString());
    AxEditAids aids;
    aids.snap = false;
    viewer->SetEditAids(aids);
    DragFromTo(Vertex(1), near);
    EXPECT_LT((Vertex(1) - near).length(), 0.7f) << "switched off";
    viewer->RemoveHanderAdapter(id, true);
}
