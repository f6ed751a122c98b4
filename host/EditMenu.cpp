#include "host/EditMenu.h"
#include "host/BlockPanel.h"
#include "interaction/CAxHandleAdapter.h"
#include "viewer/CAxEarthViewer.h"

EditMenu::EditMenu(CAxEarthViewer* earthViewer, QAction* history, QWidget* parent)
    : QMenu(tr("&Edit"), parent), viewer(earthViewer)
{
    addAction(viewer->GetUndoAction());
    addAction(viewer->GetRedoAction());
    addAction(history);
    addSeparator();
    // The key behind the tab belongs to the map and only stands there to be learnt.
    deleteBlock = addAction(tr("&Delete block...\tDel"), this, &EditMenu::DeleteSelected);
    addSeparator();
    AxEditAids aids = viewer->GetEditAids();
    aids.rimHandles = true;
    viewer->SetEditAids(aids);
    AddAids();
    // Whether there is something to delete is asked when it matters, not followed.
    connect(this, &QMenu::aboutToShow, this,
            [this] { deleteBlock->setEnabled(!BlocksToDelete().isEmpty()); });
    connect(this, &QMenu::aboutToHide, this, [this] { deleteBlock->setEnabled(true); });
    connect(viewer, &CAxEarthViewer::signalHandleKeyDelete, this, &EditMenu::OnKeyDelete);
}

void EditMenu::AddAids()
{
    const struct
    {
        bool AxEditAids::*aid;
        QString text;
        QString tip;
    } rows[] = {
        {&AxEditAids::edgeHandles, tr("&Handles on edges"),
         tr("A handle in the middle of each edge inserts a vertex")},
        {&AxEditAids::deleteKey, tr("Delete &key removes vertices"),
         tr("Delete takes away the vertex under the mouse")},
        {&AxEditAids::snap, tr("&Snap to vertices and edges"),
         tr("A dragged or drawn vertex goes to vertices and edges close by")},
        {&AxEditAids::angleSteps, tr("&Angles in steps of 15\302\260"),
         tr("A dragged vertex keeps the angle to the previous edge at steps of 15\302\260")},
        {&AxEditAids::rimHandles, tr("Handles to &turn and stretch"),
         tr("Handles around the block turn it and change its size; Shift keeps its proportions")},
        {&AxEditAids::clampToModels, tr("Put vertices on &models"),
         tr("Vertices have the height of the 3-D models on the map, where there are any")},
    };
    for (const auto& row : rows) {
        QAction* action = addAction(row.text);
        action->setCheckable(true);
        action->setStatusTip(row.tip);
        const auto follow = [this, action, aid = row.aid] { action->setChecked(viewer->GetEditAids().*aid); };
        follow();
        connect(viewer, &CAxEarthViewer::signalEditAids, action, follow);
        connect(action, &QAction::triggered, viewer, [this, aid = row.aid](bool on) {
            AxEditAids aids = viewer->GetEditAids();
            aids.*aid = on;
            viewer->SetEditAids(aids);
        });
    }
}

QStringList EditMenu::BlocksToDelete() const
{
    QList<CAxHandleAdapter*> objects = viewer->GetMultiSelectAdapter();
    if (objects.isEmpty() && viewer->GetCurHandleAdapter())
        objects += viewer->GetCurHandleAdapter();
    QStringList ids;
    for (const CAxHandleAdapter* object : qAsConst(objects))
        if (object->GetHandleOperation() == OperationIdle && object->GetContainedBlock())
            ids += object->GetHandleID();
    return ids;
}

void EditMenu::DeleteSelected()
{
    AskAndDeleteBlocks(viewer, BlocksToDelete(), parentWidget());
}

void EditMenu::OnKeyDelete()
{
    if (!viewer->IsDeleteKeyTaken())
        DeleteSelected();
}
