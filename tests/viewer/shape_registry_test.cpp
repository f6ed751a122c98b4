// Map objects in the viewer's registry and their block records.
#include "ShapeFixture.h"

using Registry = ShapeFixture;

TEST_F(Registry, KeepsTheFirstObjectOfAnIdAndTheRecordThatIsThere)
{
    CAxBlockManager& blocks = CAxBlockManager::instance();
    blocks.AddBlock("known", CAxBlock::PolygonBlock)->SetAnchor({{1, 2}, {3, 4}, {5, 6}});
    auto* known = new TestBlock(viewer, "known");
    known->GetAnchor() = {{7, 8, 9}};
    EXPECT_TRUE(viewer->AddHandleAdapter(known));
    EXPECT_EQ(blocks.GetBlock("known")->GetAnchor(), (QList<QPointF>{{1, 2}, {3, 4}, {5, 6}}));

    auto* fresh = new TestBlock(viewer, "fresh", CAxBlock::StripBlock);
    fresh->GetAnchor() = {{7, 8, 9}, {10, 11, 12}};
    EXPECT_TRUE(viewer->AddHandleAdapter(fresh));
    ASSERT_NE(blocks.GetBlock("fresh"), nullptr);
    EXPECT_EQ(blocks.GetBlock("fresh")->GetBlockType(), CAxBlock::StripBlock);
    EXPECT_EQ(blocks.GetBlock("fresh")->GetAnchor(), (QList<QPointF>{{7, 8}, {10, 11}}));

    auto* marks = new TestBlock(viewer, "marks", CAxBlock::MarkPointBlock);
    EXPECT_TRUE(viewer->AddHandleAdapter(marks));
    EXPECT_EQ(blocks.GetBlock("marks"), nullptr);

    TestBlock twin(viewer, "known");
    EXPECT_FALSE(viewer->AddHandleAdapter(&twin));
    CAxEarthViewer other(nullptr);
    for (CAxEarthViewer* maker : {&other, static_cast<CAxEarthViewer*>(nullptr)}) {
        CAx3DGeometry foreign(maker, nullptr);
        EXPECT_FALSE(viewer->AddHandleAdapter(&foreign)) << "it would not tell of its end";
    }
    EXPECT_FALSE(viewer->AddHandleAdapter(nullptr));
    EXPECT_EQ(viewer->FindExistNode("known"), known);
    EXPECT_EQ(viewer->FindExistNode(fresh->GetFeatureNode()), fresh);
    EXPECT_EQ(viewer->FindExistNode(CAxBlock::PolygonBlock), QList<CAxHandleAdapter*>{known});
    EXPECT_EQ(viewer->GetHandleAdapters(), (QList<CAxHandleAdapter*>{fresh, known, marks}));
}

TEST_F(Registry, RemovesObjectsWithAndWithoutTheirRecords)
{
    EXPECT_TRUE(viewer->RemoveAllHanderAdapter(true)) << "an empty registry is no error";
    EXPECT_FALSE(viewer->RemoveHanderAdapter(QStringLiteral("unknown"), true));
    EXPECT_FALSE(viewer->RemoveHanderAdapter(static_cast<CAxHandleAdapter*>(nullptr), true));

    const QList<QPointF> ring{{18, 8}, {22, 8}, {20, 12}};
    QPointer<CAxHandleAdapter> kept = Import("kept", ring);
    QPointer<CAxHandleAdapter> gone = Import("gone", ring);
    ASSERT_TRUE(kept && gone);
    const osg::ref_ptr<osg::Geode> drawn = gone->GetFeatureNode();
    EXPECT_TRUE(viewer->RemoveHanderAdapter(QStringLiteral("gone"), true));
    EXPECT_FALSE(gone);
    EXPECT_EQ(drawn->getNumParents(), 0u);
    EXPECT_EQ(CAxBlockManager::instance().GetBlock("gone"), nullptr);
    EXPECT_TRUE(viewer->RemoveHanderAdapter(kept.data(), false));
    EXPECT_FALSE(kept);
    EXPECT_NE(CAxBlockManager::instance().GetBlock("kept"), nullptr) << "only the display was cleared";

    // An object that does not hang where objects hang ends without its entry being asked for.
    QPointer<CAxHandleAdapter> stray = Import("stray", ring);
    viewer->GetGeomAdapterGroup()->removeChild(stray->GetFeatureNode());
    EXPECT_FALSE(viewer->RemoveHanderAdapter(stray.data(), true));
    EXPECT_FALSE(stray);
    EXPECT_NE(CAxBlockManager::instance().GetBlock("stray"), nullptr);
    EXPECT_EQ(viewer->FindExistNode(QStringLiteral("stray")), nullptr) << "nothing dangles";
}

