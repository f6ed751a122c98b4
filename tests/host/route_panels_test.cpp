// What the host shows of a planned route beside the map: its height profile and its coverage.
#include "host/tasks/CoveragePanel.h"
#include "host/tasks/ProfileLine.h"
#include "host/tasks/ProfilePanel.h"
#include "host/tasks/TaskFigures.h"
#include "SuiteViewer.h"

#include <AxData/CAxBlockManager.h>
#include <AxData/planner/AxPlanner.h>

#include <QCheckBox>
#include <QCursor>
#include <QLabel>
#include <QMouseEvent>
#include <QPushButton>
#include <QSignalSpy>

#include <cmath>
#include <limits>
#include <memory>

namespace {
const QString shownBlock = QStringLiteral("RoutePanelsBlock");
constexpr double middleLongitude = -105.0;
constexpr double middleLatitude = 37.55;
// Degrees: so small that all is counted at once.
constexpr double halfSide = 0.0005;
constexpr double height = 30.0;
const std::atomic<bool> goesOn{false};

std::shared_ptr<ShownPlan> PlanOf(AxPlanRequest::Kind kind = AxPlanRequest::Kind::Area)
{
    auto shown = std::make_shared<ShownPlan>();
    shown->blockID = shownBlock;
    shown->taskID = QStringLiteral("Task");
    AxPlanRequest& request = shown->request;
    request.kind = kind;
    for (const auto& [east, north] : {std::pair{-1, -1}, {1, -1}, {1, 1}, {-1, 1}})
        request.outline += QPointF(middleLongitude + halfSide * east, middleLatitude + halfSide * north);
    request.leftWidth = request.rightWidth = 20.0;
    request.radius = 50.0;
    request.height = height;
    request.meanGround = 2150.0;
    shown->plan = AxPlanRoute(request);
    EXPECT_TRUE(shown->plan.IsPlanned()) << shown->plan.fault.toStdString();
    return shown;
}

/// Level at 2150 m, not known in the northern half.
std::optional<double> HalfKnown(double, double latitude)
{
    return latitude > middleLatitude ? std::nullopt : std::make_optional(2150.0);
}
} // namespace

TEST(CoverageScale, PutsEachValueIntoTheStepThatHoldsIt)
{
    const double inf = std::numeric_limits<double>::infinity();
    for (const auto& [least, most] :
         {std::pair{0.031, 0.052}, {0.0379, 0.0379}, {0.0999, 0.1}, {0.0, 0.0}, {0.02, 5.0}}) {
        const CoverageScale scale = CoverageScale::OfSample(least, most);
        EXPECT_LE(scale.steps.size(), 7u);
        for (const double value : {least, (least + most) / 2.0, most})
            if (const int step = scale.StepOf(value); value > 0.0) {
                EXPECT_LE(scale.steps.at(step).from, value * (1.0 + 1e-9)) << least << " to " << most;
                EXPECT_GE(scale.steps.at(step).to, value * (1.0 - 1e-9)) << least << " to " << most;
            }
    }
    const CoverageScale photos = CoverageScale::OfPhotos();
    for (const auto& [count, from, to] :
         {std::tuple{0, 0.0, 1.0}, {1, 1.0, 2.0}, {4, 3.0, 5.0}, {5, 5.0, 8.0}, {60000, 13.0, inf}}) {
        EXPECT_EQ(photos.steps.at(photos.StepOf(count)).from, from) << count;
        EXPECT_EQ(photos.steps.at(photos.StepOf(count)).to, to) << count;
    }
}

