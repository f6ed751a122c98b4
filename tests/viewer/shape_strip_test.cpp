// Strip blocks: drawn, their band and their form, edited, undone.
#include "ShapeFixture.h"

#include "analysis/CAxAncillaryProcess.h"
#include "interaction/editing/CAxHandleAdapterEditor.h"
#include "interaction/objects/AxStripShape.h"
#include "interaction/objects/CAxOsgDrawLine.h"

#include <AxAlgorthm/AxCoordinate.h>
#include <AxAlgorthm/AxUnits.h>

class Strip : public ShapeFixture
{
protected:
    // On the plain beside the zone T3, whose northern edge is at 46.1 degrees.
    static inline const QList<QPointF> besideZone{{60.9, 46.105}, {61.0, 46.105}, {61.1, 46.106}};

    static CAxOsgDrawLine* ImportStrip(const QList<QPointF>& line, double left = 3.0, double right = 3.0)
    {
        CAxBlock* block = CAxBlockManager::instance().AddBlock("strip", CAxBlock::StripBlock);
        block->SetAnchor(line);
        block->SetBlockName("Road");
        block->GetTaskPara()->SetBandingOffset(left, right);
        return qobject_cast<CAxOsgDrawLine*>(viewer->ImportShapeNode("strip"));
    }
    static QPair<double, double> Widths(const CAxHandleAdapter* strip)
    {
        QPair<double, double> widths;
        strip->GetContainedBlock()->GetTaskPara()->GetBandingOffset(widths.first, widths.second);
        return widths;
    }
    /// Square kilometres.
    static double AreaOf(const std::vector<osg::Vec3d>& ring)
    {
        std::vector<CAxPoint2D> points;
        for (const osg::Vec3d& point : ring)
            points.emplace_back(point.x(), point.y());
        return GeodesicRingArea(points) * 1e-6;
    }
    static void Pick(CAxHandleAdapter* strip, double lng, double lat)
    {
        const osg::Vec3d place(lng, lat, 0.0);
        strip->slotPicked(place, osg::Vec3d(6378137.0, 0.0, 0.0));
    }
    static std::size_t Features(const CAxHandleAdapter* strip)
    {
        std::size_t count = 0;
        for (unsigned i = 0; i < strip->GetFeatureNode()->getNumDrawables(); ++i)
            count += strip->GetFeatureNode()->getDrawable(i)->getName() == "Feature" ? 1 : 0;
        return count;
    }
};

TEST_F(Strip, IsDrawnByClicksAndItsFormEndsTheDrawing)
{
    viewer->SetToolType(ToolStripBlock);
    Click(18.0, 8.0);
    QPointer<CAxOsgDrawLine> strip = qobject_cast<CAxOsgDrawLine*>(viewer->GetCurHandleAdapter());
    ASSERT_TRUE(strip);
    MoveTo(20.0, 9.0);
    EXPECT_FALSE(CursorText().empty());
    Click(20.0, 9.0);
    EXPECT_EQ(Features(strip), 2u) << "band and line";
    ModalBox box;
    QStringList rows;
    box.answers = {[&](QDialog& page) {
        for (const QLabel* label : page.findChildren<QLabel*>())
            rows += label->text();
        ModalBox::Fill({"Road 7", "4000", "0"})(page);
    }};
    DoubleClickAt(22.0, 8.0);

    EXPECT_EQ(box.titles, QStringList{"Strip survey area"});
    for (const char* row : {"Name:", "Total Length(km):", "Width1(m):", "Width2(m):"})
        EXPECT_TRUE(rows.contains(row)) << row;
    ASSERT_TRUE(strip);
    EXPECT_EQ(ended, (QList<QPair<QString, bool>>{{strip->GetHandleID(), true}}));
    EXPECT_EQ(pickEnded, QList<EToolType>{ToolStripBlock});
    EXPECT_EQ(strip->GetContainedBlock()->GetBlockName(), "Road 7");
    EXPECT_EQ(strip->GetContainedBlock()->GetBlockType(), CAxBlock::StripBlock);
    EXPECT_EQ(Ring(strip).size(), 3);
    EXPECT_EQ(Widths(strip), qMakePair(4000.0, 0.0));
    EXPECT_EQ(strip->GetAnchorEditor()->GetDraggerList().size(), 3u) << "of the line, not of the band";
    const double length = AxStripShape::Length(strip->GetAnchor()) * 1e-3;
    EXPECT_NEAR(AreaOf(strip->Outline()), length * 4.0, 0.01 * length * 4.0);
    // The name stands on the line, half-way along it.
    EXPECT_NEAR(strip->GetNameLabel()->getPosition().x(), 20.0, 0.05);
    EXPECT_NEAR(strip->GetNameLabel()->getPosition().y(), 9.0, 0.05);
}

