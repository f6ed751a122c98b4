// Mark points: where they are drawn, what they may be called, and the viewer's set of them by mouse and keys.
#include "ShapeFixture.h"

#include "interaction/marks/AxMarkGeometry.h"
#include "interaction/marks/AxMarkLayout.h"
#include "interaction/marks/AxMarkNames.h"
#include "interaction/marks/CAxOsgDrawPointSet.h"
#include "viewer/overlay/CAxMapToolsWidget.h"

#include <QAction>
#include <QPlainTextEdit>
#include <QRect>
#include <QSignalSpy>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {
const QSize markIcon(32, 40);
constexpr int markLabelHeight = 22;

std::vector<AxMarkPlaced> Placed(const std::vector<AxMarkOnScreen>& marks)
{
    return AxPlaceMarks(marks, {QSize(800, 600), markIcon, markLabelHeight, 100, [](int) { return 60; }});
}

QRect IconOf(const AxMarkPlaced& mark)
{
    return {mark.foot - QPoint(markIcon.width() / 2, 0), markIcon};
}

const AxMarkPlaced* Of(const std::vector<AxMarkPlaced>& placed, int index)
{
    const auto found = std::find_if(placed.begin(), placed.end(),
                                    [index](const AxMarkPlaced& mark) { return mark.index == index; });
    return found == placed.end() ? nullptr : &*found;
}
} // namespace

TEST(MarkLayout, NearIconsComeFirstAndNamesCoverNothing)
{
    // Two in one place, one beside them, one that is selected below a nearer one.
    const auto few = Placed({{0, {100, 100}, 20.0f},
                             {1, {101, 100}, 10.0f},
                             {2, {400, 300}, 10.0f},
                             {3, {402, 300}, 5.0f},
                             {4, {400, 301}, 50.0f, true}});
    ASSERT_TRUE(Of(few, 0) && Of(few, 1) && Of(few, 4));
    EXPECT_TRUE(Of(few, 1)->isIcon);
    EXPECT_FALSE(Of(few, 0)->isIcon) << "it lies behind the other";
    EXPECT_EQ(Placed({{0, {100, 100}, 1.0f}, {1, {105, 130}, 2.0f}}).size(), 1u)
        << "behind the head of an icon";
    EXPECT_TRUE(Of(few, 4)->isIcon);
    EXPECT_FALSE(Of(few, 3) && Of(few, 3)->isIcon);
    EXPECT_EQ(few.back().index, 4) << "the selected one is drawn over all others";

    std::vector<AxMarkOnScreen> crowd;
    for (int i = 0; i < 60; ++i)
        crowd.push_back({i, {i * 137 % 800, i * 211 % 600}, static_cast<float>(i)});
    const auto placed = Placed(crowd);
    std::vector<QRect> names;
    for (const AxMarkPlaced& mark : placed)
        if (mark.label)
            names.emplace_back(*mark.label, QSize(60, markLabelHeight));
    EXPECT_GT(names.size(), 10u);
    const auto alone = Placed({{0, {101, 103}, 1.0f}, {1, {306, 302}, 1.0f}, {2, {533, 405}, 1.0f}});
    for (const AxMarkPlaced& mark : alone)
        EXPECT_TRUE(mark.label && mark.label->x() > mark.foot.x()) << "it has room beside its icon";
    for (std::size_t i = 0; i < names.size(); ++i) {
        EXPECT_TRUE(QRect(0, 0, 800, 600).contains(names[i]));
        for (std::size_t j = 0; j < i; ++j)
            EXPECT_FALSE(names[i].intersects(names[j]));
        for (const AxMarkPlaced& mark : placed)
            EXPECT_FALSE(mark.isIcon && names[i].intersects(IconOf(mark)));
    }
}

