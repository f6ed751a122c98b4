#include "interaction/tools/AxBlockMove.h"
#include "interaction/objects/CAxHandleAdapter.h"
#include "scene/base/AxSinglePrecision.h"

osg::Vec3d AxBlockMove::Offset(const osg::Vec3d& firstPoint, const osg::Vec3d& cursor)
{
    return {cursor.x() - firstPoint.x(), cursor.y() - firstPoint.y(), 0.0};
}

osg::Vec3d AxBlockMove::Delta(const osg::Vec3d& firstPoint, const osg::Vec3d& cursor,
                              const osg::Vec3d& offset)
{
    return {AxSinglePrecision(cursor.x() - firstPoint.x() - offset.x()),
            AxSinglePrecision(cursor.y() - firstPoint.y() - offset.y()), 0.0};
}

bool AxBlockMove::IsMovable(CAxHandleAdapter* adapter)
{
    return adapter && !adapter->GetAnchor().empty() && adapter->GetTaskList().isEmpty() && !adapter->IsLock();
}
