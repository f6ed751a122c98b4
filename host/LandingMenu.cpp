#include "host/LandingMenu.h"
#include "host/tasks/UndoStep.h"
#include "interaction/AxLandingReach.h"
#include "interaction/CAxEarthManipulator.h"
#include "interaction/CAxHandleAdapter.h"
#include "mission/CAxDownhillAnglenode.h"
#include "viewer/CAxEarthViewer.h"

#include <AxData/CAxBlockManager.h>
#include <AxData/CAxControl.h>

#include <QAction>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMenu>
#include <QPointer>
#include <QUndoStack>

#include <cmath>
#include <utility>

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
    connect(removeInterest, &QAction::triggered, this, &LandingMenu::RemoveInterest);
    connect(viewer, &CAxEarthViewer::signalCurrentBlock, this, &LandingMenu::Follow);
    connect(&CAxBlockManager::instance(), &CAxBlockManager::blockChanged, this, &LandingMenu::Follow);
    // A home that is set, or given back by undo, comes with a step; a viewer that ends has cleared its steps.
    connect(viewer->GetUndoStack(), &QUndoStack::indexChanged, this, &LandingMenu::Follow,
            Qt::QueuedConnection);
    connect(viewer, &CAxEarthViewer::signalDownhillAngle, this, &LandingMenu::OnTurned);
    connect(viewer->getManipulator(),
            QOverload<osg::Vec3d, osg::Vec3d>::of(&CAxEarthManipulator::mouseLeftBtnRelease), this,
            &LandingMenu::OnReleased);
    connect(viewer, &CAxEarthViewer::InterestPointPicked, this, &LandingMenu::OnInterestPicked);
    // Another tool may just be being taken up.
    connect(viewer, &CAxEarthViewer::signalCurrentBlock, this, &LandingMenu::EndPicking,
            Qt::QueuedConnection);
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
        interestAction->setEnabled(AxHasLanding(viewer->GetCurHandleAdapter()));
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
    hasHome = !home.isNull() && approach->SetLandingPoint(CAxVector3D(home.y(), home.x(), home.z()));
    approach->SetVisible(hasHome);
    const QString before = std::exchange(shownBlock, hasHome ? block->GetBlockID() : QString());
    // A drag of another block's handle has ended with it.
    if (before != shownBlock)
        angleBefore.reset();
    if (hasHome)
        approach->SetAngle(angles.value(shownBlock));
}

// The approach

void LandingMenu::OnTurned(double degrees)
{
    emit Told(tr("The approach flies towards %1°").arg(QString::number(degrees, 'f', 1)));
    if (shownBlock.isEmpty())
        return;
    if (!angleBefore)
        angleBefore = angles.value(shownBlock);
    angles[shownBlock] = degrees;
}

void LandingMenu::OnReleased()
{
    if (!angleBefore)
        return;
    const double before = *std::exchange(angleBefore, {});
    const QString id = shownBlock;
    const double after = angles.value(id);
    const CAxBlock* block = CAxBlockManager::instance().GetBlock(id);
    if (!block || before == after)
        return;
    CAxControl::GetInstance()->SetProjectModified(true);
    const QPointer<LandingMenu> self(this);
    const auto turn = [self, id](double degrees) {
        if (self)
            self->SetAngle(id, degrees);
    };
    viewer->GetUndoStack()->push(new UndoStep(
        tr("Turn the approach of %1").arg(block->GetBlockName()), [turn, before] { turn(before); },
        [turn, after] { turn(after); }));
}

void LandingMenu::SetAngle(const QString& blockID, double degrees)
{
    angles[blockID] = degrees;
    CAxControl::GetInstance()->SetProjectModified(true);
    Follow();
}

QString LandingMenu::Text() const
{
    QJsonObject all;
    for (auto angle = angles.begin(); angle != angles.end(); ++angle)
        if (angle.value() != 0.0 && CAxBlockManager::instance().GetBlock(angle.key()))
            all.insert(angle.key(), angle.value());
    return all.isEmpty() ? QString() : QString::fromUtf8(QJsonDocument(all).toJson(QJsonDocument::Compact));
}