TEST(MarkNames, AreShortUniqueAndInOneLine)
{
    const QSet<QString> taken{"Mark 1", "Mark 3", "Gate", "Gate 2", QString(AxMarkNames::longest, 'x')};
    EXPECT_EQ(AxMarkNames::Next(taken), "Mark 2");
    const struct
    {
        QString written;
        QString free;
        bool isRefused;
    } rows[] = {{"", "Mark 2", true},
                {" \n ", "Mark 2", true},
                {"Gate", "Gate 3", true},
                {" A\nB ", "A B", false},
                {QString(1000, 'x'), QString(AxMarkNames::longest - 2, 'x') + " 2", true},
                {QString(1000, 'y'), QString(AxMarkNames::longest, 'y'), true}};
    for (const auto& row : rows) {
        EXPECT_EQ(AxMarkNames::Free(row.written, taken), row.free) << row.written.left(20).toStdString();
        EXPECT_EQ(!AxMarkNames::Fault(AxMarkNames::InOneLine(row.written), taken).isEmpty(), row.isRefused);
        EXPECT_EQ(AxMarkNames::Fault(row.free, taken), QString());
    }
    QSet<QString> growing = taken;
    QHash<QString, int> numbers;
    QStringList named;
    for (const char* written : {"Gate", "", "Gate", "New", "", "New"}) {
        named += AxMarkNames::Free(written, growing, &numbers);
        growing += QSet<QString>{named.last()};
    }
    EXPECT_EQ(named, (QStringList{"Gate 3", "Mark 2", "Gate 4", "New", "Mark 4", "New 2"}));
}

class Marks : public ShapeFixture
{
protected:
    static CAxOsgDrawPointSet* Set() { return CAxOsgDrawPointSet::FindOfViewer(viewer); }
    static QStringList Names() { return Set() ? Set()->GetMarkerPointName() : QStringList(); }
    static QString ID(int index) { return Set()->Marks().value(index).id; }
    static void Undo() { viewer->GetUndoAction()->trigger(); }
    static void Redo() { viewer->GetRedoAction()->trigger(); }
    /// Takes up the tool and clicks there.
    void Place(const std::vector<osg::Vec2d>& places)
    {
        viewer->SetToolType(ToolMarkPoint);
        for (const osg::Vec2d& place : places)
            Click(place.x(), place.y());
    }
    /// In the middle of a mark's icon, pixels of the viewport.
    static QPoint IconAt(int index)
    {
        const osg::Vec2f foot = WindowOf(Set()->WorldOf(ID(index)));
        return {qRound(foot.x()), qRound(foot.y()) - markIcon.height() / 2};
    }
    static void Hover(const QPoint& place)
    {
        QTest::mouseMove(viewer->viewport(), place + QPoint(1, 1));
        QTest::mouseMove(viewer->viewport(), place);
    }
};

TEST_F(Marks, AreSetByClicksAndEveryEditIsUndone)
{
    QSignalSpy added(viewer, &CAxEarthViewer::signalAddMarkPoint);
    QSignalSpy deleted(viewer, &CAxEarthViewer::signalDelMarkPoint);
    QSignalSpy reset(viewer, &CAxEarthViewer::signalResetBlockMarkPointListPage);
    CAxControl::GetInstance()->SetProjectModified(false);
    Place({{20.0, 10.0}, {24.0, 12.0}});
    ASSERT_EQ(Names(), (QStringList{"Mark 1", "Mark 2"}));
    EXPECT_TRUE(CAxControl::GetInstance()->IsProjectModified());
    EXPECT_NEAR(Set()->Marks()[1].longitude, 24.0, 0.2);
    EXPECT_NEAR(Set()->Marks()[1].latitude, 12.0, 0.2);
    EXPECT_EQ(viewer->GetToolType(), ToolMarkPoint) << "it stays in hand";
    EXPECT_EQ(CAxBlockManager::instance().GetBlock(Set()->GetHandleID()), nullptr);
    EXPECT_EQ(Set()->GetAnchorEditor(), nullptr);
    ASSERT_EQ(added.count(), 2);
    EXPECT_EQ(added[1], (QVariantList{Set()->GetHandleID(), "Mark 2"}));

    // Beside the globe there is nothing to be marked.
    manipulator->setViewpoint(Straight(20.0, 10.0, 5e7));
    ASSERT_TRUE(WaitForPicture());
    Push(3, 3);
    Release(3, 3);
    EXPECT_EQ(Set()->Marks().size(), 2);
    viewer->SetToolType(ToolNavigate);

    AxProjectMark mark = Set()->Marks()[0];
    mark.name = " North\ngate ";
    mark.description = "two\nlines";
    EXPECT_TRUE(Set()->EditMark(mark));
    mark.longitude = 379.0;
    EXPECT_TRUE(Set()->EditMark(mark));
    EXPECT_EQ(Set()->Marks()[0].name, "North gate");
    EXPECT_DOUBLE_EQ(Set()->Marks()[0].longitude, 19.0);
    Set()->RemoveMarkerPoint("North gate");
    EXPECT_EQ(Names(), QStringList{"Mark 2"});
    ASSERT_EQ(deleted.count(), 1);
    EXPECT_EQ(deleted[0][1], "North gate");

    Undo();
    EXPECT_EQ(Names(), (QStringList{"North gate", "Mark 2"})) << "in its place";
    Undo();
    EXPECT_NEAR(Set()->Marks()[0].longitude, 20.0, 0.2);
    Undo();
    Undo();
    EXPECT_EQ(Names(), QStringList{"Mark 1"});
    Redo();
    Redo();
    EXPECT_EQ(Names(), (QStringList{"North gate", "Mark 2"}));
    EXPECT_GT(reset.count(), 3);
    viewer->RemoveHanderAdapter(Set(), false);
    EXPECT_EQ(Set(), nullptr);
    Undo(); // of a set that is gone
}