TEST_F(Registry, DrawsOnlyRecordsThatCanBeDrawn)
{
    EXPECT_EQ(viewer->ImportShapeNode("unknown"), nullptr);
    EXPECT_EQ(Import("line", {{1, 2}, {3, 4}}), nullptr);
    EXPECT_EQ(Import("unusable", {{1, 2}, {3, qQNaN()}, {5, 6}}), nullptr);
    EXPECT_EQ(Import("nowhere", {{1, 2}, {3, 91}, {5, 6}}), nullptr);
    CAxHandleAdapter* good = Import("good", {{1, 2}, {3, 4}, {5, 2}});
    ASSERT_NE(good, nullptr);
    EXPECT_EQ(viewer->ImportShapeNode("good"), nullptr) << "it is drawn already";
    EXPECT_EQ(good->GetAnchor().size(), 3u);

    viewer->slotBlockVisible("unknown", false);
    viewer->slotBlockLock("unknown", true);
    viewer->slotFocusBlock("unknown");
    viewer->slotBlockVisible("good", false);
    EXPECT_FALSE(good->IsVisible());
    EXPECT_EQ(good->GetFeatureNode()->getNodeMask(), 0u);
    viewer->slotBlockLock("good", true);
    EXPECT_TRUE(good->IsLock());
    EXPECT_EQ(good->GetLockNode()->getNodeMask(), 0u) << "hidden with the block";
    viewer->slotBlockVisible("good", true);
    EXPECT_NE(good->GetLockNode()->getNodeMask(), 0u);
    viewer->slotFocusBlock("good");
    EXPECT_EQ(viewer->GetCurHandleAdapter(), good);
    EXPECT_EQ(good->GetAnchorEditor(), nullptr) << "a locked block is not edited";
    viewer->slotBlockLock("good", false);
    EXPECT_NE(good->GetAnchorEditor(), nullptr);
    EXPECT_TRUE(waitFor([this] {
        const osgEarth::Viewpoint view = manipulator->getViewpoint();
        return std::abs(view.focalPoint()->x() - 3.0) < 0.1 && std::abs(view.focalPoint()->y() - 3.0) < 0.1;
    }));
}

