#include "host/ToolActions.h"
#include "interaction/CAxHandleAdapter.h"
#include "viewer/CAxEarthViewer.h"
#include "viewer/CAxMapToolsWidget.h"

#include <AxBaseUI/AxToolTable.h>
#include <AxData/CAxBlockManager.h>

#include <QRegularExpression>

ToolActions::ToolActions(CAxEarthViewer* earthViewer, QObject* parent)
    : QActionGroup(parent), viewer(earthViewer)
{
    setExclusionPolicy(ExclusionPolicy::ExclusiveOptional);
    Add(ToolNavigate, tr("&Browse"), tr("Move the map and look at its blocks"));
    Add(ToolSelect, tr("&Select and move"),
        tr("Take a block and drag it elsewhere; Ctrl and click select several to move or delete together"));
    Add(ToolPolygonBlock, tr("&Polygon block"),
        tr("Click the corners of a block, double-click the last one; Backspace takes one back, Escape gives "
           "it up, Ctrl+Z brings a refused drawing back"));
    Add(ToolRectangleBlock, tr("&Rectangle block"),
        tr("Click the ends of the first side, then the width; or drag from a corner to the opposite one for "
           "sides along meridians and parallels. Its handles resize and turn it"));
    Add(ToolStripBlock, tr("S&trip block"),
        tr("Click the vertices of a line, 50 m apart at least; the last one by a double click"));
    Add(ToolVideoArea, tr("&Video block"), tr("Click the centre of a circle, then its rim"));
    Add(ToolContinueBlock, tr("Video block &anew"),
        tr("Click another centre of the current video block, then its rim"));
    Add(ToolProhibitedArea, tr("&Application area"),
        tr("Click two opposite corners of a rectangle in which you apply to fly although it meets no-fly "
           "zones"));
    Add(ToolMarkPoint, tr("&Mark points"),
        tr("Click places on the map to mark them; drag a mark to move it, double-click it for its name and "
           "note, Escape puts the tool down"));
    connect(this, &QActionGroup::triggered, this, [this](const QAction* action) {
        const auto tool = static_cast<EToolType>(action->data().toInt());
        // Who browses again cuts no more, and the tool is that of browsing all the while.
        if (tool == ToolNavigate && IsCutting(*viewer))
            viewer->GetCurHandleAdapter()->CancelHandle();
        viewer->SetToolType(tool);
        Follow();
    });
    connect(viewer, &CAxEarthViewer::signalHandlePickEnded, this, &ToolActions::OnPickEnded);
    connect(viewer, &CAxEarthViewer::signalCurrentBlock, this, &ToolActions::Follow);
    connect(viewer, &CAxEarthViewer::signalBlockState, this, &ToolActions::Follow);
    connect(&CAxBlockManager::instance(), &CAxBlockManager::blockChanged, this, &ToolActions::Follow);
    connect(viewer->GetMapToolWidget(), &CAxMapToolsWidget::ToolInHand, this, &ToolActions::Follow);
    Follow();
}

QAction* ToolActions::Add(EToolType tool, const QString& text, const QString& tip)
{
    QAction* action = addAction(text);
    // A button has no letter to press; in Chinese it stands in brackets behind the text.
    action->setIconText(QString(text).remove(QRegularExpression(QStringLiteral("\\(&.\\)|&"))));
    action->setData(tool);
    action->setCheckable(true);
    action->setToolTip(tip);
    action->setStatusTip(tip);
    return action;
}

void ToolActions::OnPickEnded(EToolType ended)
{
    // Who measures once measures again, and the magnifier goes with its key.
    if (viewer->GetToolType() == ended && !AxToolRowOf(ended).measures && ended != ToolMagnifier)
        viewer->SetToolType(ToolNavigate);
    Follow();
}

bool ToolActions::IsCutting(const CAxEarthViewer& viewer)
{
    const CAxHandleAdapter* current = viewer.GetCurHandleAdapter();
    return viewer.GetToolType() == ToolNavigate && current &&
           current->GetHandleOperation() == OperationDrawing;
}

void ToolActions::Follow()
{
    const CAxHandleAdapter* current = viewer->GetCurHandleAdapter();
    const CAxBlock* block = current ? current->GetContainedBlock() : nullptr;
    const bool mayGoOn = block && current->GetBlockType() == CAxBlock::VideoBlock && !current->IsLock() &&
                         current->GetTaskList().isEmpty() && block->GetMissionList().isEmpty();
    for (QAction* action : actions())
        if (action->data().toInt() == ToolContinueBlock)
            action->setEnabled(mayGoOn);
    for (QAction* action : actions())
        action->setChecked(action->data().toInt() == viewer->GetToolType() && !IsCutting(*viewer));
}
