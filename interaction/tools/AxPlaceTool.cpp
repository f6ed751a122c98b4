#include "interaction/tools/AxPlaceTool.h"
#include "interaction/objects/AxLandingReach.h"
#include "interaction/objects/CAxHandleAdapter.h"
#include "scene/AxObjectBook.h"
#include "scene/AxViewerParts.h"

#include <QGraphicsView>

void AxPlaceTool::Pick(const osg::Vec3d& lngLatPos)
{
    if (CheckPickPositionValid(parts, lngLatPos))
        picked(lngLatPos.x(), lngLatPos.y(), lngLatPos.z());
}

bool AxPlaceTool::CheckPickPositionValid(AxViewerParts& parts, const osg::Vec3d& lngLatPos)
{
    CAxHandleAdapter* current = parts.Objects().Current();
    return AxHasLanding(current) && AxAcceptsLanding(*current, lngLatPos.x(), lngLatPos.y(), parts.Widget());
}

void AxAddPointTool::Pick(const osg::Vec3d& lngLatPos)
{
    CAxHandleAdapter* current = parts.Objects().Current();
    if (!current)
        return;
    const int end = static_cast<int>(current->GetAnchor().size());
    current->InsertVertex(end, osg::Vec3d(lngLatPos.x(), lngLatPos.y(), 0.0));
}
