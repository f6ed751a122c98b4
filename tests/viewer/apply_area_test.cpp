// The area of an application to fly in no-fly zones, and blocks that zones refuse.
// The zones of the test file: circles T1 around 60.2 E 45.3 N and T2 around 60.6 E
// 45.5 N, of 8 km each.
#include "LoopbackFormServer.h"
#include "SceneEvents.h"
#include "ShapeFixture.h"

#include "analysis/CAxAncillaryProcess.h"
#include "interaction/editing/CAxHandleAdapterEditor.h"
#include "interaction/objects/AxZonesUnder.h"
#include "interaction/objects/CAxApplyForProhibitedArea.h"

#include <AxBaseUI/CAxNoflyApplyUpload.h>
#include <AxBaseUI/CAxNoflyApplyWgt.h>

#include <QAction>
#include <QDateTimeEdit>
#include <QLineEdit>

namespace {
using Area = CAxApplyForProhibitedArea;
using Ids = QStringList;

const QList<QPointF> overT1{{60.0, 45.2}, {60.4, 45.2}, {60.4, 45.4}, {60.0, 45.4}};
const QList<QPointF> overNone{{60.8, 45.1}, {61.0, 45.1}, {61.0, 45.2}, {60.8, 45.2}};

void SendForm(const QDialog& form)
{
    form.findChild<QPushButton*>("m_pBtnOK")->click();
}
/// Fills the form in and sends it.
void FillIn(QDialog& form)
{
    const QList<QPair<const char*, const char*>> values{
        {"m_pName", "Ming"},   {"m_pPhone", "12345678"},    {"m_pEMail", "ming@survey.example"},
        {"m_pModel", "VTOL"},  {"m_pRegistration", "B-71"}, {"m_pPurpose", "Quarry"},
        {"m_pMaxHeight", "90"}};
    for (const auto& [name, value] : values)
        form.findChild<QLineEdit*>(name)->setText(value);
    form.findChild<QDateTimeEdit*>("m_pBegin")->setDateTime({QDate(2091, 3, 1), QTime(8, 0), Qt::UTC});
    form.findChild<QDateTimeEdit*>("m_pEnd")->setDateTime({QDate(2091, 3, 1), QTime(9, 0), Qt::UTC});
    SendForm(form);
}
void Leave(QDialog& box)
{
    box.reject();
}
} // namespace

class ApplyArea : public ShapeFixture
{
protected:
    void SetUp() override
    {
        ShapeFixture::SetUp();
        told.clear();
        QApplication::setDoubleClickInterval(0);
        telling = QObject::connect(viewer, &CAxEarthViewer::signalIntersection, viewer,
                                   [this](const QString& id, const Ids& zones) {
                                       told += {id, zones};
                                   });
        manipulator->setViewpoint(Straight(60.4, 45.4, 3e5));
        ASSERT_TRUE(WaitForPicture());
    }
    void TearDown() override
    {
        QObject::disconnect(telling);
        QApplication::setDoubleClickInterval(doubleClickInterval);
        CAxNoflyApplyUpload::SetUploadUrl(QUrl());
        CAxNoflyApplyWgt::ForgetInput();
        viewer->GetAncillaryProcess()->FlashZones({});
        ShapeFixture::TearDown();
    }

    Area* ImportArea(const QList<QPointF>& ring)
    {
        CAxBlockManager::instance().AddBlock("area", CAxBlock::ProhibitedAreaBlock)->SetAnchor(ring);
        return qobject_cast<Area*>(viewer->ImportShapeNode("area"));
    }
    static Ids Recorded() { return CAxBlockManager::instance().GetBlock("area")->GetIntersections(); }
    static bool IsFlashing() { return findNode(viewer->GetDrawNodeGroup(), "ZoneFlash") != nullptr; }

    QList<QPair<QString, Ids>> told;

private:
    const int doubleClickInterval = QApplication::doubleClickInterval();
    QMetaObject::Connection telling;
};

TEST_F(ApplyArea, IsTestedOnlyAsARectangle)
{
    struct Row
    {
        const char* what;
        std::vector<osg::Vec3d> corners;
        int verdict;
    };
    const osg::Vec3d a(60.0, 45.2, 0.0), b(60.4, 45.2, 0.0), c(60.4, 45.4, 0.0), d(60.0, 45.4, 0.0);
    const std::vector<Row> rows{
        {"nothing", {}, -2},
        {"three corners", {a, b, c}, -2},
        {"one meridian", {a, a, {60.0 + 9e-9, 45.4, 0.0}, d}, 0},
        {"one meridian, counted from both sides", {{180, 1, 0}, a, {-180, 2, 0}, d}, 0},
        {"one parallel", {a, b, {60.4, 45.2 - 9e-9, 0.0}, d}, 0},
        {"no number", {a, b, {qQNaN(), 45.4, 0.0}, d}, 0},
        {"just wide enough", {a, b, {60.0 + 2e-8, 45.4, 0.0}, d}, 1},
        {"a rectangle", {a, b, c, d}, 1},
    };
    Area area(viewer, nullptr);
    Area lonely(nullptr, nullptr);
    for (const Row& row : rows) {
        SCOPED_TRACE(row.what);
        told.clear();
        area.GetAnchor() = row.corners;
        EXPECT_EQ(area.CheckGeometry(), row.verdict);
        EXPECT_EQ(told.size(), row.verdict == 1 ? 1 : 0);
        lonely.GetAnchor() = row.corners;
        EXPECT_EQ(lonely.CheckGeometry(), -1);
    }
    EXPECT_EQ(told, (QList<QPair<QString, Ids>>{{area.GetHandleID(), Ids{"T1"}}}));
    EXPECT_EQ(area.GetZones(), Ids{"T1"});
    area.ClearPoints();
}

