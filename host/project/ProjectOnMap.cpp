#include "host/project/ProjectOnMap.h"
#include "interaction/CAxEarthManipulator.h"
#include "interaction/CAxHandleAdapter.h"
#include "interaction/CAxOsgDrawPointSet.h"
#include "viewer/CAxEarthViewer.h"

#include <AxBaseUI/AxToolTable.h>
#include <AxData/CAxBlockManager.h>

#include <osgEarth/Viewpoint>

#include <QApplication>
#include <QCoreApplication>
#include <QUndoStack>

AxProject ProjectOnMap::Look(const CAxEarthViewer& viewer, const AxProject& rest)
{
    AxProject project = rest;
    project.blocks = AxProjectBlocks();
    for (AxProjectBlock& block : project.blocks)
        if (const CAxHandleAdapter* object = viewer.FindExistNode(block.id)) {
            block.isLocked = object->IsLock();
            block.isVisible = object->IsVisible();
        }
    const CAxOsgDrawPointSet* marks = CAxOsgDrawPointSet::FindOfViewer(&viewer);
    project.marks = marks ? marks->Marks() : QVector<AxProjectMark>();
    const osgEarth::Viewpoint view = viewer.getManipulator()->getViewpoint();
    if (view.isValid() && view.focalPoint().isSet()) {
        const osg::Vec3d focus = view.focalPoint()->vec3d();
        project.view = AxProjectView{focus.x(),         focus.y(),       focus.z(),
                                     view.getHeading(), view.getPitch(), view.getRange()};
    }
    return project;
}

QStringList ProjectOnMap::Show(CAxEarthViewer& viewer, const AxProject& project)
{
    viewer.SetToolType(ToolNavigate);
    // The line that cuts a block has no tool that ends it; it would go on over the new blocks.
    CAxHandleAdapter* current = viewer.GetCurHandleAdapter();
    if (current && current->GetHandleOperation() == OperationDrawing)
        current->CancelHandle();
    viewer.ClearMultiSelectAdapter();
    viewer.GetUndoStack()->clear();
    viewer.RemoveAllHanderAdapter(true);
    CAxBlockManager& records = CAxBlockManager::instance();
    records.DeleteAllBlocks();
    QStringList notDrawn;
    for (const AxProjectBlock& block : project.blocks) {
        CAxBlock* record = records.AddBlock(block.id, block.type);
        if (!record)
            continue; // whoever heard of it has deleted it
        AxFillBlock(*record, block);
        if (!viewer.ImportShapeNode(block.id)) {
            notDrawn += block.name;
            continue;
        }
        viewer.slotBlockVisible(block.id, block.isVisible);
        viewer.slotBlockLock(block.id, block.isLocked);
    }
    if (CAxOsgDrawPointSet* marks = project.marks.isEmpty() ? nullptr : CAxOsgDrawPointSet::OfViewer(&viewer))
        marks->SetMarks(project.marks);
    viewer.GetUndoStack()->clear();
    if (project.view) {
        const AxProjectView& view = *project.view;
        viewer.getManipulator()->setViewpoint(osgEarth::Viewpoint("", view.longitude, view.latitude,
                                                                  view.altitude, view.heading, view.pitch,
                                                                  view.range),
                                              0.0);
    }
    return notDrawn;
}

bool ProjectOnMap::IsDrawing(const CAxEarthViewer& viewer)
{
    const EToolType tool = viewer.GetToolType();
    if (GetToolKind(tool) != ToolKindDraw || tool == ToolMarkPoint || AxToolRowOf(tool).measures)
        return false;
    CAxHandleAdapter* current = viewer.GetCurHandleAdapter();
    return current && current->GetHandleOperation() == OperationDrawing && !current->GetAnchor().empty();
}

void ProjectOnMap::DropDrawing(CAxEarthViewer& viewer)
{
    if (IsDrawing(viewer))
        viewer.GetCurHandleAdapter()->CancelHandle();
    viewer.SetToolType(ToolNavigate);
}

QString ProjectOnMap::ReasonToWait(const CAxEarthViewer& viewer)
{
    const auto text = [](const char* words) { return QCoreApplication::translate("ProjectSession", words); };
    const CAxHandleAdapter* current = viewer.GetCurHandleAdapter();
    const EHandleOperation operation = current ? current->GetHandleOperation() : OperationIdle;
    if (operation == OperationMovePoint || operation == OperationMoveHandle ||
        QApplication::mouseButtons() != Qt::NoButton)
        return text(QT_TRANSLATE_NOOP("ProjectSession", "Let go of what you hold with the mouse first."));
    if (QApplication::activeModalWidget())
        return text(QT_TRANSLATE_NOOP("ProjectSession", "Answer the open box first."));
    return {};
}