TEST_F(Strip, FormRefusesWrongWidthsAndTheOperatorMayLeaveIt)
{
    struct Row
    {
        QStringList widths;
        const char* message; ///< null: they are taken
        int marked = 0;      ///< of the two fields
    };
    const char* const wrong = "Survey area parameter is not correct.";
    const char* const negative = "The width parameter must be greater than 0.";
    const char* const narrow = "The total width parameter must be greater than 3.";
    const std::vector<Row> rows{
        {{"", "5"}, wrong},      {{"abc", "5"}, wrong},        {{"3,5", "5"}, wrong},
        {{"nan", "5"}, wrong},   {{"1e308", "5"}, wrong},      {{"1e7", "5"}, wrong},
        {{"-1", "5"}, negative}, {{"5", "-0.1"}, negative, 1}, {{"1.0", "1.9"}, narrow},
        {{"5", ""}, wrong, 1},   {{"5", "1e7"}, wrong, 1},     {{"0", "2.999"}, narrow},
        {{"0", "3.0"}, nullptr}, {{" 1.5 ", "1.5"}, nullptr},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.widths.join(" and ").toStdString());
        ended.clear();
        viewer->SetToolType(ToolStripBlock);
        Click(18.0, 8.0);
        const QPointer<CAxHandleAdapter> strip = viewer->GetCurHandleAdapter();
        QStringList told;
        const auto read = [&](QDialog& notice) {
            for (const QLabel* label : notice.findChildren<QLabel*>())
                told += label->text();
            ModalBox::Press("OK")(notice);
        };
        ModalBox box;
        box.answers = {ModalBox::Fill(QStringList{"A"} + row.widths)};
        if (row.message) // the form is open again, with what was typed, and is left
            box.answers += {read, [&](QDialog& page) {
                                const auto* field = page.findChild<QLineEdit*>(
                                    row.marked == 0 ? "m_pListElement0" : "m_pListElement1");
                                EXPECT_EQ(page.focusWidget(), field);
                                EXPECT_EQ(field->text(), row.widths[row.marked]);
                                page.reject();
                            }};
        DoubleClickAt(22.0, 8.0);
        viewer->SetToolType(ToolNavigate);
        EXPECT_TRUE(box.answers.isEmpty());
        EXPECT_EQ(ended.size(), 1);
        if (!row.message) {
            ASSERT_TRUE(strip);
            viewer->RemoveHanderAdapter(strip->GetHandleID(), true);
            continue;
        }
        EXPECT_TRUE(told.contains(row.message)) << told.join('|').toStdString();
        EXPECT_TRUE(waitFor([&] { return !strip; })) << "who leaves the form does not want the strip";
        EXPECT_TRUE(CAxBlockManager::instance().GetBlockList().isEmpty());
    }
    // ... unless they think better of it. Those that were drawn and are gone are no steps any more.
    for (int i = 0; i < 3; ++i)
        viewer->GetUndoStack()->undo();
    ASSERT_NE(viewer->GetCurHandleAdapter(), nullptr);
    EXPECT_EQ(viewer->GetCurHandleAdapter()->GetAnchor().size(), 2u);
    EXPECT_EQ(viewer->GetCurHandleAdapter()->GetHandleOperation(), OperationDrawing);
    PressKey(Qt::Key_Escape);
}

