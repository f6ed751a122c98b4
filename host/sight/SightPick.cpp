#include "host/sight/SightPick.h"
#include "interaction/CAxEarthManipulator.h"
#include "viewer/CAxEarthViewer.h"
#include "viewer/CAxMapToolsWidget.h"

#include <osgEarth/GeoData>
#include <osgEarth/SpatialReference>

#include <QApplication>
#include <QKeyEvent>
#include <QTimer>

namespace {
// A tool of the host: the viewer draws and picks nothing with it. Home has another one.
constexpr EToolType sightTool = ToolHost21;
} // namespace

SightPick::SightPick(CAxEarthViewer* earthViewer, QObject* parent) : QObject(parent), viewer(earthViewer)
{
    connect(viewer->getManipulator(),
            QOverload<osg::Vec3d, osg::Vec3d>::of(&CAxEarthManipulator::mouseLeftBtnClick), this,
            &SightPick::OnMapClicked);
    connect(viewer->GetMapToolWidget(), &CAxMapToolsWidget::ToolInHand, this, [this] { EndWithoutTool(); });
    connect(viewer, &QObject::destroyed, this, [this] { Want(0); });
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
    // The keyboard may be in any panel.
    qApp->removeEventFilter(this);
    if (wanted > 0) {
        qApp->installEventFilter(this);
        viewer->SetToolType(sightTool);
        // Keys of the map, as those that zoom, go on working.
        viewer->setFocus();
    } else if (viewer && viewer->GetToolType() == sightTool)
        viewer->SetToolType(ToolNavigate);
    emit WantedChanged(wanted);
}

bool SightPick::eventFilter(QObject* object, QEvent* event)
{
    const bool isKey = event->type() == QEvent::ShortcutOverride || event->type() == QEvent::KeyPress;
    if (!isKey || static_cast<QKeyEvent*>(event)->key() != Qt::Key_Escape)
        return QObject::eventFilter(object, event);
    // The key is meant for whatever is open above the map.
    if (QApplication::activeModalWidget() || QApplication::activePopupWidget() || EndWithoutTool())
        return QObject::eventFilter(object, event);
    // No shortcut takes the key, which comes next.
    if (event->type() == QEvent::ShortcutOverride)
        event->accept();
    else
        Want(0);
    return true;
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