TEST(ProfileLine, FollowsTheRouteFromHomeToHomeOverKnownAndUnknownGround)
{
    ShownPlan shown = *PlanOf();
    shown.request.home = QPointF(middleLongitude, middleLatitude - 0.02);
    shown.plan.warnings = {{AxPlanWarning::Kind::Clearance, {middleLongitude, middleLatitude - 0.019}}};
    const ProfileLine line = ProfileOf(shown, HalfKnown, goesOn);
    ASSERT_FALSE(line.places.empty());
    EXPECT_EQ(line.places.front().latitude, middleLatitude - 0.02);
    EXPECT_EQ(line.places.back().latitude, middleLatitude - 0.02);
    EXPECT_EQ(line.places.front().altitude, shown.plan.points.front().altitude);
    for (std::size_t i = 1; i < line.places.size(); ++i) {
        const ProfilePlace& place = line.places[i];
        const double step = place.along - line.places[i - 1].along;
        EXPECT_GE(step, 0.0);
        EXPECT_LE(step, 5.1) << "the ground is looked at in between";
        EXPECT_EQ(std::isnan(place.ground), place.latitude > middleLatitude);
    }
    ASSERT_EQ(line.warnings.size(), 1u);
    EXPECT_NEAR(line.places[line.warnings.front().place].latitude, middleLatitude - 0.019, 1e-4);
    EXPECT_EQ(line.NearestAlong(1e9), line.places.size() - 1);
    EXPECT_FALSE(line.NearestTo(middleLongitude, middleLatitude - 0.03, 500.0)) << "a kilometre off";
    EXPECT_TRUE(line.NearestTo(middleLongitude - 360.0, middleLatitude - 0.02, 5.0))
        << "once round the globe";
    const std::atomic<bool> isOff{true};
    EXPECT_TRUE(ProfileOf(shown, HalfKnown, isOff).places.empty());
}

TEST(CoverageReport, SaysWhatIsKnownAndPaintsTheRestGrey)
{
    std::atomic<int> percent{0};
    const CoverageReport report = CoverageReportOf(*PlanOf(), HalfKnown, percent, goesOn);
    EXPECT_NEAR(static_cast<double>(report.unknown) / report.cells, 0.5, 0.01);
    ASSERT_TRUE(report.leastPhotos && report.coarsestSample);
    EXPECT_GT(report.leastPhotos->value, 0.0) << "not that of a place whose ground is not known";
    EXPECT_LT(report.leastPhotos->place.y(), middleLatitude);
    EXPECT_NEAR(report.coarsestSample->value, AxPlanCamera().SampleFrom(height), 1e-6);
    EXPECT_GT(percent, 90);
    for (const CoveragePainting* painting : {&report.photos, &report.sample}) {
        const auto isGrey = [&](double north) {
            const QColor color = painting->picture.pixelColor(
                painting->picture.width() / 2, static_cast<int>((1.0 - north) * painting->picture.height()));
            return color.red() == color.green() && color.green() == color.blue();
        };
        EXPECT_TRUE(isGrey(0.75)) << "north is above";
        EXPECT_FALSE(isGrey(0.25));
    }
    const std::atomic<bool> isOff{true};
    EXPECT_EQ(CoverageReportOf(*PlanOf(), HalfKnown, percent, isOff).cells, 0);
}

class RoutePanels : public SuiteViewer
{
protected:
    void SetUp() override
    {
        // Whoever has the mouse over the plot is not told of the map, wherever the suite before has left it.
        QCursor::setPos(1500, 1100);
        CAxBlock* block = CAxBlockManager::instance().AddBlock(shownBlock, CAxBlock::PolygonBlock);
        ASSERT_TRUE(block);
    }
    void TearDown() override { CAxBlockManager::instance().DeleteBlock(shownBlock); }

    static bool IsInScene(const char* name) { return findNode(viewer->GetBoundGroup(), name) != nullptr; }
    template <typename Part> static Part* PartOf(QWidget& panel, const char* name)
    {
        return panel.findChild<Part*>(QLatin1String(name));
    }
};

TEST_F(RoutePanels, ThePlaceUnderTheMouseInThePlotIsMarkedOnTheMap)
{
    ProfilePanel panel(viewer);
    panel.resize(600, 200);
    panel.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&panel));
    panel.ShowPlan(PlanOf());
    auto* reading = PartOf<QLabel>(panel, "ProfileReading");
    ASSERT_TRUE(waitFor([&] { return reading->text().isEmpty(); })) << reading->text().toStdString();
    auto* plot = PartOf<QWidget>(panel, "HeightProfile");
    QSignalSpy hovered(&panel, &ProfilePanel::PlaceHovered);
    const auto point = [&](const QPoint& at) {
        QMouseEvent move(QEvent::MouseMove, at, Qt::NoButton, Qt::NoButton, Qt::NoModifier);
        QCoreApplication::sendEvent(plot, &move);
    };
    point(plot->rect().center());
    ASSERT_EQ(hovered.size(), 1);
    EXPECT_NEAR(hovered[0][0].toDouble(), middleLongitude, 0.002);
    EXPECT_NEAR(hovered[0][1].toDouble(), middleLatitude, 0.002);
    EXPECT_NEAR(hovered[0][2].toDouble(), 2180.0, 1.0);
    EXPECT_TRUE(reading->text().contains(QStringLiteral("2,180.0 m")) ||
                reading->text().contains(QStringLiteral("2180.0 m")))
        << reading->text().toStdString();
    EXPECT_TRUE(IsInScene("Profile marker"));
    point({0, 0});
    EXPECT_FALSE(IsInScene("Profile marker"));

    // The other way round.
    emit viewer->getManipulator()->signalPointed(middleLongitude, middleLatitude, 2150.0, 50000.0, false);
    EXPECT_TRUE(reading->text().contains(QStringLiteral("km"))) << reading->text().toStdString();
    emit viewer->getManipulator()->signalPointed(middleLongitude + 1.0, middleLatitude, 2150.0, 5000.0,
                                                 false);
    EXPECT_TRUE(reading->text().isEmpty());

    point(plot->rect().center());
    CAxBlockManager::instance().DeleteBlock(shownBlock);
    EXPECT_FALSE(IsInScene("Profile marker"));
    point(plot->rect().center());
    EXPECT_EQ(hovered.size(), 2) << "of a route that is gone";
}

