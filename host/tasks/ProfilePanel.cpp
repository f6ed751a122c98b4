#include "host/tasks/ProfilePanel.h"
#include "analysis/AxMapHeights.h"
#include "host/tasks/ProfilePlot.h"
#include "interaction/CAxEarthManipulator.h"
#include "viewer/CAxEarthViewer.h"

#include <AxData/CAxBlockManager.h>

#include <osgEarth/MapNode>

#include <QLabel>
#include <QLocale>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>

namespace {
// How near the mouse on the map has to come to the route: some ten pixels of the view.
constexpr double reachOfRange = 0.012;
constexpr double leastReach = 5.0; // metres
} // namespace

ProfilePanel::ProfilePanel(CAxEarthViewer* earthViewer, QWidget* parent)
    : QWidget(parent), viewer(earthViewer), marker(earthViewer), plot(new ProfilePlot), reading(new QLabel)
{
    reading->setObjectName(QStringLiteral("ProfileReading"));
    reading->setTextFormat(Qt::PlainText);
    reading->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(4, 4, 4, 4);
    column->setSpacing(2);
    column->addWidget(reading);
    column->addWidget(plot, 1);

    connect(plot, &ProfilePlot::Pointed, this, &ProfilePanel::OnPointedInPlot);
    connect(plot, &ProfilePlot::Left, this, &ProfilePanel::OnLeftPlot);
    connect(viewer->getManipulator(), &CAxEarthManipulator::signalPointed, this,
            &ProfilePanel::OnPointedOnMap);
    connect(viewer, &CAxEarthViewer::signalLoadEarth, this, &ProfilePanel::Read);
    connect(viewer, &QObject::destroyed, &work, [this] { work.CallOff(); });
    connect(&CAxBlockManager::instance(), &CAxBlockManager::blockDeleted, this, [this](const QString& id) {
        if (shown && shown->blockID == id)
            ShowPlan(nullptr);
    });
    ShowPlan(nullptr);
}

ProfilePanel::~ProfilePanel() = default;

void ProfilePanel::ShowPlan(const std::shared_ptr<const ShownPlan>& plan)
{
    shown = plan;
    isRead = false;
    work.CallOff();
    // While a value is changed the former line stays until there is the new one.
    if (!shown || !shown->plan.IsPlanned() || shown->taskID != plottedTask)
        Clear();
    marker.Hide();
    Tell({});
    Read();
}

void ProfilePanel::Clear()
{
    plottedTask.clear();
    plot->Show({}, 0.0, false);
}

void ProfilePanel::Read()
{
    if (isRead || !isVisible())
        return;
    if (!shown || !shown->plan.IsPlanned()) {
        Tell(tr("No route is shown."));
        return;
    }
    if (!viewer || !viewer->getMapNode()) {
        Tell(tr("The map is not open."));
        return;
    }
    isRead = true;
    Tell(tr("The heights of the ground are being read..."));
    const osg::ref_ptr<const osgEarth::Map> map = viewer->getMapNode()->getMap();
    work.Start([plan = shown,
                map](const std::atomic<bool>& isOff) { return ProfileOf(*plan, AxMapHeights(map), isOff); },
               [this](ProfileLine&& read) { OnRead(std::move(read)); });
}

void ProfilePanel::OnRead(ProfileLine&& read)
{
    plot->Show(std::move(read), shown->request.clearance, shown->taskID == plottedTask);
    plottedTask = shown->taskID;
    Tell({});
}

void ProfilePanel::Tell(const QString& text)
{
    idleText = text;
    SetCursor({});
}

void ProfilePanel::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    Read();
}

void ProfilePanel::OnPointedInPlot(int place)
{
    const auto number = static_cast<std::size_t>(place);
    const ProfilePlace& at = plot->Line().places[number];
    SetCursor(number);
    marker.Show(at.longitude, at.latitude, at.altitude);
    emit PlaceHovered(at.longitude, at.latitude, at.altitude);
}

void ProfilePanel::OnLeftPlot()
{
    marker.Hide();
    SetCursor({});
    emit PlaceLeft();
}

void ProfilePanel::OnPointedOnMap(double longitude, double latitude, double /*altitude*/, double range)
{
    // The map tells of a place under the mouse also when the map has moved.
    if (!isVisible() || plot->underMouse() || plot->Line().places.empty())
        return;
    // Beside the globe there is none: not a number.
    SetCursor(std::isnan(longitude)
                  ? std::nullopt
                  : plot->Line().NearestTo(longitude, latitude, std::max(leastReach, reachOfRange * range)));
}

void ProfilePanel::SetCursor(std::optional<std::size_t> place)
{
    plot->SetCursor(place);
    if (!place) {
        reading->setText(idleText);
        return;
    }
    const ProfilePlace& at = plot->Line().places[*place];
    const QLocale locale;
    const auto metres = [&](double value) { return locale.toString(value, 'f', 1); };
    const QString along = locale.toString(at.along / 1000.0, 'f', 2);
    reading->setText(
        std::isnan(at.ground)
            ? tr("%1 km: route at %2 m, the ground's height is not known").arg(along, metres(at.altitude))
            : tr("%1 km: route at %2 m, ground at %3 m, %4 m above the ground")
                  .arg(along, metres(at.altitude), metres(at.ground), metres(at.altitude - at.ground)));
}