TEST_F(ApplyArea, KnowsItsZonesAfterEachChange)
{
    Area* area = ImportArea(overT1);
    ASSERT_NE(area, nullptr);
    const auto expect = [&](const Ids& zones, const char* when) {
        SCOPED_TRACE(when);
        EXPECT_EQ(area->GetZones(), zones);
        EXPECT_EQ(Recorded(), zones);
        ASSERT_FALSE(told.isEmpty());
        EXPECT_EQ(told.last(), qMakePair(QString("area"), zones));
        told.clear();
    };
    expect({"T1"}, "imported");
    area->slotPointMoved(60.7, 45.6, 0.0, 2);
    EXPECT_TRUE(told.isEmpty()) << "the drag goes on";
    area->slotMouseRelease(osg::Vec3d(), osg::Vec3d());
    expect({"T1", "T2"}, "a corner dragged");
    for (osg::Vec3d& corner : area->GetAnchor())
        corner.x() += 5.0;
    area->slotHandleMoved(5.0, 0.0, 0.0);
    area->slotMouseRelease(osg::Vec3d(), osg::Vec3d());
    expect({}, "moved away");
    viewer->GetUndoAction()->trigger();
    expect({"T1", "T2"}, "the move undone");

    // Without extent it silently goes back.
    ModalBox none;
    const QList<QPointF> before = Ring(area);
    area->slotPointMoved(60.7, 45.2, 0.0, 2);
    area->slotMouseRelease(osg::Vec3d(), osg::Vec3d());
    EXPECT_EQ(Ring(area), before);
    expect({"T1", "T2"}, "an edit refused");
    EXPECT_EQ(none.count, 0);
}

TEST_F(ApplyArea, IsDrawnOverZonesAndItsFormComesBackUntilItIsSent)
{
    LoopbackFormServer server;
    server.answer = LoopbackFormServer::reply("503 Busy", "text/plain", "later");
    CAxNoflyApplyUpload::SetUploadUrl(server.url());
    QStringList purposes;
    ModalBox box;
    box.answers = {&FillIn,
                   [&](QDialog& upload) {
                       // The failure shows, and the operator goes back to the form.
                       EXPECT_TRUE(waitFor([&] { return server.bodies.size() == 1; }));
                       server.answer = LoopbackFormServer::reply("201 Created", "text/plain", "4711");
                       upload.reject();
                   },
                   [&](QDialog& form) {
                       purposes += form.findChild<QLineEdit*>("m_pPurpose")->text();
                       SendForm(form);
                   },
                   [](QDialog& upload) {
                       EXPECT_TRUE(waitFor([&] { return !upload.isVisible(); })) << "it ends by itself";
                   }};
    viewer->SetToolType(ToolProhibitedArea);
    Click(60.0, 45.2);
    EXPECT_TRUE(told.isEmpty());
    DoubleClickAt(60.4, 45.4);
    auto* area = qobject_cast<Area*>(viewer->GetCurHandleAdapter());
    ASSERT_NE(area, nullptr);
    const QString id = area->GetHandleID();
    EXPECT_EQ(ended, (QList<QPair<QString, bool>>{{id, true}}));
    EXPECT_EQ(area->GetBlockType(), CAxBlock::ProhibitedAreaBlock);
    EXPECT_EQ(area->GetContainedBlock()->GetBlockType(), CAxBlock::ProhibitedAreaBlock);
    EXPECT_EQ(area->GetContainedBlock()->GetIntersections(), Ids{"T1"});
    EXPECT_EQ(box.count, 0) << "the form waits until the mouse is through";

    ASSERT_TRUE(waitFor([&] { return server.bodies.size() == 2 && !QApplication::activeModalWidget(); }));
    EXPECT_EQ(purposes, QStringList{"Quarry"}) << "what was typed is there still";
    EXPECT_TRUE(server.bodies[0].contains(id.toUtf8()));
    EXPECT_TRUE(box.answers.isEmpty());
    EXPECT_TRUE(box.texts.contains("The application was sent."));
    EXPECT_TRUE(box.texts.contains("4711")) << "the operator reads what the server answered";
}