TEST_F(Strip, LegsAreFiftyMetresAtLeast)
{
    constexpr double degreesPerMetre = 180.0 / (6378137.0 * 3.14159265358979);
    viewer->SetToolType(ToolStripBlock);
    Click(18.0, 8.0);
    CAxHandleAdapter* strip = viewer->GetCurHandleAdapter();
    ASSERT_NE(strip, nullptr);
    const osg::Vec3d first = strip->GetAnchor().front();
    ModalBox box;
    Pick(strip, first.x(), first.y() + 49.0 * degreesPerMetre);
    EXPECT_EQ(box.titles, QStringList{"Block Information"});
    EXPECT_TRUE(box.texts.contains("The distance is less than 50 meters!"));
    EXPECT_EQ(strip->GetAnchor().size(), 1u);
    Pick(strip, first.x(), first.y()); // a double click on the last vertex begins so
    Pick(strip, first.x(), first.y() + 51.0 * degreesPerMetre);
    EXPECT_EQ(box.count, 1);
    EXPECT_EQ(strip->GetAnchor().size(), 2u);
    PressKey(Qt::Key_Escape);
    viewer->SetToolType(ToolNavigate);

    // A drag that makes a short leg is taken back.
    CAxOsgDrawLine* road = ImportStrip({{18, 8}, {18.01, 8}, {18.02, 8}});
    ASSERT_NE(road, nullptr);
    road->GetAnchor()[1].set(18.0004, 8.0, 0.0);
    road->slotPointMoved(18.0004, 8.0, 0.0, 1);
    road->EndDrag({}, {});
    EXPECT_EQ(box.count, 2);
    EXPECT_EQ(Ring(road)[1], QPointF(18.01, 8));
    EXPECT_EQ(road->GetAnchor()[1].x(), 18.01);
    viewer->RemoveHanderAdapter(road, true);

    // So is one beside a leg that was short before, of a line from elsewhere; its other vertices can be
    // moved.
    road = ImportStrip({{18, 8}, {18.0002, 8}, {18.01, 8}, {18.02, 8}});
    ASSERT_NE(road, nullptr);
    const struct
    {
        int vertex;
        double lat;
        double left;
    } drags[] = {{1, 8.0001, 8.0}, {3, 8.0001, 8.0001}, {1, 8.001, 8.001}};
    for (const auto& drag : drags) {
        osg::Vec3d& vertex = road->GetAnchor()[static_cast<std::size_t>(drag.vertex)];
        vertex.y() = drag.lat;
        road->slotPointMoved(vertex.x(), drag.lat, 0.0, drag.vertex);
        road->EndDrag({}, {});
        EXPECT_EQ(Ring(road)[drag.vertex].y(), drag.left) << drag.vertex << " to " << drag.lat;
    }
    EXPECT_EQ(box.count, 3);
}

TEST_F(Strip, ATypedVertexMakesNoShortLeg)
{
    CAxOsgDrawLine* road = ImportStrip({{18, 8}, {18.01, 8}, {18.02, 8}});
    ASSERT_NE(road, nullptr);
    ModalBox box;
    box.answers = {ModalBox::Fill({"8", "18.0004"}), ModalBox::Press("OK"),
                   [](QDialog& vertex) { vertex.close(); }};
    road->ResponseDoubleClickOnPoint(1, osg::Vec3d());
    EXPECT_EQ(box.titles, (QStringList{"Vertex", "Block Information", "Vertex"})) << "what was typed stays";
    EXPECT_EQ(Ring(road)[1], QPointF(18.01, 8));
}

TEST_F(Strip, FormFollowsTheUnitsAndShowsOnlyWhatIsLocked)
{
    CAxOsgDrawLine* strip = ImportStrip({{18, 8}, {18.1, 8}}, 1.0 / 3.0, 30.48);
    ASSERT_NE(strip, nullptr);
    AxUnits::Set(AxUnits::System::Imperial);
    QStringList shown;
    QList<bool> areReadOnly;
    const auto look = [&](QDialog& form) {
        for (const QLabel* label : form.findChildren<QLabel*>())
            shown += label->text();
        for (const QLineEdit* line : form.findChildren<QLineEdit*>()) {
            shown += line->text();
            areReadOnly += line->isReadOnly();
        }
    };
    ModalBox box;
    box.answers = {[&](QDialog& form) {
                       look(form);
                       ModalBox::Fill({"Road", "1.09", "50"})(form);
                   },
                   ModalBox::Press("OK")};
    strip->ResponseDoubleClickOnBlock();
    AxUnits::Set(AxUnits::System::Metric);
    for (const char* text : {"Width1(ft):", "Width2(ft):", "Total Length(mi):", "1.09", "100"})
        EXPECT_TRUE(shown.contains(text)) << text;
    EXPECT_EQ(areReadOnly, (QList<bool>{false, true, false, false}));
    EXPECT_EQ(Widths(strip).first, 1.0 / 3.0) << "what was not changed is not rounded";
    EXPECT_DOUBLE_EQ(Widths(strip).second, 15.24);

    viewer->slotBlockLock("strip", true);
    areReadOnly.clear();
    box.titles.clear();
    box.answers = {[&](QDialog& form) {
                       look(form);
                       // As of one that was locked while the form was open.
                       form.findChild<QLineEdit*>("m_pListElement0")->setText("9");
                       form.accept();
                   },
                   ModalBox::Press("OK"), [](QDialog& form) { form.reject(); }};
    strip->ResponseDoubleClickOnBlock();
    EXPECT_EQ(areReadOnly, (QList<bool>{false, true, true, true}));
    EXPECT_EQ(box.titles, (QStringList{"Strip survey area", "Block Information", "Strip survey area"}));
    EXPECT_DOUBLE_EQ(Widths(strip).second, 15.24);
}

