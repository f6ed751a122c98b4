// What a double click on a polygon block, or on one of its corners, opens.
#include "interaction/objects/AxHandleAdapterState.h"
#include "interaction/objects/AxPage.h"
#include "interaction/objects/CAx3DGeometry.h"

void CAx3DGeometry::ResponseDoubleClickOnBlock()
{
    const CAxBlock* block = GetContainedBlock();
    if (!block || !d->tasks.isEmpty() || !d->viewer)
        return;
    const Running self(this);
    const QString oldName = block->GetBlockName();
    const AxPage page(BoxParent());
    page->SetWindowTitle(tr("Polygon Info"));
    page->SetElementName(tr("Name:"), tr("area (km^2):"));
    page->SetElement1Value(oldName, true);
    page->SetElement2Value(QString::number(GetArea(), 'f', 2), false);
    // What was typed stays in the page until it can be taken.
    while (page->exec() == QDialog::Accepted && page && self.IsWanted() && d->viewer) {
        const QString name = page->GetElement1Value().trimmed();
        if (name == oldName)
            return;
        if (MayBeCalled(name)) {
            AskAndRename(name);
            return;
        }
        if (!page || !self.IsWanted() || !GetContainedBlock())
            return;
    }
}

void CAx3DGeometry::ResponseDoubleClickOnPoint(int index, osg::Vec3d)
{
    ShowVertexDialog(index, tr("The survey block anchor must be not less than 3."));
}