TEST_F(Marks, RefuseWhatCannotBe)
{
    Place({{20.0, 10.0}, {24.0, 12.0}});
    const QVector<AxProjectMark> before = Set()->Marks();
    const int steps = viewer->GetUndoStack()->count();
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const auto edited = [&](const QString& name, double longitude, double latitude) {
        AxProjectMark mark = before[0];
        mark.name = name;
        mark.longitude = longitude;
        mark.latitude = latitude;
        return mark;
    };
    for (const AxProjectMark& mark :
         {edited("", 20, 10), edited("Mark 2", 20, 10), edited(QString(1000, 'x'), 20, 10),
          edited("A", nan, 10), edited("A", 20, 90.1), edited("A", 20, nan)}) {
        QString why;
        EXPECT_FALSE(Set()->EditMark(mark, &why)) << mark.name.left(20).toStdString();
        EXPECT_FALSE(why.isEmpty());
        EXPECT_TRUE(Set()->AddMark(mark.longitude, mark.latitude, mark.name).isEmpty());
    }
    EXPECT_EQ(Set()->Marks(), before);
    EXPECT_EQ(viewer->GetUndoStack()->count(), steps);
    EXPECT_EQ(
        Set()->AddMarks({edited("", nan, 0), edited("Mark 2", 21, 10), edited("", 22, 10)}, "Import").size(),
        2);
    EXPECT_EQ(Names(), (QStringList{"Mark 1", "Mark 2", "Mark 2 2", "Mark 3"}));

    // A project made elsewhere may have what nobody could type; it is kept until it is changed.
    QVector<AxProjectMark> odd{edited("", 20, 10), edited("Same", 21, 10), edited("Same", 22, 10)};
    odd[1].id = "b";
    odd[2].id = "c";
    Set()->SetMarks(odd);
    EXPECT_EQ(Set()->Marks(), odd);
    odd[2].description = "a note";
    EXPECT_TRUE(Set()->EditMark(odd[2]));
    Set()->SetMarkerPointName({"First", "First", "Third", "Fourth"});
    EXPECT_EQ(Names(), (QStringList{"First", "Same", "Third"}));
}

TEST_F(Marks, AreDraggedAndGivenBackByEscape)
{
    Place({{20.0, 10.0}});
    ASSERT_TRUE(waitFor([] { return Set()->SelectedMark() == ID(0); }));
    const auto drag = [](const QPoint& to) {
        const QPoint from = IconAt(0);
        Hover(from);
        QTest::mousePress(viewer->viewport(), Qt::LeftButton, {}, from);
        for (const QPoint& step : {from + (to - from) / 2, to})
            QTest::mouseMove(viewer->viewport(), step);
        return waitFor([] { return Set()->GetHandleOperation() == OperationMovePoint; }, 5000);
    };
    const osg::Vec2d target = osg::Vec2d(WindowOf(26.0, 12.0));
    const QPoint to(qRound(target.x()), qRound(target.y()) - markIcon.height() / 2);
    const AxProjectMark before = Set()->Marks()[0];
    ASSERT_TRUE(drag(to));
    PressKey(Qt::Key_Escape);
    EXPECT_EQ(Set()->GetHandleOperation(), OperationIdle);
    QTest::mouseRelease(viewer->viewport(), Qt::LeftButton, {}, to);
    QTest::qWait(0);
    EXPECT_EQ(Set()->Marks()[0].longitude, before.longitude);

    // One of a set that is not the current object.
    ASSERT_TRUE(Import("block", {{-10, 8}, {-8, 8}, {-8, 12}}));
    viewer->SetToolType(ToolSelect);
    viewer->SelectBlockID("block");
    ASSERT_TRUE(drag(to));
    ASSERT_TRUE(waitFor([] { return viewer->GetCurHandleAdapter() == Set(); }));
    PressKey(Qt::Key_Escape);
    EXPECT_EQ(Set()->GetHandleOperation(), OperationIdle);
    QTest::mouseRelease(viewer->viewport(), Qt::LeftButton, {}, to);
    QTest::qWait(0);
    EXPECT_EQ(Set()->Marks()[0].longitude, before.longitude);

    ASSERT_TRUE(drag(to));
    QTest::mouseRelease(viewer->viewport(), Qt::LeftButton, {}, to);
    ASSERT_TRUE(waitFor([&] { return Set()->Marks()[0].longitude > 25.0; }, 5000));
    EXPECT_NEAR(Set()->Marks()[0].longitude, 26.0, 0.3);
    EXPECT_NEAR(Set()->Marks()[0].latitude, 12.0, 0.3);
    EXPECT_EQ(Set()->Marks().size(), 1) << "a drag is no click";
    Undo();
    EXPECT_EQ(Set()->Marks()[0].longitude, before.longitude);
}

