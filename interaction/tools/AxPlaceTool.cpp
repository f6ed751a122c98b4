#include "interaction/tools/AxPlaceTool.h"
#include "interaction/objects/AxLandingReach.h"
#include "interaction/objects/CAxHandleAdapter.h"
#include "scene/AxObjectBook.h"
#include "scene/AxViewerParts.h"
#include "scene/base/AxNotice.h"

#include <QCoreApplication>
#include <QGraphicsView>

namespace {
QString Tr(const char* text)
{
    return QCoreApplication::translate("CAxEarthViewer", text);
}
} // namespace

void AxPlaceTool::Pick(const osg::Vec3d& lngLatPos)
{
    if (CheckPickPositionValid(parts, lngLatPos))
        picked(lngLatPos.x(), lngLatPos.y(), lngLatPos.z());
}

bool AxPlaceTool::CheckPickPositionValid(AxViewerParts& parts, const osg::Vec3d& lngLatPos)
{
    CAxHandleAdapter* current = parts.Objects().Current();
    if (!current)
        return false;
    if (AxIsInLandingReach(*current, lngLatPos.x(), lngLatPos.y()))
        return true;
    AxShowClosableNotice(
        parts.Widget(), Tr(QT_TRANSLATE_NOOP("CAxEarthViewer", "Route Information")),
        Tr(QT_TRANSLATE_NOOP("CAxEarthViewer",
                             "Please select the appropriate landing point because the landing point is too "
                             "far from the job area.")));
    return false;
}

void AxAddPointTool::Pick(const osg::Vec3d& lngLatPos)
{
    CAxHandleAdapter* current = parts.Objects().Current();
    if (!current)
        return;
    const int end = static_cast<int>(current->GetAnchor().size());
    current->InsertVertex(end, osg::Vec3d(lngLatPos.x(), lngLatPos.y(), 0.0));
}
