#include "host/tasks/HomeClick.h"
#include "host/tasks/EscapeKey.h"
#include "host/tasks/UndoStep.h"
#include "interaction/AxLandingReach.h"
#include "interaction/CAxEarthManipulator.h"
#include "interaction/CAxHandleAdapter.h"
#include "viewer/CAxEarthViewer.h"
#include "viewer/CAxMapToolsWidget.h"

#include <AxData/CAxBlockManager.h>
#include <AxData/CAxControl.h>

#include <osgEarth/GeoData>

#include <QTimer>
#include <QUndoStack>

#include <cmath>
#include <utility>

HomeClick::HomeClick(CAxEarthViewer* earthViewer, QObject* parent)
    : QObject(parent), viewer(earthViewer),
      escape(new EscapeKey([this] { return IsWanted(); }, [this] { Want({}); }, this))
{
    connect(viewer->getManipulator(),
            QOverload<osg::Vec3d, osg::Vec3d>::of(&CAxEarthManipulator::mouseLeftBtnRelease), this,
            [this](const osg::Vec3d&, const osg::Vec3d& world) { clickedWorld = world; });
    connect(viewer->GetMapToolWidget(), &CAxMapToolsWidget::ToolInHand, this, [this](EToolType tool) {
        if (tool != ToolLandingPosition)
            Want({});
    });
    connect(viewer, &CAxEarthViewer::LandingPosPicked, this, &HomeClick::OnLandingPicked);
    // A click that comes upon another object chooses it before its place is picked.
    connect(viewer, &CAxEarthViewer::signalCurrentBlock, this, &HomeClick::FollowChoice,
            Qt::QueuedConnection);
}

HomeClick::~HomeClick() = default;

void HomeClick::Want(const QString& id)
{
    const bool wanted = viewer->getMapNode() && CAxBlockManager::instance().GetBlock(id);
    if (!wanted && !IsWanted())
        return;
    const QString former = std::exchange(blockID, wanted ? id : QString());
    escape->Watch(wanted);
    if (wanted) {
        if (CAxHandleAdapter* object = viewer->FindExistNode(id))
            viewer->SetNodeSelected(object->GetFeatureNode(), false, false);
        viewer->SetToolType(ToolLandingPosition);
        viewer->SetLandingAreaVisible(true);
        emit Wanted(true);
        return;
    }
    // Another tool chooses for itself.
    if (viewer->GetToolType() == ToolLandingPosition) {
        viewer->SetToolType(ToolNavigate);
        // A click on another block has taken the choice from it.
        CAxHandleAdapter* object = viewer->FindExistNode(former);
        if (object && AxHasLanding(viewer->GetCurHandleAdapter()))
            viewer->SetNodeSelected(object->GetFeatureNode(), false, false);
    }
    emit Wanted(false);
}

void HomeClick::FollowChoice()
{
    CAxHandleAdapter* current = viewer->GetCurHandleAdapter();
    CAxHandleAdapter* own = viewer->FindExistNode(blockID);
    if (!IsWanted() || current == own)
        return;
    if (!own || !AxHasLanding(current))
        return Want({});
    viewer->SetNodeSelected(own->GetFeatureNode(), false, false);
    emit Wanted(true);
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
        if (!AxAcceptsLanding(*own, longitude, latitude, viewer))
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
    SetHome(*viewer, *block, CAxVector3D(longitude, latitude, height.value_or(altitude)));
    // The selection of this very click comes before and after.
    QTimer::singleShot(0, this, [this] { Want({}); });
    emit Done();
}

void HomeClick::SetHome(CAxEarthViewer& viewer, CAxBlock& block, const CAxVector3D& place)
{
    const CAxVector3D before = block.GetHomePosition();
    block.SetHomePosition(place, true);
    const auto set = [id = block.GetBlockID()](const CAxVector3D& home) {
        if (CAxBlock* found = CAxBlockManager::instance().GetBlock(id))
            found->SetHomePosition(home, true);
    };
    const QString text = place.isNull() ? tr("Clear home of %1") : tr("Set home of %1");
    viewer.GetUndoStack()->push(new UndoStep(
        text.arg(block.GetBlockName()), [set, before] { set(before); }, [set, place] { set(place); }));
}