TEST_F(Marks, OpenTheirInformationByADoubleClick)
{
    Place({{20.0, 10.0}, {24.0, 12.0}});
    viewer->SetToolType(ToolNavigate);
    ModalBox box;
    QStringList faults;
    const auto write = [&faults](const QString& name, const QString& place, bool isTaken) {
        return [=, &faults](QDialog& dialog) {
            for (const auto& [object, text] : {std::pair("MarkName", name), std::pair("MarkPlace", place)}) {
                auto* line = dialog.findChild<QLineEdit*>(object);
                ASSERT_TRUE(line);
                line->selectAll();
                QTest::keyClick(line, Qt::Key_Delete);
                QTest::keyClicks(line, text);
            }
            dialog.findChild<QPlainTextEdit*>("MarkNote")->setPlainText("a\nb");
            dialog.findChild<QPlainTextEdit*>("MarkNote")->document()->setModified(true);
            ModalBox::Press("OK")(dialog);
            if (!isTaken)
                faults += dialog.findChild<QLabel*>("m_pLabError")->text();
        };
    };
    box.answers = {write("Mark 2", "10, 20", false), write("Gate", "10, 200 N", false),
                   write("Gate", "11, 21", true)};
    Hover(IconAt(0));
    const QPoint icon = IconAt(0);
    QTest::mouseDClick(viewer->viewport(), Qt::LeftButton, {}, icon);
    QTest::mouseRelease(viewer->viewport(), Qt::LeftButton, {}, icon);
    ASSERT_TRUE(waitFor([] { return Names().contains("Gate"); }, 5000));
    EXPECT_EQ(Heard().count("double click"), 1);
    ASSERT_EQ(faults.size(), 2);
    EXPECT_FALSE(faults[0].isEmpty() || faults[1].isEmpty() || faults[0] == faults[1]);
    EXPECT_DOUBLE_EQ(Set()->Marks()[0].latitude, 11.0);
    EXPECT_DOUBLE_EQ(Set()->Marks()[0].longitude, 21.0);
    EXPECT_EQ(Set()->Marks()[0].description, "a\nb");
    // Plain numbers are of the system that is chosen.
    ASSERT_TRUE(viewer->SetCoordSys("EPSG:32634"));
    box.answers = {write("Gate", "500000, 1200000", true)};
    Set()->ShowInformation(ID(0));
    viewer->SetCoordSys({});
    EXPECT_NEAR(Set()->Marks()[0].longitude, 21.0, 1e-6);
    EXPECT_NEAR(Set()->Marks()[0].latitude, 10.855, 0.01);
    box.answers = {ModalBox::Press("Delete mark")};
    Set()->ResponseDoubleClickOnPoint(0, osg::Vec3d());
    EXPECT_EQ(Names(), QStringList{"Mark 2"});
    box.answers = {[](QDialog&) { viewer->RemoveHanderAdapter(Set(), false); }, ModalBox::Press("OK")};
    Set()->ShowInformation(ID(0));
    EXPECT_EQ(Set(), nullptr) << "it went while its box was open";
}