TEST_F(Strip, WidthsAreChangedByTheFormAndUndone)
{
    CAxOsgDrawLine* strip = ImportStrip(besideZone, 20.0, 30.0);
    ASSERT_NE(strip, nullptr);
    EXPECT_EQ(strip->GetWidth1(), 20.0) << "of the record";
    EXPECT_TRUE(strip->Fault().isEmpty()) << strip->Fault().toStdString();
    EXPECT_LT(strip->GetGravityLatLng().x(), 46.106);
    const auto open = [&](const QList<ModalBox::Answer>& answers) {
        ModalBox box;
        box.answers = answers;
        strip->ResponseDoubleClickOnBlock();
        EXPECT_TRUE(box.answers.isEmpty());
        return box.titles;
    };
    EXPECT_EQ(open({ModalBox::Fill({"Road", "100", "200"}), ModalBox::Press("Cancel")}),
              (QStringList{"Strip survey area", "Change para"}));
    EXPECT_EQ(Widths(strip), qMakePair(20.0, 30.0));
    open({ModalBox::Fill({"Lane", "100", "200"}), ModalBox::Press("OK"), ModalBox::Press("OK")});
    EXPECT_EQ(strip->GetContainedBlock()->GetBlockName(), "Lane");
    EXPECT_EQ(Widths(strip), qMakePair(100.0, 200.0));
    const double wide = AreaOf(strip->Outline());
    EXPECT_NEAR(wide, 0.3 * AxStripShape::Length(strip->GetAnchor()) * 1e-3, 0.02 * wide);
    // The band, not the line, is what zones refuse.
    EXPECT_EQ(
        open({ModalBox::Fill({"Lane", "100", "900"}), ModalBox::Press("OK"), ModalBox::Press("Cancel")}),
        (QStringList{"Strip survey area", "Block Information", "Strip survey area"}));
    viewer->GetAncillaryProcess()->FlashZones({});
    strip->SetWidth(-1.0, 5.0);
    EXPECT_EQ(Widths(strip), qMakePair(100.0, 200.0));

    // Handles around it follow its widths.
    AxEditAids aids;
    aids.rimHandles = true;
    viewer->SetEditAids(aids);
    strip->SetAnchorEditorEnabled(true);
    const auto southOfIt = [&] { return strip->GetAnchorEditor()->GetDraggerList()[3]->GetPlace().y(); };
    const double south = southOfIt();
    viewer->GetUndoStack()->undo(); // the name
    viewer->GetUndoStack()->undo();
    EXPECT_GT(southOfIt(), south + 0.001);
    viewer->GetUndoStack()->redo();
    viewer->GetUndoStack()->redo();
    strip->SetWidth(20.0, 30.0);
    EXPECT_GT(southOfIt(), south + 0.001);
    viewer->GetUndoStack()->undo(); // the name
    viewer->GetUndoStack()->undo();
    EXPECT_EQ(Widths(strip), qMakePair(20.0, 30.0));
    EXPECT_NEAR(AreaOf(strip->Outline()), wide / 6.0, 0.01 * wide);
    viewer->GetUndoStack()->redo();
    EXPECT_EQ(strip->GetWidth2(), 200.0);

    ModalBox box;
    EXPECT_TRUE(strip->DeleteVertex(1));
    box.answers = {ModalBox::Press("Delete"), ModalBox::Press("OK"), ModalBox::Press("OK")};
    strip->ResponseDoubleClickOnPoint(0, osg::Vec3d());
    EXPECT_TRUE(box.texts.contains("The strip block anchor must be not less than 2."));
    EXPECT_FALSE(strip->DeleteVertex(0));
    EXPECT_TRUE(box.texts.contains("Parameter of block is wrong."));
    EXPECT_EQ(Ring(strip).size(), 2);
}

TEST_F(Strip, BandGoesOverTheAntimeridian)
{
    const std::vector<osg::Vec3d> band = AxStripShape::Band({{179.99, 10, 7}, {-179.99, 10, 9}}, 100.0, 50.0);
    ASSERT_EQ(band.size(), 4u);
    EXPECT_NEAR(AreaOf(band), 2.1924 * 0.15, 0.001);
    EXPECT_EQ(band[0].z(), 7.0);
    EXPECT_EQ(band[1].z(), 9.0);
    EXPECT_TRUE(AxStripShape::Band({{0, 86, 0}, {1, 86, 0}}, 9.0, 9.0).empty()) << "UTM ends before";
}