TEST_F(ApplyArea, AppliesOnceAtATimeAndOnlyForZones)
{
    Area* area = ImportArea(overNone);
    {
        ModalBox box;
        area->ResponseDoubleClickOnBlock();
        EXPECT_EQ(box.titles, QStringList{"Application Information"});
        EXPECT_TRUE(box.texts.contains("The block does not require an application."));
        EXPECT_EQ(box.buttons.size(), 1);
    }
    viewer->RemoveHanderAdapter("area", true);
    area = ImportArea(overT1);
    ModalBox box;
    box.answers = {[&](QDialog& form) {
        area->Apply();
        EXPECT_EQ(QApplication::activeModalWidget(), &form) << "one form is enough";
        form.reject();
    }};
    area->Apply();
    // The form of a deleted block closes, and the object is gone after it.
    const QPointer<Area> alive(area);
    box.answers = {[&](QDialog&) { viewer->RemoveHanderAdapter("area", true); }};
    area->Apply();
    EXPECT_TRUE(waitFor([&] { return !alive; }));
    EXPECT_EQ(box.count, 2);
    EXPECT_EQ(CAxBlockManager::instance().GetBlock("area"), nullptr);
}

TEST_F(ApplyArea, AFormWaitsForAnotherBoxAndDoesNotComeForAnObjectThatIsGone)
{
    viewer->SetToolType(ToolProhibitedArea);
    Click(60.0, 45.2);
    Click(60.4, 45.4);
    QPointer<CAxHandleAdapter> area = viewer->GetCurHandleAdapter();
    ASSERT_TRUE(area);
    QDialog other;
    other.setModal(true);
    other.show();
    ASSERT_TRUE(waitFor([&] { return QApplication::activeModalWidget() == &other; }));
    ASSERT_TRUE(waitFrames(4));
    EXPECT_EQ(QApplication::activeModalWidget(), &other);
    ModalBox box;
    box.answers = {&Leave, &Leave};
    EXPECT_TRUE(waitFor([&] { return box.count == 2; }));
    EXPECT_EQ(ended.size(), 1);

    viewer->SetToolType(ToolNavigate);
    viewer->SetToolType(ToolProhibitedArea);
    Click(60.0, 45.2);
    Click(60.4, 45.4);
    viewer->RemoveHanderAdapter(viewer->GetCurHandleAdapter(), true);
    ASSERT_TRUE(waitFrames(4));
    EXPECT_EQ(box.count, 2);
}

TEST_F(ApplyArea, BlocksOverAZoneAreRefusedByNameWhileItBlinks)
{
    bool wasFlashing = false;
    const auto refuse = [&](const std::function<void()>& act, const QString& details) {
        viewer->GetAncillaryProcess()->FlashZones({});
        EXPECT_FALSE(IsFlashing());
        wasFlashing = false;
        ModalBox box;
        box.answers = {[&](QDialog& shown) {
            wasFlashing = IsFlashing();
            ModalBox::Press("OK")(shown);
        }};
        act();
        EXPECT_EQ(box.titles, QStringList{"Block Information"});
        EXPECT_TRUE(box.texts.contains("The current measurement area contains information no-fly area."));
        EXPECT_TRUE(box.texts.contains(details)) << box.texts.join("|").toStdString();
        EXPECT_TRUE(wasFlashing);
    };
    refuse(
        [&] {
            EXPECT_EQ(DrawPolygon({{60.1, 45.2}, {60.3, 45.2}, {60.2, 45.4}}), nullptr);
        },
        "No-fly zones: T1");
    EXPECT_EQ(ended, (QList<QPair<QString, bool>>{{QString(), true}}));
    EXPECT_TRUE(CAxBlockManager::instance().GetBlockList().isEmpty());

    CAxOsgDrawRectange rectangle(viewer, nullptr);
    rectangle.GetAnchor() = {{60.0, 45.2, 0.0}, {60.7, 45.2, 0.0}, {60.7, 45.6, 0.0}, {60.0, 45.6, 0.0}};
    refuse([&] { EXPECT_EQ(rectangle.CheckGeometry(), -2); }, "No-fly zones: T1, T2");
    rectangle.ClearPoints();
}

TEST_F(ApplyArea, ZonesOfARingAcrossTheAntimeridianAreNotThoseOfAllTheWorld)
{
    EXPECT_EQ(AxZonesUnder(*viewer, {{60.0, 45.2, 0}, {60.4, 45.2, 0}, {60.4, 45.4, 0}}), Ids{"T1"});
    EXPECT_EQ(AxZonesUnder(*viewer, {{179.0, 45.2, 0}, {-179.0, 45.2, 0}, {-179.0, 45.4, 0}}), Ids());
    EXPECT_EQ(AxZonesUnder(*viewer, {}), Ids());
    EXPECT_EQ(AxZonesUnder(*viewer, {{60.0, 45.2, 0}, {qQNaN(), 45.2, 0}, {60.4, 45.4, 0}}), Ids());

    Ids many;
    for (int i = 1; i <= 23; ++i)
        many += QString::number(i);
    EXPECT_TRUE(AxZoneDetails(many.mid(0, 20)).endsWith(", 19, 20"));
    EXPECT_TRUE(AxZoneDetails(many).endsWith(", 19, 20 and 3 more"));
}