TEST_F(Marks, KeysDeleteAndPutTheToolDown)
{
    auto* button = viewer->GetMapToolWidget()->findChild<QPushButton*>("m_pMarkerTools");
    button->click();
    Place({{20.0, 10.0}, {24.0, 12.0}});
    Hover(IconAt(1));
    ASSERT_TRUE(waitFor([] { return Set()->HoveredMark() == ID(1); }, 5000));
    PressKey(Qt::Key_Delete);
    EXPECT_EQ(Names(), QStringList{"Mark 1"});
    // Neither of a mouse that has left the map nor of one below which the map was turned.
    Set()->SelectMark({});
    Hover(IconAt(0));
    ASSERT_TRUE(waitFor([] { return Set()->HoveredMark() == ID(0); }, 5000));
    manipulator->setViewpoint(Straight(40.0, 10.0, 1.5e7));
    EXPECT_TRUE(waitFor([] { return Set()->HoveredMark().isEmpty(); }, 5000));
    manipulator->setViewpoint(Straight(20.0, 10.0, 1.5e7));
    ASSERT_TRUE(waitFor([] { return Set()->HoveredMark() == ID(0); }, 5000));
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(viewer, &leave);
    PressKey(Qt::Key_Delete);
    EXPECT_EQ(Names(), QStringList{"Mark 1"});
    PressKey(Qt::Key_Escape);
    EXPECT_EQ(viewer->GetToolType(), ToolNavigate);
    EXPECT_FALSE(button->isChecked());
    EXPECT_EQ(pickEnded, QList<EToolType>{ToolMarkPoint});
    EXPECT_EQ(Names(), QStringList{"Mark 1"});
    const QPointer<CAxHandleAdapter> block = DrawTriangle();
    ASSERT_TRUE(block);
    EXPECT_TRUE(Set()->SelectedMark().isEmpty()) << "a block is current";
    viewer->SetToolType(ToolPolygonBlock);
    Click(25.0, 5.0);
    Set()->SelectMark(ID(0));
    EXPECT_TRUE(Set()->SelectedMark().isEmpty()) << "in the middle of a drawing";
    PressKey(Qt::Key_Escape);
}

TEST_F(Marks, AreDrawnAndThePictureStandsStillAgain)
{
    CAxOsgDrawPointSet* set = CAxOsgDrawPointSet::OfViewer(viewer);
    ASSERT_TRUE(set);
    auto* geometry = dynamic_cast<AxMarkGeometry*>(set->GetFeatureNode()->getDrawable(0));
    ASSERT_TRUE(geometry);
    ASSERT_TRUE(WaitForPicture());
    const osg::Vec2f foot = WindowOf(20.0, 10.0);
    const auto pixel = [&] {
        return viewer->GetCurrViewerImg().pixel(qRound(foot.x()), qRound(foot.y()) - markIcon.height() / 2);
    };
    const QRgb ground = pixel();
    EXPECT_FALSE(set->AddMark(20.0, 10.0).isEmpty());
    EXPECT_FALSE(set->AddMark(-160.0, -10.0).isEmpty());
    ASSERT_TRUE(waitFor([&] { return geometry->Drawn().size() == 1; }, 5000)) << "one is behind the globe";
    EXPECT_TRUE(geometry->Drawn()[0].isIcon && geometry->Drawn()[0].label);
    EXPECT_TRUE(waitFor([&] { return pixel() != ground; }, 5000));
    ASSERT_TRUE(WaitForPicture());
    // Of one that the icon beside it leaves no room for, only the dot can be hit.
    const double perPixel = 1.0 / static_cast<double>(WindowOf(21.0, 10.0).x() - foot.x());
    const QString crowded = set->AddMark(20.0 + 12.0 * perPixel, 10.0);
    set->SelectMark(ID(0));
    ASSERT_TRUE(waitFor([&] { return geometry->Drawn().size() == 2; }, 5000));
    const QPoint at(qRound(foot.x()), qRound(foot.y()));
    for (const auto& [place, id] : {std::pair(at - QPoint(0, 20), ID(0)),
                                    {at - QPoint(-22, 20), QString()},
                                    {at + QPoint(15, 3), crowded}}) {
        Hover(at + QPoint(200, 100));
        ASSERT_TRUE(waitFor([&] { return set->HoveredMark().isEmpty(); }, 5000));
        Hover(place);
        ASSERT_TRUE(WaitForPicture());
        EXPECT_TRUE(waitFor([&, wanted = id] { return set->HoveredMark() == wanted; }, 2000));
    }
    set->SelectMark({});
    set->RemoveMarks({crowded});
    set->SetAdapterVisible(false, {});
    EXPECT_TRUE(waitFor([&] { return pixel() == ground; }, 5000));
}

