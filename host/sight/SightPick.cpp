#include "host/sight/SightPick.h"
#include "host/tasks/EscapeKey.h"
#include "interaction/CAxEarthManipulator.h"
#include "viewer/CAxEarthViewer.h"
#include "viewer/CAxMapToolsWidget.h"

#include <osgEarth/GeoData>
#include <osgEarth/SpatialReference>

#include <QTimer>

namespace {
// A tool of the host: the viewer takes places with it and nothing else. Home has another one.
constexpr EToolType sightTool = ToolHost21;
} // namespace

SightPick::SightPick(CAxEarthViewer* earthViewer, QObject* parent)
    : QObject(parent), viewer(earthViewer),
      escape(new EscapeKey([this] { return !EndWithoutTool(); }, [this] { Want(0); }, this))
{
    connect(viewer->getManipulator(),
            QOverload<osg::Vec3d, osg::Vec3d>::of(&CAxEarthManipulator::mouseLeftBtnClick), this,
            &SightPick::OnMapClicked);
    connect(viewer->GetMapToolWidget(), &CAxMapToolsWidget::ToolInHand, this, [this] { EndWithoutTool(); });
    connect(viewer, &QObject::destroyed, this, [this] {
        viewer.clear(); // a widget tells so before it leaves its pointers
        Want(0);
    });
}

SightPick::~SightPick() = default;

void SightPick::Want(int clicks)
{
    if (!viewer || !viewer->getMapNode())
        clicks = 0;
    if (clicks == 0 && wanted == 0)
        return;
    wanted = clicks;
    places.clear();
    escape->Watch(wanted > 0);
    if (wanted > 0) {
        viewer->SetToolType(sightTool);
        // Keys of the map, as those that zoom, go on working.
        viewer->setFocus();
    } else if (viewer && viewer->GetToolType() == sightTool)
        viewer->SetToolType(ToolNavigate);
    emit WantedChanged(wanted);
}

bool SightPick::EndWithoutTool()
{
    const bool isInHand = wanted > 0 && viewer && viewer->GetToolType() == sightTool;
    if (!isInHand)
        Want(0);
    return !isInHand;
}

void SightPick::OnMapClicked(const osg::Vec3d&, const osg::Vec3d& world)
{
    if (EndWithoutTool())
        return;
    osgEarth::GeoPoint place;
    if (world == osg::Vec3d() || !place.fromWorld(viewer->getSRS()->getGeographicSRS(), world))
        return;
    places += QPointF(place.x(), place.y());
    if (--wanted > 0) {
        emit WantedChanged(wanted);
        return;
    }
    const QList<QPointF> picked = places;
    wanted = 1; // so that the end is told
    // The selection of this very click comes before and after.
    QTimer::singleShot(0, this, [this, picked] {
        Want(0);
        emit Picked(picked);
    });
}
