#include "host/tasks/TaskFigures.h"
#include "analysis/AxMapHeights.h"
#include "host/tasks/PlanWarnings.h"
#include "host/tasks/TaskFlights.h"
#include "viewer/CAxEarthViewer.h"

#include <AxData/planner/AxPlanCoverage.h>
#include <AxData/planner/AxPlanFlights.h>

#include <osgEarth/MapNode>

#include <QFormLayout>
#include <QLabel>
#include <QListWidget>
#include <QLocale>
#include <QVBoxLayout>

#include <algorithm>

namespace {
constexpr int mostWarningsListed = 200;
constexpr std::size_t mostRowsSeen = 3;

QString Number(double value, int decimals)
{
    return QLocale().toString(value, 'f', decimals);
}

QString Duration(double seconds)
{
    const int minutes = qRound(seconds / 60.0);
    return TaskFigures::tr("%1 h %2 min").arg(minutes / 60).arg(minutes % 60, 2, 10, QLatin1Char('0'));
}

QString AreaText(double squareMetres)
{
    if (squareMetres < 1e4)
        return TaskFigures::tr("%1 m\302\262").arg(Number(squareMetres, 0));
    return squareMetres < 1e6 ? TaskFigures::tr("%1 ha").arg(Number(squareMetres / 1e4, 2))
                              : TaskFigures::tr("%1 km\302\262").arg(Number(squareMetres / 1e6, 2));
}
} // namespace

TaskFigures::TaskFigures(CAxEarthViewer* earthViewer, QWidget* parent)
    : QWidget(parent), viewer(earthViewer), fault(new QLabel), flightList(new TaskFlights),
      danger(new QLabel), warnings(new QListWidget)
{
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(4, 4, 4, 4);
    fault->setObjectName(QStringLiteral("RouteFault"));
    fault->setStyleSheet(QStringLiteral("color: #d04000"));
    danger->setObjectName(QStringLiteral("RouteDanger"));
    danger->setStyleSheet(QStringLiteral("color: white; background: #c02020; padding: 2px"));
    for (QLabel* line : {fault, danger}) {
        line->setWordWrap(true);
        line->setTextFormat(Qt::PlainText);
        column->addWidget(line);
    }
    warnings->setObjectName(QStringLiteral("RouteWarnings"));
    warnings->setWordWrap(true);
    warnings->setToolTip(tr("A click flies there"));
    column->addWidget(warnings);
    auto* form = new QFormLayout;
    form->setVerticalSpacing(1);
    column->addLayout(form);
    length = AddRow(*form, tr("Length"));
    length->setObjectName(QStringLiteral("RouteLength"));
    time = AddRow(*form, tr("Time"));
    flights = AddRow(*form, tr("Flights"));
    photos = AddRow(*form, tr("Photos"));
    interval = AddRow(*form, tr("Interval"));
    passes = AddRow(*form, tr("Passes, turns"));
    area = AddRow(*form, tr("Area"));
    covered = AddRow(*form, tr("Covered area"));
    covered->setObjectName(QStringLiteral("CoveredArea"));
    covered->setToolTip(tr("Ground that at least one photo shows"));
    sample = AddRow(*form, tr("Sample distance"));
    aboveGround = AddRow(*form, tr("Above ground"));
    aboveGround->setToolTip(tr("Least and mean height of the route above the ground"));
    column->addWidget(flightList);
    column->addStretch();
    connect(flightList, &TaskFlights::PlaceWanted, this, &TaskFigures::PlaceWanted);
    connect(flightList, &TaskFlights::ExportWanted, this, &TaskFigures::FlightExportWanted);
    connect(warnings, &QListWidget::itemClicked, this, [this](const QListWidgetItem* item) {
        if (item->data(Qt::UserRole).isValid())
            emit PlaceWanted(item->data(Qt::UserRole).toPointF());
    });
    Show(nullptr);
}

QLabel* TaskFigures::AddRow(QFormLayout& form, const QString& name)
{
    auto* value = new QLabel;
    value->setTextFormat(Qt::PlainText);
    value->setWordWrap(true);
    value->setTextInteractionFlags(Qt::TextSelectableByMouse);
    form.addRow(name, value);
    values += value;
    return value;
}

