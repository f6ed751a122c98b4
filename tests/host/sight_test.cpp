// Lines of sight and viewsheds beside the map: what a project keeps of them, and what ends them.
#include "analysis/AxSightAnalysis.h"
#include "host/sight/SightKept.h"
#include "host/sight/SightPanel.h"
#include "SuiteViewer.h"

#include <QApplication>
#include <QSignalSpy>
#include <QTreeWidget>

class Sight : public SuiteViewer
{
protected:
    static AxSightAnalysis& Analysis() { return *viewer->GetSightAnalysis(); }
    static bool WaitForResults(int count)
    {
        return QTest::qWaitFor(
            [=] { return Analysis().GetResults().size() == count && !Analysis().IsBusy(); }, 60000);
    }
    static AxViewshedQuestion Around(double radius)
    {
        AxViewshedQuestion question;
        question.observer = {-105.0, 37.4};
        question.radius = radius;
        question.cell = radius / 500.0;
        return question;
    }
};

TEST_F(Sight, QuestionsGoWithTheProjectAndAreAskedAgain)
{
    SightPanel panel(viewer);
    SightKept& kept = *panel.Kept();
    auto* list = panel.findChild<QTreeWidget*>();
    ASSERT_TRUE(Analysis().LookAlong({{-105.0, 37.4}, 12.5}, {{-104.9, 37.3}, 0.1}));
    ASSERT_TRUE(WaitForResults(1));
    ASSERT_TRUE(Analysis().LookAround(Around(3000.0)));
    ASSERT_TRUE(WaitForResults(2));
    Analysis().SetVisible(Analysis().GetResults()[0].number, false);
    const QString text = kept.Text();
    const double needed = Analysis().GetResults()[0].line->neededAboveGround;

    kept.SetText(QString());
    EXPECT_TRUE(Analysis().GetResults().isEmpty());
    EXPECT_EQ(kept.Text(), QString());
    kept.SetText(text);
    EXPECT_EQ(kept.Text(), text) << "opening changes nothing, whatever is found yet";
    ASSERT_TRUE(Analysis().LookAround(Around(2000.0))) << "the pilot's own, in between";
    ASSERT_TRUE(WaitForResults(3));
    EXPECT_EQ(list->topLevelItemCount(), 3);
    for (const AxSightResult& one : Analysis().GetResults())
        if (one.viewshed && one.viewshed->question.radius == 2000.0)
            Analysis().Remove(one.number);
    EXPECT_EQ(kept.Text(), text);
    EXPECT_EQ(Analysis().GetResults()[0].line->neededAboveGround, needed);
    EXPECT_FALSE(Analysis().GetResults()[0].isVisible);

    QSignalSpy told(&kept, &SightKept::Unread);
    for (const char* wrong :
         {"no list", R"([{"from": [1, 2]}])", R"([{"observer": [1, 2, 3], "radius": "x"}])"}) {
        told.clear();
        kept.SetText(QString::fromUtf8(wrong));
        EXPECT_EQ(told.count(), 1) << wrong;
        EXPECT_TRUE(kept.GetWaiting().isEmpty()) << wrong;
    }
    kept.SetText(QString());
}

TEST_F(Sight, EscapeCallsOffAndTheProjectKeepsTheQuestion)
{
    SightPanel panel(viewer);
    SightKept& kept = *panel.Kept();
    auto* list = panel.findChild<QTreeWidget*>();
    panel.show();
    QApplication::setActiveWindow(&panel);
    list->setFocus();
    ASSERT_EQ(QApplication::focusWidget(), list);
    const QString text =
        QStringLiteral(R"([{"cell":50,"observer":[-105,37.4,2],"radius":50000,"refraction":0.13,)"
                       R"("target":0}])");
    kept.SetText(text);
    ASSERT_TRUE(Analysis().IsBusy());
    QTest::keyClick(list, Qt::Key_Escape);
    EXPECT_FALSE(Analysis().IsBusy());
    ASSERT_TRUE(QTest::qWaitFor(
        [&] { return kept.GetWaiting().size() == 1 && !kept.GetWaiting()[0].reason.isEmpty(); }));
    EXPECT_EQ(kept.Text(), text);
    ASSERT_EQ(list->topLevelItemCount(), 1);
    kept.LookAgain(kept.GetWaiting()[0].id);
    EXPECT_TRUE(Analysis().IsBusy());
    kept.Remove(kept.GetWaiting()[0].id);
    EXPECT_FALSE(Analysis().IsBusy());
    EXPECT_EQ(kept.Text(), QString());
    EXPECT_EQ(list->topLevelItemCount(), 0);
}
