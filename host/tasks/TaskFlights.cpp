#include "host/tasks/TaskFlights.h"
#include "host/tasks/PlanWarnings.h"

#include <AxData/exchange/AxMissionTask.h>

#include <QHBoxLayout>
#include <QListWidget>
#include <QLocale>
#include <QPushButton>
#include <QStyle>
#include <QVBoxLayout>

#include <algorithm>

namespace {
using FlightRole = AxPlanPoint::Role;

constexpr int rowsShown = 4;
constexpr int mostTextsShown = 20;

// Where the flight begins, behind its way from home.
const AxPlanPoint& BeginOf(const AxPlanFlight& flight)
{
    const auto begin = std::find_if(flight.points.begin(), flight.points.end(), [](const AxPlanPoint& point) {
        return point.role != FlightRole::HomeLeg;
    });
    return begin == flight.points.end() ? flight.points.front() : *begin;
}

QString TextOf(const AxPlanFlight& flight, std::size_t number)
{
    const QLocale locale;
    const QString text = TaskFlights::tr("%1: %2 min, %3 photos")
                             .arg(number + 1)
                             .arg(locale.toString(flight.seconds / 60.0, 'f', 0),
                                  locale.toString(static_cast<qulonglong>(flight.photos.size())));
    if (number == 0)
        return text;
    const AxPlanPoint& begin = BeginOf(flight);
    return TaskFlights::tr("%1, resumes at %2\302\260, %3\302\260")
        .arg(text, QString::number(begin.longitude, 'f', 6), QString::number(begin.latitude, 'f', 6));
}
} // namespace

std::shared_ptr<const ShownPlan> RouteOf(const ShownPlan& route, const AxPlanFlight& flight)
{
    auto shown = std::make_shared<ShownPlan>(route);
    const auto onPass = [](AxPlanPoint& point, FlightRole role) {
        if (point.role == FlightRole::OnPass)
            point.role = role;
    };
    const auto isFlown = [](const AxPlanPoint& point) { return point.role != FlightRole::HomeLeg; };
    std::vector<AxPlanPoint> points = flight.points;
    // The camera is switched on and off there.
    const auto first = std::find_if(points.begin(), points.end(), isFlown);
    const auto last = std::find_if(points.rbegin(), points.rend(), isFlown);
    if (first != points.end()) {
        onPass(*first, FlightRole::PassStart);
        onPass(*last, FlightRole::PassEnd);
    }
    AxPlanResult through = AxPlanThrough(std::move(points));
    AxPlanFigures& figures = shown->plan.figures;
    figures.length = through.figures.length;
    figures.passes = through.figures.passes;
    figures.seconds = flight.seconds;
    figures.photos = static_cast<int>(flight.photos.size());
    shown->plan.points = std::move(through.points);
    shown->plan.photos = flight.photos;
    shown->plan.warnings = flight.warnings;
    return shown;
}

TaskFlights::TaskFlights(QWidget* parent)
    : QWidget(parent), list(new QListWidget), exportFlight(new QPushButton(tr("Export flight...")))
{
    list->setObjectName(QStringLiteral("FlightList"));
    list->setToolTip(tr("A click flies to where the flight begins"));
    list->setFixedHeight(fontMetrics().lineSpacing() * (rowsShown + 1));
    exportFlight->setObjectName(QStringLiteral("ExportFlight"));
    exportFlight->setToolTip(tr("Write the chosen flight alone"));
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(2);
    column->addWidget(list);
    auto* line = new QHBoxLayout;
    line->addStretch();
    line->addWidget(exportFlight);
    column->addLayout(line);
    connect(list, &QListWidget::itemClicked, this,
            [this](const QListWidgetItem* item) { emit PlaceWanted(item->data(Qt::UserRole).toPointF()); });
    connect(list, &QListWidget::currentRowChanged, this,
            [this](int row) { exportFlight->setEnabled(row >= 0); });
    connect(exportFlight, &QPushButton::clicked, this, [this] { emit ExportWanted(list->currentRow()); });
    Show({});
}

void TaskFlights::Show(const std::vector<AxPlanFlight>& flights)
{
    const int chosen = list->currentRow();
    list->clear();
    for (std::size_t i = 0; i < flights.size() && flights.size() > 1; ++i) {
        auto* item = new QListWidgetItem(TextOf(flights[i], i), list);
        const AxPlanPoint& begin = BeginOf(flights[i]);
        item->setData(Qt::UserRole, QPointF(begin.longitude, begin.latitude));
        QStringList texts;
        for (const AxPlanWarning& warning : flights[i].warnings)
            if (texts.size() < mostTextsShown)
                texts += PlanWarnings::TextOf(warning);
        if (!texts.isEmpty())
            item->setIcon(style()->standardIcon(QStyle::SP_MessageBoxWarning));
        item->setToolTip(texts.isEmpty() ? item->text() : texts.join(QLatin1Char('\n')));
    }
    if (list->count() > 0)
        list->setCurrentRow(qBound(0, chosen, list->count() - 1));
    exportFlight->setEnabled(list->currentRow() >= 0);
    setVisible(list->count() > 0);
}
