#include "interaction/AxBlockMove.h"
#include "interaction/CAxHandleAdapter.h"

namespace {
// Volatile, because GCC 12 drops two neighbouring casts to float and back when
// it makes one vector operation of them.
double Single(double value)
{
    const volatile float rounded = static_cast<float>(value);
    return static_cast<double>(rounded);
}
} // namespace

osg::Vec3d AxBlockMove::Offset(const osg::Vec3d& firstPoint, const osg::Vec3d& cursor)
{
    return {cursor.x() - firstPoint.x(), cursor.y() - firstPoint.y(), 0.0};
}

osg::Vec3d AxBlockMove::Delta(const osg::Vec3d& firstPoint, const osg::Vec3d& cursor,
                              const osg::Vec3d& offset)
{
    return {Single(cursor.x() - firstPoint.x() - offset.x()),
            Single(cursor.y() - firstPoint.y() - offset.y()), 0.0};
}

bool AxBlockMove::IsMovable(CAxHandleAdapter* adapter)
{
    return adapter && !adapter->GetAnchor().empty() && adapter->GetTaskList().isEmpty() && !adapter->IsLock();
}
