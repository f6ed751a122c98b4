#include "host/tasks/HomeClick.h"
#include "interaction/CAxEarthManipulator.h"
#include "interaction/CAxHandleAdapter.h"
#include "viewer/CAxEarthViewer.h"

#include <AxData/CAxBlockManager.h>
#include <AxData/CAxControl.h>

#include <osgEarth/GeoData>

#include <QApplication>
#include <QKeyEvent>
#include <QTimer>

#include <utility>

namespace {
// A tool of the host: the viewer draws and picks nothing with it.
constexpr EToolType homeTool = ToolHost20;
} // namespace

HomeClick::HomeClick(CAxEarthViewer* earthViewer, QObject* parent) : QObject(parent), viewer(earthViewer)
{
    connect(viewer->getManipulator(),
            QOverload<osg::Vec3d, osg::Vec3d>::of(&CAxEarthManipulator::mouseLeftBtnClick), this,
            &HomeClick::OnMapClicked);
}

HomeClick::~HomeClick() = default;

void HomeClick::Want(const QString& id)
{
    const bool wanted = viewer->getMapNode() && CAxBlockManager::instance().GetBlock(id);
    if (!wanted && !IsWanted())
        return;
    const QString former = std::exchange(blockID, wanted ? id : QString());
    if (wanted) {
        viewer->SetToolType(homeTool);
        // The keyboard may be in any panel.
        qApp->installEventFilter(this);
        emit Wanted(true);
        return;
    }
    qApp->removeEventFilter(this);
    if (viewer->GetToolType() == homeTool)
        viewer->SetToolType(ToolNavigate);
    CAxHandleAdapter* object = viewer->FindExistNode(former);
    // The click beside the block has taken the choice from it.
    if (object && !viewer->GetCurHandleAdapter())
        viewer->SetNodeSelected(object->GetFeatureNode(), false, false);
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

void HomeClick::OnMapClicked(const osg::Vec3d& lngLatPos, const osg::Vec3d& world)
{
    if (!IsWanted())
        return;
    if (viewer->GetToolType() != homeTool)
        return Want({});
    CAxBlock* block = CAxBlockManager::instance().GetBlock(blockID);
    osgEarth::GeoPoint place;
    if (!block || world == osg::Vec3d() || !place.fromWorld(viewer->getSRS()->getGeographicSRS(), world))
        return;
    const AxPlanGround ground = CAxControl::GetInstance()->GetGround();
    const std::optional<double> height = ground ? ground(place.x(), place.y()) : std::nullopt;
    block->SetHomePosition(CAxVector3D(place.x(), place.y(), height.value_or(lngLatPos.z())), true);
    // The selection of this very click comes before and after.
    QTimer::singleShot(0, this, [this] { Want({}); });
    emit Done();
}