TEST_F(RoutePanels, CoverageIsPaintedOnlyOfThePlanThatIsShown)
{
    auto panel = std::make_unique<CoveragePanel>(viewer);
    auto* isOn = PartOf<QCheckBox>(*panel, "ShowCoverage");
    auto* told = PartOf<QLabel>(*panel, "CoverageTold");
    const auto isPainted = [] { return IsInScene("Coverage"); };
    panel->ShowPlan(PlanOf());
    EXPECT_FALSE(waitFor(isPainted, 200)) << "it is off by default";
    isOn->setChecked(true);
    for (const auto kind : {AxPlanRequest::Kind::Strip, AxPlanRequest::Kind::Orbit}) {
        panel->ShowPlan(PlanOf(kind));
        EXPECT_TRUE(waitFor(isPainted));
    }
    panel->ShowPlan(nullptr);
    EXPECT_FALSE(waitFor(isPainted, 500)) << "of the plan before";
    EXPECT_FALSE(told->text().isEmpty());
    panel->ShowPlan(PlanOf());
    ASSERT_TRUE(waitFor(isPainted));
    EXPECT_TRUE(PartOf<QLabel>(*panel, "WorstCoverage")->text().contains(QStringLiteral("href")));
    panel->ShowPlan(PlanOf());
    EXPECT_FALSE(isPainted()) << "the former painting is stale";
    PartOf<QPushButton>(*panel, "CancelCoverage")->click();
    EXPECT_FALSE(isOn->isChecked());
    EXPECT_FALSE(waitFor(isPainted, 500)) << "what was cancelled";

    isOn->setChecked(true);
    ASSERT_TRUE(waitFor(isPainted));
    CAxBlockManager::instance().DeleteBlock(shownBlock);
    EXPECT_FALSE(isPainted());
    panel->ShowPlan(PlanOf());
    panel.reset();
    EXPECT_FALSE(waitFor(isPainted, 200)) << "by a panel that is gone";
}

TEST_F(RoutePanels, TheCoveredAreaIsThatOfTheRouteWhichIsShown)
{
    TaskFigures figures(viewer);
    const auto text = [&] { return PartOf<QLabel>(figures, "CoveredArea")->text(); };
    figures.Show(PlanOf());
    const QString counting = text();
    figures.Show(nullptr);
    EXPECT_FALSE(waitFor([&] { return text() != QStringLiteral("-"); }, 500)) << text().toStdString();
    figures.Show(PlanOf());
    ASSERT_TRUE(waitFor([&] { return text() != counting; }));
    EXPECT_TRUE(text().contains(QStringLiteral("of the area"))) << text().toStdString();
}

TEST(RoutePanelsWithoutViewer, TheViewerMayGoFirst)
{
    auto other = std::make_unique<CAxEarthViewer>(nullptr);
    ProfilePanel profile(other.get());
    CoveragePanel coverage(other.get());
    coverage.findChild<QCheckBox*>(QStringLiteral("ShowCoverage"))->setChecked(true);
    other->ReleaseAll();
    other.reset();
    profile.show();
    profile.ShowPlan(PlanOf());
    coverage.ShowPlan(PlanOf());
    EXPECT_FALSE(coverage.findChild<QLabel*>(QStringLiteral("CoverageTold"))->text().isEmpty());
    EXPECT_FALSE(profile.findChild<QLabel*>(QStringLiteral("ProfileReading"))->text().isEmpty());
}
