#include "host/LandingMenu.h"
#include "interaction/CAxHandleAdapter.h"
#include "mission/CAxDownhillAnglenode.h"
#include "viewer/CAxEarthViewer.h"

#include <AxData/CAxBlockManager.h>

#include <QAction>
#include <QMenu>

LandingMenu::LandingMenu(CAxEarthViewer* earthViewer, QObject* parent)
    : QObject(parent), viewer(earthViewer), approachAction(new QAction(tr("&Approach to home"), this)),
      interestAction(new QAction(tr("&Point of interest"), this)),
      removeInterest(new QAction(tr("&Remove the point of interest"), this))
{
    approachAction->setCheckable(true);
    approachAction->setStatusTip(
        tr("Shows from where the aircraft comes down to the home of the chosen block; drag the handle"));
    interestAction->setCheckable(true);
    interestAction->setStatusTip(
        tr("Click a place near the chosen block; it can be dragged later. Escape leaves it"));
    connect(approachAction, &QAction::toggled, this, &LandingMenu::ShowApproach);
    connect(interestAction, &QAction::triggered, this, &LandingMenu::PickInterest);
    connect(removeInterest, &QAction::triggered, viewer, &CAxEarthViewer::RemoveInterestPoint);
    connect(viewer, &CAxEarthViewer::signalCurrentBlock, this, &LandingMenu::Follow);
    connect(&CAxBlockManager::instance(), &CAxBlockManager::blockChanged, this, &LandingMenu::Follow);
    connect(viewer, &CAxEarthViewer::signalDownhillAngle, this, [this](double degrees) {
        emit Told(tr("The approach flies towards %1°").arg(QString::number(degrees, 'f', 1)));
    });
    connect(viewer, &CAxEarthViewer::InterestPointPicked, this,
            [this](double longitude, double latitude, double altitude) {
                emit Told(tr("Point of interest: %1, %2, %3 m")
                              .arg(QString::number(latitude, 'f', 6), QString::number(longitude, 'f', 6),
                                   QString::number(altitude, 'f', 1)));
                if (viewer->GetToolType() == ToolInterestPoint)
                    viewer->SetToolType(ToolNavigate);
            });
}

LandingMenu::~LandingMenu()
{
    delete approach;
}

void LandingMenu::AddTo(QMenu* menu)
{
    menu->addSeparator();
    for (QAction* action : {approachAction, interestAction, removeInterest})
        menu->addAction(action);
    connect(menu, &QMenu::aboutToShow, this, [this] {
        interestAction->setChecked(viewer->GetToolType() == ToolInterestPoint);
        interestAction->setEnabled(viewer->GetCurHandleAdapter());
        removeInterest->setEnabled(viewer->GetInterestPointNode());
    });
}

void LandingMenu::ShowApproach(bool shown)
{
    delete approach;
    approach = nullptr;
    if (!shown)
        return;
    approach = new CAxDownhillAnglenode(viewer, nullptr);
    approach->SetHandlesVisible(true);
    viewer->SetDownhillAngleNode(approach);
    Follow();
    // Once, and not with every block that is chosen or changed meanwhile.
    if (!hasHome)
        emit Told(tr("The approach is shown once a block with a home is chosen."));
}

void LandingMenu::Follow()
{
    if (!approach)
        return;
    const CAxHandleAdapter* current = viewer->GetCurHandleAdapter();
    const CAxBlock* block = current ? current->GetContainedBlock() : nullptr;
    const CAxVector3D home = block ? block->GetHomePosition() : CAxVector3D();
    approach->SetVisible(!home.isNull());
    if (!home.isNull())
        approach->SetLandingPoint(CAxVector3D(home.y(), home.x(), home.z()));
    hasHome = !home.isNull();
}

void LandingMenu::PickInterest(bool wanted)
{
    viewer->SetToolType(wanted ? ToolInterestPoint : ToolNavigate);
    if (wanted)
        emit Told(interestAction->statusTip());
}