TEST_F(Marks, HaveTheFinestGroundAlsoAfterUndoAndRedo)
{
    const QString id = CAxOsgDrawPointSet::OfViewer(viewer)->AddMark(-105.0, 37.37);
    const auto height = [&id] {
        const AxProjectMark* mark = Set()->Find(id);
        return mark ? mark->altitude : 0.0;
    };
    const double coarse = height();
    ASSERT_TRUE(waitFor([&] { return height() != coarse; }, 20000));
    const double found = height();
    Undo();
    EXPECT_EQ(Set()->Find(id), nullptr);
    Redo();
    EXPECT_TRUE(waitFor([&] { return height() == found; }, 20000));

    // As a project has them: the one was given its height, the other one has the ground's.
    QVector<AxProjectMark> marks = {*Set()->Find(id), *Set()->Find(id)};
    marks[0].altitude = marks[1].altitude = coarse;
    marks[1].id = QStringLiteral("given");
    marks[1].followsGround = false;
    Set()->SetMarks(marks);
    EXPECT_TRUE(waitFor([&] { return height() == found; }, 20000));
    EXPECT_EQ(Set()->Find(QStringLiteral("given"))->altitude, coarse);
}

TEST_F(Marks, AreSelectedBesideBlocksByCtrlAndByAFrame)
{
    ASSERT_TRUE(Import("block", {{17, 6}, {19, 6}, {19, 8}}));
    ASSERT_TRUE(Import("other", {{27, 6}, {29, 6}, {29, 8}}));
    CAxOsgDrawPointSet* set = CAxOsgDrawPointSet::OfViewer(viewer);
    for (const double longitude : {16.0, 20.0, 24.0, 28.0})
        set->AddMark(longitude, 11.0);
    const QStringList ids{ID(0), ID(1), ID(2), ID(3)};
    const auto selected = [set] {
        const QStringList all = set->SelectedMarks();
        return QSet<QString>(all.cbegin(), all.cend());
    };
    const auto click = [&](int index) {
        Hover(IconAt(index));
        ASSERT_TRUE(waitFor([&] { return set->HoveredMark() == ids[index]; }, 5000));
        QTest::mouseClick(viewer->viewport(), Qt::LeftButton, Qt::ControlModifier, IconAt(index));
    };
    ASSERT_TRUE(WaitForPicture());
    for (const EToolType tool : {ToolNavigate, ToolSelect}) {
        viewer->SetToolType(tool);
        viewer->SelectBlocks({"block", "other"});
        set->SelectMarks({});
        click(1);
        ASSERT_TRUE(waitFor([&] { return selected() == QSet<QString>{ids[1]}; }, 5000));
        click(2);
        ASSERT_TRUE(waitFor([&] { return selected() == QSet<QString>{ids[1], ids[2]}; }, 5000));
        click(1);
        ASSERT_TRUE(waitFor([&] { return selected() == QSet<QString>{ids[2]}; }, 5000));
        EXPECT_EQ(viewer->GetMultiSelectAdapter().size(), 2) << "the blocks stay selected, tool " << tool;
    }
    viewer->SelectBlockID("other");
    EXPECT_TRUE(selected().isEmpty());
    set->SelectMark(ids[0]);
    const auto frame = [&](Event::EventType type, double lng, double lat) {
        const osg::Vec2f place = WindowOf(lng, lat);
        const auto event =
            Make(type, place.x(), place.y(), type == Event::DRAG ? 0 : Event::LEFT_MOUSE_BUTTON);
        event->setButtonMask(type == Event::RELEASE ? 0 : Event::LEFT_MOUSE_BUTTON);
        event->setModKeyMask(Event::MODKEY_CTRL);
        Send(event);
    };
    frame(Event::PUSH, 18.5, 14.0);
    frame(Event::DRAG, 22.0, 9.0);
    frame(Event::RELEASE, 26.0, 7.0);
    EXPECT_EQ(selected(), (QSet<QString>{ids[0], ids[1], ids[2]}));
    EXPECT_EQ(viewer->GetCurHandleAdapter(), viewer->FindExistNode("block"));
    Hover({3, 3});
    ASSERT_TRUE(waitFor([&] { return set->HoveredMark().isEmpty(); }, 5000));
    PressKey(Qt::Key_Delete);
    EXPECT_EQ(Names(), QStringList{"Mark 4"});
    Undo();
    EXPECT_EQ(Names().size(), 4) << "they went in one step";
}