TEST_F(Registry, SurvivesObjectsThatEndInTheMiddleOfAnything)
{
    const auto remove = [](const QString& id) { viewer->RemoveHanderAdapter(id, true); };
    CAxBlockManager* blocks = &CAxBlockManager::instance();
    // Listens while something is done that ends an object.
    const auto during = [](const QMetaObject::Connection& listening, const std::function<void()>& act) {
        act();
        QObject::disconnect(listening);
    };
    const QList<QPointF> ring{{18, 8}, {22, 8}, {20, 12}};
    QPointer<CAxHandleAdapter> object;

    // While it is drawn, by whoever hears of it.
    viewer->SetToolType(ToolPolygonBlock);
    Click(18.0, 8.0);
    Click(22.0, 8.0);
    object = viewer->GetCurHandleAdapter();
    ASSERT_TRUE(object);
    EXPECT_TRUE(viewer->RemoveHanderAdapter(object.data(), true));
    EXPECT_FALSE(object);
    MoveTo(20.0, 10.0);
    viewer->SetToolType(ToolNavigate);

    // By a host that deletes what it is told of, in the very slot.
    during(QObject::connect(viewer, &CAxEarthViewer::signalHandleEnd, viewer,
                            [&](const QString& id, bool) { remove(id); }),
           [&] { object = DrawTriangle(); });
    EXPECT_EQ(viewer->GetCurHandleAdapter(), nullptr);
    EXPECT_TRUE(waitFor([&] { return !object; }));

    // By one that hears of the new record.
    ended.clear();
    pickEnded.clear();
    during(QObject::connect(blocks, &CAxBlockManager::blockAdded, viewer, remove), [&] { DrawTriangle(); });
    EXPECT_TRUE(blocks->GetBlockList().isEmpty());
    EXPECT_EQ(ended, (QList<QPair<QString, bool>>{{QString(), false}}))
        << "the drawing has ended all the same";
    EXPECT_EQ(pickEnded, QList<EToolType>{ToolPolygonBlock});

    // By one that hears of the end of a move, while it hangs elsewhere.
    object = Import("elsewhere", ring);
    object->HandleMoved(1.0, 0.0, 0.0);
    object->GetAnchor()[0].x() -= 1.0;
    during(QObject::connect(blocks, &CAxBlockManager::blockChanged, viewer,
                            [&](const QString& id) {
                                viewer->GetGeomAdapterGroup()->removeChild(object->GetFeatureNode());
                                viewer->RemoveHanderAdapter(object.data(), false);
                                EXPECT_TRUE(object) << "its slot is still running";
                                EXPECT_EQ(viewer->FindExistNode(id), nullptr);
                            }),
           [&] { object->EndMoved(1); });
    EXPECT_TRUE(waitFor([&] { return !object; }));
    blocks->DeleteBlock("elsewhere");

    // By one that hears that nothing is selected any more.
    object = Import("selected", ring);
    viewer->SetNodeSelected(object->GetFeatureNode(), false, false);
    during(QObject::connect(viewer, &CAxEarthViewer::signalCurrentBlock, viewer,
                            [&](const QString& current) {
                                if (current.isEmpty())
                                    remove("selected");
                            }),
           [&] { EXPECT_TRUE(viewer->RemoveHanderAdapter(object.data(), true)); });
    EXPECT_FALSE(object);

    // By one that hears of the end of a move.
    object = Import("ending", ring);
    object->HandleMoved(1.0, 0.0, 0.0);
    object->GetAnchor()[0].x() -= 1.0;
    during(QObject::connect(blocks, &CAxBlockManager::blockChanged, viewer, remove),
           [&] { object->EndMoved(1); });
    EXPECT_TRUE(waitFor([&] { return !object; }));

    // By one that hears of the record, which goes before the entry does.
    object = Import("twice", ring);
    bool isFound = false;
    during(QObject::connect(blocks, &CAxBlockManager::blockDeleted, viewer,
                            [&](const QString& id) {
                                isFound = viewer->FindExistNode(id) != nullptr;
                                remove(id);
                            }),
           [&] { EXPECT_TRUE(viewer->RemoveHanderAdapter(object.data(), true)); });
    EXPECT_TRUE(isFound);
    EXPECT_FALSE(object);
    EXPECT_EQ(viewer->FindExistNode(QStringLiteral("twice")), nullptr);

    // While it is moved, selected, and its record is gone behind its back.
    object = Import("moved", ring);
    blocks->DeleteBlock("moved");
    viewer->SetToolType(ToolSelect);
    viewer->SetNodeSelected(object->GetFeatureNode(), true, false);
    const osg::Vec2f from = WindowOf(20.0, 9.0);
    Push(from.x(), from.y());
    Drag(from.x() + 10.0f, from.y());
    Drag(from.x() + 20.0f, from.y());
    EXPECT_EQ(object->GetHandleOperation(), OperationMoveHandle);
    object->EndMoved(0);
    viewer->RemoveHanderAdapter(object.data(), true);
    EXPECT_FALSE(object);
    EXPECT_TRUE(viewer->GetMultiSelectAdapter().isEmpty());
    Drag(from.x() + 30.0f, from.y());
    Release(from.x() + 30.0f, from.y());
}

TEST(RegistryOfItsOwn, AViewerEndsWithAThousandObjects)
{
    QList<QPointer<CAxHandleAdapter>> all;
    {
        CAxEarthViewer empty(nullptr);
        for (int i = 0; i < 1000; ++i) {
            auto* block = new CAx3DGeometry(&empty, nullptr);
            block->ImportGeometry({{1.0, 2.0, 0.0}, {3.0, 2.0, 0.0}, {3.0, 4.0, 0.0}}, false);
            EXPECT_TRUE(empty.AddHandleAdapter(block));
            all += block;
        }
    }
    for (const auto& block : qAsConst(all))
        EXPECT_FALSE(block);
    CAxBlockManager::instance().DeleteAllBlocks();
}
