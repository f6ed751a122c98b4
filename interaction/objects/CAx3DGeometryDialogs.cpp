// What a double click on a polygon block, or on one of its corners, opens.
#include "interaction/objects/AxHandleAdapterState.h"
#include "interaction/objects/CAx3DGeometry.h"

void CAx3DGeometry::ResponseDoubleClickOnBlock()
{
    if (!d->tasks.isEmpty())
        return;
    AxBlockForm form;
    form.title = tr("Polygon Info");
    SetArea(form);
    FillIn(form, {});
}

void CAx3DGeometry::ResponseDoubleClickOnPoint(int index, osg::Vec3d)
{
    ShowVertexDialog(index, tr("The survey block anchor must be not less than 3."));
}