void LandingMenu::SetText(const QString& text)
{
    angles.clear();
    angleBefore.reset();
    const QJsonObject all = QJsonDocument::fromJson(text.toUtf8()).object();
    int leftOut = all.isEmpty() && !text.isEmpty() ? 1 : 0;
    for (auto angle = all.begin(); angle != all.end(); ++angle) {
        if (angle->isDouble() && angle->toDouble() >= 0.0 && angle->toDouble() < 360.0)
            angles[angle.key()] = angle->toDouble();
        else
            ++leftOut;
    }
    if (leftOut > 0)
        emit Told(tr("Approaches of the project that cannot be read: %1").arg(leftOut));
    Follow();
}

// The point of interest

void LandingMenu::OnInterestPicked(double longitude, double latitude, double altitude)
{
    emit Told(tr("Point of interest: %1, %2, %3 m")
                  .arg(QString::number(latitude, 'f', 6), QString::number(longitude, 'f', 6),
                       QString::number(altitude, 'f', 1)));
    const std::optional<CAxVector3D> before = interest;
    KeepInterest(before ? tr("Move the point of interest") : tr("Set the point of interest"), before,
                 CAxVector3D(latitude, longitude, altitude));
    if (viewer->GetToolType() == ToolInterestPoint)
        viewer->SetToolType(ToolNavigate);
}

void LandingMenu::RemoveInterest()
{
    const std::optional<CAxVector3D> before = interest;
    ShowInterest({});
    if (before)
        KeepInterest(tr("Remove the point of interest"), before, {});
}

void LandingMenu::ShowInterest(const std::optional<CAxVector3D>& place)
{
    interest = place;
    CAxControl::GetInstance()->SetProjectModified(true);
    if (place)
        viewer->SetInterestPoint(*place);
    else
        viewer->RemoveInterestPoint();
}

void LandingMenu::KeepInterest(const QString& text, const std::optional<CAxVector3D>& before,
                               const std::optional<CAxVector3D>& after)
{
    interest = after;
    CAxControl::GetInstance()->SetProjectModified(true);
    const QPointer<LandingMenu> self(this);
    const auto show = [self](const std::optional<CAxVector3D>& place) {
        if (self)
            self->ShowInterest(place);
    };
    viewer->GetUndoStack()->push(new UndoStep(
        text, [show, before] { show(before); }, [show, after] { show(after); }));
}

QString LandingMenu::InterestText() const
{
    if (!interest)
        return {};
    const QJsonArray place = {interest->x(), interest->y(), interest->z()};
    return QString::fromUtf8(QJsonDocument(place).toJson(QJsonDocument::Compact));
}

void LandingMenu::SetInterestText(const QString& text)
{
    interest.reset();
    viewer->RemoveInterestPoint();
    if (text.isEmpty())
        return;
    const QJsonArray place = QJsonDocument::fromJson(text.toUtf8()).array();
    const bool isPlace =
        place.size() == 3 && place[0].isDouble() && place[1].isDouble() && place[2].isDouble();
    const CAxVector3D read(place[0].toDouble(), place[1].toDouble(), place[2].toDouble());
    if (isPlace && viewer->SetInterestPoint(read))
        interest = read;
    else
        emit Told(tr("The point of interest of the project cannot be read."));
}

void LandingMenu::EndPicking()
{
    if (viewer->GetToolType() != ToolInterestPoint || AxHasLanding(viewer->GetCurHandleAdapter()))
        return;
    viewer->SetToolType(ToolNavigate);
    emit Told(tr("A point of interest is set for a block, and none is chosen now."));
}

void LandingMenu::PickInterest(bool wanted)
{
    viewer->SetToolType(wanted ? ToolInterestPoint : ToolNavigate);
    if (wanted)
        emit Told(interestAction->statusTip());
}
