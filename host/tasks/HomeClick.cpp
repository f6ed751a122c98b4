#include "host/tasks/HomeClick.h"
#include "interaction/AxLandingReach.h"
#include "interaction/CAxEarthManipulator.h"
#include "interaction/CAxHandleAdapter.h"
#include "viewer/CAxEarthViewer.h"
#include "viewer/CAxMapToolsWidget.h"

#include <AxData/CAxBlockManager.h>
#include <AxData/CAxControl.h>

#include <osgEarth/GeoData>

#include <QApplication>
#include <QKeyEvent>
#include <QTimer>

#include <cmath>
#include <utility>

HomeClick::HomeClick(CAxEarthViewer* earthViewer, QObject* parent) : QObject(parent), viewer(earthViewer)
{
    connect(viewer->getManipulator(),
            QOverload<osg::Vec3d, osg::Vec3d>::of(&CAxEarthManipulator::mouseLeftBtnRelease), this,
            [this](const osg::Vec3d&, const osg::Vec3d& world) { clickedWorld = world; });
    connect(viewer->GetMapToolWidget(), &CAxMapToolsWidget::ToolInHand, this, [this](EToolType tool) {
        if (tool != ToolLandingPosition)
            Want({});
    });
    connect(viewer, &CAxEarthViewer::LandingPosPicked, this, &HomeClick::OnLandingPicked);
}

HomeClick::~HomeClick() = default;

void HomeClick::Want(const QString& id)
{
    const bool wanted = viewer->getMapNode() && CAxBlockManager::instance().GetBlock(id);
    if (!wanted && !IsWanted())
        return;
    const QString former = std::exchange(blockID, wanted ? id : QString());
    if (wanted) {
        if (CAxHandleAdapter* object = viewer->FindExistNode(id))
            viewer->SetNodeSelected(object->GetFeatureNode(), false, false);
        viewer->SetToolType(ToolLandingPosition);
        viewer->SetLandingAreaVisible(true);
        // The keyboard may be in any panel.
        qApp->installEventFilter(this);
        emit Wanted(true);
        return;
    }
    qApp->removeEventFilter(this);
    // Another tool chooses for itself.
    if (viewer->GetToolType() == ToolLandingPosition) {
        viewer->SetToolType(ToolNavigate);
        // A click on another block has taken the choice from it.
        if (CAxHandleAdapter* object = viewer->FindExistNode(former))
            viewer->SetNodeSelected(object->GetFeatureNode(), false, false);
    }
    emit Wanted(false);
}

bool HomeClick::eventFilter(QObject* object, QEvent* event)
{
    const bool isKey = event->type() == QEvent::ShortcutOverride || event->type() == QEvent::KeyPress;
    if (!IsWanted() || !isKey || static_cast<QKeyEvent*>(event)->key() != Qt::Key_Escape)
        return QObject::eventFilter(object, event);
    Want({});
    return true;
}

void HomeClick::OnLandingPicked(double longitude, double latitude, double altitude)
{
    if (!IsWanted())
        return;
    CAxBlock* block = CAxBlockManager::instance().GetBlock(blockID);
    if (!block)
        return Want({});
    CAxHandleAdapter* own = viewer->FindExistNode(blockID);
    if (own && own != viewer->GetCurHandleAdapter()) {
        // The click came upon another block, and the place was judged for that one.
        viewer->SetNodeSelected(own->GetFeatureNode(), false, false);
        if (!AxIsInLandingReach(*own, longitude, latitude))
            return;
    }
    constexpr double digitsOfPick = 1e-4; // degrees
    osgEarth::GeoPoint place;
    if (place.fromWorld(viewer->getSRS()->getGeographicSRS(), clickedWorld) &&
        std::abs(place.x() - longitude) < digitsOfPick && std::abs(place.y() - latitude) < digitsOfPick) {
        longitude = place.x();
        latitude = place.y();
    }
    const AxPlanGround ground = CAxControl::GetInstance()->GetGround();
    const std::optional<double> height = ground ? ground(longitude, latitude) : std::nullopt;
    block->SetHomePosition(CAxVector3D(longitude, latitude, height.value_or(altitude)), true);
    // The selection of this very click comes before and after.
    QTimer::singleShot(0, this, [this] { Want({}); });
    emit Done();
}