void TaskFigures::Show(const std::shared_ptr<const ShownPlan>& shown)
{
    if (shown && shown == last)
        return;
    last = shown;
    work.CallOff();
    for (QLabel* value : qAsConst(values))
        value->setText(QStringLiteral("-"));
    flightList->Show({});
    warnings->clear();
    warnings->hide();
    danger->hide();
    fault->setText(shown ? shown->plan.fault : QString());
    fault->setVisible(!fault->text().isEmpty());
    if (!shown || !shown->plan.IsPlanned())
        return;
    length->setText(tr("%1 km").arg(Number(shown->plan.figures.length / 1000.0, 2)));
    if (!shown->hasFigures) {
        passes->setText(QLocale().toString(shown->plan.figures.passes));
        return;
    }
    ShowFigures(*shown);
    ShowWarnings(*shown);
    CountCovered();
}

void TaskFigures::CountCovered()
{
    covered->setText(tr("is being counted"));
    osg::ref_ptr<const osgEarth::Map> map;
    if (viewer && viewer->getMapNode())
        map = viewer->getMapNode()->getMap();
    work.Start(
        [plan = last, map](const std::atomic<bool>& isOff) {
            AxPlanRequest request = plan->request;
            request.ground = map ? AxPlanGround(AxMapHeights(map)) : AxPlanGround();
            return AxCoveredAreaOf(request, plan->plan, isOff);
        },
        [this](std::optional<AxCoveredArea>&& counted) {
            if (counted)
                ShowCovered(*counted);
        });
}

void TaskFigures::ShowCovered(const AxCoveredArea& counted)
{
    const double all = counted.inside + counted.beside;
    const QString text = tr("%1 of the area, %2 in all").arg(AreaText(counted.inside), AreaText(all));
    covered->setText(counted.isKnown ? text
                     : all > 0.0     ? tr("%1, as far as the ground is known").arg(text)
                                     : tr("not known"));
}

void TaskFigures::ShowFigures(const ShownPlan& shown)
{
    const AxPlanFigures& figures = shown.plan.figures;
    time->setText(Duration(figures.seconds));
    const std::vector<AxPlanFlight> parts = AxSplitIntoFlights(shown.request, shown.plan);
    flightList->Show(parts);
    const std::size_t count = parts.size();
    const double minutes = shown.request.aircraft.endurance / 60.0;
    flights->setText(count > 0 ? tr("%1 of at most %2 min").arg(count).arg(Number(minutes, 0))
                               : tr("too far for flights of %1 min").arg(Number(minutes, 0)));
    photos->setText(QLocale().toString(figures.photos));
    interval->setText(
        tr("%1 s, the camera needs %2 s")
            .arg(Number(figures.interval, 1), Number(shown.request.camera.shortestInterval, 1)));
    passes->setText(tr("%1, %2").arg(figures.passes).arg(figures.turns));
    area->setText(AreaText(figures.area));
    const auto centimetres = [](double metres) { return Number(metres * 100.0, 2); };
    sample->setText(figures.sampleMean > 0.0
                        ? tr("%1 cm, on the ground %2 cm at least, %3 cm on average")
                              .arg(centimetres(figures.sample), centimetres(figures.sampleLeast),
                                   centimetres(figures.sampleMean))
                        : tr("%1 cm").arg(centimetres(figures.sample)));
    if (figures.leastHeight != 0.0 || figures.meanHeight != 0.0)
        aboveGround->setText(
            tr("%1 m, %2 m").arg(Number(figures.leastHeight, 1), Number(figures.meanHeight, 1)));
    else
        aboveGround->setText(tr("not known"));
}

void TaskFigures::ShowWarnings(const ShownPlan& shown)
{
    const std::vector<AxPlanWarning> all = PlanWarnings::WorstFirst(shown.plan.warnings);
    danger->setText(PlanWarnings::Summary(all));
    danger->setVisible(!danger->text().isEmpty());
    warnings->setVisible(!all.empty());
    // Of two lines each.
    const int rows = static_cast<int>(std::min<std::size_t>(all.size(), mostRowsSeen));
    warnings->setFixedHeight(fontMetrics().lineSpacing() * (2 * rows + 1));
    for (const AxPlanWarning& warning : all) {
        if (warnings->count() == mostWarningsListed) {
            warnings->addItem(tr("and %1 more").arg(all.size() - mostWarningsListed));
            break;
        }
        auto* item = new QListWidgetItem(style()->standardIcon(QStyle::SP_MessageBoxWarning),
                                         PlanWarnings::TextOf(warning), warnings);
        item->setToolTip(item->text());
        item->setData(Qt::UserRole, warning.place);
    }
}
