#include "host/measure/MeasureProfile.h"
#include "analysis/AxMapHeights.h"
#include "host/tasks/ProfilePlot.h"
#include "viewer/AxMapLayers.h"
#include "viewer/CAxEarthViewer.h"

#include <AxAlgorthm/AxUnits.h>

#include <osgEarth/MapNode>

#include <QLabel>
#include <QLocale>
#include <QVBoxLayout>

#include <cmath>
#include <limits>
#include <utility>

namespace {
// Looks at the ground: none closer than metres that no height file resolves, and so many in all.
constexpr double closestLooks = 5.0;
constexpr std::size_t mostLooks = 20000;
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

ProfileLine GroundAlong(const std::vector<CAxVector3D>& path, const AxMapHeights& heights,
                        const std::atomic<bool>& isOff)
{
    ProfileLine line;
    for (const AxPathPlace& place : AxPlacesAlong(path, closestLooks, mostLooks)) {
        if (isOff)
            return {};
        line.places.push_back({place.along, place.longitude, place.latitude, notANumber,
                               heights(place.longitude, place.latitude).value_or(notANumber)});
    }
    return line;
}
} // namespace

MeasureProfile::MeasureProfile(CAxEarthViewer* earthViewer, QWidget* parent)
    : QWidget(parent), viewer(earthViewer), marker(earthViewer), plot(new ProfilePlot), reading(new QLabel)
{
    reading->setObjectName(QStringLiteral("MeasureReading"));
    reading->setTextFormat(Qt::PlainText);
    reading->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    plot->setObjectName(QStringLiteral("MeasureProfile"));
    // The panel is low, and there is one line.
    plot->legend->setVisible(false);
    constexpr int leastWidth = 160, leastHeight = 110;
    plot->setMinimumSize(leastWidth, leastHeight);
    plot->xAxis->setLabel(tr("Distance (km)"));
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(2);
    column->addWidget(reading);
    column->addWidget(plot, 1);
    connect(plot, &ProfilePlot::Pointed, this, &MeasureProfile::OnPointed);
    connect(plot, &ProfilePlot::Left, this, &MeasureProfile::OnLeft);
    connect(viewer->GetMapLayers(), &AxMapLayers::groundChanged, this, &MeasureProfile::ReadAgain);
    connect(viewer, &QObject::destroyed, &work, [this] { work.CallOff(); });
    Show({});
}

MeasureProfile::~MeasureProfile() = default;

void MeasureProfile::Show(const AxMeasurement& measurement)
{
    isPlace = measurement.points.size() == 1;
    std::vector<osg::Vec3d> points = measurement.points;
    if (measurement.isClosed && points.size() > 2)
        points.push_back(points.front());
    if (points.size() < 2)
        points.clear();
    if (measurement.id == shownID && points == path && isRead)
        return;
    shownID = measurement.id;
    path = std::move(points);
    ReadAgain();
}

void MeasureProfile::ReadAgain()
{
    isRead = false;
    work.CallOff();
    marker.Hide();
    plot->Show({}, 0.0, false);
    Tell(!path.empty() ? QString()
         : isPlace     ? tr("A place has no profile.")
                       : tr("No measurement is selected."));
    Read();
}

void MeasureProfile::Read()
{
    if (isRead || path.empty() || !isVisible() || !viewer || !viewer->getMapNode())
        return;
    isRead = true;
    Tell(tr("The heights of the ground are being read..."));
    const osg::ref_ptr<const osgEarth::Map> map = viewer->getMapNode()->getMap();
    std::vector<CAxVector3D> places;
    for (const osg::Vec3d& point : path)
        places.emplace_back(point.x(), point.y(), point.z());
    work.Start([places, map](
                   const std::atomic<bool>& isOff) { return GroundAlong(places, AxMapHeights(map), isOff); },
               [this](ProfileLine&& line) { OnRead(std::move(line)); });
}

void MeasureProfile::OnRead(ProfileLine&& line)
{
    plot->Show(std::move(line), 0.0, false);
    Tell({});
}

void MeasureProfile::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    Read();
}

void MeasureProfile::Tell(const QString& text)
{
    idleText = text;
    reading->setText(text);
}

void MeasureProfile::OnPointed(int number)
{
    const auto place = static_cast<std::size_t>(number);
    const ProfilePlace& at = plot->Line().places[place];
    plot->SetCursor(place);
    const QString along = AxUnits::Length(at.along);
    if (std::isnan(at.ground)) {
        marker.Hide();
        reading->setText(tr("%1: the ground's height is not known").arg(along));
        return;
    }
    marker.Show(at.longitude, at.latitude, at.ground);
    reading->setText(tr("%1: ground at %2 m").arg(along, QLocale().toString(at.ground, 'f', 1)));
}

void MeasureProfile::OnLeft()
{
    marker.Hide();
    plot->SetCursor({});
    reading->setText(idleText);
}
